// Disks as their makers sell them.
#pragma once

#include "ktraid.h"

#include <string>
#include <vector>

namespace sim {

struct DiskMake {
    const char* word; // as labs call it
    KT_U8 type;       // KT_HD_*
    KT_U8 ssd;
    KT_U8 speed; // DriveSpeed code: 3 = 6 Gb/s, 4 = 12 Gb/s
    KT_U16 rotation;
    KT_U32 features;
    const char* model; // %s: capacity, as "2000G"
    const char* firmware;
};

// Null for a word that names none.
const DiskMake* diskMakeNamed(const std::string& word);
std::vector<std::string> diskMakeWords();
// The make that a disk with that HDType could be of.
const DiskMake& diskMakeOfType(KT_U8 type);

inline bool isSectorSize(KT_U64 bytes) {
    return bytes == 512 || bytes == 1024 || bytes == 2048 || bytes == 4096;
}
// Sectors of a drive sold with `bytes`: the count that all makers agreed on for its size.
KT_U64 sectorsFor(KT_U64 bytes, KT_U32 sector);
// The size that a drive with so many sectors is sold with, in whole gigabytes.
KT_U64 bytesSoldAs(KT_U64 sectors, KT_U32 sector);
// Fills in all that follows from make, size and sectors, the names of model and firmware included.
void manufacture(_HD_Info& disk, const DiskMake& make, KT_U64 bytes, KT_U32 sector);
// KiB at the end of a new disk that adapters keep for what they write about it.
KT_U64 reservedKibOf(const DiskMake& make);

} // namespace sim
