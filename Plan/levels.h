// What RAID levels take, hold and allow, as far as planning has to know beforehand.
#pragma once

#include <optional>

#include "Plan/present.h"

// The word that `ktsetup -r` has for a level of labs; null for one that nobody can ask for.
const char* typedLevel(const std::string& level);
// Whether the level takes that many disks; otherwise why not, without a full stop.
std::optional<std::string> refusedCount(const std::string& level, size_t disks, bool array, bool migration);
// Levels whose number of parity disks can be chosen, and the number that they have when nobody says one.
bool takesParity(const std::string& level);
KT_U64 usualParity(const std::string& level);
bool isHybrid(const std::string& level);
// Whether a migration may lead from the one to the other: never to less redundancy.
bool mayMigrate(const std::string& from, const std::string& to);
// Bytes that the level holds with `share` bytes on each of its disks.
KT_U64 capacityWith(const PresentLayout& layout, KT_U64 share);
// Bytes that `size` bytes take on each of the disks.
KT_U64 shareOf(const PresentLayout& layout, KT_U64 size);
// Bytes by which the size of a virtual disk may differ from what was asked for: a row of stripes, and what is less than
// the megabyte that commands speak in.
KT_U64 rowOf(const PresentLayout& layout);
// What `size` bytes at the one layout become when the same shares of the disks are laid out as the other.
KT_U64 grown(KT_U64 size, const PresentLayout& from, const PresentLayout& to);
