// Passwords and keys: taken from the command line into a record's field, and wiped from everything they passed through.
#pragma once

#include "Public/options.h"

inline constexpr int AES_SECRET_SIZE = 32; // bytes of a password or a key, NUL-padded
inline constexpr KT_U8 AES_NO_LINK = 255;  // the port has no entry; as a port's id: the slot is unused

using AesSecret = KT_U8[AES_SECRET_SIZE];

// Take the word of an option, with or without double quotes around it, into a field and wipe the word. Failed, with a
// message, when it is too long; a key must not be empty either.
Take takePassword(char* word, AesSecret& password);
Take takeKey(char* word, AesSecret& key);

// Wipes every word behind the command word: what was typed may hold a secret wherever the scan stopped.
void wipeWords(int argc, char** argv);
