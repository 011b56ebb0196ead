#include "Public/listing.h"

#include <algorithm>

KT_U16 recordsPerPage(size_t recordSize, KT_U16 withoutLimit) {
    size_t limit = currentAdapter().MaxBufferSize;
    if (limit == 0) return withoutLimit;
    size_t records = (limit * 1024 - sizeof(_RequestHeader)) / recordSize;
    return static_cast<KT_U16>(std::min<size_t>(records, 0xFFFF));
}
