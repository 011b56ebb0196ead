#include "commands.h"
#include "state/faults.h"

#include <cstdio>
#include <cstring>
#include <memory>

using namespace sim;

extern const char* const CALL_NAMES[]; // made by the build from the header

struct FaultOptions {
    std::string call;
    unsigned status = 0;
    unsigned after = 0;
    unsigned times = 0;
    int adapter = -1;
    std::string kind = "status";
    bool listCalls = false;
};

static const char* const KIND_NAMES[] = {"status", "count", "text", "next"};

std::string faultText(const Fault& fault);

std::string faultText(const Fault& fault) {
    std::string text = printable(fault.call, sizeof fault.call);
    if (fault.kind == FAULT_STATUS) {
        text += " answers " + std::to_string(fault.status);
    } else {
        text += std::string(" spoils its ") + KIND_NAMES[fault.kind < 4 ? fault.kind : 0];
    }
    if (fault.adapter != ADAPTER_GLOBAL) text += " on adapter " + std::to_string(fault.adapter);
    if (fault.after > fault.seen)
        text += ", after " + std::to_string(fault.after - fault.seen) + " more calls that go well";
    if (fault.times != 0) {
        const KT_U32 struck = fault.seen > fault.after ? fault.seen - fault.after : 0;
        const KT_U32 left = fault.times - std::min(struck, fault.times);
        text += left == 1 ? ", once" : ", " + std::to_string(left) + " times";
    }
    return text;
}

static bool knownCall(const std::string& name) {
    for (const char* const* call = CALL_NAMES; *call; ++call)
        if (name == *call) return true;
    return false;
}

static void listCalls() {
    for (const char* const* call = CALL_NAMES; *call; ++call)
        printf("%s\n", *call);
}

static KT_U8 kindOf(const std::string& name) {
    KT_U8 kind = 0;
    while (name != KIND_NAMES[kind])
        ++kind;
    return kind;
}

static void setFault(const Options& options, const FaultOptions& wanted, bool hasStatus) {
    if (!knownCall(wanted.call)) throw CommandFailure{wanted.call + " is not a call of the library"};
    Fault fault = {};
    fault.kind = kindOf(wanted.kind);
    if (!canStrike(wanted.call.c_str(), fault.kind))
        throw CommandFailure{wanted.call + " answers nothing that --kind " + wanted.kind + " could spoil"};
    if (fault.kind == FAULT_STATUS && !hasStatus) failMissing("STATUS");
    strncpy(fault.call, wanted.call.c_str(), sizeof fault.call - 1);
    fault.status = static_cast<KT_U8>(wanted.status);
    fault.adapter = wanted.adapter < 0 ? KT_U8{ADAPTER_GLOBAL} : static_cast<KT_U8>(wanted.adapter);
    fault.after = wanted.after;
    fault.times = wanted.times;
    changeState(options, [&](Store& store) {
        if (fault.adapter != ADAPTER_GLOBAL && fault.adapter >= adapterCount(store))
            throw CommandFailure{"there is no adapter " + std::to_string(fault.adapter)};
        addFault(store, fault);
    });
}

void addFault(const Command& app, Options& options) {
    const Command command = app.addCommand("fault", "Let calls of the library go wrong");
    const auto wanted = std::make_shared<FaultOptions>();
    command.addOption("CALL", wanted->call, "The call's name, for instance KT_LD_GetInfo");
    const Option status = command.addOption("STATUS", wanted->status, "The status it answers").check(inRange(0U, 255U));
    command.addOption("--after", wanted->after, "Calls that go well first").showDefault();
    command.addOption("--times", wanted->times, "How often it strikes; 0 = for ever").showDefault();
    command.addOption("-a,--adapter", wanted->adapter, "Only on this adapter").check(inRange(0, 254));
    command
        .addOption("--kind", wanted->kind,
                   "status; or a call that succeeds but answers a count larger than asked for (count), texts filled "
                   "to the brim (text), a next index that does not advance (next)")
        .check(oneOf({"status", "count", "text", "next"}))
        .showDefault();
    command.addFlag("--list-calls", wanted->listCalls, "Print the calls that can go wrong");
    const Command clear = command.addCommand("clear", "Remove all faults");
    clear.onGiven(
        [&options] { changeState(options, [](Store& store) { eraseRows(store, ADAPTER_GLOBAL, KIND_FAULT); }); });
    const Command list = command.addCommand("list", "Print the faults that are set");
    list.onGiven([&options] {
        changeState(options, [](Store& store) {
            forEach<Fault>(store, ADAPTER_GLOBAL, 0, [](KT_U64, const Fault& fault) {
                printf("%s\n", faultText(fault).c_str());
                return true;
            });
        });
    });
    command.onGiven([&options, wanted, status, command] {
        if (command.hasGivenCommand()) return;
        if (wanted->listCalls) return listCalls();
        if (wanted->call.empty()) failMissing("CALL");
        setFault(options, *wanted, status.isGiven());
    });
}
