#include "Functions/aes/aesSecret.h"

#include <cstring>

// The length of what was copied; more than AES_SECRET_SIZE when the word is too long, and nothing is copied then.
static size_t takeSecret(char* word, AesSecret& secret) {
    // Wide enough to notice one character too many both with quotes (n kept) and without (n - 1 kept).
    static constexpr int KEPT = AES_SECRET_SIZE + 2;
    char text[KEPT + 1];
    noQuoteStrncpy(text, word, KEPT);
    explicit_bzero(word, strlen(word));
    size_t length = strlen(text);
    if (length <= AES_SECRET_SIZE) {
        explicit_bzero(secret, sizeof secret);
        memcpy(secret, text, length);
    }
    explicit_bzero(text, sizeof text);
    return length;
}

Take takePassword(char* word, AesSecret& password) {
    if (takeSecret(word, password) <= AES_SECRET_SIZE) return Take::Yes;
    // The option is called -n here whichever it was.
    out("-n : password of aes should be no more than %d characters\n", AES_SECRET_SIZE);
    return Take::Failed;
}

Take takeKey(char* word, AesSecret& key) {
    size_t length = takeSecret(word, key);
    if (length > AES_SECRET_SIZE) {
        out("-k : length of AES key should be no more than %d characters\n", AES_SECRET_SIZE);
        return Take::Failed;
    }
    if (length == 0) {
        out("-k : key can not be NULL\n");
        return Take::Failed;
    }
    return Take::Yes;
}

void wipeWords(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        explicit_bzero(argv[i], strlen(argv[i]));
    }
}
