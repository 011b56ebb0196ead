#include <cstring>

#include "Public/common.h"

int parse(int* argc, char** argv, char* line) {
    *argc = 0;
    size_t length = strlen(line);
    char* start = line;
    char* end = line + length;
    for (char* at = line; at < end; ++at) {
        if (*at == ' ' || *at == '\t') {
            *at = '\0';
            argv[(*argc)++] = start;
            start = at + 1;
            if (*start == ' ') {
                start += strspn(start, " ");
                at = start - 1;
            }
            continue;
        }
        if (*at == '"') {
            at = strchr(at + 1, '"');
            if (at == nullptr) return 0;
        }
        if (at + 1 == end) {
            argv[(*argc)++] = start;
            start = end;
        }
    }
    return 1;
}
