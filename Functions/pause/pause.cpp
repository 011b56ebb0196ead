#include "Functions/pause/pause.h"

#include "Public/errorMsg.h"
#include "Public/knownAdapter.h"
#include "Public/utility.h"

static Take takeOption(int option, const char* value, KT_U8& adapter) {
    if (option != 'c') return Take::Help;
    if (parseDecimal(value, adapter)) return Take::Yes;
    out("-c : id should be a number\n");
    return Take::Failed;
}

int doPause(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    KT_U8 adapter = 0;
    auto take = [&](int option, const char* value) { return takeOption(option, value, adapter); };
    if (!scanOptions({argc, argv, row}, pauseOptions, given, result, take)) return result;
    if (!givenOnce(pauseOptions, given) || !givenRequired(pauseOptions, given, argv[0])) return 1;
    if (!isKnownAdapter(adapter, result)) return result;
    KT_U8 status = KT_LD_PauseAll(adapter);
    if (status != KT_OK) out("\nExecutes  fail (error %d: %s).\n", status, ErrorMessage(status));
    return status;
}
