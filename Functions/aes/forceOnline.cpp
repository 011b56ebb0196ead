#include "Functions/aes/forceOnline.h"

#include "Functions/aes/aesSecret.h"
#include "Public/errorMsg.h"
#include "Public/knownAdapter.h"
#include "Public/utility.h"

namespace {
struct ForceOnlineOptions {
    KT_U16 id = 0;
    int percentage = 100;
    const char* percentageText = "";
};
} // namespace

static Take takePercentage(const char* word, ForceOnlineOptions& o) {
    o.percentageText = word;
    if (parseCapped(word, o.percentage)) return Take::Yes;
    out("-p : invalid percentage '%s'\n", word);
    return Take::Failed;
}

static Take takeOption(int option, const char* value, ForceOnlineOptions& o) {
    if (option == 'p') return takePercentage(value, o);
    if (option != 'i') return Take::Help;
    if (parseDecimal(value, o.id)) return Take::Yes;
    out("-i : invalid id '%s'\n", value);
    return Take::Failed;
}

static bool checkPercentage(const ForceOnlineOptions& o) {
    if (o.percentage >= 10 && o.percentage <= 100 && o.percentage % 10 == 0) return true;
    out("-p : invalid percentage '%s', available percentage include 10 20 30 40 50 60 70 80 90 100\n",
        o.percentageText);
    return false;
}

int doForceOnline(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    ForceOnlineOptions o;
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    if (!scanOptions({argc, argv, row}, forceonlineOptions, given, result, take)) return result;
    if (!givenOnce(forceonlineOptions, given) || !checkPercentage(o) ||
        !givenRequired(forceonlineOptions, given, argv[0])) {
        return 1;
    }
    if (!isKnownAdapter(gCurrentAdapter, result)) return result;
    _AES_Entry_Config config = {};
    config.key_length = AES_SECRET_SIZE;
    KT_U8 status = KT_AES_ForcePDOnline(gCurrentAdapter, &config, o.id, static_cast<KT_U8>(o.percentage));
    if (status == KT_OK) {
        out("\nForce online PD %d is returned successfully.\n", o.id);
    } else {
        out("\nForce online PD %d failed (error %d: %s).\n", o.id, status, ErrorMessage(status));
    }
    return status;
}
