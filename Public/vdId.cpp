#include "Public/vdId.h"

#include "Public/listing.h"
#include "Public/utility.h"

static Take takeId(int option, const char* value, KT_U64& id) {
    if (option != 'i') return Take::Help;
    if (!isNumber(value) && !isHex(value)) {
        out("-i: id should be a number\n");
        return Take::Failed;
    }
    if (!parseDecimalOrHexUpTo(value, UINT64_MAX, id)) id = UINT64_MAX;
    return Take::Yes;
}

bool readVdId(int argc, char** argv, const _cmd_struct* row, const OptionSet& set, KT_U16& vd, int& result) {
    OptionCounts given;
    KT_U64 id = 0;
    auto take = [&](int option, const char* value) { return takeId(option, value, id); };
    if (!scanOptions(argc, argv, row, set, given, result, take)) return false;
    result = 1;
    if (!givenOnce(set, given)) return false;
    if (id > HIGHEST_ID) {
        out("-i : invalid id %llu\n", static_cast<unsigned long long>(id));
        return false;
    }
    if (given['i'] == 0) {
        out("missing VD id\n");
        return false;
    }
    vd = static_cast<KT_U16>(id);
    return true;
}
