#pragma once

#include "Public/optionRows.h"

// Prints one event whose texts the library composed.
void msg_printf(const _Event_Message* message);

int doMessage(int argc, char** argv, _cmd_struct* row);

inline constexpr char message_sh[] = ":Get the current events.";
inline constexpr OptionRow messageRows[] = {
    {'h', "help", "", Takes::Nothing, UNNAMED},
};
inline constexpr CommandWords messageWords = {.rows = messageRows};
inline constexpr char message_help[] = "\nmessage\n\n\n"
                                       "Description: Get the current events.\n\n"
                                       "Options:\n"
                                       "    -h, --help\n\n"
                                       "Examples:\n"
                                       "    message\n\n"
                                       "    Get events that sequence number larger than 100.\n\n";
inline constexpr const OptionSet& messageOptions = optionSet<messageWords>;
