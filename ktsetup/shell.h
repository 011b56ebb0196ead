// The interactive shell.
#pragma once

// Prompts and runs command lines until "exit" or "quit"; the library has been started. Does not stop it.
void runShell();
