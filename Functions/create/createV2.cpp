#include "Functions/create/createV2.h"

#include <strings.h>

#include "Functions/create/createV2Steps.h"
#include "Public/errorMsg.h"
#include "Public/raidRules.h"

const char createV2_sh[] = ":Create virtual disk or array.";
const char createV2_help[] = "\n\ncreate -o <vd|array> -a <id> -l <array empty slot> -r <0|1|10|1E|5|50|6|60>\n"
                             "       [-q <# parity disks>] -d <PD id list> [-n <name>] [-b <16|32|64|128>]\n"
                             "       [-s <size>] [-c <on|off|auto>] [-w <wt|wb|auto>] [-p <ra|none>]\n"
                             "       [-g <0|1|10>] [-i <quick|foreground|background|intelligent|none>]\n"
                             "       [--cacheon|--cacheoff] [--sizeonly] [--waiveconfirmation] [-h]\n"
                             "create   -o <auto> -t<disable|enable>\n\n"
                             "Options:\n"
                             "    -o, --object <vd|array|auto>\n"
                             "        Object to create: a virtual disk in an array (default), an array, or what\n"
                             "        the adapter chooses by itself.\n"
                             "    -a, --arrayid <id>\n"
                             "        ID of the array to create the VD in. VD only.\n"
                             "    -l, --slot <array empty slot>\n"
                             "        Empty slot of the array. Default: any. VD only.\n"
                             "    -r, --raidmode <0|1|10|1E|5|50|6|60>\n"
                             "        RAID level. Array only.\n"
                             "    -q, --paritydisks <# parity disks>\n"
                             "        Number of parity disks; RAID6 and RAID60 only. Default: 2 and 4. Array only.\n"
                             "    -d, --pdid <PD id list>\n"
                             "        IDs of the physical disks to use, separated by commas. Array only.\n"
                             "    -n, --name <name>\n"
                             "        Name: at most 16 letters, digits, blanks or underlines.\n"
                             "    -b, --blocksize <16|32|64|128>\n"
                             "        Stripe block size in KB. Default: 64, for a VD that of its array. Up to 1024\n"
                             "        on some adapters.\n"
                             "    -s, --size <size>\n"
                             "        Size in MB. Default: all available space.\n"
                             "    -c, --cachemode <on|off|auto>\n"
                             "        Cache mode. VD only.\n"
                             "    -w, --writepolicy <wt|wb|auto>\n"
                             "        Write policy: write through, write back or automatic. VD only.\n"
                             "    -p, --readpolicy <ra|none>\n"
                             "        Read policy: read ahead or none. VD only.\n"
                             "    -g, --gbrounding <0|1|10>\n"
                             "        Round the size down to a multiple of 1 or 10 GB. Default: 0, no rounding. VD\n"
                             "        only.\n"
                             "    -i, --init <quick|foreground|background|intelligent|none>\n"
                             "        Initialization mode. Default: quick.\n"
                             "    --cacheon, --cacheoff\n"
                             "        Write cache of the array's disks. Default: on. Array only.\n"
                             "    --sizeonly\n"
                             "        Only display the size of the array that can be created.\n"
                             "    --waiveconfirmation\n"
                             "        Do not ask when a disk has a file system on it.\n"
                             "    -t, --type <disable|enable>\n"
                             "        Type of the automatic creation. Default: disable.\n"
                             "    -h, --help\n\n"
                             "Examples:\n"
                             "    create -o array -r 5 -d 0,2,4 -n \"My Array\"\n\n"
                             "    Create a RAID5 array named \"My Array\" on physical disks 0, 2 and 4.\n\n"
                             "    create -o vd -a 0 -s 2000\n\n"
                             "    Create a virtual disk of 2000 MB in array 0.\n\n";

static const LongOption createV2_long[] = {{"object", required_argument, 'o'},
                                           WAIVE_OPTION,
                                           {"sizeonly", no_argument, OPT_SIZE_ONLY},
                                           {"arrayid", required_argument, 'a'},
                                           {"slot", required_argument, 'l'},
                                           {"name", required_argument, 'n'},
                                           {"raidmode", required_argument, 'r'},
                                           {"paritydisks", required_argument, 'q'},
                                           {"pdid", required_argument, 'd'},
                                           {"blocksize", required_argument, 'b'},
                                           {"cachemode", required_argument, 'c'},
                                           {"size", required_argument, 's'},
                                           {"writepolicy", required_argument, 'w'},
                                           {"readpolicy", required_argument, 'p'},
                                           {"gbrounding", required_argument, 'g'},
                                           {"init", required_argument, 'i'},
                                           OUTPUT_OPTION,
                                           HELP_OPTION,
                                           {"cacheon", no_argument, OPT_CACHE_ON},
                                           {"cacheoff", no_argument, OPT_CACHE_OFF},
                                           {"type", required_argument, 't'},
                                           END_OF_OPTIONS};
static const char* const createV2_objects[] = {"vd", "array", "auto", nullptr};
const OptionSet createV2Options = {.letters = "\1:c:o:a:l:n:r:q:d:b:s:w:p:g:i:t:h",
                                   .longOptions = createV2_long,
                                   .once = "arqdwpsnbt",
                                   .objects = createV2_objects};

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

static Take takeSlot(const char* value, KT_U8& slot) {
    if (parseDecimal(value, slot)) return Take::Yes;
    out("-l : invalid slot number '%s'\n", value);
    return Take::Failed;
}

static Take takeArrayDisks(const char* value, PdList& disks) {
    if (!parsePdList(value, PdItems::Strict, disks)) {
        out("-d : invalid PD IDs '%s'\n", value);
        return Take::Failed;
    }
    if (disks.count != 0) return Take::Yes;
    out("-d : no PD ID is specified.\n");
    return Take::Failed;
}

static Take takeStripe(const char* value, KT_U16& stripe) {
    if (!isNumber(value)) {
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
    return scanOptions(argc, argv, row, createV2Options, o.given, result, take);
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
    switch (o.object) {
    case CreateObject::Auto:
        return createAutomatically(o);
    case CreateObject::Array:
        return createArray(argv[0], o);
    default:
        return createVdInArray(argv[0], o);
    }
}
