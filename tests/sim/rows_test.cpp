// States whose rows say anything: bytes of their records are others, and everything that reads or changes an adapter
// goes by them. Nothing is read beyond a record, and every call ends.
#include "chaos.h"
#include "frame/invariants.h"
#include "state/simClock.h"

#include <algorithm>
#include <gtest/gtest.h>

static std::vector<RowKey> rowsOf(Store& store) {
    std::vector<RowKey> rows;
    const GlobalState global = find<GlobalState>(store, ADAPTER_GLOBAL, 0).value_or(GlobalState{});
    for (unsigned i = 0; i <= global.adapterCount; ++i) {
        const auto adapter = i == global.adapterCount ? KT_U8{ADAPTER_GLOBAL} : static_cast<KT_U8>(i);
        for (unsigned kind = 1; kind < 256; ++kind) {
            RowWalk walk = beginWalk(store, adapter, static_cast<Kind>(kind), 0);
            while (nextRow(walk))
                rows.push_back({adapter, static_cast<Kind>(kind), walk.id});
            endWalk(walk);
        }
    }
    return rows;
}

static void spoil(Chaos& run, std::string& bytes) {
    static const KT_U8 EXTREMES[] = {0, 1, 0x7F, 0x80, 0xFE, 0xFF};
    for (int times = 1 + run.pick(4); times > 0 && !bytes.empty(); --times) {
        const size_t at = run.pick(static_cast<unsigned>(bytes.size()));
        const size_t length = std::min(bytes.size() - at, size_t{1} << run.pick(4));
        const KT_U8 value = run.rarely(2) ? run.oneOf(EXTREMES) : run.byte(256);
        bytes.replace(at, length, std::string(length, static_cast<char>(value)));
    }
    if (run.rarely(40)) bytes.resize(run.pick(static_cast<unsigned>(bytes.size() + 1)));
}

// Many rows of the adapters, few of what is theirs all.
static void spoil(Chaos& run) {
    beginTransaction(*run.store, Access::Write);
    setClock(*run.store, run.now, 1000, true);
    const std::vector<RowKey> rows = rowsOf(*run.store);
    for (int times = 1 + run.pick(12); times > 0; --times) {
        const RowKey& row = rows[run.pick(static_cast<unsigned>(rows.size()))];
        std::string bytes = readBytes(*run.store, row).value_or("");
        if (bytes.empty()) continue;
        spoil(run, bytes);
        writeRow(*run.store, row, bytes.data(), bytes.size());
    }
    commitTransaction(*run.store);
}

struct Rows : testing::TestWithParam<unsigned> {};

TEST_P(Rows, ThatSayAnythingGiveErrorsNotCrashes) {
    static const char* const LABS[] = {"default", "troubled", "empty", "hostile", "full"};
    const StateFolder folder;
    allowSpoiltState();
    replaceStore(folder.state, fillFromLab, labNamed(LABS[GetParam() % std::size(LABS)]));
    Chaos run{std::minstd_rand(GetParam() + 1), openExistingStore(folder.state), 1800000000000};
    testing::internal::CaptureStderr();
    spoil(run);
    findViolations(*run.store);
    try {
        MemoryState(stateToLab(*run.store));
    } catch (const StoreFailure&) { // in words
    } catch (const LabError&) {
    }
    if (KT_API_Initialize() == KT_OK && KT_Adapter_GetCount() > 0) {
        for (int step = 0; step < 25; ++step) {
            try {
                alarm(60); // not to be waited for: SIGALRM is the failure
                run.doAnything();
            } catch (const StoreFailure&) {
                rollbackTransaction(*run.store);
            }
        }
    }
    alarm(0);
    KT_API_Finalize();
    closeStore(run.store);
    testing::internal::GetCapturedStderr();
}
INSTANTIATE_TEST_SUITE_P(Seeds, Rows, testing::Range(0U, seeds(14)));
