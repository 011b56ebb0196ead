#include "frame/call.h"

#include "frame/invariants.h"
#include "frame/settle.h"
#include "state/due.h"
#include "state/faults.h"
#include "state/simClock.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <new>

namespace sim {

static Store* gStore = nullptr;

Store* currentStore() {
    return gStore;
}

void setCurrentStore(Store* store) {
    gStore = store;
}

void reportFailure(const char* call, const StoreFailure& failure) {
    static std::string last;
    if (failure.message == last) return;
    last = failure.message;
    fprintf(stderr, "ktraid-sim: %s: %s\n", call, failure.message.c_str());
}

KT_U8 checkListRequest(const _RequestHeader& header) {
    if (header.requestType != KT_REQUEST_LIST && header.requestType != KT_REQUEST_ITEM) return KT_ERR_REQUEST_TYPE;
    if (header.numRequested == 0) return KT_ERR_NUM_REQUESTED;
    return KT_OK;
}

// What an adapter still does that has booted without firmware: say what it is, and take an image.
static bool worksWithoutFirmware(const char* name) {
    for (const char* family : {"KT_Flash_", "KT_Adapter_Get", "KT_EVT_"})
        if (strncmp(name, family, strlen(family)) == 0) return true;
    return false;
}

static bool anyNull(std::initializer_list<Arg> args) {
    return std::any_of(args.begin(), args.end(),
                       [](const Arg& arg) { return arg.type != ArgType::Number && arg.data == nullptr; });
}

// The faults that spoil a call that went well.
static void spoilList(const char* name, const Fault& fault, const Arg& arg) {
    auto* request = static_cast<unsigned char*>(const_cast<void*>(arg.data));
    _RequestHeader header;
    memcpy(&header, request, sizeof header);
    const size_t records = std::min(header.numReturned, header.numRequested);
    if (fault.kind == FAULT_COUNT)
        header.numReturned = static_cast<KT_U16>(std::min(header.numRequested + 1000, 0xFFFF));
    if (fault.kind == FAULT_NEXT) header.nextStartingIndex = header.startingIndexOrId;
    memcpy(request, &header, sizeof header);
    if (fault.kind != FAULT_TEXT) return;
    for (size_t i = 0; i < records; ++i)
        fillTexts(name, request + sizeof header + i * arg.size);
}

static void spoil(const char* name, const Fault& fault, std::initializer_list<Arg> args) {
    for (const Arg& arg : args) {
        if (arg.type == ArgType::List) spoilList(name, fault, arg);
        if (arg.type == ArgType::Array && fault.kind == FAULT_COUNT) *const_cast<KT_U8*>(arg.count) = 0xFF;
        if (arg.type == ArgType::Array && fault.kind == FAULT_TEXT) {
            for (size_t i = 0; i < *arg.count; ++i)
                fillTexts(name, static_cast<unsigned char*>(const_cast<void*>(arg.data)) + i * arg.size);
        }
        if ((arg.type == ArgType::Out || arg.type == ArgType::InOut) && fault.kind == FAULT_TEXT && arg.size > 1)
            fillTexts(name, const_cast<void*>(arg.data));
    }
}

// A failing body undoes itself; what was settled and counted before it stays.
static KT_U8 runBody(Context& context, Access access, Body body) {
    if (access == Access::Write) setMark(context.store);
    const KT_U8 status = body.run(body.closure, context);
    if (access == Access::Write && status != KT_OK && !context.keepOnFailure) rollbackToMark(context.store);
    return status;
}

namespace {
// A call on its way: what was called, and what it does.
struct CallInHand {
    const char* name;
    int adapter; // -1: none
    Access access;
    std::initializer_list<Arg> args;
    Body body;
};
} // namespace

// One attempt inside an open transaction. `needsWriting`: it has to be repeated in one that may write, because
// something is due or a fault counts the call.
static KT_U8 attempt(const CallInHand& call, bool mayWrite, bool& needsWriting) {
    Store& store = *gStore;
    const auto global = find<GlobalState>(store, ADAPTER_GLOBAL, 0);
    if (global && global->powerOff) throw StoreFailure{KT_ERR_FAILED, "the machine is switched off"};
    if (call.adapter >= 0 && (!global || call.adapter >= global->adapterCount)) return KT_ERR_INVALID_ADAPTER;
    Context context{store, static_cast<KT_U8>(call.adapter < 0 ? ADAPTER_GLOBAL : call.adapter), simulatedNow(store)};
    if (call.adapter >= 0 && !worksWithoutFirmware(call.name) && isDown(context)) return KT_ERR_LINK_TIMEOUT;
    const auto faultId = findFault(store, call.name, context.adapter);
    const bool due = call.adapter >= 0 && settleDue(context);
    needsWriting = !mayWrite && (faultId || due);
    if (needsWriting) return KT_OK;
    if (due) settle(context);
    Fault fault = {};
    const bool strikes = faultId && strikeFault(store, *faultId, fault);
    if (strikes && fault.kind == FAULT_STATUS) return fault.status;
    const KT_U8 status = runBody(context, call.access, call.body);
    if (mayWrite) checkAfterCall(call.name, context);
    if (strikes && status == KT_OK) spoil(call.name, fault, call.args);
    return status;
}

static KT_U8 runTransaction(const CallInHand& call) {
    bool mayWrite = call.access == Access::Write;
    for (;;) {
        bool needsWriting = false;
        beginTransaction(*gStore, mayWrite ? Access::Write : Access::Read);
        const KT_U8 status = attempt(call, mayWrite, needsWriting);
        commitTransaction(*gStore);
        if (!needsWriting) return status;
        mayWrite = true;
    }
}

static KT_U8 guardTransaction(const CallInHand& call) {
    try {
        return runTransaction(call);
    } catch (const StoreFailure& failure) {
        reportFailure(call.name, failure);
        rollbackTransaction(*gStore);
        return failure.status;
    } catch (const std::bad_alloc&) {
        rollbackTransaction(*gStore);
        return KT_ERR_NO_RESOURCE;
    }
}

KT_U8 runCall(const char* name, int adapter, Access access, std::initializer_list<Arg> args, Body body) {
    static std::mutex oneAtATime;
    const std::lock_guard<std::mutex> guard(oneAtATime);
    const std::string before = traceBefore(name, adapter, args);
    KT_U8 status = KT_OK;
    if (!gStore) {
        status = KT_ERR_INVALID_REQUEST;
    } else if (anyNull(args)) {
        status = KT_ERR_INVALID_PARAMETER;
    } else {
        status = guardTransaction({name, adapter, access, args, body});
    }
    traceAfter(before, status, args);
    return status;
}

} // namespace sim
