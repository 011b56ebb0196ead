#include "Functions/set/set.h"

#include <strings.h>

#include "Functions/set/changeSettings.h"
#include "Public/knownAdapter.h"
#include "Public/utility.h"

namespace {
struct ObjectWord {
    char word[8];
    SetObject object;
    bool ldBased; // in the LD-based set
    bool arrayBased;
};
const ObjectWord objectWords[] = {
    {"vd", SetObject::Vd, true, true},          {"ld", SetObject::Vd, true, true},
    {"pd", SetObject::Pd, true, true},          {"hd", SetObject::Pd, true, true},
    {"array", SetObject::Array, false, true},   {"hba", SetObject::Hba, true, true},
    {"driver", SetObject::Driver, true, false}, {"bbu", SetObject::Bbu, false, true},
};

struct SetOptions {
    OptionCounts given;
    const char* words[OPT_LIMIT] = {}; // each option's value as it was typed
    const ObjectWord* object = objectWords;
    KT_U16 id = 0;
};
} // namespace

static Take takeObject(const char* word, SetOptions& o) {
    for (const ObjectWord& row : objectWords) {
        if (strcasecmp(row.word, word) != 0) continue;
        if (row.object == SetObject::Array && !arrayBasedRaid) {
            out("-o : array is not supported on this adapter\n");
            return Take::Failed;
        }
        if (!(arrayBasedRaid ? row.arrayBased : row.ldBased)) break;
        o.object = &row;
        return Take::Yes;
    }
    if (arrayBasedRaid) {
        out("-o : invalid object '%s', should be VD, PD, Array, HBA or BBU\n", word);
    } else {
        out("-o : invalid object '%s', should be VD, PD, HBA or Driver\n", word);
    }
    return Take::Failed;
}

// What a value means depends on the object, which may come behind it: only the object and the id are read here.
static Take takeOption(int option, const char* value, SetOptions& o) {
    if (option == 'h') return Take::Help;
    o.words[option] = value;
    if (option == 'o') return takeObject(value, o);
    if (option == 'i' && !parseDecimal(value, o.id)) {
        out("-i : id is not a number\n");
        return Take::Failed;
    }
    return Take::Yes;
}

static bool givenTwice(const OptionSet& set, const OptionCounts& given) {
    if (!givenOnce(set, given)) return true;
    for (int option = OPT_FIRST_OWN; option < OPT_SET_END; ++option) {
        if (given[option] <= 1) continue;
        out(ErrorDuplicate);
        return true;
    }
    return false;
}

static bool hasId(SetObject object) {
    return object == SetObject::Vd || object == SetObject::Pd || object == SetObject::Array;
}

// Everything that can be said without asking the library.
static bool checkOptions(const OptionSet& set, const SetOptions& o, const char* command, SetRequest& request) {
    if (givenTwice(set, o.given) || !givenRequired(set, o.given, command)) return false;
    request.object = o.object->object;
    request.id = hasId(request.object) ? o.id : gCurrentAdapter;
    request.waived = o.given[OPT_WAIVE] != 0;
    if (hasId(request.object) != (o.given['i'] != 0)) {
        if (hasId(request.object)) {
            out(OptionRequired, command, 'i');
        } else {
            out("%s: option -i does not belong to -o %s\n", command, o.object->word);
        }
        return false;
    }
    if (!readChanges(command, o.object->word, o.given, o.words, request)) return false;
    if (request.count != 0 || request.object == SetObject::Driver) return true;
    out("%s: nothing to set is given for -o %s\n", command, o.object->word);
    return false;
}

static int runSet(int argc, char** argv, _cmd_struct* row, const OptionSet& options) {
    SetOptions o;
    SetRequest request = {};
    int result = 0;
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    if (!scanOptions({argc, argv, row}, options, o.given, result, take)) return result;
    if (!checkOptions(options, o, argv[0], request)) return 1;
    if (request.object == SetObject::Driver) {
        out("\nLinux CLI needn't support :set -o driver.\n");
        return 0;
    }
    if (!isKnownAdapter(gCurrentAdapter, result)) return result;
    return changeSettings(request);
}

int doSet(int argc, char** argv, _cmd_struct* row) {
    return runSet(argc, argv, row, setOptions);
}

int doSetV2(int argc, char** argv, _cmd_struct* row) {
    return runSet(argc, argv, row, setV2Options);
}
