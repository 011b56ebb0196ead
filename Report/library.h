// How the reading asks the library: one call, and a note of what came of it.
#pragma once

#include "Public/errorMsg.h"
#include "Public/listing.h"
#include "Report/reading.h"

// The adapter that is being read, and where refusals are noted.
struct Reader {
    Machine& machine;
    AdapterReading& adapter;
};

// Notes a refusal; those of one call with one status share a note, which names the items.
void noteRefusal(Machine& machine, const Refusal& refusal);
// The same for a status of a call of the adapter that is being read; id: of the item that was asked for.
void refuse(Reader& reader, const char* call, KT_U8 status, std::optional<unsigned> id = std::nullopt);

// What an adapter answers that has no such thing at all.
inline bool isUnsupported(KT_U8 status) {
    return status == KT_ERR_NOT_SUPPORTED || status == KT_ERR_NOT_ON_THIS_ADAPTER;
}

bool isInLibrary(const char* call);
// The same; one that is missing is noted.
bool libraryHas(Reader& reader, const char* call);

// A call that takes an adapter, and its name.
template <class... Parameters>
struct LibraryCall {
    const char* name;
    KT_U8 (*call)(KT_U8, Parameters...);
};
template <class... Parameters>
LibraryCall<Parameters...> libraryCall(const char* name, KT_U8 (*call)(KT_U8, Parameters...)) {
    return {name, call};
}
#define LIBRARY_CALL(call) libraryCall(#call, call)

// Makes one call; false after the note when it fails. id: of the item that is asked for.
template <class... Parameters, class... Arguments>
bool ask(Reader& reader, const LibraryCall<Parameters...>& call, std::optional<unsigned> id, Arguments... arguments) {
    if (!libraryHas(reader, call.name)) return false;
    KT_U8 status = call.call(reader.adapter.index, arguments...);
    if (status == KT_OK) return true;
    refuse(reader, call.name, status, id);
    return false;
}

// Reads a whole list through visit(record), which answers false for an id that was there before. False, after the note,
// when the list, or a part of it, is not known.
template <class Record, class Request, class Visit>
bool readList(Reader& reader, const LibraryCall<Request*>& call, Visit visit) {
    if (!libraryHas(reader, call.name)) return false;
    bool twice = false;
    ListEnd end = walkList<Record>(call.call, EVERYTHING, recordsPerPage(sizeof(Record)), [&](const Record& record) {
        twice = !visit(record);
        return !twice;
    });
    if (end.status != KT_OK) refuse(reader, call.name, end.status);
    if (twice)
        noteRefusal(reader.machine, {reader.adapter.index, call.name, std::nullopt, "the list names an id twice", {}});
    return end.status == KT_OK && !twice;
}

// A list as records by id. What was read before a failure is kept; without any record, a failed list is not known.
template <class Record, class Item, class Request, class IdOf, class Put>
void readItems(Reader& reader, const LibraryCall<Request*>& call, std::optional<std::map<KT_U16, Item>>& items,
               IdOf idOf, Put put) {
    std::map<KT_U16, Item> found;
    bool whole = readList<Record>(reader, call, [&](const Record& record) {
        auto [at, isNew] = found.try_emplace(idOf(record));
        if (isNew) put(at->second, record);
        return isNew;
    });
    if (whole || !found.empty()) items = std::move(found);
}

// A further list about items that are known by now: put(item, record). Records about others are left out.
template <class Record, class Item, class Request, class IdOf, class Put>
void readMore(Reader& reader, const LibraryCall<Request*>& call, std::map<KT_U16, Item>& items, IdOf idOf, Put put) {
    std::vector<bool> seen(0x10000);
    readList<Record>(reader, call, [&](const Record& record) {
        KT_U16 id = idOf(record);
        if (seen[id]) return false;
        seen[id] = true;
        auto at = items.find(id);
        if (at != items.end()) put(at->second, record);
        return true;
    });
}

// The parts of an adapter, each in a file of its own.
void readDisks(Reader& reader);
void readVolumes(Reader& reader);
void readParts(Reader& reader); // what is attached: expanders, multipliers, enclosures, battery, keys
void readEvents(Reader& reader);
