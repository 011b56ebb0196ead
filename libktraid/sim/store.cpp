#include "store.h"

#include <cerrno>
#include <cstdlib>
#include <vector>

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

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
static const char NOT_A_STATE[] = "this is not a state of the simulated adapters";

struct Store {
    sqlite3* db = nullptr;
    sqlite3_stmt* statements[STATEMENT_COUNT] = {};
    std::vector<sqlite3_stmt*> walks; /* idle; a walk inside a walk takes another one */
    std::string path;
    bool writing = false;
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

void failBadRow(KT_U8 adapter, Kind kind, KT_U64 id) {
    throw StoreFailure{KT_ERR_FAILED, "damaged record (adapter " + std::to_string(adapter) + ", kind " +
                                          std::to_string(kind) + ", id " + std::to_string(id) + ")"};
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

/* Steps a statement that gives at most one row, and answers whether it gave one. The caller resets it. */
static bool stepOnce(Store& store, sqlite3_stmt* statement) {
    const int code = sqlite3_step(statement);
    if (code == SQLITE_ROW) return true;
    if (code == SQLITE_DONE) return false;
    sqlite3_reset(statement);
    fail(store, code);
}

static void run(Store& store, StatementId id) {
    sqlite3_stmt* statement = statementOf(store, id);
    stepOnce(store, statement);
    sqlite3_reset(statement);
}

static sqlite3_stmt* bindKey(Store& store, StatementId which, KT_U8 adapter, Kind kind) {
    sqlite3_stmt* statement = statementOf(store, which);
    sqlite3_bind_int(statement, 1, adapter);
    sqlite3_bind_int(statement, 2, kind);
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

void closeStore(Store* store) {
    if (!store) return;
    for (sqlite3_stmt* statement : store->statements)
        sqlite3_finalize(statement);
    for (sqlite3_stmt* statement : store->walks)
        sqlite3_finalize(statement);
    sqlite3_close_v2(store->db);
    delete store;
}

static void checkIdentity(Store& store) {
    if (readPragma(store, "PRAGMA application_id") != STATE_APPLICATION)
        throw StoreFailure{KT_ERR_FAILED, store.path + ": " + NOT_A_STATE};
    const int version = readPragma(store, "PRAGMA user_version");
    if (version != STATE_VERSION) {
        throw StoreFailure{KT_ERR_FAILED, store.path + ": this state has version " + std::to_string(version) +
                                              ", this library reads version " + std::to_string(STATE_VERSION)};
    }
    /* Reading one row of the table tells a damaged schema from a sound one. */
    if (!find<GlobalState>(store, ADAPTER_GLOBAL, 0))
        throw StoreFailure{KT_ERR_FAILED, store.path + ": this state is damaged: it names no adapters"};
}

Store* openExistingStore(const std::string& path) {
    auto* store = new Store;
    store->path = path;
    try {
        const int code = sqlite3_open_v2(path.c_str(), &store->db, SQLITE_OPEN_READWRITE, nullptr);
        if (code != SQLITE_OK) fail(*store, code);
        sqlite3_busy_timeout(store->db, BUSY_WAIT_MS);
        execute(*store, "PRAGMA synchronous = NORMAL");
        checkIdentity(*store);
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
        const int code = sqlite3_open_v2(":memory:", &store->db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
        if (code != SQLITE_OK) fail(*store, code);
        execute(*store, "PRAGMA application_id = " + std::to_string(STATE_APPLICATION) +
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

[[noreturn]] static void failSystem(const std::string& what) {
    throw StoreFailure{KT_ERR_FAILED, what + ": " + strerror(errno)};
}

static void makeFolders(const std::string& path) {
    for (size_t slash = path.find('/', 1); slash != std::string::npos; slash = path.find('/', slash + 1)) {
        const std::string folder = path.substr(0, slash);
        if (mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST && errno != EISDIR && errno != EROFS)
            failSystem(folder);
    }
}

static void writeAll(int file, const unsigned char* bytes, size_t size, const std::string& name) {
    while (size > 0) {
        const ssize_t written = write(file, bytes, size);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) failSystem(name);
        bytes += written;
        size -= static_cast<size_t>(written);
    }
}

/* Builds the state in memory and writes it, complete, to a new file beside `path`; answers that file's name. */
static std::string writeNewFile(const std::string& path, StoreFiller fill, const void* argument) {
    Store* built = openMemoryStore(fill, argument);
    sqlite3_int64 size = 0;
    unsigned char* image = sqlite3_serialize(built->db, "main", &size, 0);
    closeStore(built);
    if (!image || size < 100) {
        sqlite3_free(image);
        throw StoreFailure{KT_ERR_NO_RESOURCE, path + ": out of memory"};
    }
    /* Bytes 18 and 19 of the file say how it is journalled: 2 is write-ahead, with which readers and one writer do
       not wait for each other. */
    image[18] = image[19] = 2;
    std::string name = path + ".XXXXXX";
    const int file = mkstemp(name.data());
    try {
        if (file < 0) failSystem(path);
        writeAll(file, image, static_cast<size_t>(size), path);
        if (fsync(file) != 0) failSystem(path);
    } catch (...) {
        sqlite3_free(image);
        if (file >= 0) {
            close(file);
            unlink(name.c_str());
        }
        throw;
    }
    sqlite3_free(image);
    close(file);
    return name;
}

/* Whether a file is at `path`; throws for anything else there, which is no place for a state. */
static bool isThere(const std::string& path) {
    struct stat there = {};
    if (stat(path.c_str(), &there) == 0) {
        if (S_ISREG(there.st_mode)) return true;
        throw StoreFailure{KT_ERR_FAILED, path + ": this is not a file"};
    }
    if (errno != ENOENT) failSystem(path);
    if (lstat(path.c_str(), &there) == 0) throw StoreFailure{KT_ERR_FAILED, path + ": this link leads nowhere"};
    return false;
}

Store* openStore(const std::string& path, StoreFiller fill, const void* argument) {
    if (!isThere(path)) {
        makeFolders(path);
        const std::string made = writeNewFile(path, fill, argument);
        /* A link, unlike a rename, leaves alone what another process has put there meanwhile. */
        const bool linked = link(made.c_str(), path.c_str()) == 0 || errno == EEXIST;
        const int reason = errno;
        unlink(made.c_str());
        errno = reason;
        if (!linked) failSystem(path);
    }
    return openExistingStore(path);
}

/* A damaged state still says what it is, at the place where SQLite keeps the application's id. */
static bool looksLikeState(const std::string& path) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) failSystem(path);
    unsigned char head[72] = {};
    const ssize_t size = read(file, head, sizeof head);
    close(file);
    const unsigned char* id = head + 68;
    const int application = id[0] << 24 | id[1] << 16 | id[2] << 8 | id[3];
    return size == 0 || (size == sizeof head && application == STATE_APPLICATION);
}

bool stateMayGo(const std::string& path) {
    if (!isThere(path)) return false;
    if (looksLikeState(path)) return true;
    throw StoreFailure{KT_ERR_FAILED, path + ": " + NOT_A_STATE + "; it stays as it is"};
}

void replaceStore(const std::string& path, StoreFiller fill, const void* argument) {
    makeFolders(path);
    std::string place = path;
    /* A link stays one. */
    if (stateMayGo(path)) {
        char* whole = realpath(path.c_str(), nullptr);
        if (whole) place = whole;
        free(whole);
    }
    const std::string made = writeNewFile(place, fill, argument);
    unlink((place + "-wal").c_str());
    unlink((place + "-shm").c_str());
    if (rename(made.c_str(), place.c_str()) == 0) return;
    const int reason = errno;
    unlink(made.c_str());
    errno = reason;
    failSystem(path);
}

std::string statePath() {
    const char* path = getenv("KTRAID_SIM");
    if (path && *path) return path;
    const char* state = getenv("XDG_STATE_HOME");
    if (state && *state == '/') return std::string(state) + "/ktraid-sim/state.db";
    const char* home = getenv("HOME");
    if (home && *home) return std::string(home) + "/.local/state/ktraid-sim/state.db";
    throw StoreFailure{KT_ERR_FAILED, "no place for the state: neither KTRAID_SIM nor HOME is set"};
}

void beginTransaction(Store& store, Access access) {
    run(store, access == Access::Write ? ST_BEGIN_WRITE : ST_BEGIN_READ);
    store.writing = access == Access::Write;
}

void commitTransaction(Store& store) {
    run(store, ST_COMMIT);
    store.writing = false;
}

void rollbackTransaction(Store& store) {
    store.writing = false;
    if (!store.db || sqlite3_get_autocommit(store.db)) return;
    try {
        run(store, ST_ROLLBACK);
    } catch (const StoreFailure&) {
        /* The transaction is gone with its connection at the latest; nothing was written. */
        return;
    }
}

void setMark(Store& store) {
    run(store, ST_MARK);
}

void rollbackToMark(Store& store) {
    run(store, ST_ROLLBACK_MARK);
}

static void refuseOutsideWriting(const Store& store) {
    if (!store.writing) throw StoreFailure{KT_ERR_FAILED, store.path + ": a call that only reads tried to write"};
}

bool readRow(Store& store, KT_U8 adapter, Kind kind, KT_U64 id, void* record, size_t size) {
    sqlite3_stmt* statement = bindKey(store, ST_GET, adapter, kind);
    sqlite3_bind_int64(statement, 3, static_cast<sqlite3_int64>(id));
    if (!stepOnce(store, statement)) {
        sqlite3_reset(statement);
        return false;
    }
    const bool fits = static_cast<size_t>(sqlite3_column_bytes(statement, 0)) == size;
    if (fits) memcpy(record, sqlite3_column_blob(statement, 0), size);
    sqlite3_reset(statement);
    if (!fits) failBadRow(adapter, kind, id);
    return true;
}

std::optional<std::string> readBytes(Store& store, KT_U8 adapter, Kind kind, KT_U64 id) {
    sqlite3_stmt* statement = bindKey(store, ST_GET, adapter, kind);
    sqlite3_bind_int64(statement, 3, static_cast<sqlite3_int64>(id));
    std::optional<std::string> bytes;
    if (stepOnce(store, statement)) {
        const auto* data = static_cast<const char*>(sqlite3_column_blob(statement, 0));
        bytes = data ? std::string(data, static_cast<size_t>(sqlite3_column_bytes(statement, 0))) : std::string();
    }
    sqlite3_reset(statement);
    return bytes;
}

void writeRow(Store& store, KT_U8 adapter, Kind kind, KT_U64 id, const void* record, size_t size) {
    refuseOutsideWriting(store);
    sqlite3_stmt* statement = bindKey(store, ST_PUT, adapter, kind);
    sqlite3_bind_int64(statement, 3, static_cast<sqlite3_int64>(id));
    sqlite3_bind_blob64(statement, 4, record, size, SQLITE_STATIC);
    stepOnce(store, statement);
    sqlite3_reset(statement);
}

bool eraseRow(Store& store, KT_U8 adapter, Kind kind, KT_U64 id) {
    refuseOutsideWriting(store);
    sqlite3_stmt* statement = bindKey(store, ST_ERASE, adapter, kind);
    sqlite3_bind_int64(statement, 3, static_cast<sqlite3_int64>(id));
    stepOnce(store, statement);
    sqlite3_reset(statement);
    return sqlite3_changes(store.db) > 0;
}

void eraseRows(Store& store, KT_U8 adapter, Kind kind) {
    refuseOutsideWriting(store);
    sqlite3_stmt* statement = bindKey(store, ST_ERASE_KIND, adapter, kind);
    stepOnce(store, statement);
    sqlite3_reset(statement);
}

void eraseEverything(Store& store) {
    refuseOutsideWriting(store);
    run(store, ST_ERASE_ALL);
}

KT_U64 countRows(Store& store, KT_U8 adapter, Kind kind) {
    sqlite3_stmt* statement = bindKey(store, ST_COUNT, adapter, kind);
    const KT_U64 rows = stepOnce(store, statement) ? static_cast<KT_U64>(sqlite3_column_int64(statement, 0)) : 0;
    sqlite3_reset(statement);
    return rows;
}

std::optional<KT_U64> lastRow(Store& store, KT_U8 adapter, Kind kind) {
    sqlite3_stmt* statement = bindKey(store, ST_LAST, adapter, kind);
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
