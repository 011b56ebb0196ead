// How far a long transfer is, drawn below what a command prints while someone watches a terminal.
#pragma once

#include <ctime>

#include "ktraid.h"

struct Progress {
    bool wanted; // standard error is a terminal
    bool drawn;
    KT_U32 total; // pages; 0 when nobody knows yet
    KT_U32 done;  // pages
    KT_U64 bytes; // in those pages
    timespec since;
};

// Begins a transfer of `total` pages.
Progress startProgress(KT_U32 total);

// Draws the bar, when there is more than one page to be expected.
void drawProgress(Progress& progress);

// Takes the bar away, so that a line can be printed in its place.
void hideProgress(Progress& progress);
