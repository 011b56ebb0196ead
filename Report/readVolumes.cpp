// Virtual disks, arrays and blocks.
#include <algorithm>

#include "Report/library.h"

static bool isHybrid(KT_U8 level) {
    return level >= KT_TANDEM_CAPACITY && level <= KT_HYBRID;
}

static void readVdLists(Reader& reader) {
    auto& vds = *reader.adapter.virtualDisks;
    readMore<_LD_STATUS>(
        reader, LIBRARY_CALL(KT_LD_GetStatus), vds, [](const _LD_STATUS& status) { return status.LDID; },
        [](VdReading& vd, const _LD_STATUS& status) { vd.status = status; });
    readMore<_LD_Config>(
        reader, LIBRARY_CALL(KT_LD_GetConfig), vds, [](const _LD_Config& config) { return config.LDID; },
        [](VdReading& vd, const _LD_Config& config) { vd.config = config; });
}

static void readVdMagic(Reader& reader) {
    std::vector<_Device_Magic> magics;
    for (const auto& vd : *reader.adapter.virtualDisks) {
        magics.push_back({vd.first, {}, {}});
    }
    if (magics.empty() || !libraryHas(reader, "KT_Tandem_GetVDMagic")) return;
    const KT_U8 status = KT_Tandem_GetVDMagic(reader.adapter.index, static_cast<KT_U16>(magics.size()), magics.data());
    if (isUnsupported(status)) {
        refuse(reader, "KT_Tandem_GetVDMagic", status);
        return;
    }
    size_t at = 0;
    for (auto& [id, vd] : *reader.adapter.virtualDisks) {
        if (status != KT_OK) refuse(reader, "KT_Tandem_GetVDMagic", status, id);
        if (status == KT_OK) vd.magic = magics[at++];
    }
}

static void readVdSystem(Reader& reader, KT_U16 id, VdReading& vd) {
    if (!libraryHas(reader, "KT_DiskHasOS")) return;
    const KT_U8 status = KT_DiskHasOS(reader.adapter.index, KT_DEVICE_VD, 1, &id);
    if (status == KT_OK || status == KT_ERR_VD_HAS_OS) {
        vd.os = status != KT_OK;
    } else {
        refuse(reader, "KT_DiskHasOS", status, id);
    }
}

static void readVd(Reader& reader, KT_U16 id, VdReading& vd) {
    readVdSystem(reader, id, vd);
    if (libraryHas(reader, "KT_VDHDD_GetLink")) {
        // A virtual disk that has no link may answer with any status.
        KT_U16 link = KT_NO_ID;
        vd.link = KT_VDHDD_GetLink(reader.adapter.index, id, &link) == KT_OK ? link : KT_U16{KT_NO_ID};
    }
    if (vd.status && vd.status->Bga == KT_BGA_MIGRATION) {
        _LD_Info target = {};
        if (ask(reader, LIBRARY_CALL(KT_LD_GetTargetLDInfo), id, id, &target)) vd.target = target;
    }
    if (isHybrid(vd.info.RaidMode)) {
        _Tandemix_Table_Info table = {};
        if (ask(reader, LIBRARY_CALL(KT_Tandemix_GetEntriesTableInfo), id, id, &table)) vd.table = table;
    }
}

static void readArrays(Reader& reader) {
    readItems<_DG_Info>(
        reader, LIBRARY_CALL(KT_DG_GetInfo), reader.adapter.arrays, [](const _DG_Info& info) { return info.DGID; },
        [](ArrayReading& array, const _DG_Info& info) { array.info = info; });
    if (!reader.adapter.arrays) return;
    readMore<_DG_CONFIG>(
        reader, LIBRARY_CALL(KT_DG_GetConfig), *reader.adapter.arrays,
        [](const _DG_CONFIG& config) { return config.DGID; },
        [](ArrayReading& array, const _DG_CONFIG& config) { array.config = config; });
}

void readVolumes(Reader& reader) {
    readItems<_LD_Info>(
        reader, LIBRARY_CALL(KT_LD_GetInfo), reader.adapter.virtualDisks, [](const _LD_Info& info) { return info.ID; },
        [](VdReading& vd, const _LD_Info& info) { vd.info = info; });
    if (reader.adapter.virtualDisks) {
        readVdLists(reader);
        readVdMagic(reader);
        for (auto& [id, vd] : *reader.adapter.virtualDisks) {
            readVd(reader, id, vd);
        }
    }
    if (reader.adapter.info->MaxDiskGroup != 0) readArrays(reader);
    readItems<_Block_Info>(
        reader, LIBRARY_CALL(KT_BLK_GetInfo), reader.adapter.blocks, [](const _Block_Info& block) { return block.ID; },
        [](_Block_Info& kept, const _Block_Info& block) { kept = block; });
}
