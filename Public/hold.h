// A change that is made of several calls ends with the last of them, not between two.
//
//     const Hold hold("the array would keep some of the new settings and some of the old ones");
//     for (...) status = KT_..._SetConfig(...);
//
// stands in the function that makes the calls, after every check and question and before the first call that changes
// something. Nothing else is needed: the programs end by the signal once the library and the output are closed.
#pragma once

// While one lives, SIGINT, SIGTERM, SIGHUP and SIGPIPE wait, those that the caller of the program ignores apart, and a
// file that grows beyond its limit is a failed write. No call under way is interrupted. Of the signals that can be sent
// by hand, the second one and each that follows prints a line on standard error, "<program>: still changing the
// adapter; ended now, <loss>"; loss must outlive the hold. Holds may be nested: the outermost one ends the waiting, and
// the innermost one says what is lost.
struct Hold {
    explicit Hold(const char* loss);
    ~Hold();
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

  private:
    const char* outerLoss;
};

// The first signal that came during a hold; 0 when none did. A run that has one begins nothing more.
int heldSignal();

// Where Ctrl-C ends a command and not the program, one that came during a hold has done so when the command is over.
void forgetHeldInterrupt();

// Ends the process as heldSignal() would have ended it; returns when there was none. The library and the output are
// closed before.
void endBySignal();
