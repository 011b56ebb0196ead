// What the check of a state that only the adapters' rules have made says when one thing in it is wrong.
#include "frame/invariants.h"
#include "lab/lab.h"
#include "media/blocks.h"
#include "process.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>

using namespace sim;

// Disks 0 to 2 are an array's members, 3 is its spare, 4 and 5 are free; its virtual disks have blocks 0 to 2, 3 to 5.
static const BuiltInLab LAB = {"lab", R"({"adapters": [{"disks": [{"count": 6, "size": "10GB"}],
  "arrays": [{"level": "RAID5", "disks": [0, 1, 2], "spares": [3],
              "virtualDisks": [{"size": "1GB"}, {"size": "2GB"}]}]}]})"};
static const KT_U64 ON_DISK_4 = KT_U64{4} << 48;

using Spoil = std::function<void(const Context&)>;

// Changes the record, or makes one.
template <class Record>
static Spoil with(KT_U64 id, void (*change)(Record&)) {
    return [=](const Context& context) {
        auto record = find<Record>(context, id).value_or(Record{});
        change(record);
        save(context, id, record);
    };
}

template <class Record>
static Spoil without(KT_U64 id) {
    return [=](const Context& context) { erase<Record>(context, id); };
}

// A row that is shorter than the record.
template <class Record>
static Spoil cut() {
    return [](const Context& context) {
        writeRow(context.store, {context.adapter, KindOf<Record>::value, 99},
                 reinterpret_cast<const unsigned char*>("x"), 1);
    };
}

static std::vector<std::string> violationsAfter(const Spoil& spoil) {
    Store* store = openMemoryStore(fillFromLab, &LAB);
    beginTransaction(*store, Access::Write);
    spoil(Context{*store, 0, 0});
    commitTransaction(*store);
    std::vector<std::string> wrong = findViolations(*store, true);
    closeStore(store);
    return wrong;
}

TEST(Check, NamesWhatIsWrong) {
    const std::pair<const char*, Spoil> cases[] = {
        {"block 0 calls itself 9", with<_Block_Info>(0, [](auto& block) { block.ID = 9; })},
        {"block 0 lies on no disk", with<_Block_Info>(0, [](auto& block) { block.HDID = 99; })},
        {"block 0 belongs to no VD", with<_Block_Info>(0, [](auto& block) { block.LDID = 9; })},
        {"block 3 starts where another does", with<_Block_Info>(3, [](auto& block) { block.StartLBA = 0; })},
        {"block 0 is empty", with<_Block_Info>(0, [](auto& block) { block.Size = 0; })},
        {"block 9 is in no slot", with<_Block_Info>(9,
                                                    [](auto& block) {
                                                        block.ID = 9;
                                                        block.Status = BLOCK_COPYING;
                                                    })},
        {"disk 0 has blocks that overlap", with<_Block_Info>(0, [](auto& block) { block.Size += 1; })},
        {"disk 0 lists other blocks than its own", with<_HD_Block_Info>(0, [](auto& list) { list.BlkIDs[0] = 9; })},
        {"disk 0 lists blocks that are not there", with<_HD_Block_Info>(0, [](auto& list) { ++list.BlkCount; })},
        {"disk 0 is shorter than its blocks", with<_HD_Info>(0, [](auto& disk) { disk.Size = 9; })},
        {"disk 0 has no state", without<PdState>(0)},
        {"disk 5 left its state", without<_HD_Info>(5)},
        {"disk 5 names an array that is not there", with<PdState>(5, [](auto& disk) { disk.dgid = 9; })},
        {"disk 5 names an array that it does not serve", with<PdState>(5, [](auto& disk) { disk.dgid = 0; })},
        {"disk 3 is a spare that its array does not know",
         with<_DG_Info>(0, [](auto& array) { --array.SparePDCount; })},
        {"disk 0 is used as no member", with<PdState>(0, [](auto& disk) { disk.raid = 0; })},
        {"disk 5 is no one's member", with<PdState>(5, [](auto& disk) { disk.raid = KT_PD_MEMBER; })},
        {"disk 5 is a spare in use that is none", with<PdState>(5, [](auto& disk) { disk.raid = KT_PD_SPARE_IN_USE; })},
        {"disk 3 is a spare in use that is none",
         with<PdState>(3, [](auto& disk) { disk.raid |= KT_PD_SPARE_IN_USE; })},
        {"disk 5 is patrolled for nothing", with<PdState>(5, [](auto& disk) { disk.patrol.kind = 1; })},
        {"disk 5 is online and offline", with<PdState>(5, [](auto& disk) { disk.config.Online = 0; })},
        {"VD 0 calls itself 9", with<_LD_Info>(0, [](auto& vd) { vd.ID = 9; })},
        {"VD 0 has no state", without<VdState>(0)},
        {"VD 0 left its state", without<_LD_Info>(0)},
        {"VD 0 hides its activity", with<_LD_Info>(0, [](auto& vd) { vd.BGAStatus = KT_STATE_RUNNING; })},
        {"VD 0 is on no array", with<_LD_Info>(0, [](auto& vd) { vd.DGID = 9; })},
        {"VD 0 names a block that is not its own", with<_LD_Info>(0, [](auto& vd) { vd.BlockIDs[0] = 3; })},
        {"VD 0 has blocks beyond its slots", with<_LD_Info>(0, [](auto& vd) { vd.BlockIDs[3] = 0; })},
        {"VD 0 is larger than its blocks", with<_LD_Info>(0, [](auto& vd) { vd.Size += 1024; })},
        {"VD 0 lacks nothing", with<_LD_Info>(0, [](auto& vd) { vd.Status = KT_VD_DEGRADED; })},
        {"VD 0 is online, not whole", with<_Block_Info>(0, [](auto& block) { block.Status = BLOCK_OFFLINE; })},
        {"VD 0 has a target or migrates, not both", with<VdTarget>(0, [](auto&) {})},
        {"array 0 names a VD that is not on it", with<_DG_Info>(0, [](auto& array) { array.VDIDs[0] = 9; })},
        {"array 0 has a VD larger than its slot", with<_DG_Info>(0, [](auto& array) { --array.VDSlotSize[0]; })},
        {"array 0 does not manage the sum of its slots", with<_DG_Info>(0, [](auto& array) { --array.VDSlotSize[0]; })},
        {"array 0 has more in slots than it manages", with<_DG_Info>(0, [](auto& array) { ++array.VDSlotSize[0]; })},
        {"array 0 has another amount free than its slots",
         with<_DG_Info>(0, [](auto& array) { ++array.RemainingManagedSpace; })},
        {"array 0 names a spare that does not know of it", with<PdState>(3, [](auto& disk) { disk.raid = 0; })},
        {"array 0 has another disk in slot 0 than its VD 0",
         with<DgState>(0, [](auto& array) { array.members[0] = 5; })},
        {"array 0 has a member that does not know of it: 0",
         with<PdState>(0, [](auto& disk) { disk.dgid = KT_NO_ID; })},
        {"array 0 lists other disks than its members", with<_DG_Info>(0, [](auto& array) { --array.PDCount; })},
        {"bad sector 27866022694354944 lies beyond its disk",
         with<BadSector>(KT_U64{99} << 48, [](auto& sector) { sector.flaw = FLAW_LOST; })},
        {"bad sector 1125899906842633 is bad in no known way", with<BadSector>(ON_DISK_4 + 9, [](auto&) {})},
        {"bad sector 1125899906842633 is known in none",
         with<BadSector>(ON_DISK_4 + 9, [](auto& sector) { sector.known = sector.flaw = FLAW_LOST; })},
        {"VD 99 is not whole", cut<_LD_Info>()},
        {"state of VD 99 is not whole", cut<VdState>()},
        {"array 99 is not whole", cut<_DG_Info>()},
        {"state of array 99 is not whole", cut<DgState>()},
        {"disk 99 is not whole", cut<_HD_Info>()},
        {"state of disk 99 is not whole", cut<PdState>()},
        {"block 99 is not whole", cut<_Block_Info>()},
        {"event 9 is out of sequence", with<_Event>(9, [](auto& event) { event.SequenceNo = 9; })},
    };
    EXPECT_EQ(violationsAfter([](const Context&) {}), std::vector<std::string>());
    for (const auto& [expected, spoil] : cases) {
        const std::vector<std::string> wrong = violationsAfter(spoil);
        EXPECT_NE(std::find(wrong.begin(), wrong.end(), std::string("adapter 0: ") + expected), wrong.end())
            << expected << ", not " << (wrong.empty() ? "nothing" : wrong.front());
    }
}

TEST(Check, EndsAProgramWhoseCallLeavesSomethingWrong) {
    const ScratchFolder folder;
    const auto muteWith = [](bool spoilt) {
        setenv("KTRAID_SIM_CHECK", "1", 1);
        if (!freopen("/dev/null", "w", stderr) || KT_API_Initialize() != KT_OK) return 1;
        Store* store = openExistingStore(getenv("KTRAID_SIM"));
        beginTransaction(*store, Access::Write);
        if (spoilt) erase<PdState>(Context{*store, 0, 0}, 0);
        commitTransaction(*store);
        return KT_AdapterMute(0) == KT_OK ? 0 : 2;
    };
    EXPECT_EQ(waitFor(startChild([&] { return muteWith(false); })), 0);
    EXPECT_EQ(waitFor(startChild([&] { return muteWith(true); })), -1);
}

// A field of a record, and the most that it may say.
struct Limit {
    const char* who;
    std::function<void(const Context&, KT_U64 more)> set;
};

template <class Record, class Field>
static Limit upTo(const char* who, KT_U8 adapter, KT_U64 id, Field Record::*field, KT_U64 most) {
    return {who, [=](const Context& context, KT_U64 more) {
                auto record = find<Record>(context.store, adapter, id).value_or(Record{});
                record.*field = static_cast<Field>(most + more);
                save(context.store, adapter, id, record);
            }};
}

TEST(Check, NamesWhatIsBeyondItsRecord) {
    const KT_U64 latest = 0xFFFFFFFFULL * 1000;
    const Limit limits[] = {
        upTo("0: VD 0 HDCount", 0, 0, &_LD_Info::HDCount, 128),
        upTo("0: VD 0 BlkCount", 0, 0, &_LD_Info::BlkCount, 128),
        upTo("0: array 0 PDCount", 0, 0, &_DG_Info::PDCount, 128),
        upTo("0: array 0 VDSlotCount", 0, 0, &_DG_Info::VDSlotCount, 32),
        upTo("0: array 0 SparePDCount", 0, 0, &_DG_Info::SparePDCount, 8),
        upTo("0: state of array 0 memberCount", 0, 0, &DgState::memberCount, 128),
        upTo("0: blocks of disk 0 BlkCount", 0, 0, &_HD_Block_Info::BlkCount, 128),
        upTo("0: blocks of pulled disk 9 count", 0, 9, &PulledBlocks::count, 128),
        upTo("0: blocks of pulled disk 9 slot", 0, 9, &PulledBlocks::slot, 127),
        upTo("255: state 0 adapterCount", ADAPTER_GLOBAL, 0, &GlobalState::adapterCount, 255),
        upTo("255: clock 0 base", ADAPTER_GLOBAL, 0, &Clock::base, latest),
        upTo("255: clock 0 realBase", ADAPTER_GLOBAL, 0, &Clock::realBase, latest),
        upTo("255: clock 0 speed", ADAPTER_GLOBAL, 0, &Clock::speed, 1000000000),
    };
    for (const Limit& limit : limits) {
        for (const KT_U64 more : {0, 1}) {
            const auto wrong = violationsAfter([&](const Context& context) { limit.set(context, more); });
            const std::string line = std::string("adapter ") + limit.who + " is beyond what its record holds";
            EXPECT_EQ(std::count(wrong.begin(), wrong.end(), line), more) << line;
        }
    }
}
