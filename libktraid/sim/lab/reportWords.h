// Reading the words of reports.
#pragma once

#include "lab/labReader.h"
#include "state/store.h"

#include <span>

namespace sim {

// A word of the report that is a field of the record.
struct WordField {
    const char* word;
    const char* field;
};

KT_U64 needNumber(LabReader& reader, const char* word, KT_U64 largest);
// Fields of the record that stand under other words.
void takeAs(LabReader& reader, Kind kind, void* record, std::span<const WordField> words);
// RFC 3339 in UTC ("2026-01-05T08:00:00Z") as seconds since 1970.
KT_U64 takeTime(LabReader& reader, const char* word, KT_U64 absent);
// Words that mean nothing to a simulated adapter, or follow from the others.
void leaveOut(LabReader& reader, std::initializer_list<const char*> words);
// The object under the word, when there is one.
std::vector<LabReader> takeRecord(LabReader& reader, const char* word);
// A code that stands as a word, or as a number under the name of its field.
int takeCode(LabReader& reader, const char* word, const WordList& words, const char* field, int absent);

// How far an activity is that has `work` KiB to do, so that it shows that percentage.
void setReportedProgress(const Context& context, Activity& activity, KT_U64 work, KT_U64 percent);

} // namespace sim
