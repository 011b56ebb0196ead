#include "Functions/migrate/migration.h"

#include <cstring>
#include <limits>
#include <strings.h>

#include "Public/confirm.h"
#include "Public/knownAdapter.h"
#include "Public/raidOptions.h"

static bool takeAction(const char* value, MigrationRequest& request) {
    request.sizeOnly = strcasecmp(value, "size") == 0;
    if (request.sizeOnly) return true;
    request.action = chooseBGAAction(value);
    return request.action != BGA_INVALID;
}

static Take takeOption(int option, const char* value, MigrationRequest& request) {
    switch (option) {
    case 'a':
        if (takeAction(value, request)) return Take::Yes;
        out("-a : invalid action '%s'\n", value);
        return Take::Failed;
    case 'l':
        if (parseDecimal(value, request.id)) return Take::Yes;
        out("-l : invalid VD id '%s'\n", value);
        return Take::Failed;
    case 'r':
        return takeLevel(value, request.level);
    case 'q':
        request.parityText = value;
        return takeParity(value, request.parity);
    case 'd':
        return takeDisks(value, request.disks);
    default:
        return Take::Help;
    }
}

// A second use of an option ends these commands without a word, so the set's own list of such options stays empty.
static bool anyTwice(const OptionCounts& given) {
    for (const char* letter = "alrdq"; *letter != '\0'; ++letter) {
        if (given[*letter] > 1) return true;
    }
    return false;
}

bool readMigration(const CommandCall& call, const MigrationCommand& command, MigrationRequest& request, int& result) {
    OptionCounts given;
    auto take = [&](int option, const char* value) { return takeOption(option, value, request); };
    if (!scanOptions(call, command.options, given, result, take)) return false;
    if (!request.sizeOnly && !isKnownAdapter(gCurrentAdapter, result)) return false;
    result = 1;
    if ((currentAdapter().Features & KT_FEATURE_MIGRATION) == 0) {
        say(command.unsupported, gCurrentAdapter, KT_OK);
        return false;
    }
    if (anyTwice(given) || !givenRequired(command.options, given, call.argv[0])) return false;
    request.levelGiven = given['r'] != 0;
    request.parityGiven = given['q'] != 0;
    if (request.action != BGA_START || request.sizeOnly) return true;
    if (!request.levelGiven && given['d'] == 0) {
        out("%s: one of -r or -d option must be specified\n", call.argv[0]);
        return false;
    }
    if (command.noDisks && request.disks.count == 0) {
        say(command.noDisks, request.id, KT_OK);
        return false;
    }
    return true;
}

void completeMigration(const MigrationCommand& command, KT_U8 presentLevel, MigrationRequest& request) {
    if (!request.levelGiven) request.level = presentLevel;
    if (!request.parityGiven) checkParity(command.use, request.level, request.disks.count, false, request.parity);
}

bool parityFits(const MigrationRequest& request) {
    return request.parity <= std::numeric_limits<KT_U8>::max();
}

int refuseParity(const MigrationRequest& request) {
    out("-q : invalid number of parity disks '%s'\n", request.parityText);
    return 1;
}

bool checkMigrationTarget(const MigrationCommand& command, KT_U8 presentLevel, const MigrationRequest& request) {
    if (!checkLevel(command.use, request.level)) return false;
    if (RedundencyLevel(presentLevel) > RedundencyLevel(request.level)) {
        command.degraded(RaidModeStr(presentLevel), RaidModeStr(request.level));
        return false;
    }
    int parity = request.parity;
    if (!checkDiskCount(command.use, request.level, request.disks.count) ||
        !checkParity(command.use, request.level, request.disks.count, request.parityGiven, parity)) {
        return false;
    }
    return parityFits(request) || refuseParity(request) == 0;
}

void addMember(const MigrationRequest& request, KT_U16 disk, MigrationMembers& members) {
    members.list.add("%d ", disk);
    for (int i = 0; i < request.disks.count; ++i) {
        if (request.disks.ids[i] != disk) continue;
        members.isMember[i] = true;
        ++members.kept;
    }
}

bool confirmMigration(const ActivityStatus& now, const Line& question) {
    if (!now.mediaPatrol) return true;
    say(question, 0, KT_OK);
    return confirmYesOrNo();
}

bool checkMembersKept(const MigrationMembers& members) {
    if (members.kept >= members.present) return true;
    out("Target PDs need to include ALL member disks [%s].\n", members.list.text);
    return false;
}
