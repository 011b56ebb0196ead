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

enum : bool { LD_BASED = false, ARRAY_BASED = true };
struct Steered {
    const char* name;
    bool arrays;       // of the array-based set
    const char* start; // the words without -a
    KT_U8 own[3];      // its activities
    KT_U8 other[2];    // and some that are not
    int refusal;
    const char* control; // the call, its number put in for the action
};
struct Member : Steered {
    const char* done[5];
    const char* failed[5];
    const char* refused[ABORTED - BUSY + 1];
};
const char PAUSE_OK[] = "Pause successfully\n";
const char RESUME_OK[] = "Resume successfully\n";
const char RESTART_OK[] = "Restart successfully\n";
const char ABORT_OK[] = "Abort successfully\n";
#define E63 "(error 63: BGA is running)"

const Member members[] = {
    {{"init", LD_BASED, "init -l 2", {8, 16, 64}, {1, 32}, 0, "KT_LD_BGAControl 2 "},
     {"Start initialization successfully\n", RESUME_OK, PAUSE_OK, RESUME_OK, ABORT_OK},
     {"\nUnable to start initialization on VD 2 " E63 ".\n", "\nUnable to restart initialization on VD 2 " E63 "\n",
      "\nUnable to pause initialization on VD 2 " E63 ".\n", "\nUnable to resume initialization on Ld 2 " E63 ".\n",
      "\nUnable to abort initialization on VD 2 " E63 ".\n"},
     {"\nVD 2 is currently having background activities.\n", "\nVD 2 is not initializing.\n",
      "\nVD 2 is not having any background activity.\n", "\nVD 2 is initializing.\n",
      "\nVD 2 initialization is in pause state, you can resume it only.\n",
      "\nVD 2 initialization was aborted and need to restart.\n"}},
    {{"cc", LD_BASED, "cc -l 2", {2, 4}, {8, 24}, 0, "KT_LD_BGAControl 2 "},
     {"Start consistency check\n", RESTART_OK, PAUSE_OK, RESUME_OK, ABORT_OK},
     {"\nUnable to start consistency check on VD 2 " E63 "\n", "\nUnable to resume consistency chec on VD 2 " E63 ".\n",
      "\nPause Consistency check on VD 2 failed " E63 ".\n", "\nUnable to resume consistency chec on VD 2 " E63 ".\n",
      "\nAbort Consistency check on VD 2 failed " E63 ".\n"},
     {"\nVD 2 is having background activities.\n", "\nVD 2 is not in consistency check mode.\n",
      "\nVD 2 is not having any background activity.\n", "\nVD 2 is having consistency check.\n",
      "\nConsistency check on VD 2 is paused, resume it first.\n",
      "\nVD 2 consistency check is aborted and need to restart.\n"}},
    {{"rebuild", LD_BASED, "rebuild -l 2 -d 9", {1}, {2, 128}, 0, "KT_LD_BGAControl 2 "},
     {"Start rebuild successfully\n", RESTART_OK, PAUSE_OK, RESUME_OK, ABORT_OK},
     {"\nUnable to rebuild VD 2 " E63 ".\n", "\nRebuilding can not be resumed on VD 2 " E63 "\n",
      "\nUnable to pause VD 2 rebuilding " E63 "\n", "\nRebuilding can not be resumed on VD 2 " E63 "\n",
      "\nUnable to abort VD 2 rebuilding " E63 "\n"},
     {"\nVirtual disk 2 is having background activity.\n", "\nVD 2 is not at rebuilding state.\n",
      "\nVD 2 is not doing any background operation.\n", "\nVD 2 is currently rebuilding.\n",
      "\nVD 2 rebuilding is currently paused\n", "\nRebuilding VD 2 is aborted and need to restart.\n"}},
    {{"rebuildV2", ARRAY_BASED, "rebuild -l 2 -d 9", {1}, {32, 8}, 0, "KT_DG_BGAControl 2 "},
     {"Start rebuild successfully\n", RESTART_OK, PAUSE_OK, RESUME_OK, ABORT_OK},
     {"Unable to rebuild array 2 " E63 ".\n", "\nRebuilding can not be resumed on array 2 " E63 "\n",
      "\nUnable to pause array 2 rebuilding " E63 "\n", "\nRebuilding can not be resumed on array 2 " E63 "\n",
      "\nUnable to abort array 2 rebuilding " E63 "\n"},
     {"\nArray 2 is having background activity.\n", "\nArray 2 is not at rebuilding state.\n",
      "\nArray 2 is not doing any background operation.\n", "\nArray 2 is currently rebuilding.\n",
      "\narray 2 rebuilding is currently paused\n", "\nRebuilding array 2 is aborted and need to restart.\n"}},
    {{"mp", LD_BASED, "mp -d 2", {1}, {2}, 0, "KT_PD_BGAControl 2 "},
     {"Start media patrol successfully\n", RESTART_OK, PAUSE_OK, RESUME_OK, ABORT_OK},
     {"\nFailed to start media patrol on PD 2 " E63 "\n", "\nFailed to restart media patrol on PD 2 " E63 "\n",
      "\nFailed to pause media patrol on PD 2 " E63 "\n", "\nFailed to resume media patrol on PD 2 " E63 "\n",
      "\nFailed to stop media patrol on PD 2 " E63 "\n"},
     {"\nPD 2 is currently having background activity.\n", "\nPD 2 is not in media patrol state.\n",
      "\nPD 2 is currently does not have any background activity.\n", "\nMedai patrol is in progress on PD 2.\n",
      "\nMedia patrol on PD 2 is currently paused\n", "\nMedia patrol on PD 2 is aborted and need to restart.\n"}},
    {{"copyback", ARRAY_BASED, "copyback -l 2", {128}, {1, 32}, 0, "KT_DG_BGAControl 2 "},
     {nullptr, nullptr, PAUSE_OK, RESUME_OK, nullptr},
     {nullptr, nullptr, "\nUnable to pause copyback on array 2 " E63 "\n",
      "\nCopy back can not be resumed on array 2 " E63 "\n", nullptr},
     {nullptr, "\nArray 2 is not doing copy back.\n", "\nArray 2 is not doing any background operation.\n",
      "\nArray 2 is currently doing copy back.\n", "\narray 2 copy back is currently paused\n", nullptr}},
    {{"migrate", LD_BASED, "migrate -l 2 -d 1,2,3,9", {32}, {1, 64}, 1, "KT_LD_BGAControl 2 "},
     {"Start migration successfully\n", RESTART_OK, PAUSE_OK, RESUME_OK, ABORT_OK},
     {"\nUnable to start migration on VD 2 " E63 ".\n", "\nUnable to restart migration on VD 2 " E63 ".\n",
      "\nUnable to pause migration on VD 2 " E63 ".\n", "\nUnable to resume migration on VD 2 " E63 ".\n",
      "\nUnable to abort migration on VD 2 " E63 ".\n"},
     {"\nVD 2 is currently having background activity.\n", "\nVD 2 is not migrating (error 0: No error).\n",
      "\nVD 2 does not having any background activities.\n", "\nMigration on VD 2 is in progress.\n",
      "\nMigration on VD 2 is currently paused.\n", "\nMigration on VD 2 is aborted and need to restart.\n"}},
    {{"migrateV2", ARRAY_BASED, "migrate -l 2 -d 1,2,3,9", {32}, {1, 128}, 1, "KT_DG_BGAControl 2 "},
     {"Start migrate successfully\n", RESTART_OK, PAUSE_OK, RESUME_OK, ABORT_OK},
     {"\nUnable to migrate array 2 " E63 ".\n", "\nUnable to restart migration on array 2 " E63 ".\n",
      "\nUnable to pause migration on VD 2 " E63 ".\n", "\nUnable to resume migration on array 2 " E63 ".\n",
      "\nUnable to abort migration on VD 2 " E63 ".\n"},
     {"\nVD 2 is currently having background activity.\n", "\nArray 2 is not migrating (error 0: No error).\n",
      "\nArray 2 does not have any background activities.\n", "\nMigration on VD 2 is in progress.\n",
      "\nMigration on array 2 is currently paused.\n", "\nMigration on array 2 is aborted and need to restart.\n"}},
};

// Puts every object into the state; each command looks at its own.
void put(const Member& member, KT_U8 bga, KT_U8 state) {
    layOut();
    arrayBasedRaid = member.arrays;
    array().BgaType = vdStatus().Bga = seam.hdActivities[0].Bga = bga;
    array().BgaState = vdStatus().BgaState = seam.hdActivities[0].BgaState = state;
}

void check(const Member& member, const GridRow& row, KT_U8 bga, int action) {
    static const char* const words[] = {"start", "restart", "pause", "resume", "stop"};
    const std::string line = std::string(member.start) + " -a " + words[action];
    SCOPED_TRACE(line + " in " + std::to_string(bga) + "/" + std::to_string(row.state));
    const Act act = member.done[START] != nullptr ? row.acts[action] : ofCopyBack(row, action);
    put(member, bga, row.state);
    Outcome outcome = run(line);
    if (act >= BUSY) {
        EXPECT_EQ(outcome.printed, member.refused[act - BUSY]);
        EXPECT_EQ(outcome.result, member.refusal);
        EXPECT_TRUE(changes().empty());
        return;
    }
    EXPECT_EQ(outcome.printed, member.done[act]);
    EXPECT_EQ(outcome.result, 0);
    ASSERT_EQ(changes().size(), 1U);
    if (act != START) {
        EXPECT_EQ(changes()[0], member.control + std::to_string(act));
    }
    const std::string called = changes()[0];
    put(member, bga, row.state);
    seam.statuses[called] = KT_ERR_BGA_RUNNING;
    expect(line, member.failed[act], KT_ERR_BGA_RUNNING);
}

class Steering : public ::testing::TestWithParam<Member> {};

TEST_P(Steering, EveryActionInEveryState) {
    const Member& member = GetParam();
    for (const GridRow& row : steeringGrid) {
        for (int which = 0; which < 3; ++which) {
            KT_U8 bga = row.doing == OWN ? member.own[which] : 0;
            if (row.doing == OTHER) bga = which < 2 ? member.other[which] : KT_U8{0};
            if (bga == 0 && (row.doing != NOTHING || which > 0)) continue;
            for (int action = 0; action < 5; ++action)
                check(member, row, bga, action);
        }
    }
}
INSTANTIATE_TEST_SUITE_P(All, Steering, ::testing::ValuesIn(members),
                         [](const auto& member) { return std::string(member.param.name); });

} // namespace
