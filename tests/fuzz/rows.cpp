// Labs whose rows say anything: bytes of a complete lab's records are others, and everything that reads or changes an
// adapter goes by them. Nothing is read beyond a record, and every call ends.
//     fuzz_rows STATES SEED
#include <unistd.h>

#include "frame/invariants.h"
#include "lab/lab.h"
#include "state/simClock.h"
#include "state/storeFile.h"
#include "tests/fuzz/fuzz.h"
#include "tests/sim/chaos.h"
#include "tests/support/scratch.h"

using namespace sim;

namespace {
struct RowKey {
    KT_U8 adapter;
    Kind kind;
    KT_U64 id;
};

std::vector<RowKey> rowsOf(Store& store) {
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

void mutate(std::string& bytes) {
    static const unsigned char extremes[] = {0, 1, 0x7F, 0x80, 0xFE, 0xFF};
    for (size_t times = 1 + below(4); times > 0 && !bytes.empty(); --times) {
        const size_t at = below(bytes.size());
        const size_t length = std::min(bytes.size() - at, size_t{1} << below(4));
        const char value = static_cast<char>(below(2) == 0 ? extremes[below(sizeof extremes)] : below(256));
        bytes.replace(at, length, std::string(length, value));
    }
    if (below(40) == 0) bytes.resize(below(bytes.size() + 1));
}

// Many rows of the adapters, few of what is theirs all.
void spoil(Store& store) {
    const std::vector<RowKey> rows = rowsOf(store);
    for (size_t times = 1 + below(12); times > 0; --times) {
        const RowKey& row = rows[below(rows.size())];
        auto bytes = readBytes(store, {row.adapter, row.kind, row.id});
        if (!bytes) continue;
        mutate(*bytes);
        writeRow(store, {row.adapter, row.kind, row.id}, bytes->data(), bytes->size());
    }
}

void run(const std::string& path) {
    const KT_U64 now = 1800000000000;
    static const char* const labs[] = {"default", "troubled", "full", "default", "troubled"};
    const BuiltInLab* lab = labNamed(labs[below(std::size(labs))]);
    replaceStore(path, fillFromLab, lab);
    Chaos chaos{std::minstd_rand(static_cast<unsigned>(chance())), openExistingStore(path), now};
    beginTransaction(*chaos.store, Access::Write);
    setClock(*chaos.store, now, 1000, true);
    spoil(*chaos.store);
    commitTransaction(*chaos.store);
    findViolations(*chaos.store);
    try {
        const std::string shown = stateToLab(*chaos.store);
        const BuiltInLab again = {"shown", shown.c_str()};
        closeStore(openMemoryStore(fillFromLab, &again));
    } catch (const StoreFailure&) { // in words
    } catch (const LabError&) {
    }
    if (KT_API_Initialize() == KT_OK && KT_Adapter_GetCount() > 0) {
        for (int step = 0; step < 25; ++step) {
            try {
                alarm(60); // not to be waited for: SIGALRM is the failure
                chaos.doAnything();
            } catch (const StoreFailure&) {
                rollbackTransaction(*chaos.store);
            }
        }
    }
    alarm(0);
    KT_API_Finalize();
    closeStore(chaos.store);
}
} // namespace

int main(int argc, char** argv) {
    if (argc < 3) return 2;
    const unsigned long states = strtoul(argv[1], nullptr, 10);
    const unsigned long seed = strtoul(argv[2], nullptr, 10);
    const ScratchFolder folder;
    const std::string path = folder.path + "/state.db";
    setenv("KTRAID_SIM", path.c_str(), 1);
    unsetenv("KTRAID_SIM_CHECK"); // these states cannot be right
    for (unsigned long state = 0; state < states; ++state) {
        // On failure the last line tells with which seed one state repeats it.
        printf("%lu\n", seed + state);
        fflush(stdout);
        chance.seed(static_cast<unsigned>(seed + state));
        run(path);
    }
    printf("%lu states\n", states);
}
