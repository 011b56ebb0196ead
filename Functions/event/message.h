#pragma once

#include "Public/options.h"

// Prints one event whose texts the library composed.
void msg_printf(const _Event_Message* message);

int doMessage(int argc, char** argv, _cmd_struct* row);
extern const char message_sh[];
extern const char message_help[];
extern const OptionSet messageOptions;
