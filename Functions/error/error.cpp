#include "Functions/error/error.h"

#include "Public/errorMsg.h"
#include "Public/utility.h"

static Take takeCode(int option, const char* value, KT_U8& code) {
    if (option != 'c') return Take::Help;
    if (!isNumber(value)) {
        out("-c : id should be a number\n");
        return Take::Failed;
    }
    if (!parseDecimal(emptyIsZero(value), code)) {
        out("Invalid error code\n");
        return Take::Failed;
    }
    return Take::Yes;
}

int doError(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    KT_U8 code = 0;
    auto take = [&](int option, const char* value) { return takeCode(option, value, code); };
    if (!scanOptions({argc, argv, row}, errorOptions, given, result, take)) return result;
    if (!givenOnce(errorOptions, given) || !givenRequired(errorOptions, given, argv[0])) return 1;
    out("\nError code %d: %s.\n", code, ErrorMessage(code));
    return 0;
}
