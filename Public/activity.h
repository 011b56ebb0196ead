// Steering a background activity: initialisation, consistency check, rebuild, migration, media patrol, copy back. What
// the members of the family share is the state machine here; a member is the table of its words, calls and options.
#pragma once

#include "Public/options.h"
#include "Public/utility.h"

// True when the conversions of a line are those that say() fills, in its order: "%s", then "%d", then "%d" and "%s".
constexpr bool isLineText(const char* text) {
    char found[8] = {};
    int count = 0;
    for (; *text != '\0'; ++text) {
        if (*text != '%') continue;
        if (count == 7) return false;
        found[count++] = *++text;
        if (*text == '\0') return false;
    }
    const char* at = found;
    if (*at == 's') ++at;
    if (*at == 'd') {
        ++at;
        if (at[0] == 'd' && at[1] == 's') at += 2;
    }
    return *at == '\0';
}

void hasConversionsThatSayDoesNotFill(); // never defined: not a constant, so that the build stops at such a line

// One printed message, whole. Its conversions stand for the word in question (an option's value, an action), the id of
// the object, and a status with its text; they are checked when the program is built.
struct Line {
    const char* text = nullptr;

    constexpr Line() = default;
    template <size_t N>
    consteval Line(const char (&whole)[N]) : text(whole) {
        if (!isLineText(whole)) hasConversionsThatSayDoesNotFill();
    }
    constexpr explicit operator bool() const { return text != nullptr; }
};

void say(const Line& line, KT_U16 id, KT_U8 status, const char* word = "");
inline void say(const Line& line, const char* word) {
    say(line, 0, KT_OK, word);
}

// What an object is busy with.
struct ActivityStatus {
    unsigned bga = 0;         // the activity's bit; 0 = none
    KT_U8 state = 0;          // KT_STATE_*
    bool mediaPatrol = false; // runs on a member disk
};

// The same, from the records that tell it.
inline ActivityStatus activityOf(const _LD_STATUS& vd) {
    return {vd.Bga, vd.BgaState, (vd.BgaExt & KT_BGAEXT_MEDIA_PATROL) != 0};
}
inline ActivityStatus activityOf(const _DG_Info& array) {
    return {array.BgaType, array.BgaState, array.PDBgaRunning != 0};
}

// An action that a state allows: its number is the control code, the lines report the outcome.
struct AllowedAction {
    KT_U8 action = BGA_INVALID;
    Line done;
    Line failed;
};

// What can be done in a state; anything else is refused with one line.
struct StateWords {
    Line refused;
    AllowedAction allowed[2] = {};
};

struct SteeringWords {
    unsigned own;                                           // bits of the activities that the command steers
    KT_U8 (*control)(KT_U8 adapter, KT_U16 id, KT_U8 code); // the library's call
    int refusal;                                            // result of a command that the current state refuses
    Line busy = {};                                         // a start while any activity runs
    Line notOwn;                                            // another activity, or none
    Line idle;                                              // an activity in none of the states below
    StateWords running;
    StateWords paused; // by the user or by the adapter
    StateWords aborted = {};
};

// Does what an action other than a start asks for, or refuses it: exactly one line either way. Returns 0, words.refusal
// or the library's status.
int steerActivity(const SteeringWords& words, KT_U16 id, KT_U8 action, const ActivityStatus& status);

// What a command of the family was asked for.
struct ActivityRequest {
    KT_U16 id = 0;
    KT_U8 action = BGA_START;
    int kind = 0;        // index into the command's kinds
    PdList targets = {}; // disks, where the command takes them
};

// A way of starting: the word of -t (null where there is no choice), the library's number for it and the question that
// is asked while media patrol runs on a member disk.
struct ActivityKind {
    const char* word = nullptr;
    KT_U8 code = 0;
    Line question;
};

// What an activity is started on; tells with which calls its status is read.
enum class ActivityTarget { VirtualDisk, Array, Disk };

// What was read of it. array: the record of an array, zero for the others.
struct ActivitySubject {
    ActivityStatus now;
    _DG_Info array = {};
};

struct ActivityCommand {
    const OptionSet& options;
    ActivityTarget target;
    // The message of each option's bad value. An option without one is not the command's: it prints the help.
    Line invalidObject = {};  // -o
    Line invalidId;           // -l, or -d of a disk
    Line invalidTargets = {}; // -d with a list
    Line invalidKind = {};    // -t

    KT_U8 feature = 0; // bit of the adapter's Features without which the command is refused; 0 = none
    Line unsupported = {};

    Line infoFailed = {};   // the object's record cannot be read; without this line a virtual disk's is not asked for
    Line refusedRaid0 = {}; // a start on RAID0, result KT_ERR_NOT_SUPPORTED
    Line statusFailed = {};
    Line wrongRole = {}; // a disk that is neither spare nor member

    // Both may be null. checkRequest: before anything is read; false after its message, result 1. checkStart: before
    // the question; false after its message, with the result set.
    bool (*checkRequest)(const ActivityRequest& request) = nullptr;
    bool (*checkStart)(const ActivityRequest& request, const ActivitySubject& subject, int& result) = nullptr;

    ActivityKind kinds[2] = {};
    KT_U8 (*start)(const ActivityRequest& request, KT_U8 kindCode) = nullptr; // null: the command only steers
    Line started = {};
    Line startFailed = {};
    SteeringWords words;
};

// The handler of every member: reads the options, checks, reads the object, then starts or steers. A question is asked
// after all checks; declined, nothing is done and the result is 0.
int runActivityCommand(int argc, char** argv, const _cmd_struct* row, const ActivityCommand& command);
