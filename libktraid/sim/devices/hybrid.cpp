#include "devices/hybrid.h"

#include "state/adapterInfo.h"

#include <cstdio>

namespace sim {

static const KT_U16 TABLE_ENTRIES = 512;
static const KT_U16 HYBRID_MODES = KT_MODE_TANDEM_CAPACITY | KT_MODE_TANDEM_SAFE | KT_MODE_HYBRID;

static KT_U8 checkSupport(const Context& context) {
    return adapterInfo(context).LogicalDriverMode & HYBRID_MODES ? KT_OK : KT_ERR_NOT_ON_THIS_ADAPTER;
}

static bool isHybrid(KT_U8 level) {
    return level == KT_TANDEM_CAPACITY || level == KT_TANDEM_SAFE || level == KT_HYBRID;
}

// KT_OK for a hybrid virtual disk that works.
static KT_U8 findHybrid(const Context& context, KT_U16 id, _LD_Info& vd) {
    const KT_U8 status = checkSupport(context);
    if (status != KT_OK) return status;
    const auto found = find<_LD_Info>(context, id);
    if (!found) return KT_ERR_INVALID_VD;
    if (!isHybrid(found->RaidMode)) return KT_ERR_INVALID_RAID_MODE;
    const bool works = found->Status == KT_VD_ONLINE || found->Status == KT_VD_DEGRADED ||
                       found->Status == KT_VD_PARTIALLY_OPTIMAL || found->Status == KT_VD_USING_TABLE;
    if (!works) return KT_ERR_VD_NOT_READY;
    vd = *found;
    return KT_OK;
}

static void dropTable(const Context& context, KT_U16 vd) {
    const auto table = find<HybridTable>(context, vd);
    for (KT_U64 i = 0; table && i < table->used; ++i)
        erase<HybridEntry>(context, (KT_U64{vd} << 16) + i);
    erase<HybridTable>(context, vd);
}

// The virtual disk's table; one that a deleted virtual disk of the same id left behind does not count.
static HybridTable tableOf(const Context& context, const _LD_Info& vd) {
    const auto table = find<HybridTable>(context, vd.ID);
    if (table && memcmp(table->guid, vd.LD_GUID, sizeof table->guid) == 0) return *table;
    HybridTable none = {};
    memcpy(none.guid, vd.LD_GUID, sizeof none.guid);
    return none;
}

KT_U8 addHybridEntry(const Context& context, KT_U16 id, const _Tandemix_Entry_Request& request) {
    if (request.header.requestType != KT_REQUEST_ITEM) return KT_ERR_REQUEST_TYPE;
    if (request.header.numRequested != 1) return KT_ERR_NUM_REQUESTED;
    _LD_Info vd = {};
    const KT_U8 status = findHybrid(context, id, vd);
    if (status != KT_OK) return status;
    const KT_U64 size = vd.Size * 1024;
    if (request.start > size || request.length > size - request.start) return KT_ERR_OUT_OF_RANGE;
    HybridTable table = tableOf(context, vd);
    if (table.used == TABLE_ENTRIES) return KT_ERR_NO_RESOURCE;
    if (table.used == 0) dropTable(context, id);
    save(context, (KT_U64{id} << 16) + table.used, HybridEntry{request.start, request.length});
    ++table.used;
    save(context, id, table);
    return KT_OK;
}

KT_U8 getHybridTable(const Context& context, KT_U16 id, _Tandemix_Table_Info& info) {
    _LD_Info vd = {};
    const KT_U8 status = findHybrid(context, id, vd);
    if (status != KT_OK) return status;
    info.total = TABLE_ENTRIES;
    info.remaining = static_cast<KT_U16>(TABLE_ENTRIES - tableOf(context, vd).used);
    return KT_OK;
}

KT_U8 removeHybridTable(const Context& context, KT_U16 id) {
    _LD_Info vd = {};
    const KT_U8 status = findHybrid(context, id, vd);
    if (status == KT_OK) dropTable(context, id);
    return status;
}

// 20 hexadecimal digits that no other device has.
static void putMagic(const std::string& identity, _Device_Magic& magic) {
    const Digest digest = sha256(identity);
    char text[sizeof magic.Magic] = {};
    for (size_t i = 0; i < 10; ++i)
        snprintf(text + i * 2, sizeof text - i * 2, "%02X", digest.bytes[i]);
    memcpy(magic.Magic, text, sizeof magic.Magic);
}

// identify(id) -> what tells the device from all others, empty when there is none.
template <class Identify>
static KT_U8 fillMagics(const Context& context, KT_U16 count, _Device_Magic* magics, KT_U8 unknown, Identify identify) {
    const KT_U8 status = checkSupport(context);
    if (status != KT_OK) return status;
    if (count == 0) return KT_ERR_NUM_REQUESTED;
    for (KT_U16 i = 0; i < count; ++i) {
        const std::string identity = identify(magics[i].ID);
        if (identity.empty()) return unknown;
        putMagic(identity, magics[i]);
    }
    return KT_OK;
}

KT_U8 getDiskMagic(const Context& context, KT_U16 count, _Device_Magic* magics) {
    return fillMagics(context, count, magics, KT_ERR_INVALID_PD, [&](KT_U16 id) -> std::string {
        const auto disk = find<_HD_Info>(context, id);
        if (!disk) return {};
        return "disk" + std::string(reinterpret_cast<const char*>(disk->SerialNo), sizeof disk->SerialNo) +
               std::string(reinterpret_cast<const char*>(disk->WWN), sizeof disk->WWN);
    });
}

KT_U8 getVdMagic(const Context& context, KT_U16 count, _Device_Magic* magics) {
    return fillMagics(context, count, magics, KT_ERR_INVALID_VD, [&](KT_U16 id) -> std::string {
        const auto vd = find<_LD_Info>(context, id);
        if (!vd) return {};
        return "virtual" + std::string(reinterpret_cast<const char*>(vd->LD_GUID), sizeof vd->LD_GUID);
    });
}

KT_U8 addVdLink(const Context& context, KT_U16 vd, KT_U16 pd) {
    auto state = find<VdState>(context, vd);
    if (!state) return KT_ERR_INVALID_VD;
    const auto disk = find<PdState>(context, pd);
    if (!disk) return KT_ERR_INVALID_PD;
    if (disk->raid & KT_PD_MEMBER) return KT_ERR_PD_ASSIGNED;
    if (disk->raid & KT_PD_SPARE) return KT_ERR_IS_SPARE;
    if (disk->raid & KT_PD_NOT_FREE) return KT_ERR_PD_MISSING;
    bool linked = false;
    forEach<VdState>(context, 0, [&](KT_U64 id, const VdState& other) {
        linked = id != vd && other.linkedDisk == pd;
        return !linked;
    });
    if (linked) return KT_ERR_PD_ASSIGNED;
    state->linkedDisk = pd;
    save(context, vd, *state);
    return KT_OK;
}

KT_U8 getVdLink(const Context& context, KT_U16 vd, KT_U16& pd) {
    const auto state = find<VdState>(context, vd);
    if (!state) return KT_ERR_INVALID_VD;
    pd = find<_HD_Info>(context, state->linkedDisk) ? state->linkedDisk : KT_U16{KT_NO_ID};
    return KT_OK;
}

} // namespace sim
