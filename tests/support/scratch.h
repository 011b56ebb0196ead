// A folder that is there for one test, and the files in it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

struct ScratchFolder {
    std::string path = "/tmp/kttest.XXXXXX";
    ScratchFolder() {
        if (mkdtemp(path.data()) == nullptr) abort();
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder() { std::filesystem::remove_all(path); }
};

inline std::string fileText(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}
inline void writeText(const std::filesystem::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}
