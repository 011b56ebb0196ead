#include "Public/vdId.h"

#include "Public/listing.h"
#include "Public/utility.h"

static Take takeId(int option, const char* value, int& id) {
    if (option != 'i') return Take::Help;
    if (parseCappedOrHex(value, id)) return Take::Yes;
    out("-i: id should be a number\n");
    return Take::Failed;
}

bool readVdId(const CommandCall& call, const OptionSet& set, KT_U16& vd, int& result) {
    OptionCounts given;
    int id = 0;
    auto take = [&](int option, const char* value) { return takeId(option, value, id); };
    if (!scanOptions(call, set, given, result, take)) return false;
    result = 1;
    if (!givenOnce(set, given)) return false;
    if (id > HIGHEST_ID) {
        out("-i : invalid id %d\n", id);
        return false;
    }
    if (given['i'] == 0) {
        out("missing VD id\n");
        return false;
    }
    vd = static_cast<KT_U16>(id);
    return true;
}
