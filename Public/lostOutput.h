// Output that is lost shows: in one line on standard error and in the exit status, at the end of every program.
#pragma once

#include <cstdio>

// First in main. Started without one of its standard streams, the program would give that number to the next file
// opened, and what is printed would end up in it, were it an adapter's device or state.
void fillStandardStreams();

// For programs that print with printf: from here on each write to standard output that fails is noted. Called before
// anything is printed.
void watchStandardOutput();

// Right behind a write that failed: notes errno, unless there is a reason already.
void noteLostOutput();

// Writes out what the stream still holds; false, and noted, when that failed or had failed before.
bool flushStream(FILE* file);

// False, after one line on standard error the first time, when output was lost.
bool tellLostOutput();

// The end of a program: flushes standard output; the exit status is `result`, or 1 when `result` is 0 and output was
// lost.
int endOutput(int result);
