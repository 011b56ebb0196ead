// What the programs need of a C++ runtime. Linking the usual one would bring exceptions, their tables and a pool of
// memory for them, which every run pays for when it starts; nothing here throws. A run that cannot have the memory it
// needs ends with one line: it has done what it said up to then, and nothing after it.
#include <cstdarg>
#include <cstdlib>
#include <new>
#include <unistd.h>

[[noreturn]] static void endWith(const char* line, size_t length) {
    // Neither memory nor the output stream can be relied on here.
    if (write(STDERR_FILENO, line, length) < 0) _exit(2);
    _exit(1);
}

template <size_t N>
[[noreturn]] static void endWith(const char (&line)[N]) {
    endWith(line, N - 1);
}

void* operator new(size_t size) {
    void* memory = malloc(size == 0 ? 1 : size);
    if (memory == nullptr) endWith("ktsetup: out of memory\n");
    return memory;
}

void operator delete(void* memory) noexcept {
    free(memory);
}

void operator delete(void* memory, size_t) noexcept {
    free(memory);
}

// The library's containers call these where they would throw.
// NOLINTBEGIN(cert-dcl58-cpp,bugprone-reserved-identifier)
namespace std {
void __throw_bad_alloc() {
    endWith("ktsetup: out of memory\n");
}

void __throw_length_error(const char*) {
    endWith("ktsetup: out of memory\n");
}

void __throw_logic_error(const char*) {
    endWith("ktsetup: internal error\n");
}

void __throw_out_of_range_fmt(const char*, ...) {
    endWith("ktsetup: internal error\n");
}
} // namespace std
// NOLINTEND(cert-dcl58-cpp,bugprone-reserved-identifier)
