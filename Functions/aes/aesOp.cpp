#include "Functions/aes/aesOp.h"

#include <cstring>

#include "Functions/aes/aesCommand.h"
#include "Public/hold.h"
#include "Public/knownAdapter.h"
#include "Public/utility.h"

namespace {
struct AesOpOptions {
    bool change = false; // changePwd, else verifyKey
    KT_U8 entry = 0;
    KT_U8 port = 0;
    AesSecret password = {};
    AesSecret oldPassword = {};
    AesSecret key = {};
};
} // namespace

static Take takeOperation(const char* word, AesOpOptions& o) {
    o.change = strcasecmp(word, "changePwd") == 0;
    if (o.change || strcasecmp(word, "verifyKey") == 0) return Take::Yes;
    out("-o : invalid object '%s'\n", word);
    return Take::Failed;
}

static Take takeOption(int option, char* value, AesOpOptions& o) {
    switch (option) {
    case 'o':
        return takeOperation(value, o);
    case 'e':
        if (parseDecimal(value, o.entry)) return Take::Yes;
        out("-i : invalid entry id '%s'\n", value);
        return Take::Failed;
    case 'i':
        if (parseDecimal(value, o.port)) return Take::Yes;
        out("-i : invalid port id '%s'\n", value);
        return Take::Failed;
    case 'p':
        return takePassword(value, o.password);
    case 'w':
        return takePassword(value, o.oldPassword);
    case 'k':
        return takeKey(value, o.key);
    case OPT_MOUNT:
    case OPT_DISMOUNT:
        return Take::Yes;
    default:
        return Take::Help;
    }
}

static bool checkOptions(const char* command, const OptionCounts& given, const AesOpOptions& o) {
    if (given[OPT_MOUNT] > 1 || given[OPT_DISMOUNT] > 1) {
        out(ErrorDuplicate);
        return false;
    }
    if (!givenOnce(aesopOptions, given)) return false;
    bool complete = givenRequired(aesopOptions, given, command);
    char compared = o.change ? 'w' : 'k';
    if (given['o'] > 0 && given[compared] == 0) {
        out(OptionRequired, command, compared);
        complete = false;
    }
    return complete;
}

static int changePassword(const AesOpOptions& o, _AES_Entry_Config& config) {
    memcpy(config.key_content, o.oldPassword, sizeof config.key_content);
    memcpy(config.user_auth, o.password, sizeof config.user_auth);
    const Hold hold("the entry would have the old password or the new one, and nothing would tell which");
    KT_U8 status = KT_AES_ChangePwd(gCurrentAdapter, &config, o.password);
    if (status == KT_OK) {
        out("\nAES change password of entry %d is returned successfully.\n", o.entry);
    } else {
        out("\nAES change password of entry %d failed (error %d: %s).\n", o.entry, status, ErrorMessage(status));
    }
    return status;
}

static int verifyKey(const AesOpOptions& o, _AES_Entry_Config& config) {
    config.key_length = AES_SECRET_SIZE; // whatever the length of the key
    memcpy(config.key_content, o.key, sizeof config.key_content);
    memcpy(config.user_auth, o.password, sizeof config.user_auth);
    KT_U8 status = KT_AES_VerifyKey(gCurrentAdapter, &config, o.password);
    if (status == KT_OK) {
        out("\nVerify key on entry %d returned successfully.\n", o.entry);
        return 0;
    }
    out("\nVerify key on entry %d failed(error %d: %s)\n", o.entry, status, ErrorMessage(status));
    return 1; // a failed comparison, whatever its reason
}

static int runAesOp(int argc, char** argv, _cmd_struct* row, AesOpOptions& o) {
    OptionCounts given;
    int result = 0;
    auto take = [&](int option, char* value) { return takeOption(option, value, o); };
    if (!scanOptions({argc, argv, row}, aesopOptions, given, result, take)) return result;
    if (!checkOptions(argv[0], given, o)) return 1;
    if (o.change && !isKnownAdapter(gCurrentAdapter, result)) return result;
    _AES_Entry_Config config = {};
    config.entry_id = o.entry;
    result = o.change ? changePassword(o, config) : verifyKey(o, config);
    explicit_bzero(&config, sizeof config);
    return result;
}

int doAESOp(int argc, char** argv, _cmd_struct* row) {
    return runAndWipe(argc, argv, row, runAesOp);
}
