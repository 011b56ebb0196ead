// The four command tables: a general and an internal one for each command set. Their order is what help prints.
#pragma once

#include "Public/options.h"

extern const CommandSet ldBasedCommands;    // adapters whose firmware manages virtual disks directly
extern const CommandSet arrayBasedCommands; // adapters that group disks into arrays

struct CommandOptions {
    CommandHandler handler;
    const OptionSet* options;
};

// The options a handler takes; null for a handler that stands in no table.
const OptionSet* optionsOf(CommandHandler handler);
