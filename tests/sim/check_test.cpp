// What the check of a state that only the adapters' rules have made says when one thing in it is wrong.
#include "frame/invariants.h"
#include "media/blocks.h"
#include "sim.h"

#include <algorithm>
#include <gtest/gtest.h>

// Disks 0 to 2 are an array's members, 3 is its spare, 4 and 5 are free; its virtual disks have blocks 0 to 2, 3 to 5.
static const char CHECK_LAB[] = R"({"adapters": [{"disks": [{"count": 6, "size": "10GB"}],
  "arrays": [{"level": "RAID5", "disks": [0, 1, 2], "spares": [3],
              "virtualDisks": [{"size": "1GB"}, {"size": "2GB"}]}]}]})";
static const KT_U64 ON_DISK_4 = KT_U64{4} << 48;

using Spoil = std::function<void(const Context&)>;

// Changes the record, or makes one.
template <class Record>
static Spoil with(KT_U64 id, const std::function<void(Record&)>& change) {
    return [=](const Context& context) {
        auto record = find<Record>(context, id).value_or(Record{});
        change(record);
        save(context, id, record);
    };
}

// Sets a field of it, or adds to it.
template <class Record, class Field>
static Spoil set(KT_U64 id, Field Record::*field, KT_U64 value) {
    return with<Record>(id, [=](Record& record) { record.*field = static_cast<Field>(value); });
}
template <class Record, class Field>
static Spoil add(KT_U64 id, Field Record::*field, int more) {
    return with<Record>(id, [=](Record& record) { record.*field = static_cast<Field>(record.*field + more); });
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
    const MemoryState state(CHECK_LAB);
    beginTransaction(*state.store, Access::Write);
    spoil(state.context);
    commitTransaction(*state.store);
    return findViolations(*state.store, true);
}

TEST(Check, NamesWhatIsWrong) {
    const std::pair<const char*, Spoil> cases[] = {
        {"block 0 calls itself 9", set(0, &_Block_Info::ID, 9)},
        {"block 0 lies on no disk", set(0, &_Block_Info::HDID, 99)},
        {"block 0 belongs to no VD", set(0, &_Block_Info::LDID, 9)},
        {"block 3 starts where another does", set(3, &_Block_Info::StartLBA, 0)},
        {"block 0 is empty", set(0, &_Block_Info::Size, 0)},
        {"block 0 is in no slot", with<_LD_Info>(0, [](auto& vd) { vd.BlockIDs[0] = KT_NO_ID; })},
        {"disk 0 has blocks that overlap", add(0, &_Block_Info::Size, 1)},
        {"disk 0 lists other blocks than its own", with<_HD_Block_Info>(0, [](auto& list) { list.BlkIDs[0] = 9; })},
        {"disk 0 lists blocks that are not there", add(0, &_HD_Block_Info::BlkCount, 1)},
        {"disk 0 is shorter than its blocks", set(0, &_HD_Info::Size, 9)},
        {"disk 0 has no state", without<PdState>(0)},
        {"disk 5 left its state", without<_HD_Info>(5)},
        {"disk 5 names an array that is not there", set(5, &PdState::dgid, 9)},
        {"disk 5 names an array that it does not serve", set(5, &PdState::dgid, 0)},
        {"disk 3 is a spare that its array does not know", add(0, &_DG_Info::SparePDCount, -1)},
        {"disk 0 is used as no member", set(0, &PdState::raid, 0)},
        {"disk 5 is no one's member", set(5, &PdState::raid, KT_PD_MEMBER)},
        {"disk 5 is a spare in use that is none", set(5, &PdState::raid, KT_PD_SPARE_IN_USE)},
        {"disk 3 is a spare in use that is none", add(3, &PdState::raid, KT_PD_SPARE_IN_USE)},
        {"disk 5 is patrolled for nothing", with<PdState>(5, [](auto& disk) { disk.patrol.kind = 1; })},
        {"disk 5 is online and offline", with<PdState>(5, [](auto& disk) { disk.config.Online = 0; })},
        {"VD 0 calls itself 9", set(0, &_LD_Info::ID, 9)},
        {"VD 0 has no state", without<VdState>(0)},
        {"VD 0 left its state", without<_LD_Info>(0)},
        {"VD 0 hides its activity", set(0, &_LD_Info::BGAStatus, KT_STATE_RUNNING)},
        {"VD 0 is on no array", set(0, &_LD_Info::DGID, 9)},
        {"VD 0 names a block that is not its own", with<_LD_Info>(0, [](auto& vd) { vd.BlockIDs[0] = 3; })},
        {"VD 0 has blocks beyond its slots", with<_LD_Info>(0, [](auto& vd) { vd.BlockIDs[3] = 0; })},
        {"VD 0 is larger than its blocks", add(0, &_LD_Info::Size, 1024)},
        {"VD 0 lacks nothing", set(0, &_LD_Info::Status, KT_VD_DEGRADED)},
        {"VD 0 is online, not whole", set(0, &_Block_Info::Status, BLOCK_OFFLINE)},
        {"VD 0 has a target or migrates, not both", with<VdTarget>(0, [](auto&) {})},
        {"array 0 names a VD that is not on it", with<_DG_Info>(0, [](auto& array) { array.VDIDs[0] = 9; })},
        {"array 0 has a VD larger than its slot", with<_DG_Info>(0, [](auto& array) { --array.VDSlotSize[0]; })},
        {"array 0 does not manage the sum of its slots", with<_DG_Info>(0, [](auto& array) { --array.VDSlotSize[0]; })},
        {"array 0 has more in slots than it manages", with<_DG_Info>(0, [](auto& array) { ++array.VDSlotSize[0]; })},
        {"array 0 has another amount free than its slots", add(0, &_DG_Info::RemainingManagedSpace, 1)},
        {"array 0 names a spare that does not know of it", set(3, &PdState::raid, 0)},
        {"array 0 has another disk in slot 0 than its VD 0",
         with<DgState>(0, [](auto& array) { array.members[0] = 5; })},
        {"array 0 has a member that does not know of it: 0", set(0, &PdState::dgid, KT_NO_ID)},
        {"array 0 lists other disks than its members", add(0, &_DG_Info::PDCount, -1)},
        {"bad sector 27866022694354944 lies beyond its disk", set(KT_U64{99} << 48, &BadSector::flaw, FLAW_LOST)},
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
        {"event 9 is out of sequence", set(9, &_Event::SequenceNo, 9)},
    };
    EXPECT_EQ(violationsAfter([](const Context&) {}), std::vector<std::string>());
    for (const auto& [expected, spoil] : cases) {
        const std::vector<std::string> wrong = violationsAfter(spoil);
        EXPECT_NE(std::find(wrong.begin(), wrong.end(), std::string("adapter 0: ") + expected), wrong.end())
            << expected << ", not " << (wrong.empty() ? "nothing" : wrong.front());
    }
}

TEST(Check, EndsAProgramWhoseCallLeavesSomethingWrong) {
    const StateFolder folder;
    const auto muteWith = [&](bool spoilt) {
        setenv("KTRAID_SIM_CHECK", "1", 1);
        if (!freopen("/dev/null", "w", stderr) || KT_API_Initialize() != KT_OK) return 1;
        changeState(folder.state, [&](Store& store) { spoilt&& erase<PdState>(Context{store, 0, 0}, 0); });
        return KT_AdapterMute(0) == KT_OK ? 0 : 2;
    };
    EXPECT_EQ(inChild([&] { return muteWith(false); }), 0);
    EXPECT_EQ(inChild([&] { return muteWith(true); }), -1);
}

TEST(Check, NamesWhatIsBeyondItsRecord) {
    const KT_U64 latest = 0xFFFFFFFFULL * 1000;
    const auto of = [](KT_U64 id, auto field) { return [=](KT_U64 value) { return set(id, field, value); }; };
    const std::tuple<const char*, KT_U8, KT_U64, std::function<Spoil(KT_U64)>> limits[] = {
        {"VD 0 HDCount", 0, 128, of(0, &_LD_Info::HDCount)},
        {"VD 0 BlkCount", 0, 128, of(0, &_LD_Info::BlkCount)},
        {"array 0 PDCount", 0, 128, of(0, &_DG_Info::PDCount)},
        {"array 0 VDSlotCount", 0, 32, of(0, &_DG_Info::VDSlotCount)},
        {"array 0 SparePDCount", 0, 8, of(0, &_DG_Info::SparePDCount)},
        {"state of array 0 memberCount", 0, 128, of(0, &DgState::memberCount)},
        {"blocks of disk 0 BlkCount", 0, 128, of(0, &_HD_Block_Info::BlkCount)},
        {"blocks of pulled disk 9 count", 0, 128, of(9, &PulledBlocks::count)},
        {"blocks of pulled disk 9 slot", 0, 127, of(9, &PulledBlocks::slot)},
        {"state 0 adapterCount", ADAPTER_GLOBAL, 255, of(0, &GlobalState::adapterCount)},
        {"clock 0 base", ADAPTER_GLOBAL, latest, of(0, &Clock::base)},
        {"clock 0 realBase", ADAPTER_GLOBAL, latest, of(0, &Clock::realBase)},
        {"clock 0 speed", ADAPTER_GLOBAL, 1000000000, of(0, &Clock::speed)},
    };
    for (const auto& [who, adapter, most, set] : limits) {
        for (const KT_U64 more : {0U, 1U}) {
            const KT_U8 whose = adapter;
            const Spoil spoil = set(most + more);
            const auto wrong = violationsAfter([&](const Context& context) { spoil({context.store, whose, 0}); });
            const std::string line =
                "adapter " + std::to_string(adapter) + ": " + who + " is beyond what its record holds";
            EXPECT_EQ(std::count(wrong.begin(), wrong.end(), line), more) << line;
        }
    }
}
