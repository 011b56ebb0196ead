// Every action on an object in every state, for each command of the family: one line, one result, one call at most.
#include "Public/activity.h"
#include "tests/seam/activity.h"

namespace {

// A message with conversions that would not be filled does not build.
static_assert(isLineText("\nFailed to %s it on PD %d (error %d: %s)\n") && isLineText("-l : invalid '%s'\n"));
static_assert(!isLineText("%d%%") && !isLineText("%s %s") && !isLineText("%d of %d") && !isLineText("50%"));

// What comes of an action.
enum Act { START, RESTART, PAUSE, RESUME, STOP, BUSY, NOT_OWN, IDLE, RUNNING, PAUSED, ABORTED };

// The columns are the actions; the rows what the object is busy with, and in which state.
enum Doing { NOTHING, OTHER, OWN };
struct GridRow {
    Doing doing;
    KT_U8 state;
    Act acts[5]; // start, restart, pause, resume, stop
};
const GridRow steeringGrid[] = {
    {NOTHING, KT_STATE_NONE, {START, NOT_OWN, NOT_OWN, NOT_OWN, NOT_OWN}},
    {OTHER, KT_STATE_RUNNING, {BUSY, NOT_OWN, NOT_OWN, NOT_OWN, NOT_OWN}},
    {OTHER, KT_STATE_PAUSED, {BUSY, NOT_OWN, NOT_OWN, NOT_OWN, NOT_OWN}},
    {OWN, KT_STATE_NONE, {BUSY, IDLE, IDLE, IDLE, IDLE}},
    {OWN, KT_STATE_RUNNING, {BUSY, RUNNING, PAUSE, RUNNING, STOP}},
    {OWN, KT_STATE_ABORTED, {BUSY, RESTART, ABORTED, ABORTED, ABORTED}},
    {OWN, KT_STATE_PAUSED, {BUSY, PAUSED, PAUSED, RESUME, PAUSED}},
    {OWN, KT_STATE_AUTO_PAUSED, {BUSY, PAUSED, PAUSED, RESUME, PAUSED}},
    {OWN, KT_STATE_INTERRUPTED, {BUSY, IDLE, IDLE, IDLE, IDLE}},
};
// Copy back is never started or stopped by hand: that is refused like the next action.
Act ofCopyBack(const GridRow& row, int action) {
    const Act act = row.acts[action];
    if (row.state == KT_STATE_ABORTED) return IDLE;
    return act == START || act == BUSY ? row.acts[1] : act == STOP ? RUNNING : act;
}

struct Steered {
    const char* name;
    bool arrays;         // of the array-based set
    const char* start;   // the words without -a
    KT_U8 own[3];        // its activities
    KT_U8 other[2];      // and some that are not
    const char* control; // the call, its number put in for the action
    unsigned texts;
};

// The words were checked one by one when these sums were taken, each over all that a command prints.
const Steered commands[] = {
    {"init", false, "init -l 2", {8, 16, 64}, {1, 32}, "KT_LD_BGAControl 2 ", 0x649D3D08},
    {"cc", false, "cc -l 2", {2, 4}, {8, 24}, "KT_LD_BGAControl 2 ", 0xF61D9E16},
    {"rebuild", false, "rebuild -l 2 -d 9", {1}, {2, 128}, "KT_LD_BGAControl 2 ", 0xA0864574},
    {"rebuildV2", true, "rebuild -l 2 -d 9", {1}, {32, 8}, "KT_DG_BGAControl 2 ", 0xB9E2D3CD},
    {"mp", false, "mp -d 2", {1}, {2}, "KT_PD_BGAControl 2 ", 0x07A666F0},
    {"copyback", true, "copyback -l 2", {128}, {1, 32}, "KT_DG_BGAControl 2 ", 0x60EC2B96},
    {"migrate", false, "migrate -l 2 -d 1,2,3,9", {32}, {1, 64}, "KT_LD_BGAControl 2 ", 0x22E0A735},
    {"migrateV2", true, "migrate -l 2 -d 1,2,3,9", {32}, {1, 128}, "KT_DG_BGAControl 2 ", 0x119C5FA3},
};

// Puts every object into the state; each command looks at its own.
void put(const Steered& command, KT_U8 bga, KT_U8 state) {
    layOut();
    arrayBasedRaid = command.arrays;
    array().BgaType = vdStatus().Bga = seam.hdActivities[0].Bga = bga;
    array().BgaState = vdStatus().BgaState = seam.hdActivities[0].BgaState = state;
}

class Steering : public ::testing::TestWithParam<Steered> {
  protected:
    const Steered& command = GetParam();
    std::string texts;

    void check(const GridRow& row, KT_U8 bga, int action) {
        static const char* const words[] = {"start", "restart", "pause", "resume", "stop"};
        const std::string line = std::string(command.start) + " -a " + words[action];
        SCOPED_TRACE(line + " in " + std::to_string(bga) + "/" + std::to_string(row.state));
        const bool isCopyBack = strcmp(command.name, "copyback") == 0;
        const Act act = isCopyBack ? ofCopyBack(row, action) : row.acts[action];
        put(command, bga, row.state);
        const Outcome outcome = run(line);
        texts += std::to_string(act) + std::to_string(outcome.result) + outcome.printed;
        const Calls made = changes();
        ASSERT_EQ(made.size(), act < BUSY ? 1U : 0U);
        if (act >= BUSY) return;
        if (act != START) {
            EXPECT_EQ(made[0], command.control + std::to_string(act));
        }
        put(command, bga, row.state);
        seam.statuses[made[0]] = KT_ERR_BGA_RUNNING;
        const Outcome failed = run(line);
        texts += std::to_string(failed.result) + failed.printed;
    }
};

TEST_P(Steering, EveryActionInEveryState) {
    for (const GridRow& row : steeringGrid) {
        for (int which = 0; which < 3; ++which) {
            KT_U8 bga = row.doing == OWN ? command.own[which] : KT_U8{0};
            if (row.doing == OTHER) bga = which < 2 ? command.other[which] : KT_U8{0};
            if (bga == 0 && (row.doing != NOTHING || which > 0)) continue;
            for (int action = 0; action < 5; ++action)
                check(row, bga, action);
        }
    }
    EXPECT_EQ(sumOf(texts), command.texts) << texts;
}
INSTANTIATE_TEST_SUITE_P(All, Steering, ::testing::ValuesIn(commands),
                         [](const auto& command) { return std::string(command.param.name); });

} // namespace
