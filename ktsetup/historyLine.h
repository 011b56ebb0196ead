// What the shell remembers of a line.
#pragma once

#include <string>

// The line as it may be kept: of a command that takes passwords or keys (aesop, aesentry, aesport, forceonline, and
// what begins or is begun by one of these words), the values of -p, -w and -k and of their long forms are left out;
// what stands around them stays. Other lines stay as they are.
std::string withoutSecrets(const std::string& line);
