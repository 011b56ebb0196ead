#include "Functions/create/createShared.h"

#include <cctype>
#include <cstring>
#include <strings.h>

#include "Public/confirm.h"
#include "Public/disks.h"
#include "Public/errorMsg.h"
#include "Public/raidRules.h"

Take takeName(const char* value, int longest, TypedName& name) {
    // One character more than is allowed survives the copy, quoted or not, so that it is noticed.
    noQuoteStrncpy(name, value, longest + 2);
    if (strlen(name) <= static_cast<size_t>(longest)) return Take::Yes;
    out("-n : length of name should be no more than %d characters\n", longest);
    return Take::Failed;
}

bool choosesWriteCache() {
    return (currentAdapter().AdvancedFeatures & KT_ADV_NO_WRITE_CACHE) == 0;
}

Take takeAutomatic(KT_U8& cache) {
    if ((currentAdapter().AdvancedFeatures & KT_ADV_BBU) == 0) {
        out("'auto' cache mode is not supported\n");
        return Take::Failed;
    }
    cache |= KT_CACHE_AUTO;
    return Take::Yes;
}

Take takeWritePolicy(const char* value, bool automatic, KT_U8& cache) {
    if (!choosesWriteCache()) {
        out("VD write cache is not supported on adapter %d.\n", gCurrentAdapter);
        return Take::Failed;
    }
    if (automatic && strcasecmp(value, "auto") == 0) return takeAutomatic(cache);
    if (strcasecmp(value, "wb") == 0) return Take::Yes;
    if (strcasecmp(value, "wt") != 0) {
        out("-w : invalid write policy '%s'\n", value);
        return Take::Failed;
    }
    cache |= KT_CACHE_OFF;
    return Take::Yes;
}

Take takeReadPolicy(const char* value, KT_U8& cache) {
    if ((currentAdapter().AdvancedFeatures & KT_ADV_NO_READ_CACHE) != 0) {
        out("VD read cache is not supported on adapter %d.\n", gCurrentAdapter);
        return Take::Failed;
    }
    if (strcasecmp(value, "none") == 0) return Take::Yes;
    if (strcasecmp(value, "ra") != 0) {
        out("-p : invalid read policy '%s'\n", value);
        return Take::Failed;
    }
    cache |= KT_CACHE_READ_AHEAD;
    return Take::Yes;
}

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

bool checkName(const char* name) {
    static const char allowed[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz _";
    if (name[strspn(name, allowed)] == '\0') return true;
    out("-n, name must be numeric, character, space or underline. Now is %s\n", name);
    return false;
}

bool checkParityAllowed(KT_U8 level, bool given) {
    if (!given || takesParityDisks(level)) return true;
    out("RAID mode %s don't support the setting of parity disks.\n", RaidModeStr(level));
    return false;
}

static bool hasBattery() {
    if ((currentAdapter().AdvancedFeatures & KT_ADV_BBU) == 0) return false;
    _BBU_Info battery = {};
    return KT_BBU_GetInfo(gCurrentAdapter, &battery) == KT_OK && battery.status != 0;
}

void addDefaultCache(KT_U8 level, KT_U8& cache) {
    bool battery = hasBattery();
    bool spared = level == KT_HYBRID && (currentAdapter().AdvancedFeatures & KT_ADV_HYBRID_SWITCH) != 0;
    if ((!choosesWriteCache() || !battery) && !spared) cache |= KT_CACHE_OFF;
}

void fillName(KT_U8 (&field)[NAME_FIELD], const char* name) {
    memset(field, 0, sizeof field);
    memcpy(field, name, strnlen(name, sizeof field));
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
