#include "commands.h"
#include "events/eventText.h"
#include "state/due.h"
#include "state/events.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <tuple>
#include <vector>

using namespace sim;

struct EventOptions {
    unsigned eventClass = 0;
    unsigned code = 0;
    unsigned device = 0;
    unsigned severity = SEV_INFO;
    unsigned count = 1;
    std::vector<KT_U32> params;
    std::string sense;
    bool list = false;
};

static int hexDigit(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
    return -1;
}

static void readSense(const std::string& hex, _Event& event) {
    if (hex.size() % 2 || hex.size() / 2 > sizeof event.SenseData)
        throw CommandFailure{"--sense takes at most 30 bytes in hexadecimal"};
    for (size_t i = 0; i < hex.size(); i += 2) {
        const int high = hexDigit(hex[i]);
        const int low = hexDigit(hex[i + 1]);
        if (high < 0 || low < 0) throw CommandFailure{"--sense takes bytes in hexadecimal"};
        event.SenseData[i / 2] = static_cast<KT_U8>(high * 16 + low);
    }
    event.SenseDataLength = static_cast<KT_U8>(hex.size() / 2);
}

static void log(const Options& options, const EventOptions& wanted) {
    _Event event = {};
    event.Class = static_cast<KT_U16>(wanted.eventClass);
    event.Code = static_cast<KT_U16>(wanted.code);
    event.DeviceID = static_cast<KT_U16>(wanted.device);
    event.Severity = static_cast<KT_U8>(wanted.severity);
    for (size_t i = 0; i < wanted.params.size() && i < 4; ++i)
        event.Params[i] = wanted.params[i];
    readSense(wanted.sense, event);
    changeAdapter(options, [&](Context& context) {
        if (isDown(context)) throw CommandFailure{"the adapter does not run, and logs nothing"};
        for (unsigned i = 0; i < wanted.count; ++i)
            logEvent(context, event);
    });
}

static void listEvents() {
    std::vector<std::tuple<KT_U16, KT_U16, std::string>> events;
    KT_U16 eventClass = 0;
    KT_U16 code = 0;
    char text[EVENT_TEXT_SIZE];
    for (unsigned row = 0; describeEvents(row, eventClass, code, text); ++row)
        events.emplace_back(eventClass, code, text);
    std::stable_sort(events.begin(), events.end(), [](const auto& one, const auto& other) {
        return std::tie(std::get<0>(one), std::get<1>(one)) < std::tie(std::get<0>(other), std::get<1>(other));
    });
    for (const auto& [group, number, words] : events)
        printf("%2u %3u  %s\n", unsigned{group}, unsigned{number}, words.c_str());
}

void addEvent(const Command& app, Options& options) {
    const Command command = app.addCommand("event", "Put an event into an adapter's log");
    const auto wanted = std::make_shared<EventOptions>();
    const WordCheck word = inRange(0U, 65535U);
    const Option eventClass = command.addOption("CLASS", wanted->eventClass, "Event class").check(word);
    const Option code = command.addOption("CODE", wanted->code, "Event code within the class").check(word);
    command.addOption("-d,--device", wanted->device, "The device it concerns").check(word).showDefault();
    command.addOption("-s,--severity", wanted->severity, "0 unknown to 7 fatal; 2 is information")
        .check(inRange(unsigned{SEV_UNKNOWN}, unsigned{SEV_FATAL}))
        .showDefault();
    command.addOption("-p,--param", wanted->params, "Up to four values").expects(1, 4);
    command.addOption("--sense", wanted->sense, "Sense data in hexadecimal");
    command.addOption("-n,--count", wanted->count, "How many of them").check(inRange(1U, 1000000U)).showDefault();
    addAdapterOption(command, options);
    command.addFlag("--list", wanted->list, "Print the classes, codes and texts that there are")
        .excludes(eventClass)
        .excludes(code);
    command.onGiven([&options, wanted, eventClass, code] {
        if (wanted->list) return listEvents();
        if (!eventClass.isGiven()) failMissing("CLASS");
        if (!code.isGiven()) failMissing("CODE");
        log(options, *wanted);
    });
}
