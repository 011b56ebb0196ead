#include "Functions/register/register.h"

#include <strings.h>

#include "Public/errorMsg.h"
#include "Public/knownAdapter.h"
#include "Public/utility.h"

// Types of registers, as the library numbers them.
enum RegisterType : KT_U8 { REGISTER_MAILBOX = 0 };
static constexpr int MAILBOX_REGISTERS = 2;

namespace {
struct RegisterOptions {
    bool write = false;
    int address = 0;
    KT_U64 value = 0;
};
} // namespace

static Take takeOption(int option, const char* value, RegisterOptions& o) {
    switch (option) {
    case 't':
        if (strcasecmp(value, "mailbox") == 0) return Take::Yes;
        out("-t : invalid register type '%s'\n", value);
        return Take::Failed;
    case 'a':
        o.write = strcasecmp(value, "write") == 0;
        if (o.write || strcasecmp(value, "read") == 0) return Take::Yes;
        out("-t : invalid operation type '%s'\n", value);
        return Take::Failed;
    case 'd':
        if (parseCappedOrHex(value, o.address)) return Take::Yes;
        out("-d : invalid address '%s'\n", value);
        return Take::Failed;
    case 'v':
        if (parseDecimalOrHex(value, o.value)) return Take::Yes;
        out("-v : invalid value '%s'\n", value);
        return Take::Failed;
    default:
        return Take::Help;
    }
}

static bool checkOptions(const RegisterOptions& o, bool withValue) {
    if (o.write && !withValue) {
        out("-v is must in the write register command.\n");
        return false;
    }
    if (!o.write && withValue) {
        out("-v is must not be set in the read register command.\n");
        return false;
    }
    if (o.address >= MAILBOX_REGISTERS) {
        out("address must be 0 or 1. Now is -d %d.\n", o.address);
        return false;
    }
    return true;
}

static KT_U8 readRegister(KT_U32 address, _Register_Request& request) {
    KT_U8 status = KT_Adapter_Read_Register(gCurrentAdapter, REGISTER_MAILBOX, address, &request);
    if (status == KT_OK) {
        out("%d address register value is %ld.\n", static_cast<int>(address), static_cast<long>(request.Value));
    } else {
        out("Read %d address register failed (error %d: %s).\n", static_cast<int>(address), status,
            ErrorMessage(status));
    }
    return status;
}

static KT_U8 writeRegister(KT_U32 address, _Register_Request& request) {
    KT_U8 status = KT_Adapter_Write_Register(gCurrentAdapter, REGISTER_MAILBOX, address, &request);
    if (status == KT_OK) {
        out("Write %d address register successfully.\n", static_cast<int>(address));
    } else {
        out("Write %d address register failed (error %d: %s).\n", static_cast<int>(address), status,
            ErrorMessage(status));
    }
    return status;
}

int doRegister(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    RegisterOptions o;
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    if (!scanOptions({argc, argv, row}, registerOptions, given, result, take)) return result;
    if (!givenOnce(registerOptions, given)) return 1;
    if (!checkOptions(o, given['v'] != 0)) return 1;
    if (o.write && !isKnownAdapter(gCurrentAdapter, result)) return result;
    _Register_Request request = {8, sizeof request, {}, o.value};
    auto address = static_cast<KT_U32>(o.address);
    return o.write ? writeRegister(address, request) : readRegister(address, request);
}
