#include "Public/activity.h"

#include <cstring>
#include <strings.h>

#include "Public/confirm.h"
#include "Public/errorMsg.h"
#include "Public/knownAdapter.h"
#include "Public/listing.h"

void say(const Line& line, KT_U16 id, KT_U8 status, const char* word) {
    bool behindId = false;
    const char* at = line.text;
    for (const char* conversion; (conversion = strchr(at, '%')) != nullptr; at = conversion + 2) {
        out("%.*s", static_cast<int>(conversion - at), at);
        if (conversion[1] == 'd') {
            out("%d", behindId ? status : id);
            behindId = true;
        } else {
            out("%s", behindId ? ErrorMessage(status) : word);
        }
    }
    out("%s", at);
}

static const StateWords* wordsOfState(const SteeringWords& words, KT_U8 state) {
    switch (state) {
    case KT_STATE_RUNNING:
        return &words.running;
    case KT_STATE_ABORTED:
        return &words.aborted;
    case KT_STATE_PAUSED:
    case KT_STATE_AUTO_PAUSED:
        return &words.paused;
    default:
        return nullptr;
    }
}

int steerActivity(const SteeringWords& words, KT_U16 id, KT_U8 action, const ActivityStatus& status) {
    bool single = status.bga != 0 && (status.bga & (status.bga - 1)) == 0;
    if (!single || (status.bga & words.own) == 0) {
        say(words.notOwn, id, KT_OK);
        return words.refusal;
    }
    const StateWords* now = wordsOfState(words, status.state);
    if (now == nullptr || !now->refused) {
        say(words.idle, id, KT_OK);
        return words.refusal;
    }
    for (const AllowedAction& allowed : now->allowed) {
        if (allowed.action != action) continue;
        KT_U8 result = words.control(gCurrentAdapter, id, action);
        say(result == KT_OK ? allowed.done : allowed.failed, id, result, BGAActionStr(action));
        return result;
    }
    say(now->refused, id, KT_OK);
    return words.refusal;
}

static Take refuse(const Line& line, const char* value) {
    say(line, value);
    return Take::Failed;
}

static Take takeKind(const ActivityCommand& command, const char* value, int& kind) {
    int index = 0;
    for (const ActivityKind& row : command.kinds) {
        if (row.word != nullptr && strcasecmp(row.word, value) == 0) {
            kind = index;
            return Take::Yes;
        }
        ++index;
    }
    return refuse(command.invalidKind, value);
}

static Take takeOption(const ActivityCommand& command, int option, const char* value, ActivityRequest& request) {
    const char idOption = command.target == ActivityTarget::Disk ? 'd' : 'l';
    if (option == 'a') {
        request.action = chooseBGAAction(value);
        return request.action == BGA_INVALID ? refuse("-a : invalid action '%s'\n", value) : Take::Yes;
    }
    if (option == 'o' && command.invalidObject) {
        return strcasecmp(value, "vd") == 0 ? Take::Yes : refuse(command.invalidObject, value);
    }
    if (option == idOption) {
        return parseDecimal(value, request.id) ? Take::Yes : refuse(command.invalidId, value);
    }
    if (option == 'd' && command.invalidTargets) {
        bool good = parsePdList(value, PdItems::Strict, request.targets);
        return good ? Take::Yes : refuse(command.invalidTargets, value);
    }
    if (option == 't' && command.invalidKind) return takeKind(command, value, request.kind);
    return Take::Help;
}

// The library's status as the handler's result, its failure reported.
static int failed(const Line& line, KT_U16 id, KT_U8 status) {
    say(line, id, status);
    return status;
}

// True when a virtual disk may be looked at further: its record is readable, and a start does not meet RAID0.
static bool checkVirtualDisk(const ActivityCommand& command, const ActivityRequest& request, int& result) {
    if (!command.infoFailed) return true;
    _LD_Info_Request info;
    KT_U8 status = getItem(KT_LD_GetInfo, request.id, info);
    if (status != KT_OK) {
        result = failed(command.infoFailed, request.id, status);
        return false;
    }
    if (command.refusedRaid0 && request.action == BGA_START && info.ldInfo[0].RaidMode == KT_RAID0) {
        result = failed(command.refusedRaid0, request.id, KT_ERR_NOT_SUPPORTED);
        return false;
    }
    return true;
}

static bool readVirtualDisk(const ActivityCommand& command, const ActivityRequest& request, ActivitySubject& subject,
                            int& result) {
    if (!checkVirtualDisk(command, request, result)) return false;
    _LD_Status_Request answer;
    KT_U8 status = getItem(KT_LD_GetStatus, request.id, answer);
    if (status != KT_OK) {
        result = failed(command.statusFailed, request.id, status);
        return false;
    }
    subject.now = activityOf(answer.ldStatus[0]);
    return true;
}

static bool readArray(const ActivityCommand& command, const ActivityRequest& request, ActivitySubject& subject,
                      int& result) {
    _DG_Info_Request answer;
    KT_U8 status = getItem(KT_DG_GetInfo, request.id, answer);
    if (status != KT_OK) {
        result = failed(command.infoFailed, request.id, status);
        return false;
    }
    subject.array = answer.dgInfo[0];
    subject.now = activityOf(subject.array);
    return true;
}

static bool findDisk(const ActivityCommand& command, const ActivityRequest& request, ActivitySubject& subject,
                     int& result) {
    _HD_RAID_Status_Request role;
    KT_U8 status = getItem(KT_PD_GetHDRaidStatus, request.id, role);
    if (status == KT_OK && (role.hdRaidStatus[0].Status & (KT_PD_MEMBER | KT_PD_SPARE)) == 0) {
        say(command.wrongRole, request.id, KT_OK);
        result = command.words.refusal;
        return false;
    }
    _HD_BGA_Status_Request answer;
    if (status == KT_OK) status = getItem(KT_PD_GetBGAStatus, request.id, answer);
    if (status != KT_OK) {
        result = failed(command.statusFailed, request.id, status);
        return false;
    }
    subject.now = {answer.hdBgaStatus[0].Bga, answer.hdBgaStatus[0].BgaState, false};
    return true;
}

static bool readStatus(const ActivityCommand& command, const ActivityRequest& request, ActivitySubject& subject,
                       int& result) {
    switch (command.target) {
    case ActivityTarget::VirtualDisk:
        return readVirtualDisk(command, request, subject, result);
    case ActivityTarget::Array:
        return readArray(command, request, subject, result);
    default:
        return findDisk(command, request, subject, result);
    }
}

static int startActivity(const ActivityCommand& command, const ActivityRequest& request,
                         const ActivitySubject& subject) {
    if (subject.now.bga != 0) {
        say(command.words.busy, request.id, KT_OK);
        return command.words.refusal;
    }
    int result = 0;
    if (command.checkStart != nullptr && !command.checkStart(request, subject, result)) return result;
    const ActivityKind& kind = command.kinds[request.kind];
    if (subject.now.mediaPatrol && kind.question) {
        say(kind.question, request.id, KT_OK);
        if (!confirmYesOrNo()) return 0;
    }
    KT_U8 status = command.start(request, kind.code);
    say(status == KT_OK ? command.started : command.startFailed, request.id, status, BGAActionStr(BGA_START));
    return status;
}

int runActivityCommand(int argc, char** argv, const _cmd_struct* row, const ActivityCommand& command) {
    OptionCounts given;
    int result = 0;
    ActivityRequest request;
    auto take = [&](int option, const char* value) { return takeOption(command, option, value, request); };
    if (!scanOptions({argc, argv, row}, command.options, given, result, take)) return result;
    if (!givenOnce(command.options, given) || !givenRequired(command.options, given, argv[0])) return 1;
    if (!isKnownAdapter(gCurrentAdapter, result)) return result;
    if ((currentAdapter().Features & command.feature) != command.feature) {
        say(command.unsupported, request.id, KT_OK);
        return 1;
    }
    if (command.checkRequest != nullptr && !command.checkRequest(request)) return 1;
    ActivitySubject subject;
    if (!readStatus(command, request, subject, result)) return result;
    if (request.action == BGA_START && command.start != nullptr) return startActivity(command, request, subject);
    return steerActivity(command.words, request.id, request.action, subject.now);
}
