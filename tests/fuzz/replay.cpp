// Runs a fuzzer once for each file of some folders, in builds without libFuzzer.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "tests/fuzz/fuzz.h"

int main(int argc, char** argv) {
    unsigned files = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
            std::ifstream in(entry.path(), std::ios::binary);
            std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
            // On failure the last name tells which file it was.
            printf("%s\n", entry.path().filename().c_str());
            fflush(stdout);
            LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
            ++files;
        }
    }
    return files > 0 ? 0 : 1;
}
