// Ctrl-C where it ends what is being done, not the program: at the prompt, at a question, between two calls of a
// listing. While something is changed it waits (Public/hold.h).
#pragma once

// From here on Ctrl-C is only noted; a caller that ignores it keeps doing so.
void catchInterrupts();

// True when Ctrl-C came since the start, or since forgetInterrupt().
bool interrupted();
void forgetInterrupt();

// The next byte of standard input; EOF behind the last one, on an error, and when Ctrl-C came while it waited at a
// terminal, or before. While it waits there Ctrl-C is noted even without catchInterrupts(); atSignal, if given, is
// called first and behind any other signal. Whoever feeds answers in through a pipe means the whole program with
// Ctrl-C.
int readInputByte(void (*atSignal)() = nullptr);
