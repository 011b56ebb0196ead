// Tab in the shell: command words, option words, and the values of options.
#pragma once

// Needs the line editor.
void installCompletion();
