#include "Functions/create/createShared.h"

#include <strings.h>

#include "Public/confirm.h"
#include "Public/disks.h"
#include "Public/errorMsg.h"
#include "Public/raidRules.h"

namespace {
struct InitWord {
    const char* word;
    KT_U8 code;
};
const InitWord initWords[] = {
    {"none", KT_INIT_NONE},
    {"quick", KT_INIT_QUICK},
    {"foreground", KT_INIT_FOREGROUND},
    {"background", KT_INIT_BACKGROUND},
    {"intelligent", KT_INIT_INTELLIGENT},
};
} // namespace

Take takeInit(const char* value, bool foreground, KT_U8& init) {
    for (const InitWord& row : initWords) {
        if (strcasecmp(row.word, value) != 0 || (row.code == KT_INIT_FOREGROUND && !foreground)) continue;
        if (row.code == KT_INIT_BACKGROUND && (currentAdapter().Features & KT_FEATURE_BACKGROUND_INIT) == 0) {
            out("-i : initialization mode '%s' is not supported\n", value);
            return Take::Failed;
        }
        init = row.code;
        return Take::Yes;
    }
    out("-i : invalid initialization mode '%s'\n", value);
    return Take::Failed;
}

bool checkParityAllowed(KT_U8 level, bool given) {
    if (!given || takesParityDisks(level)) return true;
    out("RAID mode %s don't support the setting of parity disks.\n", RaidModeStr(level));
    return false;
}

void addDefaultCache(KT_U8 level, KT_U8& cache) {
    bool battery = hasBattery();
    bool keepsCache = level == KT_HYBRID && (currentAdapter().AdvancedFeatures & KT_ADV_HYBRID_SWITCH) != 0;
    if ((!choosesWriteCache() || !battery) && !keepsCache) cache |= KT_CACHE_OFF;
}

static void warnOfVirtualDisk(const FileSystems& found) {
    if (found.count == 1) {
        out("PD %shas file system on it. Data will be lost if it is used to create VD.\n", found.ids.text);
    } else {
        out("PD %shave file system on them. Data will be lost if they are used to create VD.\n", found.ids.text);
    }
}

static void warnOfArray(const FileSystems& found) {
    if (found.count == 1) {
        out("PD %shas file system on it. Data will be lost if it is used to create array.\n", found.ids.text);
    } else {
        out("PD %shave file system on them. Data will be lost if they are used to create array.\n", found.ids.text);
    }
}

bool acceptFileSystems(const PdList& disks, bool forArray, int& result) {
    FileSystems found;
    KT_U8 status = findFileSystems(disks, found);
    if (status != KT_OK) {
        out("\nFailed to create virtual disk (error %d: %s).\n", status, ErrorMessage(status));
        result = 1;
        return false;
    }
    if (found.count == 0) return true;
    if (forArray) {
        warnOfArray(found);
    } else {
        warnOfVirtualDisk(found);
    }
    out("Do you still want to create the VD? (y or n)\n");
    result = 0;
    return confirmUnlessNo();
}
