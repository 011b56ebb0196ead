// Ctrl-C where it ends what is being done, not the program: at the prompt, at a question, between two calls of a
// listing. While something is changed it waits (Public/hold.h).
#pragma once

// From here on Ctrl-C is only noted; a caller that ignores it keeps doing so.
void catchInterrupts();

// True when Ctrl-C came since the start, or since forgetInterrupt().
bool interrupted();
void forgetInterrupt();

// Waits until there is something to read from a terminal, or the end of it. False when Ctrl-C came first or before:
// then nothing is to be read. While it waits Ctrl-C is noted even without catchInterrupts(); atSignal, if given, is
// called behind any other signal. Whoever feeds answers in through a pipe means the whole program with Ctrl-C: then it
// answers true at once.
bool waitForInput(int fd, void (*atSignal)() = nullptr);
