#include "Public/listing.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

KT_U16 recordsPerPage(size_t recordSize, KT_U16 withoutLimit) {
    size_t limit = currentAdapter().MaxBufferSize;
    if (limit == 0) return withoutLimit;
    size_t records = (limit * 1024 - sizeof(_RequestHeader)) / recordSize;
    return static_cast<KT_U16>(std::min<size_t>(records, 0xFFFF));
}

void sayCut(KT_U16 index) {
    fprintf(stderr, "%s: the adapter's list does not go on behind index %d: what follows is missing\n",
            program_invocation_short_name, index);
}
