// What the rules about virtual disks and arrays share: finding them, their make-up and their status.
#pragma once

#include "raid/levels.h"
#include "state/adapterInfo.h"
#include "state/events.h"

#include <functional>

namespace sim {

inline constexpr int MAX_SLOTS = 32;
inline constexpr KT_U64 KIB_PER_MB = 1024;

// _DG_Info.Status
enum : KT_U8 { ARRAY_FUNCTIONAL = 0, ARRAY_PD_MISSING = 1, ARRAY_OFFLINE = 2 };

struct Vd {
    _LD_Info info;
    VdState state;
};
struct Array {
    _DG_Info info;
    DgState state;
};

// Whether disks may hold parts of several virtual disks: only without arrays, and only on the first generation, but for
// the hybrid levels, which later ones too put beside others.
inline constexpr KT_U16 FIRST_GENERATION = 0x4700; // the last DevID of it
inline bool sharesDisks(const _Adapter_Info& adapter, KT_U8 level) {
    if (isArrayBased(adapter) || adapter.MaxBlockPerPD == 1) return false;
    return adapter.DevID <= FIRST_GENERATION || isHybridLevel(level);
}

// Each answers KT_OK and fills its second argument, or says why there is none: KT_ERR_INVALID_VD beyond the adapter's
// range, KT_ERR_VD_MISSING within it; KT_ERR_INVALID_ARRAY.
KT_U8 findVd(const Context& context, KT_U16 id, Vd& vd);
KT_U8 findArray(const Context& context, KT_U16 id, Array& array);
void saveVd(const Context& context, const Vd& vd);
void saveArray(const Context& context, const Array& array);
template <class Visit>
void forEachVd(const Context& context, Visit&& visit) {
    forEach<_LD_Info>(context, 0, [&](KT_U64 id, const _LD_Info& info) {
        visit(Vd{info, find<VdState>(context, id).value_or(VdState{})});
        return true;
    });
}

Geometry geometryOf(const _LD_Info& vd);
Geometry geometryOf(const Array& array); // with the places of missing members
// A virtual disk that takes commands: not offline, foreign or in conflict.
bool isUsable(const _LD_Info& vd);
// Whether the machine runs its system from it. That has crashed when it goes offline, and what the host does not see
// runs nothing; the system is still on it, for the time when it works again.
bool runsSystem(const Vd& vd);
bool runsSystem(const PdState& disk); // the same of a disk outside arrays and virtual disks
// The status that the virtual disk would have if those of its working blocks were lost that `isLost` names.
using BlockTest = std::function<bool(const _Block_Info&)>;
KT_U8 statusWithout(const Context& context, const Vd& vd, const BlockTest& isLost);
// KiB that the virtual disk holds on one member.
KT_U64 shareOf(const Context& context, const _LD_Info& vd);

// Brings an id list to what the library shows: those there are first, the rest KT_NO_ID.
void listMembers(Array& array);
// What an event about a virtual disk of that level holds: a value of its own, and whether hybrid words describe it.
EventParams vdParams(KT_U8 level, KT_U32 value = 0);
// One that was locked with its disks waits for the last of them: what was opened first would go on without the rest.
bool waitsForKey(const Context& context, const Vd& vd);
// Works out the status of a virtual disk (of an array) from its members, and logs it when it got worse or better.
void refreshVdStatus(const Context& context, KT_U16 id);
void refreshArrayStatus(const Context& context, KT_U16 id);
// The lowest id below `limit` that no row of the kind has, or KT_NO_ID.
KT_U16 freeId(const Context& context, Kind kind, KT_U64 limit);

} // namespace sim
