// The self-tests of solid state disks, which go on by themselves, and what their drives do when they start.
#pragma once

#include "state/store.h"

namespace sim {

// The result codes of a drive.
enum : KT_U8 { RESULT_PASSED = 0, RESULT_ABORTED = 1, RESULT_ELECTRICAL = 5, RESULT_READ = 7, RESULT_RUNNING = 15 };

// What the drive remembers; as new without a row.
SolidState driveState(const Context& context, KT_U16 pd);
// Milliseconds that a test takes to its end.
KT_U64 testTime(const _HD_Info& disk, bool extended);
// Lets a test that runs come to its end, if that has been reached: where a sector cannot be read, where a worn drive
// gives up, or after the whole time. Only `state` changes.
void settleTest(const Context& context, KT_U16 pd, const _HD_Info& disk, SolidState& state);
// The moment (milliseconds) at which the disk's test comes to its end; NEVER when none runs.
KT_U64 testEnd(const Context& context, KT_U16 pd);
void abortTest(const Context& context, KT_U16 pd, const _HD_Info& disk, SolidState& state, KT_U64 at);
// Of a test that runs; 99 at most.
KT_U8 percentDone(const Context& context, const _HD_Info& disk, const SolidState& state);

// The drive shows that version from now on.
void runMicrocode(const Context& context, KT_U16 pd, const KT_U8 (&version)[8]);
// The drive gets power again, before powerOn(): a test that ran when it was taken out is aborted, microcode that waited
// takes effect.
void startDrive(const Context& context, KT_U16 pd);
// The same with what it remembers from another adapter.
void moveDrive(const Context& from, KT_U16 there, const Context& context, KT_U16 here);

} // namespace sim
