#include "Functions/create/createV2.h"

#include <strings.h>

#include "Functions/create/createV2Steps.h"
#include "Public/errorMsg.h"
#include "Public/knownAdapter.h"
#include "Public/raidRules.h"

static Take takeObject(const char* value, CreateObject& object) {
    if (strcasecmp(value, "vd") == 0) {
        object = CreateObject::VirtualDisk;
    } else if (strcasecmp(value, "array") == 0) {
        object = CreateObject::Array;
        if (!arrayBasedRaid) {
            out("-o : array is not supported on this adapter\n");
            return Take::Failed;
        }
    } else if (strcasecmp(value, "auto") == 0) {
        object = CreateObject::Auto;
    } else {
        out("-o : invalid object '%s'\n", value);
        return Take::Failed;
    }
    return Take::Yes;
}

static Take takeArray(const char* value, KT_U16& array) {
    if (parseDecimal(value, array)) return Take::Yes;
    out("-a : invalid array id '%s'\n", value);
    return Take::Failed;
}

static Take takeSlot(const char* value, int& slot) {
    if (parseCapped(value, slot)) return Take::Yes;
    out("-l : invalid slot number '%s'\n", value);
    return Take::Failed;
}

static Take takeArrayDisks(const char* value, PdList& disks) {
    if (*value == '\0') {
        out("-d : no PD ID is specified.\n");
        return Take::Failed;
    }
    if (parsePdList(value, PdItems::Strict, disks)) return Take::Yes;
    out("-d : invalid PD IDs '%s'\n", value);
    return Take::Failed;
}

static Take takeStripe(const char* value, KT_U16& stripe) {
    if (!isTypedNumber(value)) {
        out("-b : invalid stripe block size '%s'.\n", value);
        return Take::Failed;
    }
    if (parseDecimal(value, stripe) && isValidStripe(stripe)) return Take::Yes;
    out("-b : invalid stripe block size '%s'. Please refer to info -o hba command to get detail stripe size support "
        "information.\n",
        value);
    return Take::Failed;
}

static Take takeSize(const char* value, KT_U64& size) {
    if (parseDecimal(value, size) && size != 0) return Take::Yes;
    out("-s : invalid size '%s'.\n", value);
    return Take::Failed;
}

static Take takeSupportedRounding(const char* value, KT_U8& rounding) {
    if ((currentAdapter().AdvancedFeatures & KT_ADV_NO_ROUNDING) == 0) return takeRounding(value, rounding);
    out("giga byte rounding scheme is not support\n");
    return Take::Failed;
}

static Take takeAutoType(const char* value, KT_U8& type) {
    if (strcasecmp(value, "enable") == 0) {
        type = 1;
    } else if (strcasecmp(value, "disable") == 0) {
        type = 0;
    } else {
        out("-t : invalid create type '%s'\n", value);
        return Take::Failed;
    }
    return Take::Yes;
}

static Take takeFlag(int option, CreateV2Options& o) {
    switch (option) {
    case OPT_CACHE_ON:
        o.arrayCache = 1;
        return Take::Yes;
    case OPT_CACHE_OFF:
        o.arrayCache = 0;
        return Take::Yes;
    case OPT_WAIVE:
    case OPT_SIZE_ONLY:
        return Take::Yes;
    default:
        return Take::Help;
    }
}

static Take takeOption(int option, const char* value, CreateV2Options& o) {
    switch (option) {
    case 'o':
        return takeObject(value, o.object);
    case 'a':
        return takeArray(value, o.array);
    case 'l':
        return takeSlot(value, o.slot);
    case 'n':
        return takeName(value, LONGEST_ARRAY_NAME, o.name);
    case 'r':
        return takeLevel(value, o.level);
    case 'q':
        return takeParity(value, o.parity);
    case 'd':
        return takeArrayDisks(value, o.disks);
    case 'b':
        return takeStripe(value, o.stripe);
    case 's':
        return takeSize(value, o.size);
    case 'c':
        return takeCacheMode(value, true, o.cache);
    case 'w':
        return takeWritePolicy(value, true, o.cache);
    case 'p':
        return takeReadPolicy(value, o.cache);
    case 'g':
        return takeSupportedRounding(value, o.rounding);
    case 'i':
        return takeInit(value, true, o.init);
    case 't':
        return takeAutoType(value, o.autoType);
    default:
        return takeFlag(option, o);
    }
}

static bool readOptions(int argc, char** argv, const _cmd_struct* row, CreateV2Options& o, int& result) {
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    return scanOptions({argc, argv, row}, createV2Options, o.given, result, take);
}

// The adapter chooses disks, level and names by itself.
static int createAutomatically(const CreateV2Options& o) {
    KT_U8 status = KT_LD_DG_QuickCreate(gCurrentAdapter, o.autoType);
    if (status == KT_OK) {
        out("Auto create successfully.\n");
    } else {
        out("Auto create error,%s\n", ErrorMessage(status));
    }
    return status;
}

int doCreateV2(int argc, char** argv, _cmd_struct* row) {
    CreateV2Options o;
    int result = 0;
    if (!readOptions(argc, argv, row, o, result)) return result;
    if (!givenOnce(createV2Options, o.given)) return 1;
    if (o.given['n'] != 0 && !checkName(o.name)) return 1;
    if (!isKnownAdapter(gCurrentAdapter, result)) return result;
    switch (o.object) {
    case CreateObject::Auto:
        return createAutomatically(o);
    case CreateObject::Array:
        return createArray(argv[0], o);
    default:
        return createVdInArray(argv[0], o);
    }
}
