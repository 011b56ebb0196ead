#include "Public/progress.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <unistd.h>

#include "Public/output.h"

static constexpr KT_U32 BAR_CELLS = 30;

Progress startProgress(KT_U32 total) {
    Progress progress = {};
    progress.wanted = isatty(STDERR_FILENO) != 0;
    progress.total = total;
    clock_gettime(CLOCK_MONOTONIC, &progress.since);
    return progress;
}

static double secondsSince(const timespec& then) {
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec - then.tv_sec) + static_cast<double>(now.tv_nsec - then.tv_nsec) * 1e-9;
}

void drawProgress(Progress& progress) {
    const bool several = progress.total > 1 || (progress.total == 0 && progress.done > 0);
    if (!progress.wanted || !several) return;
    // What was printed before must stand above the bar.
    flushOutput();
    progress.drawn = true;
    const double seconds = std::max(secondsSince(progress.since), 0.001);
    const double rate = static_cast<double>(progress.bytes) / (1024 * 1024) / seconds;
    if (progress.total == 0) {
        fprintf(stderr, "%u pages, %.1f MiB/s", progress.done, rate);
        return;
    }
    char bar[BAR_CELLS + 1];
    const auto filled = static_cast<size_t>(KT_U64{BAR_CELLS} * progress.done / progress.total);
    memset(bar, '#', filled);
    memset(bar + filled, '.', BAR_CELLS - filled);
    bar[BAR_CELLS] = '\0';
    fprintf(stderr, "[%s] %u of %u pages, %.1f MiB/s", bar, progress.done, progress.total, rate);
}

void hideProgress(Progress& progress) {
    if (progress.drawn) fputs("\r\033[K", stderr);
    progress.drawn = false;
}
