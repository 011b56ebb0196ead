#include "media/selfTest.h"

#include "media/life.h"
#include "media/surface.h"
#include "state/digest.h"

#include <algorithm>

namespace sim {

static const KT_U64 MINUTE = 60000;
static const KT_U64 SHORT_TEST = 2 * MINUTE;
static const KT_U64 SHORT_TEST_PART = 64; // it reads that part of the disk
static const KT_U64 TEST_SPEED = 400;     // bytes a microsecond, which is MB a second
static const KT_U64 WORN_FAILS_AT = 80;   // percent of a test

SolidState driveState(const Context& context, KT_U16 pd) {
    SolidState state = {};
    state.errorLba = KT_SSD_NO_LBA;
    return find<SolidState>(context, pd).value_or(state);
}

KT_U64 testTime(const _HD_Info& disk, bool extended) {
    if (!extended) return SHORT_TEST;
    const KT_U64 sector = std::max<KT_U64>(disk.BlockSize, 1);
    return std::max<KT_U64>(disk.Size * sector / (TEST_SPEED * 1000), MINUTE);
}

// What stops a test: where, and how long after its start. No LBA: nothing does.
struct TestError {
    KT_U64 lba;
    KT_U64 after;
    KT_U8 result;
};

static TestError errorOf(const Context& context, KT_U16 pd, const _HD_Info& disk, bool extended) {
    const KT_U64 time = testTime(disk, extended);
    const KT_U64 end = std::max<KT_U64>(extended ? disk.Size : disk.Size / SHORT_TEST_PART, 1);
    TestError error = {KT_SSD_NO_LBA, time, RESULT_PASSED};
    forEachBadSector(context, pd, 0, end, [&](KT_U64 lba, const BadSector& sector) {
        if (sector.flaw != FLAW_UNREADABLE) return true;
        error = {lba, time * (lba >> 10) / std::max<KT_U64>(end >> 10, 1), RESULT_READ};
        return false;
    });
    const bool worn =
        lifeOf(context, pd, disk).wear >= 100 || find<PdState>(context, pd).value_or(PdState{}).smartTripped != 0;
    if (error.lba != KT_SSD_NO_LBA || !worn || disk.Size == 0) return error;
    const Digest own = sha256(std::string(reinterpret_cast<const char*>(disk.SerialNo), sizeof disk.SerialNo));
    KT_U64 place = 0;
    for (int i = 8; i < 16; ++i)
        place = place << 8 | own.bytes[i];
    return {place % disk.Size, time * WORN_FAILS_AT / 100, RESULT_ELECTRICAL};
}

static void endTest(const Context& context, KT_U16 pd, const _HD_Info& disk, SolidState& state, KT_U64 at) {
    const Context then{context.store, context.adapter, at};
    state.hours = static_cast<KT_U32>(lifeOf(then, pd, disk).hours);
}

KT_U64 testEnd(const Context& context, KT_U16 pd) {
    const auto disk = find<_HD_Info>(context, pd);
    SolidState state = driveState(context, pd);
    if (!disk || state.state != KT_SSD_RUNNING) return NEVER;
    const KT_U64 end = state.started + errorOf(context, pd, *disk, state.extended != 0).after;
    return end > context.now ? end : NEVER;
}

// Lets a test that runs come to its end, if that has been reached.
void settleTest(const Context& context, KT_U16 pd, const _HD_Info& disk, SolidState& state) {
    if (state.state != KT_SSD_RUNNING) return;
    const TestError error = errorOf(context, pd, disk, state.extended != 0);
    if (context.now < state.started + error.after) return;
    state.state = error.result == RESULT_PASSED ? KT_SSD_PASSED : KT_SSD_FAILED;
    state.result = error.result;
    state.errorLba = error.lba;
    endTest(context, pd, disk, state, state.started + error.after);
}

KT_U8 percentDone(const Context& context, const _HD_Info& disk, const SolidState& state) {
    const KT_U64 time = testTime(disk, state.extended != 0);
    return static_cast<KT_U8>(std::min<KT_U64>((context.now - state.started) * 100 / time, 99));
}

void abortTest(const Context& context, KT_U16 pd, const _HD_Info& disk, SolidState& state, KT_U64 at) {
    if (state.state != KT_SSD_RUNNING) return;
    state.state = KT_SSD_ABORTED;
    state.result = RESULT_ABORTED;
    state.errorLba = KT_SSD_NO_LBA;
    endTest(context, pd, disk, state, at);
}

void runMicrocode(const Context& context, KT_U16 pd, const KT_U8 (&version)[8]) {
    auto disk = find<_HD_Info>(context, pd);
    if (!disk) return;
    std::copy(std::begin(version), std::end(version), disk->FWVersion);
    save(context, pd, *disk);
}

void startDrive(const Context& context, KT_U16 pd) {
    const auto disk = find<_HD_Info>(context, pd);
    auto state = find<SolidState>(context, pd);
    erase<MicrocodeUpdate>(context, pd);
    if (!disk || !state) return;
    const KT_U64 off = ageOf(context, pd).pulled;
    const KT_U64 ended = off == 0 ? context.now : off;
    settleTest(Context{context.store, context.adapter, ended}, pd, *disk, *state);
    abortTest(context, pd, *disk, *state, ended);
    if (state->waiting) runMicrocode(context, pd, state->microcode);
    state->waiting = 0;
    save(context, pd, *state);
}

void moveDrive(const Context& from, KT_U16 there, const Context& context, KT_U16 here) {
    if (const auto state = find<SolidState>(from, there)) save(context, here, *state);
    startDrive(context, here);
}

} // namespace sim
