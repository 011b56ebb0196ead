// Disks as they age, and the thresholds that they cross.
#pragma once

#include "state/store.h"

#include <string>
#include <vector>

namespace sim {

enum class Ageing { Done, NoDisk, NoAttributes, OnlySpinning, OnlySolidState };
// Ages a disk: `aspect` is one of agingWords(). A threshold that it crosses is logged. NoAttributes for a disk that
// keeps none; the last two when it is of the kind of disk that does not wear that way.
Ageing ageDisk(const Context& context, KT_U16 pd, const std::string& aspect, KT_U32 amount);
std::vector<std::string> agingWords();

// The disk's SMART status goes over its threshold, logged when the adapter polls it, or (false) back under it: its wear
// is undone with it.
KT_U8 tripSmart(const Context& context, KT_U16 pd, bool tripped);
// Logs that the disk foretells its failure, if it does and its adapter polls it.
void pollSmart(const Context& context, KT_U16 pd);
// Logs all disks whose SMART status is over its threshold, as an adapter that begins to poll them does.
void pollSmart(const Context& context);

// A drive's own account of its sectors: that many more cannot be read; that many were put elsewhere, of which `known`
// were counted as unreadable before.
void countUnreadable(const Context& context, KT_U16 pd, KT_U32 sectors);
void countReassigned(const Context& context, KT_U16 pd, KT_U32 sectors, KT_U32 known);
// An activity has written that much to the disk, which wears a solid state one.
void countWritten(const Context& context, KT_U16 pd, KT_U64 kib);
// Sectors that the drive can still put elsewhere.
KT_U32 sectorsToSpare(const Context& context, KT_U16 pd);

} // namespace sim
