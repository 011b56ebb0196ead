// What the programs need of a C++ runtime. Linking the usual one would bring exceptions, their tables and a pool of
// memory for them, which every run pays for when it starts; nothing here throws. A run that cannot have the memory it
// needs ends with one line: it has done what it said up to then, and nothing after it.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <unistd.h>

// Never called from within the output stream, so what was printed up to here is written.
[[noreturn]] static void endWith(const char* reason) {
    dprintf(STDERR_FILENO, "%s: %s\n", program_invocation_short_name, reason);
    exit(1);
}

void* operator new(size_t size) {
    void* memory = malloc(size == 0 ? 1 : size);
    if (memory == nullptr) endWith("out of memory");
    return memory;
}

void operator delete(void* memory) noexcept {
    free(memory);
}

void operator delete(void* memory, size_t) noexcept {
    free(memory);
}

// The library's containers call these where they would throw.
namespace std {
void __throw_bad_alloc() {
    endWith("out of memory");
}

void __throw_bad_array_new_length() {
    endWith("out of memory");
}

void __throw_length_error(const char*) {
    endWith("out of memory");
}

void __throw_logic_error(const char*) {
    endWith("internal error");
}

void __throw_out_of_range_fmt(const char*, ...) {
    endWith("internal error");
}
} // namespace std
