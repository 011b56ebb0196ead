// What a command printed although a part of it was missing.
#pragma once

// The command that runs could not print all that it was asked for; the reason has been said on standard error.
void noteIncomplete();

// Around a command: its result, or 1 for one that succeeded but was incomplete. Forgets what was noted.
int completeResult(int result);
