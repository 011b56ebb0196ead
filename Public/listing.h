// Reading the library's lists: one rule for pages, single items and a library that misbehaves.
#pragma once

#include <cstdlib>
#include <cstring>
#include <memory>

#include "Public/common.h"
#include "Public/incomplete.h"
#include "Public/interrupt.h"

// Records that one call may return: what the adapter's MaxBufferSize (KiB) holds behind the header, `withoutLimit` when
// the adapter names none; at most 65,535, the width of the request's field.
KT_U16 recordsPerPage(size_t recordSize, KT_U16 withoutLimit = 32);

// What a walk came to. unallocated: the bytes of a buffer that could not be had (status KT_ERR_NO_RESOURCE), else 0.
// stopped: the visitor ended the walk. cut: the library's answers stopped before the list ended.
struct ListEnd {
    KT_U8 status;
    unsigned total; // records visited
    size_t unallocated;
    bool stopped;
    bool cut;
};

// What a list whose answers stop means to the caller. Nobody decides or saves anything from a part of a list: there the
// status is KT_ERR_FAILED. Who only prints it shows what came; the status stays KT_OK, and the run's result is not
// (Public/incomplete.h).
enum class Cut { Fails, Shows };
// Says on standard error that the list does not go on behind that index.
void sayCut(KT_U16 index);

// Prepares the request for one item; the record behind the header is zeroed.
template <class Request>
void askForItem(Request& request, KT_U16 id) {
    memset(&request, 0, sizeof request);
    request.header.requestType = KT_REQUEST_ITEM;
    request.header.startingIndexOrId = id;
    request.header.numRequested = 1;
}

// Asks for the item `id` and answers the library's status; whether a record came, header.numReturned says. For those
// who have words of their own for a missing record; everybody else calls getItem.
template <class Request>
KT_U8 askItem(KT_U8 (*call)(KT_U8, Request*), KT_U16 id, Request& request) {
    askForItem(request, id);
    return call(gCurrentAdapter, &request);
}

// Reads the item `id` into request. KT_OK only when its record came: a success without one is KT_ERR_FAILED, since
// nobody may act on a record of zeroes.
template <class Request>
KT_U8 getItem(KT_U8 (*call)(KT_U8, Request*), KT_U16 id, Request& request) {
    KT_U8 status = askItem(call, id, request);
    return status == KT_OK && request.header.numReturned == 0 ? KT_U8{KT_ERR_FAILED} : status;
}

// Which items a walk covers: all, or the one with an id.
struct ListRange {
    bool all;
    KT_U16 id;
};
inline constexpr ListRange EVERYTHING = {true, 0};
inline ListRange oneItem(KT_U16 id) {
    return {false, id};
}

// The last id that a command with ids of eight bits takes, and the one that stands for every item there.
inline constexpr KT_U16 HIGHEST_ID = 254;
inline constexpr KT_U16 ALL_ITEMS = 255;
inline ListRange itemRange(KT_U16 id) {
    return id == ALL_ITEMS ? EVERYTHING : oneItem(id);
}

// Calls visit(record) -> bool for each record, in the library's order, page by page; a false ends the walk. Record is
// the type of the records behind the request's header. More records than were asked for are not looked at. A next index
// that does not advance cuts the list, after a line on standard error, so the walk ends whatever the library answers.
// Ctrl-C ends it as a failure.
template <class Record, Cut cut = Cut::Fails, class Request, class Visit>
ListEnd walkList(KT_U8 (*call)(KT_U8, Request*), ListRange range, KT_U16 perPage, Visit visit) {
    static_assert(sizeof(Request) == sizeof(_RequestHeader) + sizeof(Record));
    KT_U16 asked = range.all ? perPage : KT_U16{1};
    size_t bytes = sizeof(_RequestHeader) + size_t{asked} * sizeof(Record);
    std::unique_ptr<void, decltype(&free)> buffer(malloc(bytes), &free);
    if (buffer == nullptr) return {KT_ERR_NO_RESOURCE, 0, bytes, false, false};
    auto* request = static_cast<Request*>(buffer.get());
    auto* records = reinterpret_cast<const Record*>(static_cast<char*>(buffer.get()) + sizeof(_RequestHeader));
    ListEnd end = {KT_OK, 0, 0, false, false};
    for (KT_U16 start = range.id;;) {
        memset(buffer.get(), 0, bytes);
        request->header.requestType = range.all ? KT_REQUEST_LIST : KT_REQUEST_ITEM;
        request->header.startingIndexOrId = start;
        request->header.numRequested = asked;
        end.status = call(gCurrentAdapter, request);
        if (end.status != KT_OK) return end;
        KT_U16 returned = request->header.numReturned < asked ? request->header.numReturned : asked;
        for (KT_U16 i = 0; i < returned; ++i) {
            if (interrupted()) {
                end.status = KT_ERR_FAILED;
                return end;
            }
            ++end.total;
            if (!visit(records[i])) {
                end.stopped = true;
                return end;
            }
        }
        KT_U16 next = request->header.nextStartingIndex;
        if (!range.all || returned == 0 || next == KT_LIST_END) return end;
        if (next <= start) {
            end.cut = true;
            sayCut(start);
            if constexpr (cut == Cut::Fails) end.status = KT_ERR_FAILED;
            if constexpr (cut == Cut::Shows) noteIncomplete();
            return end;
        }
        start = next;
    }
}
