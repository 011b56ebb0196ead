// The frame around every exported call:
//
//     KT_U8 KT_LD_Delete(KT_U8 a, KT_U16 vd, KT_U8 stopBga) {
//         return call("KT_LD_Delete", a, Access::Write, {num("vd", vd), num("stopBga", stopBga)},
//                     [&](Context& context) { return deleteVd(context, vd, stopBga != 0); });
//     }
//
// It refuses null records (KT_ERR_INVALID_PARAMETER), a library that is not initialised (KT_ERR_INVALID_REQUEST) and
// unknown adapters (KT_ERR_INVALID_ADAPTER), lets due things happen, applies injected faults, runs the body in one
// transaction, commits when it answers KT_OK and else undoes all it did (unless it set context.keepOnFailure), and
// writes the trace. An Access::Read body that tries to write fails.
#pragma once

#include "state/store.h"
#include "state/trace.h"

#include <initializer_list>

namespace sim {

// What a body is run through, so that the frame is compiled once.
struct Body {
    KT_U8 (*run)(void* closure, Context& context);
    void* closure;
};

KT_U8 runCall(const char* name, int adapter, Access access, std::initializer_list<Arg> args, Body body);

template <class Function>
KT_U8 call(const char* name, int adapter, Access access, std::initializer_list<Arg> args, Function function) {
    const auto run = [](void* closure, Context& context) -> KT_U8 {
        return static_cast<KT_U8>((*static_cast<Function*>(closure))(context));
    };
    return runCall(name, adapter, access, args, Body{run, &function});
}

// The state that calls work on; null before KT_API_Initialize.
Store* currentStore();
void setCurrentStore(Store* store);
// Says once on standard error what keeps the state from being used.
void reportFailure(const char* call, const StoreFailure& failure);

// KT_OK when a list request's head can be answered.
KT_U8 checkListRequest(const _RequestHeader& header);

// A list call: walks the `Stored` rows of the adapter and turns each into one `Record` of the request.
// fill(context, id, stored, record) -> false leaves the row out. `missing` answers a request for one id that is not
// there.
template <class Stored, class Record, class Request, class Fill>
KT_U8 listCall(const char* name, KT_U8 adapter, Request* request, KT_U8 missing, Fill fill) {
    static_assert(sizeof(Request) == sizeof(_RequestHeader) + sizeof(Record));
    const Arg arg{"request", ArgType::List, 0, request, sizeof(Record)};
    return call(name, adapter, Access::Read, {arg}, [&](Context& context) -> KT_U8 {
        _RequestHeader header;
        memcpy(&header, request, sizeof header);
        const KT_U8 status = checkListRequest(header);
        if (status != KT_OK) return status;
        const bool item = header.requestType == KT_REQUEST_ITEM;
        auto* records = reinterpret_cast<unsigned char*>(request) + sizeof header;
        header.numReturned = 0;
        header.nextStartingIndex = KT_LIST_END;
        forEach<Stored>(context, header.startingIndexOrId, [&](KT_U64 id, const Stored& stored) {
            if (item && id != header.startingIndexOrId) return false;
            Record record = {};
            if (!fill(context, static_cast<KT_U16>(id), stored, record)) return !item;
            if (header.numReturned == header.numRequested) {
                header.nextStartingIndex = static_cast<KT_U16>(id);
                return false;
            }
            memcpy(records + sizeof record * header.numReturned, &record, sizeof record);
            ++header.numReturned;
            return !item;
        });
        if (item && header.numReturned == 0) return missing;
        memcpy(request, &header, sizeof header);
        return KT_OK;
    });
}

// A list of the rows just as they are stored.
template <class Record, class Request>
KT_U8 listCall(const char* name, KT_U8 adapter, Request* request, KT_U8 missing) {
    return listCall<Record, Record>(name, adapter, request, missing,
                                    [](Context&, KT_U16, const Record& stored, Record& record) {
                                        record = stored;
                                        return true;
                                    });
}

} // namespace sim
