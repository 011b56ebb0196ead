#include "Functions/devMap/devMap.h"

#include <strings.h>

#include "Public/errorMsg.h"
#include "Public/listing.h"
#include "Public/utility.h"

namespace {
// The devices of one magic call: more virtual disks than an adapter has, and so many disks that a second call is rare.
struct DeviceList {
    KT_U16 count = 0;
    _Device_Magic devices[256] = {};
};
typedef KT_U8 (*MagicCall)(KT_U8 adapter, KT_U16 count, _Device_Magic* devices);
} // namespace

static KT_U8 printMagic(MagicCall call, DeviceList& list) {
    static constexpr int MAP_WIDTH = 20;
    KT_U8 status = call(gCurrentAdapter, list.count, list.devices);
    if (status != KT_OK) return status;
    for (KT_U16 i = 0; i < list.count; ++i) {
        printNum(MAP_WIDTH, "Device ID:", list.devices[i].ID);
        printField(MAP_WIDTH, "Magic Number:", list.devices[i].Magic);
    }
    return KT_OK;
}

// Collects an id; a full list is mapped first, so that any number of devices fits.
static KT_U8 addDevice(MagicCall call, DeviceList& list, KT_U16 id) {
    KT_U8 status = KT_OK;
    if (list.count == sizeof list.devices / sizeof list.devices[0]) {
        status = printMagic(call, list);
        list = {};
    }
    list.devices[list.count++].ID = id;
    return status;
}

// Each gathers the ids of a range, the way walkList does, into visit(id) -> status.
template <class Visit>
static KT_U8 getAllVdId(ListRange range, Visit visit) {
    KT_U8 status = KT_OK;
    ListEnd end =
        walkList<_LD_Info, Cut::Shows>(KT_LD_GetInfo, range, recordsPerPage(sizeof(_LD_Info)), [&](const _LD_Info& ld) {
            status = visit(ld.ID);
            return status == KT_OK;
        });
    return end.stopped ? status : end.status;
}

template <class Visit>
static KT_U8 getAllPdId(ListRange range, Visit visit) {
    KT_U8 status = KT_OK;
    ListEnd end = walkList<_HD_Info, Cut::Shows>(KT_PD_GetHDInfo, range, recordsPerPage(sizeof(_HD_Info)),
                                                 [&](const _HD_Info& disk) {
                                                     status = visit(disk.Link.Self.DevID);
                                                     return status == KT_OK;
                                                 });
    return end.stopped ? status : end.status;
}

static KT_U8 isPdFree(KT_U16 id, bool& free) {
    _HD_RAID_Status_Request request;
    KT_U8 status = getItem(KT_PD_GetHDRaidStatus, id, request);
    free = status == KT_OK && (request.hdRaidStatus[0].Status & KT_PD_NOT_FREE) == 0;
    return status;
}

static KT_U8 map_vd(ListRange range) {
    DeviceList list;
    KT_U8 status = getAllVdId(range, [&](KT_U16 id) { return addDevice(KT_Tandem_GetVDMagic, list, id); });
    if (status != KT_OK) return status;
    if (list.count == 0) {
        out("No virtual disk is found.\n");
        return KT_OK;
    }
    return printMagic(KT_Tandem_GetVDMagic, list);
}

static KT_U8 map_pd(ListRange range) {
    DeviceList list;
    KT_U8 status = getAllPdId(range, [&](KT_U16 id) -> KT_U8 {
        // A disk that somebody names is mapped whatever it is used for.
        bool wanted = !range.all;
        KT_U8 known = wanted ? KT_U8{KT_OK} : isPdFree(id, wanted);
        if (known != KT_OK || !wanted) return known;
        return addDevice(KT_Tandem_GetHDMagic, list, id);
    });
    if (status != KT_OK) return status;
    if (list.count == 0) {
        out(range.all ? "No free physical disk is found.\n" : "No physical disk is found.\n");
        return KT_OK;
    }
    return printMagic(KT_Tandem_GetHDMagic, list);
}

namespace {
struct DevMapOptions {
    bool virtualDisks = false;
    ListRange range = EVERYTHING;
};
} // namespace

static Take takeOption(int option, const char* value, DevMapOptions& o) {
    if (option == 'o') {
        // Two letters decide: "pds" and "vdisk" are as good as "pd" and "vd".
        o.virtualDisks = strncasecmp(value, "vd", 2) == 0;
        if (o.virtualDisks || strncasecmp(value, "pd", 2) == 0) return Take::Yes;
        out("-o: Invalid object '%s'.\n", value);
        return Take::Failed;
    }
    if (option != 'i') return Take::Help;
    o.range.all = false;
    if (!parseDecimalOrHex(emptyIsZero(value), o.range.id)) {
        out("-i: invalid object id '%s'.\n", value);
        return Take::Failed;
    }
    return Take::Yes;
}

int doDevMap(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    DevMapOptions o;
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    if (!scanOptions({argc, argv, row}, devmapOptions, given, result, take)) return result;
    if (!givenOnce(devmapOptions, given) || !givenRequired(devmapOptions, given, argv[0])) return 1;
    KT_U8 status = o.virtualDisks ? map_vd(o.range) : map_pd(o.range);
    if (status != KT_OK) out("Fail! (error %d: %s).\n", status, ErrorMessage(status));
    return status;
}
