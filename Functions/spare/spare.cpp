#include "Functions/spare/spare.h"

#include <strings.h>

#include "Public/confirm.h"
#include "Public/disks.h"
#include "Public/errorMsg.h"
#include "Public/knownAdapter.h"
#include "Public/utility.h"

namespace {
struct SpareOptions {
    OptionCounts given;
    bool dedicated = false;
    KT_U16 pd = 0;
    KT_U16 array = 0;
    bool waive = false;
};
} // namespace

static Take takeObject(const char* value, bool& dedicated) {
    if (strcasecmp(value, "hba") == 0) {
        dedicated = false;
        return Take::Yes;
    }
    if (strcasecmp(value, "array") != 0) {
        out("-o : invalid object '%s', should be HBA or Array\n", value);
        return Take::Failed;
    }
    if (!arrayBasedRaid) {
        out("-o : array is not supported on this adapter\n");
        return Take::Failed;
    }
    dedicated = true;
    return Take::Yes;
}

static Take takeDisk(const char* value, KT_U16& pd) {
    if (parseDecimal(value, pd)) return Take::Yes;
    out("-d : invalid disk id '%s'\n", value);
    return Take::Failed;
}

static Take takeArray(const char* value, KT_U16& array) {
    if (parseDecimal(value, array)) return Take::Yes;
    out("-a : invalid VD id or array id'%s'\n", value);
    return Take::Failed;
}

static Take takeOption(int option, const char* value, SpareOptions& o) {
    switch (option) {
    case 'o':
        return takeObject(value, o.dedicated);
    case 'd':
        return takeDisk(value, o.pd);
    case 'a':
        return takeArray(value, o.array);
    case OPT_WAIVE:
        o.waive = true;
        return Take::Yes;
    default:
        return Take::Help;
    }
}

static bool readOptions(int argc, char** argv, const _cmd_struct* row, SpareOptions& o, int& result) {
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    return scanOptions({argc, argv, row}, spareOptions, o.given, result, take);
}

static bool checkOptions(const char* command, const SpareOptions& o) {
    if (!givenOnce(spareOptions, o.given)) return false;
    if (o.dedicated && o.given['a'] == 0) {
        out("Array id is not specified\n");
        return false;
    }
    if (!o.dedicated && o.given['a'] != 0) {
        out("-a option is not allowed when assigning global spare\n");
        return false;
    }
    return givenRequired(spareOptions, o.given, command);
}

// False when the command is over: declined (result 0), or the disk could not be looked at (result 1).
static bool acceptFileSystem(const SpareOptions& o, int& result) {
    PdList disk = {{o.pd}, 1};
    FileSystems found;
    KT_U8 status = findFileSystems(disk, found);
    if (status != KT_OK) {
        out("\nFailed to assign spare disk (error %d: %s).\n", status, ErrorMessage(status));
        result = 1;
        return false;
    }
    if (found.count == 0 || o.waive) return true;
    out("PD %d has file system on it. Data may get lost if it is assigned as spare disk.\n", o.pd);
    out("Are you sure you want to assign it as spare disk? (y or n)\n");
    result = 0;
    return confirmUnlessNo();
}

static int assignGlobal(KT_U16 pd) {
    KT_U8 status = KT_PD_FreeHD2GlobalSpare(gCurrentAdapter, pd);
    if (status == KT_OK) {
        out("\nSucceeded to assign the disk as a global spare disk.\n");
    } else {
        out("\nFailed to assign disk %d as global spare disk (error %d: %s).\n", pd, status, ErrorMessage(status));
    }
    return status;
}

static int assignDedicated(KT_U16 pd, KT_U16 array) {
    KT_U8 status = KT_PD_FreeHD2DGSpare(gCurrentAdapter, pd, array);
    if (status == KT_OK) {
        out("\nSucceeded to assign the disk as a dedicated spare disk.\n");
    } else {
        out("\nFailed to assign disk %d as a spare disk to array %d (error %d: %s).\n", pd, array, status,
            ErrorMessage(status));
    }
    return status;
}

int doAssign(int argc, char** argv, _cmd_struct* row) {
    SpareOptions o;
    int result = 0;
    if (!readOptions(argc, argv, row, o, result)) return result;
    if (!checkOptions(argv[0], o)) return 1;
    if (!isKnownAdapter(gCurrentAdapter, result) || !acceptFileSystem(o, result)) return result;
    return o.dedicated ? assignDedicated(o.pd, o.array) : assignGlobal(o.pd);
}
