// How a disk has fared: its hours, its power, its warmth, what was written to it.
#pragma once

#include "state/store.h"

namespace sim {

// What a disk has behind it, from its age, its own numbers and the clock.
struct Life {
    DiskAge age;
    KT_U64 hours;
    KT_U64 powerCycles;
    KT_U64 temperature; // degrees, at rest and at the day's mean
    KT_U64 hottest;
    KT_U64 written; // units of 512 bytes, on a solid state disk
    KT_U64 wear;    // percent of the life of a solid state disk
};
Life lifeOf(const Context& context, KT_U16 pd, const _HD_Info& disk);
// Degrees that the hour of the day and its work add to the temperature of a disk.
int warmthAt(KT_U64 moment, bool busy);

DiskAge ageOf(const Context& context, KT_U16 pd); // all zero when nothing has befallen it
// A disk fresh from the factory takes that id.
void beginLife(const Context& context, KT_U16 pd);
// It has no power any more; it has it again, if its machine is on.
void powerOff(const Context& context, KT_U16 pd);
void powerOn(const Context& context, KT_U16 pd);
// Put in here with the life that it had at another adapter.
void moveLife(const Context& from, KT_U16 there, const Context& context, KT_U16 here);
// Its counters of faults begin anew.
void undoWear(const Context& context, KT_U16 pd);

} // namespace sim
