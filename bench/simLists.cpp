// What the simulated library's lists cost: opening the state, one page of 32 records, and the whole list of more and
// more disks. Prints a table; the targets are 2 ms, 100 microseconds and a constant cost a disk.
#include "lab/lab.h"
#include "state/storeFile.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using Clock = std::chrono::steady_clock;

static double microseconds(Clock::time_point from) {
    return std::chrono::duration<double, std::micro>(Clock::now() - from).count();
}

static long peakKib() {
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

static const KT_U16 PAGE = 32;

struct Page {
    _RequestHeader header;
    unsigned char records[PAGE * sizeof(_DG_Info)];
};

template <class Request>
static double pageCost(KT_U8 (*list)(KT_U8, Request*), Page& page) {
    static const int REPEATS = 2000;
    const auto start = Clock::now();
    for (int i = 0; i < REPEATS; ++i) {
        page.header = {0, KT_REQUEST_LIST, 0, PAGE, 0, 0, {}};
        if (list(0, reinterpret_cast<Request*>(&page)) != KT_OK) abort();
    }
    return microseconds(start) / REPEATS;
}

static unsigned listAll(Page& page) {
    unsigned disks = 0;
    for (KT_U16 from = 0; from != KT_LIST_END; from = page.header.nextStartingIndex) {
        page.header = {0, KT_REQUEST_LIST, from, PAGE, 0, 0, {}};
        if (KT_PD_GetHDInfo(0, reinterpret_cast<_HD_Info_Request*>(&page)) != KT_OK) abort();
        disks += page.header.numReturned;
    }
    return disks;
}

// In a process of its own, so that the memory it takes is not counted as the library's.
static void makeState(const std::string& path, const std::string& lab) {
    const pid_t child = fork();
    if (child == 0) {
        const sim::BuiltInLab source{"bench", lab.c_str()};
        sim::replaceStore(path, sim::fillFromLab, &source);
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (status != 0) abort();
}

static void measureDisks(const std::string& path, unsigned disks) {
    makeState(path, R"({"adapters": [{"MaxHD_Ext": 65000, "disks": [{"count": )" + std::to_string(disks) + "}]}]}");
    const auto opening = Clock::now();
    if (KT_API_Initialize() != KT_OK) abort();
    const double opened = microseconds(opening);
    Page page = {};
    listAll(page);
    const auto start = Clock::now();
    const unsigned listed = listAll(page);
    const double cost = microseconds(start);
    printf("%8u  %8.0f us  %10.0f us  %8.3f us  %8ld KiB\n", listed, opened, cost, cost / listed, peakKib());
    KT_API_Finalize();
}

static void measurePages(const std::string& path) {
    makeState(path, sim::labNamed("full")->text);
    if (KT_API_Initialize() != KT_OK) abort();
    Page page = {};
    printf("\nA page of %u records, lab full:\n", PAGE);
    printf("KT_PD_GetHDInfo        %6.1f us\n", pageCost(KT_PD_GetHDInfo, page));
    printf("KT_PD_GetHDRaidStatus  %6.1f us\n", pageCost(KT_PD_GetHDRaidStatus, page));
    printf("KT_LD_GetInfo          %6.1f us\n", pageCost(KT_LD_GetInfo, page));
    printf("KT_LD_GetStatus        %6.1f us\n", pageCost(KT_LD_GetStatus, page));
    printf("KT_DG_GetInfo          %6.1f us\n", pageCost(KT_DG_GetInfo, page));
    printf("KT_BLK_GetInfo         %6.1f us\n", pageCost(KT_BLK_GetInfo, page));
    KT_API_Finalize();
}

int main() {
    std::string folder = (std::filesystem::temp_directory_path() / "simLists.XXXXXX").string();
    if (!mkdtemp(folder.data())) return 1;
    const std::string path = folder + "/state.db";
    setenv("KTRAID_SIM", path.c_str(), 1);
    printf("   disks      opening   listing all    a disk   peak memory\n");
    for (const unsigned disks : {100U, 1000U, 10000U, 60000U})
        measureDisks(path, disks);
    measurePages(path);
    std::filesystem::remove_all(folder);
    return 0;
}
