#include "Functions/aes/aesOp.h"

#include <cstring>

#include "Functions/aes/aesCommand.h"
#include "Public/utility.h"

const char aesop_sh[] = "AES operations";
const char aesop_help[] = "\n\naesOp -o changePWD -e <entry id> -p <password> -w<old password> [-h]\n"
                          "aesOp -o verifyKey -e <entry id> -p <password> -k <key>  [-h]\n\n"
                          "Options:\n"
                          "    -o, --option <changePwd|verifyKey>\n"
                          "        Change the password of an entry or verify the key in it.\n"
                          "    -e, --entryid <entry id>\n"
                          "        ID of the AES entry.\n"
                          "    -p, --password <password>\n"
                          "        Password of the entry, the new one with changePwd. At most 32 characters.\n"
                          "    -w, --oldpassword <old password>\n"
                          "        Password of the entry until now. Only with changePwd.\n"
                          "    -k <key>\n"
                          "        Key to compare, at most 32 characters. Only with verifyKey.\n"
                          "    -i, --portid <port id>\n"
                          "    --aesmount\n"
                          "    --aesdismount\n"
                          "        Accepted and not used by these operations.\n"
                          "    -h, --help\n\n"
                          "Examples:\n"
                          "    aesOp -o changePwd -e 1 -p newsecret -w oldsecret\n\n"
                          "    Change the password of entry 1.\n\n"
                          "    aesOp -o verifyKey -e 1 -p secret -k \"my key\"\n\n"
                          "    Compare the key of entry 1.\n\n";

enum { OPT_MOUNT = OPT_FIRST_OWN, OPT_DISMOUNT };
static const LongOption aesop_long[] = {{"option", required_argument, 'o'},
                                        {"portid", required_argument, 'i'},
                                        {"entryid", required_argument, 'e'},
                                        {"password", required_argument, 'p'},
                                        {"oldpassword", required_argument, 'w'},
                                        {"aesmount", no_argument, OPT_MOUNT},
                                        {"aesdismount", no_argument, OPT_DISMOUNT},
                                        OUTPUT_OPTION,
                                        HELP_OPTION,
                                        END_OF_OPTIONS};
static const char* const aesop_objects[] = {"changePwd", "verifyKey", nullptr};
const OptionSet aesopOptions = {.letters = "\1:o:w:i:e:p:k:h",
                                .longOptions = aesop_long,
                                .once = "owiepk",
                                .required = "oep",
                                .objects = aesop_objects,
                                .secrets = true};

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
    if (!scanOptions(argc, argv, row, aesopOptions, given, result, take)) return result;
    if (!checkOptions(argv[0], given, o)) return 1;
    _AES_Entry_Config config = {};
    config.entry_id = o.entry;
    result = o.change ? changePassword(o, config) : verifyKey(o, config);
    explicit_bzero(&config, sizeof config);
    return result;
}

int doAESOp(int argc, char** argv, _cmd_struct* row) {
    return runAndWipe(argc, argv, row, runAesOp);
}
