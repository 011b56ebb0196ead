#include "sim.h"

#include <chrono>
#include <csignal>
#include <future>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/file.h>

static void sql(const std::string& path, const char* statement) {
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &db), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(db, statement, nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(db);
}

// From now on this process can write no file beyond 4 KiB, and says nothing.
static void fillDisk() {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit none = {4096, 4096};
    setrlimit(RLIMIT_FSIZE, &none);
    if (!freopen("/dev/null", "w", stderr)) abort();
}

struct StateFile : testing::Test {
    StateFolder folder;
    std::string path = folder.state;

    void TearDown() override { KT_API_Finalize(); }
    void make() const { closeStore(openStore(path, fillFromLab, labNamed("default"))); }
    // The library will not open the state, says why, and leaves it as it was.
    void isRefused(const char* reason) const {
        const auto held = [&] { return std::filesystem::is_directory(path) ? "" : fileText(path); };
        const std::string before = held();
        testing::internal::CaptureStderr();
        EXPECT_NE(KT_API_Initialize(), KT_OK);
        EXPECT_EQ(held(), before);
        const std::string said = testing::internal::GetCapturedStderr();
        EXPECT_NE(said.find(reason), std::string::npos) << said;
    }
};

TEST_F(StateFile, IsMadeWithItsFoldersForTheUserAlone) {
    path = folder.path + "/a/b/state.db";
    make();
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms{0600});
    EXPECT_EQ(std::filesystem::status(folder.path + "/a/b").permissions(), std::filesystem::perms{0700});
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path + "/a/b"), {}), 1);
}

TEST_F(StateFile, OfAnotherKindOrVersionIsRefusedAndKept) {
    sql(path, "CREATE TABLE mine (x); INSERT INTO mine VALUES (1)");
    isRefused("is not a state of the simulated adapters");
    for (const std::string& bytes : {std::string(), std::string(5000, 'x')}) {
        writeText(path, bytes);
        isRefused("is not a state of the simulated adapters");
    }
    std::filesystem::remove(path);
    make();
    sql(path, "PRAGMA user_version = 99");
    isRefused("this state has version 99");
    sql(path, ("PRAGMA user_version = " + std::to_string(STATE_VERSION)).c_str());
    sql(path, "DELETE FROM record WHERE adapter = 255");
    isRefused("damaged");
    sql(path, "DROP TABLE record");
    isRefused("no such table");
    std::filesystem::remove(path);
    std::filesystem::create_directory(path);
    isRefused("is not a file");
}

TEST_F(StateFile, GoneWhileInUseIsNotWrittenToAndLeavesNoJournalToTheNext) {
    const auto callAfter = [&](const std::function<void()>& act) {
        EXPECT_EQ(KT_API_Initialize(), KT_OK);
        EXPECT_EQ(KT_API_RescanAdapter(), KT_OK);
        const std::string journal = fileText(path + "-wal");
        testing::internal::CaptureStderr();
        act();
        EXPECT_EQ(KT_API_RescanAdapter(), KT_ERR_FAILED);
        KT_API_Finalize();
        std::filesystem::remove_all(path);
        writeText(path + "-wal", journal);
        return testing::internal::GetCapturedStderr();
    };
    EXPECT_NE(callAfter([&] { std::filesystem::remove(path); }).find("was removed"), std::string::npos);
    EXPECT_NE(callAfter([&] { std::filesystem::resize_file(path, 5000); }).find("cut short"), std::string::npos);
    const auto replace = [&] { replaceStore(path, fillFromLab, labNamed("default")); };
    EXPECT_NE(callAfter(replace).find("taken the place"), std::string::npos);
    ASSERT_EQ(KT_API_Initialize(), KT_OK);
    EXPECT_EQ(KT_API_GetRescanCount(0), 0U);
}

static KT_U8 getVd(KT_U16 id) {
    _LD_Info_Request request = {};
    request.header = {0, KT_REQUEST_ITEM, id, 1, 0, 0, {}};
    return KT_LD_GetInfo(0, &request);
}

TEST_F(StateFile, DamagedAnywhereGivesErrorsNotCrashes) {
    allowSpoiltState();
    make();
    const std::string whole = fileText(path);
    for (size_t at = 0; at + 64 < whole.size(); at += 509) {
        std::string damaged = whole;
        for (size_t i = at; i < at + 64; ++i)
            damaged[i] = static_cast<char>(damaged[i] ^ 0x5A);
        for (const char* journal : {"-wal", "-shm"})
            std::filesystem::remove(path + journal);
        writeText(path, damaged);
        testing::internal::CaptureStderr();
        KT_API_Initialize();
        for (KT_U16 id = 0; id < 4; ++id)
            getVd(id);
        KT_API_RescanAdapter();
        KT_API_Finalize();
        testing::internal::GetCapturedStderr();
    }
}

TEST_F(StateFile, RowOfAWrongSizeFailsItsCallOnly) {
    allowSpoiltState();
    make();
    testing::internal::CaptureStderr();
    sql(path, "UPDATE record SET data = x'0102' WHERE adapter = 0 AND kind = 20 AND id = 1");
    ASSERT_EQ(KT_API_Initialize(), KT_OK);
    EXPECT_EQ(getVd(1), KT_ERR_FAILED);
    EXPECT_EQ(getVd(0), KT_OK);
    KT_API_Finalize();
    sql(path, "UPDATE record SET data = zeroblob(5000) WHERE adapter = 0 AND kind = 80");
    ASSERT_EQ(KT_API_Initialize(), KT_OK);
    _BBU_Info battery = {};
    EXPECT_EQ(KT_BBU_GetInfo(0, &battery), KT_ERR_FAILED);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("damaged record"), std::string::npos);
}

TEST(Store, HasNoRowOfWhatWasErasedInOneGo) {
    const MemoryState state(labNamed("default"));
    const auto there = [&] { return find<Mailbox>(state.context, 0).has_value(); };
    for (const bool everything : {false, true}) {
        beginTransaction(*state.store, Access::Write);
        save(state.context, 0, Mailbox{});
        EXPECT_TRUE(there());
        everything ? eraseEverything(*state.store) : eraseRows(*state.store, 0, KIND_MAILBOX);
        EXPECT_FALSE(there());
        rollbackTransaction(*state.store);
    }
}

TEST_F(StateFile, FullDiskFailsTheCallAndKeepsTheState) {
    make();
    const auto writeUntilItFails = [] {
        if (KT_API_Initialize() != KT_OK || KT_API_RescanAdapter() != KT_OK) return 1;
        fillDisk();
        KT_U8 status = KT_OK;
        for (int i = 0; i < 50 && status == KT_OK; ++i)
            status = KT_API_RescanAdapter();
        if (status != KT_ERR_NO_RESOURCE) return 2;
        return KT_API_GetRescanCount(0) >= 1 ? 0 : 3;
    };
    EXPECT_EQ(inChild(writeUntilItFails), 0);
    ASSERT_EQ(KT_API_Initialize(), KT_OK);
    EXPECT_EQ(KT_API_RescanAdapter(), KT_OK);
}

TEST_F(StateFile, CannotBeMadeOnAFullDisk) {
    EXPECT_EQ(inChild([] { return fillDisk(), KT_API_Initialize(); }), KT_ERR_FAILED);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path));
}

TEST_F(StateFile, IsMadeOnceByManyThatStartTogetherAndLoseNoUpdate) {
    std::vector<pid_t> children;
    for (int i = 0; i < 8; ++i) {
        children.push_back(startChild([] {
            if (KT_API_Initialize() != KT_OK) return 1;
            for (int call = 0; call < 100; ++call)
                if (KT_API_RescanAdapter() != KT_OK) return 2;
            return 0;
        }));
    }
    for (const pid_t child : children)
        EXPECT_EQ(waitFor(child), 0);
    ASSERT_EQ(KT_API_Initialize(), KT_OK);
    EXPECT_EQ(KT_API_GetRescanCount(0), 800U);
    for (const auto& file : std::filesystem::directory_iterator(folder.path))
        EXPECT_EQ(file.path().filename().string().rfind("state.db", 0), 0U) << file.path();
    KT_API_Finalize();
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path), {}), 1);
}

TEST_F(StateFile, ReadingNeitherWaitsForAWriterNorSeesHalfOfIt) {
    ASSERT_EQ(KT_API_Initialize(), KT_OK);
    ASSERT_EQ(getVd(0), KT_OK); // what is due at the start has happened
    Store* writer = openExistingStore(path);
    beginTransaction(*writer, Access::Write);
    erase<_LD_Info>(Context{*writer, 0, 0}, 0);
    EXPECT_EQ(getVd(0), KT_OK);
    Store* reader = openExistingStore(path);
    beginTransaction(*reader, Access::Read);
    EXPECT_TRUE(find<_LD_Info>(*reader, 0, 0));
    commitTransaction(*writer);
    EXPECT_TRUE(find<_LD_Info>(*reader, 0, 0)) << "it goes on seeing the moment that it began at";
    closeStore(reader);
    closeStore(writer);
    EXPECT_EQ(getVd(0), KT_ERR_INVALID_VD);
}

TEST_F(StateFile, ThatIsBusyIsWaitedForFiveSeconds) {
    make();
    Store* writer = openExistingStore(path);
    Store* second = openExistingStore(path);
    beginTransaction(*writer, Access::Write);
    const int place = open(folder.path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_EQ(flock(place, LOCK_EX), 0);
    const auto wait = [](const std::function<void()>& act) {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_THROW(act(), StoreFailure);
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
    auto opened = std::async(std::launch::async, wait, [&] { openExistingStore(path); });
    for (const double seconds : {wait([&] { beginTransaction(*second, Access::Write); }), opened.get()}) {
        EXPECT_GT(seconds, 4.5);
        EXPECT_LT(seconds, 20) << "a busy machine is slow";
    }
    close(place);
    closeStore(second);
    closeStore(writer);
}
