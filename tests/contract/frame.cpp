#include "frame.h"
#include "state/storeFile.h"

#include "lab/lab.h"
#include "state.h"
#include "state/simClock.h"

#include <cstdlib>
#include <filesystem>
#include <map>

static std::map<KT_U8, KT_U32> gSeen; // the last sequence number that newEvents() gave, by adapter

static std::string stateFile(const std::string& folder) {
    return folder + "/state.db";
}

void ContractTest::SetUp() {
    std::string name = (std::filesystem::temp_directory_path() / "contract.XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    folder = name;
    setenv("KTRAID_SIM", stateFile(folder).c_str(), 1);
    gSeen.clear();
}

void ContractTest::TearDown() {
    KT_API_Finalize();
    std::filesystem::remove_all(folder);
}

void ContractTest::start(const char* lab) const {
    KT_API_Finalize();
    const sim::BuiltInLab source = {"lab", lab};
    try {
        sim::replaceStore(stateFile(folder), sim::fillFromLab, &source);
    } catch (const sim::LabError& error) {
        FAIL() << error.message;
    }
    advance(0);
    ASSERT_EQ(KT_API_Initialize(), KT_OK);
    gSeen.clear();
    for (KT_U8 adapter = 0; adapter < KT_Adapter_GetCount(); ++adapter)
        newEvents(adapter);
}

void changeState(const std::function<void(sim::Store&)>& change) {
    sim::Store* store = sim::openExistingStore(getenv("KTRAID_SIM"));
    sim::beginTransaction(*store, sim::Access::Write);
    change(*store);
    sim::commitTransaction(*store);
    sim::closeStore(store);
}

void ContractTest::advance(uint64_t seconds) {
    changeState(
        [&](sim::Store& store) { sim::setClock(store, sim::simulatedNow(store) + seconds * 1000, 1000, true); });
}

void ContractTest::runClock(uint32_t speed) {
    changeState([&](sim::Store& store) { sim::setClock(store, sim::simulatedNow(store), speed, false); });
}

void ContractTest::reopen() {
    KT_API_Finalize();
    ASSERT_EQ(KT_API_Initialize(), KT_OK);
}

std::string ContractTest::show() const {
    sim::Store* store = sim::openExistingStore(stateFile(folder));
    std::string text = sim::stateToLab(*store);
    sim::closeStore(store);
    return text;
}

Events newEvents(KT_U8 adapter) {
    std::vector<_Event> events(255);
    KT_U8 count = 0;
    EXPECT_EQ(KT_EVT_GetEvent(adapter, 255, &count, events.data()), KT_OK);
    Events texts;
    for (size_t i = 0; i < count; ++i) {
        if (events[i].SequenceNo <= gSeen[adapter]) continue;
        gSeen[adapter] = events[i].SequenceNo;
        texts.push_back(std::to_string(events[i].Class) + "/" + std::to_string(events[i].Code) + " of " +
                        std::to_string(events[i].DeviceID));
    }
    return texts;
}

void rebuildByHand(KT_U8 adapter) {
    _Adapter_Config_V2 config = adapterConfig(adapter);
    config.AutoRebuildOn = 0;
    EXPECT_EQ(KT_Adapter_SetConfig(adapter, &config), KT_OK);
}

_Create_LD_Param ldParam(KT_U8 level, const Ids& disks, KT_U64 kib) {
    _Create_LD_Param param = {};
    param.RaidMode = level;
    param.HDCount = static_cast<KT_U8>(disks.size());
    std::copy(disks.begin(), disks.end(), param.HDIDs);
    param.NumParityDisk = level == KT_RAID6 ? 2 : 0;
    param.StripeBlockSize = 64;
    param.SectorCoefficient = 1;
    param.Size = kib;
    return param;
}

_CreateOrModify_DG_Param dgParam(KT_U8 level, const Ids& disks, KT_U64 megabytes) {
    _CreateOrModify_DG_Param param = {};
    param.DGID = KT_NO_ID;
    param.RaidMode = level;
    param.NumParityDisk = level == KT_RAID6 ? 2 : 0;
    param.StripeBlockSize = 64;
    param.Size = megabytes;
    param.BlockSize = 512;
    param.PDCount = static_cast<KT_U8>(disks.size());
    std::copy(disks.begin(), disks.end(), param.PDIDs);
    return param;
}

KT_U8 migrateLd(KT_U8 adapter, KT_U16 id, KT_U8 level, const Ids& disks) {
    _Create_LD_Param param = ldParam(level, disks);
    param.LDID = id;
    return KT_LD_StartMigration(adapter, &param);
}

KT_U8 migrateDg(KT_U8 adapter, KT_U16 id, KT_U8 level, const Ids& disks) {
    _CreateOrModify_DG_Param param = dgParam(level, disks);
    param.DGID = id;
    return KT_DG_StartMigration(adapter, &param, 0);
}

_LD_Info vdInfo(KT_U8 adapter, KT_U16 id) {
    _LD_Info info = {};
    EXPECT_EQ(readItem(KT_LD_GetInfo, adapter, id, &_LD_Info_Request::ldInfo, info), KT_OK);
    return info;
}

_DG_Info dgInfo(KT_U8 adapter, KT_U16 id) {
    _DG_Info info = {};
    EXPECT_EQ(readItem(KT_DG_GetInfo, adapter, id, &_DG_Info_Request::dgInfo, info), KT_OK);
    return info;
}

_HD_CONFIG pdConfig(KT_U8 adapter, KT_U16 pd) {
    _HD_CONFIG config = {};
    EXPECT_EQ(readItem(KT_PD_GetConfig, adapter, pd, &_HD_Config_Request::hdConfig, config), KT_OK);
    return config;
}

KT_U8 roleOf(KT_U8 adapter, KT_U16 pd) {
    _HD_RAID_STATUS status = {};
    EXPECT_EQ(readItem(KT_PD_GetHDRaidStatus, adapter, pd, &_HD_RAID_Status_Request::hdRaidStatus, status), KT_OK);
    return status.Status;
}

_SMART_Attribute attribute(KT_U8 adapter, KT_U16 pd, KT_U8 id) {
    _SMART_Info info = {};
    EXPECT_EQ(KT_PD_GET_SMART_INFO(adapter, pd, &info), KT_OK);
    for (const _SMART_Attribute& found : info.Attributes)
        if (found.Id == id) return found;
    ADD_FAILURE() << "no attribute " << int{id};
    return {};
}

_Adapter_Info adapterInfo(KT_U8 adapter) {
    _Adapter_Info info = {};
    KT_U8 version = 0;
    EXPECT_EQ(KT_Adapter_GetInfo(adapter, &version, &info), KT_OK);
    EXPECT_EQ(version, 1);
    return info;
}

_Adapter_Config_V2 adapterConfig(KT_U8 adapter) {
    _Adapter_Config_V2 config = {};
    EXPECT_EQ(KT_Adapter_GetConfig(adapter, &config), KT_OK);
    return config;
}
