// What the commands on entries and ports share: their table of operations, and that nothing of a secret is left behind.
#pragma once

#include <strings.h>

#include "Functions/aes/aesSecret.h"
#include "Public/errorMsg.h"

// An operation of a command, by its word for -o.
template <class Options>
struct AesOperation {
    const char* word;
    int (*run)(const Options& o, const OptionCounts& given, const char* command);
};

// Finds the operation of that word; Failed, with a message, when there is none.
template <class Options, size_t N>
Take takeOperation(const char* word, const AesOperation<Options> (&operations)[N], size_t& chosen) {
    for (size_t i = 0; i < N; ++i) {
        if (strcasecmp(word, operations[i].word) != 0) continue;
        chosen = i;
        return Take::Yes;
    }
    out("-o : invalid object '%s'\n", word);
    return Take::Failed;
}

// Runs a command on options of its own and wipes them and the words afterwards.
template <class Options>
int runAndWipe(int argc, char** argv, _cmd_struct* row, int (*run)(int, char**, _cmd_struct*, Options&)) {
    Options o;
    int result = run(argc, argv, row, o);
    explicit_bzero(&o, sizeof o);
    wipeWords(argc, argv);
    return result;
}

// Says that an entry cannot be read; answers the status.
inline KT_U8 entryFailed(KT_U8 entry, KT_U8 status) {
    out("\nGet configure of AES entry %d failed (error %d: %s).\n", entry, status, ErrorMessage(status));
    return status;
}
