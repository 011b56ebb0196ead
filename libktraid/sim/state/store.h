// The state on disk: rows of (adapter, kind, id) -> record in one SQLite file.
#pragma once

#include "state/bounds.h"
#include "state/kinds.h"
#include "state/rowCache.h"

#include <cstring>
#include <optional>
#include <string>
#include <type_traits>

namespace sim {

inline constexpr int STATE_APPLICATION = 0x4B545344;
inline constexpr int STATE_VERSION = 8;

struct Store; // one connection; not to be used by two threads at once

// Thrown by everything below when the state cannot be read or written; the call that meets it answers `status`.
struct StoreFailure {
    KT_U8 status; // KT_ERR_NO_RESOURCE when waiting or space may help, else KT_ERR_FAILED
    std::string message;
};

// Fills an empty state (inside one transaction).
using StoreFiller = void (*)(Store&, const void* argument);

// Opens the state at `path`. Throws, and changes nothing, when the file is not a state of this version, cannot be read
// or is damaged.
Store* openExistingStore(const std::string& path);
// A state in memory, for tests and for checking a lab.
Store* openMemoryStore(StoreFiller fill, const void* argument);
void closeStore(Store* store);
// The state as the bytes of its file, and a file that holds them made one that readers and a writer may use at once.
std::string imageOf(const Store& store);
void useWriteAheadJournal(const std::string& path);
// What a file that is no state of this kind is called in messages.
inline constexpr char NOT_A_STATE[] = "this is not a state of the simulated adapters";

enum class Access { Read, Write };

// One transaction at a time. Read sees one moment of the state and refuses changes; Write waits, a few seconds at
// most, for another writer.
void beginTransaction(Store& store, Access access);
void commitTransaction(Store& store);
void rollbackTransaction(Store& store); // never throws; nothing to do is fine
// A point inside a Write transaction that rollbackToMark() returns to.
void setMark(Store& store);
void rollbackToMark(Store& store);

// Rows. The templates below are what to use.
bool readRow(Store& store, const RowKey& key, void* record, size_t size);
std::optional<std::string> readBytes(Store& store, const RowKey& key);
void writeRow(Store& store, const RowKey& key, const void* record, size_t size);
bool eraseRow(Store& store, const RowKey& key);
void eraseRows(Store& store, KT_U8 adapter, Kind kind);
void eraseEverything(Store& store);
KT_U64 countRows(Store& store, KT_U8 adapter, Kind kind);
std::optional<KT_U64> lastRow(Store& store, KT_U8 adapter, Kind kind);

// A walk over the rows of one kind in ascending id, from `from` on. `data` is valid until the next step.
struct RowWalk {
    Store* store;
    void* statement;
    KT_U64 id;
    const void* data;
    size_t size;
};
RowWalk beginWalk(Store& store, KT_U8 adapter, Kind kind, KT_U64 from);
bool nextRow(RowWalk& walk);
void endWalk(RowWalk& walk);
[[noreturn]] void failBadRow(const RowKey& key);

// What a call works in: the open transaction, the adapter and the moment.
struct Context {
    Store& store;
    KT_U8 adapter;
    KT_U64 now;                 // milliseconds of the time that everything goes by; shownTime() is the date
    bool keepOnFailure = false; // set by a call that fails but whose changes stand
};

// The record with that id, if there is one.
template <class Record>
std::optional<Record> find(Store& store, KT_U8 adapter, KT_U64 id) {
    static_assert(std::is_trivially_copyable_v<Record>);
    Record record = {};
    if (!readRow(store, {adapter, KindOf<Record>::value, id}, &record, sizeof record)) return std::nullopt;
    Bounding by;
    bound(record, by);
    return record;
}
template <class Record>
std::optional<Record> find(const Context& context, KT_U64 id) {
    return find<Record>(context.store, context.adapter, id);
}
// Adds or replaces.
template <class Record>
void save(Store& store, KT_U8 adapter, KT_U64 id, const Record& record) {
    static_assert(std::is_trivially_copyable_v<Record>);
    writeRow(store, {adapter, KindOf<Record>::value, id}, &record, sizeof record);
}
template <class Record>
void save(const Context& context, KT_U64 id, const Record& record) {
    save(context.store, context.adapter, id, record);
}
// True when there was one.
template <class Record>
bool erase(const Context& context, KT_U64 id) {
    return eraseRow(context.store, {context.adapter, KindOf<Record>::value, id});
}
template <class Record>
KT_U64 count(const Context& context) {
    return countRows(context.store, context.adapter, KindOf<Record>::value);
}

// visit(id, record) -> true to go on, in ascending id from `from`. The visitor may read anything; it must not add or
// remove rows of the kind being walked (collect first), but may save the row it is given.
template <class Record, class Visit>
void forEach(Store& store, KT_U8 adapter, KT_U64 from, Visit&& visit) {
    static_assert(std::is_trivially_copyable_v<Record>);
    RowWalk walk = beginWalk(store, adapter, KindOf<Record>::value, from);
    struct End {
        RowWalk& walk;
        ~End() { endWalk(walk); }
    } end{walk};
    while (nextRow(walk)) {
        if (walk.size != sizeof(Record)) failBadRow({adapter, KindOf<Record>::value, walk.id});
        Record record;
        memcpy(&record, walk.data, sizeof record);
        Bounding by;
        bound(record, by);
        if (!visit(walk.id, static_cast<const Record&>(record))) break;
    }
}
template <class Record, class Visit>
void forEach(const Context& context, KT_U64 from, Visit&& visit) {
    forEach<Record>(context.store, context.adapter, from, static_cast<Visit&&>(visit));
}

} // namespace sim
