#include "frame/invariants.h"
#include "sim.h"

#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <sstream>

static std::string mistakeIn(const std::string& text) {
    try {
        MemoryState state(text);
    } catch (const LabError& error) {
        return error.message;
    }
    return "none";
}

struct EveryLab : testing::TestWithParam<std::string> {};

TEST_P(EveryLab, IsConsistentAndReadsBackUnchanged) {
    const MemoryState state(labNamed(GetParam()));
    EXPECT_EQ(findViolations(*state.store), std::vector<std::string>());
    const std::string printed = stateToLab(*state.store);
    EXPECT_EQ(stateToLab(*MemoryState(printed).store), printed);
    // Rows of records that labs know stand field by field, not as bytes.
    EXPECT_EQ(printed.find("\"rows\""), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Labs, EveryLab, testing::ValuesIn(labNames()), [](const auto& lab) { return lab.param; });

TEST(Lab, KeepsBytesThatNoFieldTellsOf) {
    const MemoryState state(labNamed("default"));
    const Context& context = state.context;
    Store* store = state.store;
    beginTransaction(*store, Access::Write);
    _LD_Info vd = *find<_LD_Info>(context, 0);
    memset(vd.Name, 0xFF, sizeof vd.Name);
    vd.Name[3] = 0;
    save(context, 0, vd);
    const unsigned char own[] = {1, 0, 255};
    const RowKey some = {1, static_cast<Kind>(200), 9};
    const RowKey none = {1, static_cast<Kind>(200), 10};
    writeRow(*store, some, own, sizeof own);
    writeRow(*store, none, own, 0);
    commitTransaction(*store);
    const MemoryState again(stateToLab(*store));
    for (const RowKey& row : {RowKey{0, KIND_VD, 0}, some, none})
        EXPECT_EQ(readBytes(*again.store, row), readBytes(*store, row));
}

TEST(Lab, AddsWhatIsNotSaid) {
    const MemoryState state(R"({"adapters": [{"id": 2, "disks": [
        {"serial": "S1", "patrol": {}}, {"type": "ATAPI"}, {"type": "PATA"}, {"type": "SAS SSD"}]}]})");
    const Context context{*state.store, 2, 0};
    EXPECT_EQ(find<_Adapter_Info>(context, 0)->MaxTotalBlocks, 255);
    const auto set = find<_Adapter_Config_V2>(context, 0);
    EXPECT_EQ(std::vector<int>({set->AutoRebuildOn, set->BGARate, set->SyncRate, set->InitRate, set->RebuildRate,
                                set->MigrationRate, set->CopybackRate, set->MPRate, set->PollSMARTStatus,
                                set->CopyBackOn, set->AlarmOn}),
              std::vector<int>({1, 50, 50, 50, 50, 50, 50, 50, 1, 1, 1}));
    EXPECT_STREQ(reinterpret_cast<const char*>(find<_HD_Info>(context, 0)->SerialNo), "S1");
    EXPECT_EQ(find<PdState>(context, 0)->patrol.done, 0U);
    std::vector<int> settings; // write cache, SMART, online and speed of each disk
    forEach<PdState>(context, 0, [&](KT_U64, const PdState& disk) {
        const _HD_CONFIG& config = disk.config;
        settings.insert(settings.end(), {config.WriteCacheOn, config.SMARTOn, config.Online, config.DriveSpeed});
        return true;
    });
    EXPECT_EQ(settings, std::vector<int>({1, 1, 1, 3, 0, 0, 1, 1, 1, 1, 1, 0, 1, 1, 1, 4}));
    // The adapters before it may be out of reach of whoever describes it.
    EXPECT_EQ(find<GlobalState>(*state.store, ADAPTER_GLOBAL, 0)->adapterCount, 3);
}

TEST(Lab, ShowsWhatAnArrayDoesOnAllItsVirtualDisks) {
    for (const std::string state : {"running", "paused", "interrupted"}) {
        const MemoryState lab(
            R"({"adapters": [{"disks": [{"count": 3}], "arrays": [{"disks": [0, 1, 2], "virtualDisks": [
            {"size": "1GiB"}, {"size": "1GiB", "activity": {"kind": "rebuild", "state": ")" +
            state + "\"}}]}]}]}");
        EXPECT_EQ(findViolations(*lab.store), std::vector<std::string>()) << state;
    }
}

TEST(Lab, SaysWhereTheMistakeIs) {
    const auto adapter = [](const std::string& words) { return R"({"adapters": [{)" + words + "}]}"; };
    const auto disk = [&](const std::string& words) { return adapter(R"("disks": [{}, {)" + words + "}]"); };
    const auto ports = [&](const std::string& words) { return adapter(R"("type": "LD-based", )" + words); };
    const auto arrays = [&](const std::string& words) {
        return adapter(R"("disks": [{"count": 6}], "arrays": [)" + words + "]");
    };
    const char* noAmount = "disks[1].size: should be an amount such as \"500GB\" or \"64MiB\", or a number of bytes";
    const std::pair<std::string, const char*> cases[] = {
        {disk(R"("sise": "1TB")"), "disks[1].sise: is not a word that labs know here"},
        {disk(R"("size": "1XB")"), noAmount},
        {disk(R"("size": "-1TB")"), noAmount},
        {disk(R"("HDType": 256)"), "disks[1].HDType: is larger than 255"},
        {disk(R"("HDType": -1)"), "disks[1].HDType: should not be negative"},
        {disk(R"("firmware": "123456789")"), "disks[1].firmware: is longer than 8 characters"},
        {disk(R"("model": "\u0100")"), "disks[1].model: characters beyond U+00FF do not fit a record"},
        {disk(R"("id": 0)"), "disks[1].id: is another disk's already"},
        {disk(R"("on": "expander")"), "disks[1].parent: there is no expander 0"},
        {adapter(R"("battery": {"tempLow": -32769})"), "battery.tempLow: is too small"},
        {adapter(R"("disks": [{}], "virtualDisks": [{"disks": [0, 4]}])"), "virtualDisks[0].disks: there is no disk 4"},
        {adapter(R"("disks": [{}], "virtualDisks": [{"level": "RAID0", "disks": [0], "size": "2TB"}])"),
         "virtualDisks[0].size: does not fit on disk 0"},
        {adapter(R"("portMultipliers": [{}], "disks": [{"count": 6, "on": "PM"}])"),
         "disks[0].port: goes beyond the ports of port multiplier 0"},
        {ports(R"("disks": [{"count": 3, "port": 0}, {"port": 2}])"), "disks[1].port: 2 is disk 2's already"},
        {ports(R"("portMultipliers": [{}], "disks": [{"port": 3}])"), "disks[0].port: 3 is a cable's already"},
        {ports(R"("disks": [{"port": 4}])"), "disks[0].port: goes beyond the ports of the adapter"},
        {ports(R"("disks": [{"count": 60}, {"port": 0}])"),
         "disks: 60 of them need a place, and there are 3 left; list \"expanders\" or \"enclosures\", or raise "
         "\"PortCount\""},
        {ports(R"("disks": [{"count": 8}, {"type": "SAS"}])"), "disks[1].type: has no port left that it goes with"},
        {arrays(R"({"disks": [0, 1, 0]})"), "arrays[0].disks: name disk 0 twice"},
        {arrays(R"({"disks": [0, 1, 2]}, {"disks": [2, 3, 4]})"), "arrays[1].disks: disk 2 is in use already"},
        {arrays(R"({"disks": [0, 1, 2], "spares": [3, 3]})"), "arrays[0].spares: disk 3 is in use already"},
        {adapter(
             R"("disks": [{"count": 12}], "arrays": [{"disks": [0, 1, 2], "spares": [3, 4, 5, 6, 7, 8, 9, 10, 11]}])"),
         "arrays[0].spares: are too many for one array"},
        {arrays(R"({"disks": [0, 1, 2], "virtualDisks": [{"activity": {"disk": 5}}]})"),
         "arrays[0].virtualDisks[0].activity.disk: is not a member"},
        {R"({"complete": true, "adapters": [{}]})", "adapter: is missing"},
    };
    for (const auto& [text, mistake] : cases)
        EXPECT_EQ(mistakeIn(text), std::string("lab: adapters[0].") + mistake);
    EXPECT_EQ(mistakeIn(ports(R"("disks": [{"count": 60}])")), "none");
    EXPECT_NE(mistakeIn("{").find("parse error"), std::string::npos);
    EXPECT_NE(mistakeIn("[]"), "none");
    EXPECT_EQ(mistakeIn(R"({"complete": true, "global": {"adapterCount": 2}, "adapters": []})"),
              "lab: global.adapterCount: is not the number of adapters");
    EXPECT_EQ(mistakeIn(R"({"complete": true, "global": {"adapterCount": 0}, "faults": [{"kid": 1}]})"),
              "lab: faults[0].kid: is not a word that labs know here");
}

// "0.3" is port 3 of the adapter, "PM1.3" that of port multiplier 1, "X1.3" of expander 1, "E1.3" a bay.
static std::string placesIn(const std::string& adapter) {
    const MemoryState state(R"({"adapters": [{)" + adapter + "}]}");
    std::string places;
    forEach<_HD_Info>(state.context, 0, [&](KT_U64, const _HD_Info& disk) {
        static const char* const NAMES[] = {"0", "PM", "X", "?"};
        const _Link_Endpoint& parent = disk.Link.Parent;
        const KT_U16 shelf = disk.Link.Self.EnclosureID;
        const std::string device = NAMES[parent.DevType] + (parent.DevType ? std::to_string(parent.DevID) : "");
        places += shelf == KT_NO_ID ? device + "." + std::to_string(parent.PhyID[0])
                                    : "E" + std::to_string(shelf) + "." + std::to_string(disk.ElementIdx);
        places += ' ';
        return true;
    });
    return places;
}

TEST(Lab, GivesEveryDiskAPlaceOfItsOwn) {
    static const std::pair<const char*, const char*> ROWS[] = {
        {R"("disks": [{"count": 3}, {"port": 0}, {"port": 2}])", "0.1 0.3 0.4 0.0 0.2 "},
        {R"("type": "LD-based", "disks": [{"count": 8}])", "0.0 0.1 0.2 PM0.0 PM0.1 PM0.2 PM0.3 PM0.4 "},
        {R"("type": "LD-based", "portMultipliers": [{}], "disks": [{"count": 5}, {"on": "PM"}])",
         "0.0 0.1 0.2 PM0.1 PM0.2 PM0.0 "},
        {R"("enclosures": [{"id": 1, "slots": 2}], "disks": [{"count": 2}, {"enclosure": 1}, {"on": "HBA"}])",
         "E1.1 0.2 E1.0 0.1 "},
        {R"("PortCount": 2, "enclosures": [{"id": 1, "slots": 1}], "disks": [{"count": 3}])", "E1.0 X0.0 X0.1 "},
        {R"("expanders": [{}], "enclosures": [{"id": 1, "slots": 2}], "disks": [{"count": 4}])", "E1.0 E1.1 0.4 0.5 "},
    };
    for (const auto& [adapter, places] : ROWS)
        EXPECT_EQ(placesIn(adapter), places) << adapter;
    std::istringstream many(placesIn(R"("disks": [{"count": 3000}])"));
    EXPECT_EQ(std::set<std::string>(std::istream_iterator<std::string>(many), {}).size(), 3000);
}
