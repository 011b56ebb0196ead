// The lines that the arrow keys bring back. They outlive the shell in $XDG_STATE_HOME/ktsetup/history (or
// ~/.local/state/ktsetup/history), which only its owner may read, and which shells that run side by side share.
#pragma once

#include <string>

// Lines that the file keeps.
inline constexpr int HISTORY_LINES = 1000;

// Each needs the line editor. A file that cannot be used is done without, in silence: the lines of this shell are
// remembered all the same.
void openHistory();

// Takes over what other shells have added to the file.
void refreshHistory();

// Adds a line to this shell's history and to the file; the file is given no empty ones.
void addToHistory(const std::string& line);
