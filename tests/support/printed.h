#pragma once

#include <cstdlib>
#include <string>

#include "Public/output.h"

// What is printed while the code runs.
template <class Code>
std::string printedBy(Code code) {
    char* text = nullptr;
    size_t size = 0;
    stream = open_memstream(&text, &size);
    code();
    fclose(stream);
    stream = nullptr;
    std::string printed(text, size);
    free(text);
    return printed;
}
