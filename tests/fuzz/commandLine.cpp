// A line typed at the prompt, on a library that takes everything: the first byte chooses the command set.
#include <algorithm>
#include <cstring>
#include <vector>

#include "ktsetup/commandTables.h"
#include "tests/fuzz/fuzz.h"

static void prepare(bool arrayBased) {
    printToNowhere();
    static FILE* const nobody = freopen("/dev/null", "r", stdin); // every question is declined
    require(nobody != nullptr);
    opterr = 0;
    setCommandSets(ldBasedCommands, arrayBasedCommands);
    gNumAdaptersFound = 2;
    gCurrentAdapter = 0;
    gAdapterInfo[0] = {};
    gAdapterInfo[0].Features = 0xFF;
    gAdapterInfo[0].LogicalDriverMode = 0x0FFF;
    gAdapterInfo[0].MaxParityDisks = 4;
    gAdapterInfo[0].MaxDiskGroup = arrayBased ? 8 : 0;
    gAdapterInfo[0].DevID = 0x4780;
    gAdapterInfo[0].MaxAESPort = 4;
    gAdapterInfo[0].MaxAESEntry = 10;
    chooseCommandSet();
}

// Commands that create files or end the program when there is no adapter are not for random words.
static bool reachesBeyond(const char* word) {
    return strcasecmp(word, "flash") == 0 || strncasecmp(word, "resc", 4) == 0;
}

// The library lets an NVSRAM of 4 GiB be read, which takes minutes to print.
static bool takesMinutes(char** words, int count) {
    return strncasecmp(words[0], "nvsram", strlen(words[0])) == 0 &&
           std::any_of(words + 1, words + count, [](const char* word) {
               const char* digits = word + strcspn(word, "123456789");
               return strspn(digits, "0123456789") > 6;
           });
}

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    prepare(data[0] % 2 != 0);
    std::vector<char> line(data + 1, data + size);
    line.push_back('\0');
    std::vector<char*> words(line.size() + 1);
    int count = 0;
    int split = parse(&count, words.data(), line.data());
    require(count >= 0 && static_cast<size_t>(count) < words.size());
    if (split == 0 || count == 0 || reachesBeyond(words[0]) || takesMinutes(words.data(), count)) return 0;
    words[static_cast<size_t>(count)] = nullptr;
    cmdDispatcher(count, words.data());
    return 0;
}
