// The tables of commands.
#pragma once

#include "ktraid.h"

struct _cmd_struct;
typedef int (*CommandHandler)(int argc, char** argv, _cmd_struct* row);

// One row of a command table.
struct _cmd_struct {
    const char* cmd; // lower case
    int cmdLen;      // length of cmd plus one
    CommandHandler cmdHandler;
    const char* cmdHelp;      // the long help
    const char* cmdShortHelp; // one line; begins with ":" so that it reads well behind "Description"
};

// The tables of one command set.
struct CommandSet {
    _cmd_struct* general;
    KT_U16 generalSize;
    _cmd_struct* internal;
    KT_U16 internalSize;
};

extern _cmd_struct* pCmdTable;   // the general table in force
extern _cmd_struct* pInCmdTable; // the internal table in force
extern KT_U16 cmdTableSize;      // rows of each
extern KT_U16 inCmdTableSize;
