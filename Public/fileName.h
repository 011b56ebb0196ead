// File names as people give them with -f.
#pragma once

#include <string>

// The name of an option's value: one that begins with a double quote is taken up to the closing one (or the end).
std::string unquotedName(const char* value);

// Expands a name the way a shell does (tilde, variables, patterns; never commands) into its first word. A name that was
// quoted is taken as it stands where a file has it or where a shell would take it for no word, like "a(1).bin";
// otherwise its blanks are part of the word. False when it expands to nothing or asks for what is not done here, such
// as "$(command)".
bool expandName(const std::string& name, bool quoted, std::string& path);

// The name as it is shown: control bytes as '?'.
std::string shownName(const std::string& name);
