// Disks: five lists, and of each disk what no list tells.
#include <algorithm>

#include "Report/library.h"

static constexpr KT_U16 IDS_A_CALL = 128; // as many as the records of disks hold elsewhere

static std::vector<KT_U16> idsOf(const std::map<KT_U16, DiskReading>& disks) {
    std::vector<KT_U16> ids;
    ids.reserve(disks.size());
    for (const auto& disk : disks) {
        ids.push_back(disk.first);
    }
    return ids;
}

// Calls use(first, count) for stretches of the ids that fit a call.
template <class Use>
static void forEachStretch(const std::vector<KT_U16>& ids, Use use) {
    for (size_t at = 0; at < ids.size(); at += IDS_A_CALL) {
        use(&ids[at], std::min<size_t>(IDS_A_CALL, ids.size() - at));
    }
}

static void readLists(Reader& reader) {
    auto& disks = *reader.adapter.disks;
    readMore<_HD_RAID_STATUS>(
        reader, LIBRARY_CALL(KT_PD_GetHDRaidStatus), disks, [](const _HD_RAID_STATUS& status) { return status.HDID; },
        [](DiskReading& disk, const _HD_RAID_STATUS& status) { disk.raid = status; });
    readMore<_HD_CONFIG>(
        reader, LIBRARY_CALL(KT_PD_GetConfig), disks, [](const _HD_CONFIG& config) { return config.HDID; },
        [](DiskReading& disk, const _HD_CONFIG& config) { disk.config = config; });
    readMore<_HD_BGA_STATUS>(
        reader, LIBRARY_CALL(KT_PD_GetBGAStatus), disks, [](const _HD_BGA_STATUS& status) { return status.HDID; },
        [](DiskReading& disk, const _HD_BGA_STATUS& status) { disk.activity = status; });
    readMore<_HD_SMART_STATUS>(
        reader, LIBRARY_CALL(KT_PD_GetSmartStatus), disks, [](const _HD_SMART_STATUS& status) { return status.HDID; },
        [](DiskReading& disk, const _HD_SMART_STATUS& status) { disk.smart = status; });
}

static void readBootRecords(Reader& reader, const std::vector<KT_U16>& ids) {
    forEachStretch(ids, [&](const KT_U16* first, size_t count) {
        _HD_MBR_Info info = {};
        info.HDCount = static_cast<KT_U8>(count);
        std::copy(first, first + count, info.HDIDs);
        if (!libraryHas(reader, "KT_PD_GetMBRInfo")) return;
        KT_U8 status = KT_PD_GetMBRInfo(reader.adapter.index, &info);
        for (size_t i = 0; i < count; ++i) {
            if (status != KT_OK) refuse(reader, "KT_PD_GetMBRInfo", status, first[i]);
            if (status == KT_OK) reader.adapter.disks->at(first[i]).mbr = info.hasMBR[i] != 0;
        }
    });
}

static void readMagic(Reader& reader, const std::vector<KT_U16>& ids) {
    if (!libraryHas(reader, "KT_Tandem_GetHDMagic")) return;
    bool supported = true;
    forEachStretch(ids, [&](const KT_U16* first, size_t count) {
        if (!supported) return;
        _Device_Magic magics[IDS_A_CALL] = {};
        for (size_t i = 0; i < count; ++i) {
            magics[i].ID = first[i];
        }
        KT_U8 status = KT_Tandem_GetHDMagic(reader.adapter.index, static_cast<KT_U16>(count), magics);
        supported = !isUnsupported(status);
        if (!supported) refuse(reader, "KT_Tandem_GetHDMagic", status);
        for (size_t i = 0; i < count; ++i) {
            if (status != KT_OK && supported) refuse(reader, "KT_Tandem_GetHDMagic", status, first[i]);
            if (status == KT_OK) reader.adapter.disks->at(first[i]).magic = magics[i];
        }
    });
}

// The drive's own table of health. SAS drives have none, and where SMART is off there is nothing to be asked.
static void readAttributes(Reader& reader, KT_U16 id, DiskReading& disk) {
    if (reader.adapter.info->AdvancedFeatures & KT_ADV_NO_SMART) return;
    if ((disk.info.HDType & KT_HD_SAS) != 0 || (disk.info.FeatureSupport & KT_HD_SMART) == 0) return;
    if (disk.config && disk.config->SMARTOn == 0) return;
    _SMART_Info info = {};
    if (!ask(reader, LIBRARY_CALL(KT_PD_GET_SMART_INFO), id, id, &info)) return;
    const size_t count = std::min<size_t>(info.AttributeCount, std::size(info.Attributes));
    disk.attributes.emplace(info.Attributes, info.Attributes + count);
}

// Asked for one disk at a time: what the call answers for several is less than what each of them has.
static void readSystem(Reader& reader, KT_U16 id, DiskReading& disk) {
    if (!libraryHas(reader, "KT_DiskHasOS")) return;
    const KT_U8 status = KT_DiskHasOS(reader.adapter.index, KT_DEVICE_PD, 1, &id);
    if (status == KT_OK || status == KT_ERR_PD_HAS_OS) {
        disk.os = status != KT_OK;
    } else {
        refuse(reader, "KT_DiskHasOS", status, id);
    }
}

static void readEach(Reader& reader) {
    for (auto& [id, disk] : *reader.adapter.disks) {
        _HD_FreeSpaceInfo space = {};
        if (ask(reader, LIBRARY_CALL(KT_PD_GetFreeSpaceInfo), id, id, &space)) disk.space = space;
        readSystem(reader, id, disk);
        if (!reader.machine.options.onlyLayout) readAttributes(reader, id, disk);
    }
}

void readDisks(Reader& reader) {
    auto& disks = reader.adapter.disks;
    readItems<_HD_Info>(
        reader, LIBRARY_CALL(KT_PD_GetHDInfo), disks, [](const _HD_Info& info) { return info.Link.Self.DevID; },
        [](DiskReading& disk, const _HD_Info& info) { disk.info = info; });
    if (!disks) return;
    readLists(reader);
    const std::vector<KT_U16> ids = idsOf(*disks);
    readBootRecords(reader, ids);
    readMagic(reader, ids);
    readEach(reader);
}
