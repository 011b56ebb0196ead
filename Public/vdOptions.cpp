#include "Public/vdOptions.h"

#include <cstring>
#include <strings.h>

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

static Take takeAutomatic(KT_U8& cache) {
    if ((currentAdapter().AdvancedFeatures & KT_ADV_BBU) == 0) {
        out("'auto' cache mode is not supported\n");
        return Take::Failed;
    }
    cache |= KT_CACHE_AUTO;
    return Take::Yes;
}

Take takeCacheMode(const char* value, bool automatic, KT_U8& cache) {
    if (!choosesWriteCache()) {
        out("VD cache is not supported on adapter %d.\n", gCurrentAdapter);
        return Take::Failed;
    }
    if (automatic && strcasecmp(value, "auto") == 0) return takeAutomatic(cache);
    if (strcasecmp(value, "on") == 0) return Take::Yes;
    if (strcasecmp(value, "off") != 0) {
        out("-c : invalid cache mode '%s'\n", value);
        return Take::Failed;
    }
    cache |= KT_CACHE_OFF;
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

bool checkName(const char* name) {
    static const char allowed[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz _";
    if (name[strspn(name, allowed)] == '\0') return true;
    out("-n, name must be numeric, character, space or underline. Now is %s\n", name);
    return false;
}

void fillName(KT_U8 (&field)[NAME_FIELD], const char* name) {
    memset(field, 0, sizeof field);
    memcpy(field, name, strnlen(name, sizeof field));
}

bool hasBattery() {
    if ((currentAdapter().AdvancedFeatures & KT_ADV_BBU) == 0) return false;
    _BBU_Info battery = {};
    return KT_BBU_GetInfo(gCurrentAdapter, &battery) == KT_OK && battery.status != 0;
}
