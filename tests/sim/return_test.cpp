// Random histories in which disks come and go, and none fails: when all are back nothing is lost, and what missed
// something was never taken for fresh.
#include "activities/migrating.h"
#include "activities/rebuilding.h"
#include "activities/steering.h"
#include "changes/branches.h"
#include "changes/health.h"
#include "changes/spareRoles.h"
#include "devices/power.h"
#include "frame/invariants.h"
#include "frame/settle.h"
#include "media/blocks.h"
#include "raid/members.h"
#include "sim.h"
#include "state/due.h"
#include "state/simClock.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>

static const struct {
    const char* name;
    KT_U8 level;
    KT_U8 disks;
    KT_U8 parity;
} LEVELS[] = {{"RAID0", KT_RAID0, 2, 0},   {"RAID1", KT_RAID1, 2, 0},   {"RAID5", KT_RAID5, 3, 0},
              {"RAID6", KT_RAID6, 4, 2},   {"RAID10", KT_RAID10, 4, 0}, {"RAID1E", KT_RAID1E, 3, 0},
              {"RAID50", KT_RAID50, 6, 0}, {"RAID60", KT_RAID60, 8, 4}};
static const unsigned COMMANDS = 12; // what nobody can do while the power is off begins here
static const Ids CONTROLS = {KT_CONTROL_PAUSE, KT_CONTROL_RESUME, KT_CONTROL_STOP};
static const KT_U64 DAY = 24ULL * 60 * 60 * 1000;

struct History {
    explicit History(unsigned seed) : random(seed) {}

    std::mt19937 random;
    std::string lab = makeLab();
    MemoryState state{lab};
    Store* store = state.store;
    Context& context = state.context;
    std::map<KT_U16, std::set<KT_U16>> missed; // by virtual disk: the disks that lack what was written to it
    std::string story;

    unsigned pick(unsigned below) { return static_cast<unsigned>(random() % below); }
    KT_U16 oneOf(const Ids& ids) {
        return ids.empty() ? KT_U16{KT_NO_ID} : ids[pick(static_cast<unsigned>(ids.size()))];
    }
    Group anyGroup() {
        const std::vector<Owner> owners = allGroups(context);
        return groupOf(context, owners[pick(static_cast<unsigned>(owners.size()))]);
    }

    // Two arrays, or virtual disks outside arrays, on 14 disks; sometimes a shelf, copy back, and disks that are
    // shared.
    std::string makeLab() {
        const bool arrays = pick(2) != 0;
        std::string volumes;
        for (unsigned i = 0, disk = 0; i < 2; ++i) {
            const auto& level = LEVELS[pick(std::size(LEVELS))];
            if (disk + level.disks > 14) break;
            volumes += std::string(i ? ", " : "") + R"({"level": ")" + level.name + R"(", "disks": [)";
            for (unsigned end = disk + level.disks; disk < end; ++disk)
                volumes += std::to_string(disk) + (disk + 1 < end ? ", " : "], ");
            volumes += arrays ? R"("virtualDisks": [{"size": "300MB"}, {"size": "200MB"}]})" : R"("size": "300MB"})";
            if (!arrays && pick(2)) disk = 1;
        }
        return std::string(R"({"adapters": [{"type": ")") + (arrays ? "array" : "LD") + R"(-based", )" +
               (pick(2) ? R"("expanders": [{}], "enclosures": [{"id": 1}], )" : "") + R"("config": {"CopyBackOn": )" +
               std::to_string(pick(2)) + R"(}, "disks": [{"count": 14, "type": "SATA", "size": "2GB"}], ")" +
               (arrays ? "arrays" : "virtualDisks") + "\": [" + volumes + "]}]}";
    }

    template <class Param>
    Param journey(const Group& group, KT_U8 Param::*count, KT_U16 (Param::*ids)[128]) {
        const auto& level = LEVELS[pick(std::size(LEVELS))];
        Param param = {};
        param.RaidMode = level.level;
        param.NumParityDisk = level.parity;
        Ids disks = group.members;
        for (const KT_U16 pd : freeDisks(context))
            if (pick(3) == 0) disks.push_back(pd);
        param.*count = static_cast<KT_U8>(disks.size());
        std::copy(disks.begin(), disks.end(), param.*ids);
        return param;
    }
    KT_U8 migrate(const Group& group) {
        if (group.dgid == KT_NO_ID) {
            auto param = journey(group, &_Create_LD_Param::HDCount, &_Create_LD_Param::HDIDs);
            param.LDID = group.owner.id;
            return startVdMigration(context, param);
        }
        auto param = journey(group, &_CreateOrModify_DG_Param::PDCount, &_CreateOrModify_DG_Param::PDIDs);
        param.DGID = group.dgid;
        return startArrayMigration(context, param, false);
    }
    KT_U8 control(const Group& group, KT_U16 word) const {
        const auto how = static_cast<KT_U8>(word);
        return group.dgid == KT_NO_ID ? controlVd(context, group.owner.id, how)
                                      : controlArray(context, group.dgid, how);
    }
    KT_U8 pullSome(KT_U16 pd) {
        Ids some = {pd};
        for (const KT_U16 other : all<_HD_Info>(context))
            if (other != pd && pick(6) == 0) some.push_back(other);
        return pullDisks(context, some);
    }
    KT_U8 power() {
        isPoweredOff(*store) ? powerUp(*store) : powerDown(*store, pick(2) != 0);
        return KT_OK;
    }
    void pass(KT_U64 milliseconds) {
        context.now += milliseconds;
        setClock(*store, context.now, 1000, true);
        if (!isPoweredOff(*store)) settle(context);
    }

    // What people do to the hardware, and, in the second half, tell the adapter; the last begins a migration. KT_OK
    // when something came of it.
    KT_U8 act(unsigned what) {
        const KT_U16 pd = oneOf(all<_HD_Info>(context));
        const KT_U16 away = oneOf(all<PulledDisk>(context));
        const KT_U16 unused = oneOf(freeDisks(context));
        const KT_U16 array = oneOf(all<_DG_Info>(context));
        const Group group = anyGroup();
        const std::function<KT_U8()> acts[] = {
            [&] { return pullSome(pd); },
            [&] { return pullEnclosure(context, 1); },
            [&] { return insertEnclosure(context, 1); },
            [&] { return insertDisks(context, all<PulledDisk>(context)); },
            [&] { return power(); },
            [&] { return pullDisks(context, {pd}); },
            [&] { return insertDisks(context, {away}); },
            [&] { return startVdRebuild(context, group.owner.id, unused); },
            [&] { return startArrayRebuild(context, array, &unused, 1); },
            [&] { return control(group, oneOf(CONTROLS)); },
            [&] { return makeGlobalSpare(context, unused); },
            [&] { return makeDedicatedSpare(context, unused, array); },
            [&] { return setDiskStatus(context, pd, static_cast<KT_U8>(pick(2))); },
            [&] { return migrate(group); },
        };
        static const unsigned OFTEN[COMMANDS + 7] = {0, 1, 2, 3, 4, 4, 5, 5, 5, 6, 6, 6, 7, 8, 9, 10, 11, 12, 13};
        return acts[OFTEN[what]]();
    }

    // Whatever a working virtual disk has no good block on has missed something from now on. Only what takes time, or
    // begins a migration, makes such a disk good.
    void look(bool filled) {
        if (isDown(context)) return;
        forEachVd(context, [&](const Vd& vd) {
            if (!isUsable(vd.info)) return;
            std::set<KT_U16> lacking;
            for (KT_U16 pd = 0; pd < 14; ++pd)
                lacking.insert(pd);
            forEach<_Block_Info>(context, 0, [&](KT_U64, const _Block_Info& block) {
                if (block.LDID == vd.info.ID && block.Status == BLOCK_GOOD) lacking.erase(block.HDID);
                return true;
            });
            for (const KT_U16 pd : missed[vd.info.ID])
                EXPECT_TRUE(filled || lacking.count(pd)) << "VD " << vd.info.ID << " takes PD " << pd << " for fresh";
            missed[vd.info.ID] = lacking;
        });
    }
    void attempt(unsigned what) {
        setMark(*store);
        if (isPoweredOff(*store)) what %= COMMANDS;
        if (act(what) != KT_OK) return rollbackToMark(*store);
        story += " " + std::to_string(what);
        look(what == COMMANDS + 6);
    }
    void comeBack() {
        if (isPoweredOff(*store) && pick(2)) power();
        insertEnclosure(context, 1);
        Ids away = all<PulledDisk>(context);
        std::shuffle(away.begin(), away.end(), random);
        for (const KT_U16 pd : away)
            EXPECT_EQ(insertDisks(context, {pd}), KT_OK);
        if (isPoweredOff(*store)) power();
        look(false);
        for (KT_U16 pd = 0; pd < 14; ++pd)
            setDiskStatus(context, pd, 1);
        look(false);
        for (const Owner owner : allGroups(context)) {
            for (const KT_U8 how : {KT_CONTROL_RESUME, KT_CONTROL_RESTART})
                control(groupOf(context, owner), how);
        }
        for (int i = 0; i < 3; ++i)
            pass(DAY);
    }
    void run() {
        beginTransaction(*store, Access::Write);
        pass(0);
        look(true);
        for (unsigned steps = 5 + pick(40); steps > 0; --steps) {
            if (pick(6) == 0) {
                pass(pick(3) ? pick(20000) : DAY);
                look(true);
            }
            attempt(pick(COMMANDS + 7));
        }
        comeBack();
        forEachVd(context, [&](const Vd& vd) { EXPECT_TRUE(isUsable(vd.info)) << "VD " << vd.info.ID; });
        const auto isOut = [](const PdState& disk) { return (disk.raid & (KT_PD_FOREIGN | KT_PD_OFFLINE)) != 0; };
        EXPECT_EQ(idsWhere<PdState>(context, isOut), Ids()) << "disks that are not taken back";
        const auto isBad = [](const _Block_Info& block) { return block.Status != BLOCK_GOOD; };
        EXPECT_EQ(idsWhere<_Block_Info>(context, isBad), Ids()) << "blocks that nobody fills any more";
        commitTransaction(*store);
        EXPECT_EQ(findViolations(*store, true), std::vector<std::string>());
    }
};

TEST(Return, LosesNothing) {
    for (unsigned seed = 0; seed < seeds(200); ++seed) {
        History history(seed);
        history.run();
        ASSERT_FALSE(testing::Test::HasFailure()) << "history " << seed << ":" << history.story << "\n" << history.lab;
    }
}
