#include "Functions/delete/delete.h"

#include <strings.h>

#include "Public/confirm.h"
#include "Public/errorMsg.h"
#include "Public/hold.h"
#include "Public/knownAdapter.h"
#include "Public/listing.h"
#include "Public/utility.h"

namespace {
enum class DeleteObject { VirtualDisk, Array, Spare };

struct DeleteOptions {
    OptionCounts given;
    DeleteObject object = DeleteObject::VirtualDisk;
    int typedId = 0;
    KT_U16 id = 0;
    bool force = false;
    bool waive = false;
};
} // namespace

static Take takeObject(const char* value, DeleteObject& object) {
    if (strcasecmp(value, "vd") == 0 || strcasecmp(value, "ld") == 0) {
        object = DeleteObject::VirtualDisk;
    } else if (strcasecmp(value, "spare") == 0) {
        object = DeleteObject::Spare;
    } else if (strcasecmp(value, "array") == 0) {
        object = DeleteObject::Array;
        if (!arrayBasedRaid) {
            out("-o : array is not supported on this adapter\n");
            return Take::Failed;
        }
    } else {
        out("-o : invalid object '%s'\n", value);
        return Take::Failed;
    }
    return Take::Yes;
}

static Take takeId(const char* value, int& id) {
    if (parseCapped(value, id)) return Take::Yes;
    out("-i : invalid id '%s'\n", value);
    return Take::Failed;
}

static Take takeOption(int option, const char* value, DeleteOptions& o) {
    switch (option) {
    case 'o':
        return takeObject(value, o.object);
    case 'i':
        return takeId(value, o.typedId);
    case 'f':
        o.force = true;
        return Take::Yes;
    case OPT_WAIVE:
        o.waive = true;
        return Take::Yes;
    default:
        return Take::Help;
    }
}

static bool readOptions(int argc, char** argv, const _cmd_struct* row, DeleteOptions& o, int& result) {
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    return scanOptions({argc, argv, row}, deleteOptions, o.given, result, take);
}

static bool checkOptions(const char* command, DeleteOptions& o) {
    if (!givenOnce(deleteOptions, o.given)) return false;
    if (o.typedId > HIGHEST_ID) {
        out("-i : invalid id %d\n", o.typedId);
        return false;
    }
    o.id = static_cast<KT_U16>(o.typedId);
    return givenRequired(deleteOptions, o.given, command);
}

// The questions that every deletion of a virtual disk asks. False when declined: result is what the command returns.
static bool confirmVirtualDisk(const _LD_STATUS& status, int& result) {
    result = 0;
    out("Are you sure you want to delete this virtual disk? (y or n)\n");
    if (!confirmYesOrNo()) return false;
    if (currentAdapter().MaxDiskGroup == 0 || (status.BgaExt & KT_BGAEXT_MEDIA_PATROL) == 0) return true;
    result = KT_ERR_ONE_MEDIA_PATROL;
    out("Delete VD will stop Media patrol on PD. Do you want to continue?(y or n)\n");
    return confirmYesOrNo();
}

// Names what the virtual disk is busy with and asks.
static bool confirmActivity(KT_U16 id, KT_U8 activity) {
    switch (activity) {
    case KT_BGA_REBUILD:
        out("\nVD %d is rebuilding,", id);
        break;
    case KT_BGA_CHECK_FIX:
    case KT_BGA_CHECK:
        out("\nVD %d is having consistency check,", id);
        break;
    case KT_BGA_INIT_QUICK:
    case KT_BGA_INIT_FOREGROUND:
    case KT_BGA_INIT_BACKGROUND:
        out("\nVD %d is initializing,", id);
        break;
    case KT_BGA_MIGRATION:
        out("\nVD %d is migrating,", id);
        break;
    case KT_BGA_COPY_BACK:
        out("\nVD %d is doing copy back,", id);
        break;
    default:
        out("\nVD %d is having BGA,", id);
        break;
    }
    out(" do you still want to delete it? (y or n)\n");
    return confirmYesOrNo();
}

static int removeVirtualDisk(KT_U16 id, KT_U8 stopActivity) {
    KT_U8 status = KT_LD_Delete(gCurrentAdapter, id, stopActivity);
    if (status == KT_OK) {
        out("Delete VD %d successfully.\n", id);
    } else {
        out("Failed to delete VD %d (error %d: %s).\n", id, status, ErrorMessage(status));
    }
    return status;
}

static int stopAndRemove(KT_U16 id) {
    const Hold hold("the virtual disk would stay, its background activity stopped");
    // An activity that cannot be stopped shows in the deletion.
    KT_LD_BGAControl(gCurrentAdapter, id, KT_CONTROL_STOP_FOR_DELETE);
    return removeVirtualDisk(id, 1);
}

static int deleteVirtualDisk(const DeleteOptions& o) {
    constexpr KT_U8 ANY_ACTIVITY = 0x7F;
    _LD_Status_Request request;
    KT_U8 status = getItem(KT_LD_GetStatus, o.id, request);
    if (status != KT_OK) {
        out("\nUnable to get status of VD %d (error %d: %s).\n", o.id, status, ErrorMessage(status));
        return 1;
    }
    const _LD_STATUS& vd = request.ldStatus[0];
    int result = 0;
    if (!o.waive && !confirmVirtualDisk(vd, result)) return result;
    if (vd.Status == KT_VD_OFFLINE || vd.Status == KT_VD_FOREIGN) return removeVirtualDisk(o.id, 0);
    if ((vd.BgaState & ANY_ACTIVITY) != 0) {
        if (!o.waive && !o.force && !confirmActivity(o.id, vd.Bga)) return 0;
        return stopAndRemove(o.id);
    }
    return removeVirtualDisk(o.id, 1);
}

static int deleteArray(const DeleteOptions& o) {
    _DG_Info_Request request;
    KT_U8 status = getItem(KT_DG_GetInfo, o.id, request);
    if (status != KT_OK) {
        out("\nUnable to get info of array %d (error %d: %s).\n", o.id, status, ErrorMessage(status));
        return 1;
    }
    if (!o.waive) {
        out("Are you sure you want to delete this array? (y or n)\n");
        if (!confirmYesOrNo()) return 0;
    }
    status = KT_DG_Delete(gCurrentAdapter, o.id);
    if (status == KT_OK) {
        out("Delete array %d successfully.\n", o.id);
    } else {
        out("Failed to delete array %d (error %d: %s).\n", o.id, status, ErrorMessage(status));
    }
    return status;
}

// Goes on (true) when the disk is a spare that can be released; otherwise result is what the command returns.
static bool checkSpare(KT_U16 id, KT_U8& bits, int& result) {
    _HD_RAID_Status_Request request;
    KT_U8 status = askItem(KT_PD_GetHDRaidStatus, id, request);
    if (status != KT_OK) {
        out("\nUnable to get info of spare %d (error %d: %s)\n", id, status, ErrorMessage(status));
        result = status;
        return false;
    }
    bits = request.hdRaidStatus[0].Status;
    if (request.header.numReturned == 0 || (bits & KT_PD_SPARE) == 0) {
        out("PD %d is not spare disk.\n", id);
        result = 0;
        return false;
    }
    if ((bits & KT_PD_SPARE_IN_USE) != 0) {
        out("Unable to delete spare disk %d  (error %d: %s)\n", id, KT_ERR_SPARE_IN_USE,
            ErrorMessage(KT_ERR_SPARE_IN_USE));
        // The array is busy with the spare: that is what the result says.
        result = KT_ERR_ARRAY_BUSY;
        return false;
    }
    return true;
}

static int deleteSpare(const DeleteOptions& o) {
    KT_U8 bits = 0;
    int result = 0;
    if (!checkSpare(o.id, bits, result)) return result;
    if ((bits & KT_PD_MEDIA_PATROL) != 0 && !o.waive) {
        out("Uset spare disk will stop Media patrol on PD %d. Do you want to continue?(y or n)\n", o.id);
        if (!confirmYesOrNo()) return KT_ERR_ONE_MEDIA_PATROL;
    }
    KT_U8 status = KT_PD_Spare2FreeHD(gCurrentAdapter, o.id);
    if (status == KT_OK) {
        out("Delete the spare disk %d successfully.\n", o.id);
    } else {
        out("Failed to delete spare disk %d (error %d: %s).\n", o.id, status, ErrorMessage(status));
    }
    return status;
}

int doDelete(int argc, char** argv, _cmd_struct* row) {
    DeleteOptions o;
    int result = 0;
    if (!readOptions(argc, argv, row, o, result)) return result;
    if (!checkOptions(argv[0], o)) return 1;
    if (!isKnownAdapter(gCurrentAdapter, result)) return result;
    switch (o.object) {
    case DeleteObject::Array:
        return deleteArray(o);
    case DeleteObject::Spare:
        return deleteSpare(o);
    default:
        return deleteVirtualDisk(o);
    }
}
