// What a piece of code prints, kept from the output.
#pragma once

#include <cstdlib>
#include <string>

#include "Public/output.h"

// Runs the code and answers what it printed; nothing without memory.
template <class Code>
std::string saidBy(Code code) {
    char* text = nullptr;
    size_t size = 0;
    FILE* before = stream;
    stream = open_memstream(&text, &size);
    code();
    if (stream != nullptr) fclose(stream);
    stream = before;
    std::string said = text == nullptr ? std::string() : std::string(text, size);
    free(text);
    return said;
}
