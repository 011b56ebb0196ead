// The two kinds of question. The caller prints the question; the answer's whole line is consumed, and the end of input
// declines, as Ctrl-C does. Answers are read unbuffered, so that the shell's next line stays where it is.
#pragma once

// Goes on (true) on anything but "n" or "N".
bool confirmUnlessNo();

// Goes on (true) on "y" or "Y", declines on "n" or "N"; any other answer prints "Please input y or n.\n" and the next
// line is read.
bool confirmYesOrNo();
