#include "state/store.h"

#include "state/placeLock.h"

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <sqlite3.h>
#include <sys/stat.h>
#include <vector>

namespace sim {

enum StatementId {
    ST_BEGIN_READ,
    ST_BEGIN_WRITE,
    ST_COMMIT,
    ST_ROLLBACK,
    ST_MARK,
    ST_ROLLBACK_MARK,
    ST_GET,
    ST_PUT,
    ST_ERASE,
    ST_ERASE_KIND,
    ST_ERASE_ALL,
    ST_COUNT,
    ST_LAST,
    STATEMENT_COUNT
};

static const char* const STATEMENTS[STATEMENT_COUNT] = {
    "BEGIN",
    "BEGIN IMMEDIATE",
    "COMMIT",
    "ROLLBACK",
    "SAVEPOINT mark",
    "ROLLBACK TO mark",
    "SELECT data FROM record WHERE adapter = ?1 AND kind = ?2 AND id = ?3",
    "INSERT INTO record VALUES (?1, ?2, ?3, ?4) ON CONFLICT DO UPDATE SET data = ?4",
    "DELETE FROM record WHERE adapter = ?1 AND kind = ?2 AND id = ?3",
    "DELETE FROM record WHERE adapter = ?1 AND kind = ?2",
    "DELETE FROM record",
    "SELECT count(*) FROM record WHERE adapter = ?1 AND kind = ?2",
    "SELECT max(id) FROM record WHERE adapter = ?1 AND kind = ?2",
};

static const char SCHEMA[] = "CREATE TABLE record (adapter INTEGER, kind INTEGER, id INTEGER, data BLOB NOT NULL, "
                             "PRIMARY KEY (adapter, kind, id)) WITHOUT ROWID";
static const char WALK[] = "SELECT id, data FROM record WHERE adapter = ?1 AND kind = ?2 AND id >= ?3 ORDER BY id";
static const int BUSY_WAIT_MS = 5000;

struct Store {
    sqlite3* db = nullptr;
    sqlite3_stmt* statements[STATEMENT_COUNT] = {};
    std::vector<sqlite3_stmt*> walks; // idle; a walk inside a walk takes another one
    std::string path;
    struct stat file = {}; // as it was opened; all zero for a state in memory
    bool writing = false;
    bool steady = false; // in a transaction: nobody else's writing is seen
    RowCache read;
};

static std::string reasonFor(const Store& store, int primary) {
    std::string reason = sqlite3_errmsg(store.db);
    const int error = sqlite3_system_errno(store.db);
    switch (primary) {
    case SQLITE_BUSY:
        return "another process keeps it busy";
    case SQLITE_NOTADB:
        return NOT_A_STATE;
    case SQLITE_CORRUPT:
        return "this state is damaged (" + reason + ")";
    case SQLITE_READONLY:
        return "this state cannot be written to";
    case SQLITE_FULL:
        return "there is no space left to write to";
    case SQLITE_IOERR:
    case SQLITE_CANTOPEN:
        return error ? strerror(error) : reason;
    default:
        return reason;
    }
}

[[noreturn]] static void fail(const Store& store, int code) {
    const int primary = code & 0xFF;
    const bool passing =
        primary == SQLITE_BUSY || primary == SQLITE_FULL || primary == SQLITE_NOMEM || primary == SQLITE_IOERR;
    throw StoreFailure{static_cast<KT_U8>(passing ? KT_ERR_NO_RESOURCE : KT_ERR_FAILED),
                       store.path + ": " + reasonFor(store, primary)};
}

void failBadRow(const RowKey& key) {
    throw StoreFailure{KT_ERR_FAILED, "damaged record (adapter " + std::to_string(key.adapter) + ", kind " +
                                          std::to_string(key.kind) + ", id " + std::to_string(key.id) + ")"};
}

// One call after the other has the state in its hands, so that SQLite need not see to it.
static void connect(Store& store, const std::string& name, int flags) {
    const int code = sqlite3_open_v2(name.c_str(), &store.db, flags | SQLITE_OPEN_NOMUTEX, nullptr);
    if (code != SQLITE_OK) fail(store, code);
}

static sqlite3_stmt* prepare(Store& store, const char* sql) {
    sqlite3_stmt* statement = nullptr;
    const int code = sqlite3_prepare_v3(store.db, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    if (code != SQLITE_OK) fail(store, code);
    return statement;
}

static sqlite3_stmt* statementOf(Store& store, StatementId id) {
    if (!store.statements[id]) store.statements[id] = prepare(store, STATEMENTS[id]);
    return store.statements[id];
}

// Steps a statement that gives at most one row, and answers whether it gave one. The caller resets it.
static bool stepOnce(Store& store, sqlite3_stmt* statement) {
    const int code = sqlite3_step(statement);
    if (code == SQLITE_ROW) return true;
    if (code == SQLITE_DONE) return false;
    sqlite3_reset(statement);
    fail(store, code);
}

static void carryOut(Store& store, sqlite3_stmt* statement) {
    stepOnce(store, statement);
    sqlite3_reset(statement);
}

static void run(Store& store, StatementId id) {
    carryOut(store, statementOf(store, id));
}

static sqlite3_stmt* bindKind(Store& store, StatementId which, KT_U8 adapter, Kind kind) {
    sqlite3_stmt* statement = statementOf(store, which);
    sqlite3_bind_int(statement, 1, adapter);
    sqlite3_bind_int(statement, 2, kind);
    return statement;
}

static sqlite3_stmt* bindKey(Store& store, StatementId which, const RowKey& key) {
    sqlite3_stmt* statement = bindKind(store, which, key.adapter, key.kind);
    sqlite3_bind_int64(statement, 3, static_cast<sqlite3_int64>(key.id));
    return statement;
}

static void execute(Store& store, const std::string& sql) {
    const int code = sqlite3_exec(store.db, sql.c_str(), nullptr, nullptr, nullptr);
    if (code != SQLITE_OK) fail(store, code);
}

static int readPragma(Store& store, const char* sql) {
    sqlite3_stmt* statement = prepare(store, sql);
    const int code = sqlite3_step(statement);
    const int value = code == SQLITE_ROW ? sqlite3_column_int(statement, 0) : 0;
    sqlite3_finalize(statement);
    if (code != SQLITE_ROW && code != SQLITE_DONE) fail(store, code);
    return value;
}

// What has happened to the file since it was opened; empty = it is still there.
static std::string whatBefell(const Store& store) {
    if (store.file.st_ino == 0) return {};
    struct stat now = {};
    if (stat(store.path.c_str(), &now) != 0)
        return errno == ENOENT ? "this state was removed while it was in use" : strerror(errno);
    if (now.st_ino != store.file.st_ino || now.st_dev != store.file.st_dev)
        return "something else has taken the place of this state while it was in use";
    return now.st_size < store.file.st_size ? "this state was cut short while it was in use" : "";
}

static void closeConnection(Store* store) {
    for (sqlite3_stmt* statement : store->statements)
        sqlite3_finalize(statement);
    for (sqlite3_stmt* statement : store->walks)
        sqlite3_finalize(statement);
    sqlite3_close_v2(store->db);
    delete store;
}

// The last one to close a state removes the journal beside it, which is found by its name. When another state has been
// put in this one's place meanwhile, the journal of that name is the other one's and must stay.
static void leaveJournal(const Store& store) {
    sqlite3_db_config(store.db, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
}

void closeStore(Store* store) {
    if (!store) return;
    if (store->file.st_ino == 0) return closeConnection(store);
    try {
        const PlaceLock together(store->path, Access::Read);
        if (!whatBefell(*store).empty()) leaveJournal(*store);
        closeConnection(store);
    } catch (const StoreFailure&) {
        leaveJournal(*store);
        closeConnection(store);
    }
}

static void checkIdentity(Store& store) {
    if (readPragma(store, "PRAGMA application_id") != STATE_APPLICATION)
        throw StoreFailure{KT_ERR_FAILED, store.path + ": " + NOT_A_STATE};
    const int version = readPragma(store, "PRAGMA user_version");
    if (version != STATE_VERSION) {
        throw StoreFailure{KT_ERR_FAILED, store.path + ": this state has version " + std::to_string(version) +
                                              ", this library reads version " + std::to_string(STATE_VERSION)};
    }
    // Reading one row of the table tells a damaged schema from a sound one.
    if (!find<GlobalState>(store, ADAPTER_GLOBAL, 0))
        throw StoreFailure{KT_ERR_FAILED, store.path + ": this state is damaged: it names no adapters"};
}

// SQLite reads more than a path into some names ("file:...", ":memory:"); into none that begins like this.
static std::string plainName(const std::string& path) {
    return path[0] == '/' ? path : "./" + path;
}

Store* openExistingStore(const std::string& path) {
    const PlaceLock together(path, Access::Read);
    auto* store = new Store;
    store->path = path;
    try {
        connect(*store, plainName(path), SQLITE_OPEN_READWRITE);
        if (sqlite3_db_readonly(store->db, "main") == 1) fail(*store, SQLITE_READONLY);
        sqlite3_busy_timeout(store->db, BUSY_WAIT_MS);
        execute(*store, "PRAGMA synchronous = NORMAL");
        checkIdentity(*store);
        if (stat(path.c_str(), &store->file) != 0) throw StoreFailure{KT_ERR_FAILED, path + ": " + strerror(errno)};
    } catch (...) {
        closeStore(store);
        throw;
    }
    return store;
}

Store* openMemoryStore(StoreFiller fill, const void* argument) {
    auto* store = new Store;
    store->path = "state in memory";
    try {
        connect(*store, ":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
        execute(*store, "PRAGMA page_size = 8192; PRAGMA application_id = " + std::to_string(STATE_APPLICATION) +
                            "; PRAGMA user_version = " + std::to_string(STATE_VERSION) + ";" + SCHEMA);
        beginTransaction(*store, Access::Write);
        fill(*store, argument);
        commitTransaction(*store);
    } catch (...) {
        closeStore(store);
        throw;
    }
    return store;
}

std::string imageOf(const Store& store) {
    sqlite3_int64 size = 0;
    const std::unique_ptr<unsigned char, void (*)(void*)> bytes(sqlite3_serialize(store.db, "main", &size, 0),
                                                                sqlite3_free);
    if (!bytes) throw StoreFailure{KT_ERR_NO_RESOURCE, store.path + ": out of memory"};
    return {reinterpret_cast<const char*>(bytes.get()), static_cast<size_t>(size)};
}

// With a write-ahead journal readers and one writer do not wait for each other. Nobody else has the file yet, and
// whoever made it sees to it that it is on the disk.
void useWriteAheadJournal(const std::string& path) {
    const std::unique_ptr<Store, void (*)(Store*)> store(new Store, closeConnection);
    store->path = path;
    connect(*store, plainName(path), SQLITE_OPEN_READWRITE);
    execute(*store, "PRAGMA locking_mode = EXCLUSIVE; PRAGMA synchronous = OFF; PRAGMA journal_mode = WAL");
}

// Without this, a process that holds a removed file open would go on with it, and nobody would ever see what it did.
static void checkStillThere(const Store& store) {
    const std::string befallen = whatBefell(store);
    if (!befallen.empty()) throw StoreFailure{KT_ERR_FAILED, store.path + ": " + befallen};
}

void beginTransaction(Store& store, Access access) {
    checkStillThere(store);
    run(store, access == Access::Write ? ST_BEGIN_WRITE : ST_BEGIN_READ);
    store.writing = access == Access::Write;
    store.steady = true;
    store.read.forget();
}

static void leaveTransaction(Store& store) {
    store.writing = store.steady = false;
}

void commitTransaction(Store& store) {
    run(store, ST_COMMIT);
    leaveTransaction(store);
}

void rollbackTransaction(Store& store) {
    leaveTransaction(store);
    if (!store.db || sqlite3_get_autocommit(store.db)) return;
    try {
        run(store, ST_ROLLBACK);
    } catch (const StoreFailure&) {
        // The transaction is gone with its connection at the latest; nothing was written.
        return;
    }
}

void setMark(Store& store) {
    run(store, ST_MARK);
}

void rollbackToMark(Store& store) {
    run(store, ST_ROLLBACK_MARK);
    store.read.forget();
}

static void refuseOutsideWriting(const Store& store) {
    if (!store.writing) throw StoreFailure{KT_ERR_FAILED, store.path + ": a call that only reads tried to write"};
}

static std::optional<std::string> selectRow(Store& store, const RowKey& key) {
    sqlite3_stmt* statement = bindKey(store, ST_GET, key);
    std::optional<std::string> bytes;
    if (stepOnce(store, statement)) {
        const auto* data = static_cast<const char*>(sqlite3_column_blob(statement, 0));
        bytes = data ? std::string(data, static_cast<size_t>(sqlite3_column_bytes(statement, 0))) : std::string();
    }
    sqlite3_reset(statement);
    return bytes;
}

// Outside a transaction somebody else may write between two reads.
static const std::optional<std::string>& rowOf(Store& store, const RowKey& key) {
    if (!store.steady) store.read.forget();
    const std::optional<std::string>* known = store.read.known(key);
    return known ? *known : store.read.keep(key, selectRow(store, key));
}

bool readRow(Store& store, const RowKey& key, void* record, size_t size) {
    const std::optional<std::string>& row = rowOf(store, key);
    if (!row) return false;
    if (row->size() != size) failBadRow(key);
    memcpy(record, row->data(), size);
    return true;
}

std::optional<std::string> readBytes(Store& store, const RowKey& key) {
    return selectRow(store, key);
}

void writeRow(Store& store, const RowKey& key, const void* record, size_t size) {
    refuseOutsideWriting(store);
    sqlite3_stmt* statement = bindKey(store, ST_PUT, key);
    sqlite3_bind_blob64(statement, 4, record, size, SQLITE_STATIC);
    carryOut(store, statement);
    store.read.forget(key);
}

bool eraseRow(Store& store, const RowKey& key) {
    refuseOutsideWriting(store);
    carryOut(store, bindKey(store, ST_ERASE, key));
    store.read.forget(key);
    return sqlite3_changes(store.db) > 0;
}

void eraseRows(Store& store, KT_U8 adapter, Kind kind) {
    refuseOutsideWriting(store);
    carryOut(store, bindKind(store, ST_ERASE_KIND, adapter, kind));
    store.read.forget();
}

void eraseEverything(Store& store) {
    refuseOutsideWriting(store);
    run(store, ST_ERASE_ALL);
    store.read.forget();
}

KT_U64 countRows(Store& store, KT_U8 adapter, Kind kind) {
    sqlite3_stmt* statement = bindKind(store, ST_COUNT, adapter, kind);
    const KT_U64 rows = stepOnce(store, statement) ? static_cast<KT_U64>(sqlite3_column_int64(statement, 0)) : 0;
    sqlite3_reset(statement);
    return rows;
}

std::optional<KT_U64> lastRow(Store& store, KT_U8 adapter, Kind kind) {
    sqlite3_stmt* statement = bindKind(store, ST_LAST, adapter, kind);
    std::optional<KT_U64> last;
    if (stepOnce(store, statement) && sqlite3_column_type(statement, 0) != SQLITE_NULL)
        last = static_cast<KT_U64>(sqlite3_column_int64(statement, 0));
    sqlite3_reset(statement);
    return last;
}

RowWalk beginWalk(Store& store, KT_U8 adapter, Kind kind, KT_U64 from) {
    sqlite3_stmt* statement = nullptr;
    if (store.walks.empty()) {
        statement = prepare(store, WALK);
    } else {
        statement = store.walks.back();
        store.walks.pop_back();
    }
    sqlite3_bind_int(statement, 1, adapter);
    sqlite3_bind_int(statement, 2, kind);
    sqlite3_bind_int64(statement, 3, static_cast<sqlite3_int64>(from));
    return RowWalk{&store, statement, 0, nullptr, 0};
}

bool nextRow(RowWalk& walk) {
    auto* statement = static_cast<sqlite3_stmt*>(walk.statement);
    const int code = sqlite3_step(statement);
    if (code == SQLITE_DONE) return false;
    if (code != SQLITE_ROW) fail(*walk.store, code);
    walk.id = static_cast<KT_U64>(sqlite3_column_int64(statement, 0));
    walk.data = sqlite3_column_blob(statement, 1);
    walk.size = static_cast<size_t>(sqlite3_column_bytes(statement, 1));
    return true;
}

void endWalk(RowWalk& walk) {
    auto* statement = static_cast<sqlite3_stmt*>(walk.statement);
    sqlite3_reset(statement);
    walk.store->walks.push_back(statement);
}

} // namespace sim
