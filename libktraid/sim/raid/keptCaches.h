// What an adapter's cache holds of virtual disks that were offline when it booted, so that it could not be written.
#pragma once

#include "state/store.h"

#include <functional>
#include <vector>

namespace sim {

// What the cache holds of the virtual disk with that GUID waits for it.
void keepCache(const Context& context, const KT_U8* guid);
bool hasKeptCache(const Context& context, const _LD_Info& vd);
// The virtual disk works, and gets what waits for it, if anything does.
void writeKeptCache(const Context& context, const _LD_Info& vd);
void dropKeptCache(const Context& context, const _LD_Info& vd);
// The adapter has booted: writes what waits for virtual disks that work, as one flush.
using KeptTest = std::function<bool(const KeptCache&)>;
void writeKeptCaches(const Context& context, const KeptTest& works);
// The power goes: only a sound battery keeps what waits. Whether anything does then.
bool powerOffKeptCaches(const Context& context);
// The battery that kept caches while the adapter was down is gone, or empty.
void loseKeptCaches(const Context& context);
// What waited and was lost since the power went; it is forgotten.
std::vector<KeptCache> takeLostCaches(const Context& context);

} // namespace sim
