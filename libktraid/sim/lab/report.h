// Reports as labs: what was read from adapters becomes a state whose adapters look and behave the same.
//
// A report leaves nothing to defaults as a lab's silence does. Its lower-case words make the library's records, and the
// records' own fields, where the report has them, override them. What no call of the library tells has one stated
// value each (docs/ktraid-sim.7.scd).
#pragma once

#include "lab/lab.h"

#include <map>
#include <set>
#include <span>

namespace sim {

// A word of the report that is a field of the record.
struct WordField {
    const char* word;
    const char* field;
};
// The bit or code that stands for a word in a list of words.
struct WordBit {
    const char* word;
    KT_U32 bit;
};

// What the log and the refusals tell of an adapter's past, as far back as they go.
struct Past {
    std::set<KT_U16> silentDisks;             // did not answer when asked for their health
    std::set<KT_U16> deadDisks;               // the adapter has called them dead
    std::map<KT_U16, KT_U64> losses;          // by disk: which loss it went with, counted from 1
    std::map<KT_U16, KT_U64> offline;         // by virtual disk: the loss that it went offline at
    std::map<KT_U16, KT_U16> cipherComplaint; // by disk: the code of the last event about its cipher
    std::map<KT_U16, bool> initialized;       // by virtual disk
    std::map<KT_U16, KT_U8> toldTooSmall;     // by disk: TOLD_*
    KT_U64 lossCount = 0;
    bool muted = false;
};

// Fills an empty state from a report. Throws LabError.
void fillFromReport(Store& store, LabReader& report, const BuiltInLab& source);

// The parts of an adapter, each from its own words of the adapter's object.
void addReportedAdapter(Context& context, LabReader& adapter);                      // reportAdapter.cpp
void addReportedKeys(Context& context, LabReader& adapter, const Past& past);       // reportAdapter.cpp
void addReportedParts(Context& context, LabReader& adapter);                        // reportParts.cpp
void addReportedDisks(Context& context, LabReader& adapter, const Past& past);      // reportDisks.cpp
void addReportedVolumes(Context& context, LabReader& adapter, const Past& past);    // reportVolumes.cpp
void findWhole(const Context& context);                                             // reportSizes.cpp
void addReportedHealth(const Context& context, const LabReader& adapter);           // reportHealth.cpp
Past addReportedEvents(Context& context, LabReader& adapter, const LabReader& top); // reportPast.cpp

// Reading words of reports (reportWords.cpp).
KT_U64 needNumber(LabReader& reader, const char* word, KT_U64 largest);
// Fields of the record that stand under other words.
void takeAs(LabReader& reader, Kind kind, void* record, std::span<const WordField> words);
// An amount of bytes as a number of units of `unit` bytes; refuses what is no whole number of them.
KT_U64 takeUnits(LabReader& reader, const char* word, KT_U64 unit, KT_U64 absent);
// The bits of a list of words.
KT_U32 takeBits(LabReader& reader, const char* word, std::span<const WordBit> words);
// RFC 3339 in UTC ("2026-01-05T08:00:00Z") as seconds since 1970.
KT_U64 takeTime(LabReader& reader, const char* word, KT_U64 absent);
// Words that mean nothing to a simulated adapter, or follow from the others.
void leaveOut(LabReader& reader, std::initializer_list<const char*> words);
// The object under the word, when there is one.
std::vector<LabReader> takeRecord(LabReader& reader, const char* word);
// A table of words.
struct WordList {
    const LabWord* words;
    size_t count;

    template <size_t N>
    WordList(const LabWord (&table)[N]) : words(table), count(N) {}
};
// A code that stands as a word, or as a number under the name of its field.
int takeCode(LabReader& reader, const char* word, const WordList& words, const char* field, int absent);

// How far an activity is that has `work` KiB to do, so that it shows that percentage.
void setReportedProgress(const Context& context, Activity& activity, KT_U64 work, KT_U64 percent);

// labVolumes.cpp: the words that labs have for levels, statuses, kinds of activities and their states.
WordList levelWords();
WordList vdStatusWords();
WordList activityWords();
WordList activityStateWords();

} // namespace sim
