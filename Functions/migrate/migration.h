// What the two migrate commands share: their options, the rules for a target level and the members that a target keeps.
#pragma once

#include "Public/activity.h"
#include "Public/raidRules.h"

struct MigrationRequest {
    KT_U16 id = 0; // virtual disk or array
    KT_U8 action = BGA_START;
    bool sizeOnly = false; // -a size: only report how large the result would be
    bool levelGiven = false;
    bool parityGiven = false;
    KT_U8 level = 0;
    int parity = 0;              // as typed; parityFits() before it goes into a record
    const char* parityText = ""; // -q as it was typed
    PdList disks = {};
};

// What the commands differ in.
struct MigrationCommand {
    const OptionSet& options;
    RaidUse use;
    Line unsupported; // with the adapter's index
    Line noDisks;     // a start without -d, where -r alone is not enough
    void (*degraded)(const char* from, const char* to);
    SteeringWords words;
};

// Reads and checks the options. False when the command is over; result is then what its handler returns.
bool readMigration(const CommandCall& call, const MigrationCommand& command, MigrationRequest& request, int& result);

// Completes the request with what was not given: the present level, and the level's own number of parity disks.
void completeMigration(const MigrationCommand& command, KT_U8 presentLevel, MigrationRequest& request);

// Whether the number of parity disks fits its field in a record.
bool parityFits(const MigrationRequest& request);

// What is said of one that does not where no rule of a level has said it: the command's result.
int refuseParity(const MigrationRequest& request);

// True when the adapter offers the target level, it is no less redundant than the present one, and the number of disks
// and parity disks fits it; otherwise one message.
bool checkMigrationTarget(const MigrationCommand& command, KT_U8 presentLevel, const MigrationRequest& request);

// The present member disks, and which of the target disks are among them.
struct MigrationMembers {
    LineText list; // "1 2 "
    unsigned present = 0;
    unsigned kept = 0;
    bool isMember[sizeof PdList::ids / sizeof(KT_U16)] = {};
};

// Notes a present member disk.
void addMember(const MigrationRequest& request, KT_U16 disk, MigrationMembers& members);

// True when the question about media patrol need not be asked, or is answered with yes.
bool confirmMigration(const ActivityStatus& now, const Line& question);

// True when the target keeps every member disk; otherwise says which ones it has to keep.
bool checkMembersKept(const MigrationMembers& members);
