// Tab in the shell: command words, option words, and the object words behind -o.
#pragma once

// Needs the line editor.
void installCompletion();
