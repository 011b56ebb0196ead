// What a mistyped command may have meant.
#pragma once

// Prints "did you mean info?" on standard error when that is a terminal and a command in force, or a word that the
// dispatcher knows by itself, is close to the word: one or two letters wrong, missing, too many or in the wrong order,
// and more right than wrong. Of several, those that are closest.
void suggestCommands(const char* word);
