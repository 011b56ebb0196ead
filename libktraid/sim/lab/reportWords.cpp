#include "lab/reportWords.h"

#include "activities/activities.h"
#include "lab/labValues.h"

#include <algorithm>
#include <cstring>
#include <ctime>

namespace sim {

KT_U64 needNumber(LabReader& reader, const char* word, KT_U64 largest) {
    if (!hasWord(reader, word)) failLab(reader, word, "is missing");
    return takeNumber(reader, word, 0, largest);
}

void takeAs(LabReader& reader, Kind kind, void* record, std::span<const WordField> words) {
    const RecordFields& table = *fieldsOf(kind);
    for (const WordField& each : words) {
        const Json* value = take(reader, each.word);
        if (value) setFieldAt(table, record, each.field, *value, reader.path + "." + each.word);
    }
}

KT_U64 takeTime(LabReader& reader, const char* word, KT_U64 absent) {
    if (!hasWord(reader, word)) return absent;
    const std::string text = takeText(reader, word, "");
    tm parts = {};
    const char* end = strptime(text.c_str(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    const time_t seconds = timegm(&parts);
    if (!end || *end || seconds < 0) failLab(reader, word, "should be a time such as \"2026-01-05T08:00:00Z\"");
    return static_cast<KT_U64>(seconds);
}

void leaveOut(LabReader& reader, std::initializer_list<const char*> words) {
    for (const char* word : words)
        take(reader, word);
}

std::vector<LabReader> takeRecord(LabReader& reader, const char* word) {
    const Json* value = take(reader, word);
    if (!value) return {};
    return {readObject(*value, reader.path + "." + word)};
}

int takeCode(LabReader& reader, const char* word, const WordList& words, const char* field, int absent) {
    if (hasWord(reader, word)) return takeWord(reader, word, words.words, words.count, absent);
    return static_cast<int>(takeNumber(reader, field, static_cast<KT_U64>(absent), 0xFFFF));
}

void setReportedProgress(const Context& context, Activity& activity, KT_U64 work, KT_U64 percent) {
    const KT_U64 hundredth = work / 100;
    // At a hundred percent there is a rest that rounds to nothing.
    activity.work = percent >= 100 ? std::max(work, hundredth * 100 + 1) : work;
    activity.done = hundredth ? hundredth * percent : work * percent / 100;
    activity.announced = percent - percent % ANNOUNCED_PERCENT;
    activity.since = context.now;
}

} // namespace sim
