#include "Functions/adapter/adapter.h"

#include "Public/utility.h"

static Take takeAdapter(int option, const char* value, KT_U8& adapter) {
    if (option != 'i') return Take::Help;
    if (!isNumber(value)) {
        out("-i : invalid adapter id '%s'\n", value);
        return Take::Failed;
    }
    // An adapter index has eight bits: only those are kept, and only those are checked.
    adapter = narrowed<KT_U8>(value);
    if (adapter >= gNumAdaptersFound) {
        out("Adapter %d does not exist.\n", adapter);
        return Take::Failed;
    }
    return Take::Yes;
}

int doAdapter(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    KT_U8 adapter = 0;
    auto take = [&](int option, const char* value) { return takeAdapter(option, value, adapter); };
    if (!scanOptions({argc, argv, row}, adapterOptions, given, result, take)) return result;
    if (!givenOnce(adapterOptions, given)) return 1;
    if (given['i'] == 1) {
        gCurrentAdapter = adapter;
        chooseCommandSet();
        return 0;
    }
    gNumAdaptersFound = KT_Adapter_GetCount();
    printAdapterCount();
    return 0;
}
