#pragma once

#include "Public/optionRows.h"

// How many events one run asks for: the most recent ones.
inline constexpr KT_U8 EVENTS_ASKED = 50;

// Prints one event: number, time, severity, description and, where there is any, its sense data.
void evt_printf(const _Event* event);

int doEvent(int argc, char** argv, _cmd_struct* row);

inline constexpr char event_sh[] = ":Get the current events.";
inline constexpr OptionRow eventRows[] = {
    // It may be given again: the last one counts.
    {'s', "sequence", "<sequence>", Takes::Text, UNNAMED},
    {'h', "help", "", Takes::Nothing, UNNAMED},
};
inline constexpr CommandWords eventWords = {.rows = eventRows};
inline constexpr char event_help[] = "\nevent [-s <seqno>]\n\n\n"
                                     "Description: Get the current events.\n\n"
                                     "Options:\n"
                                     "    -s, --seqno<seqno>\n"
                                     "        to get events that sequence number larger than the seqno. \n"
                                     "    -h, --help\n\n"
                                     "Examples:\n"
                                     "    event -s 100\n\n"
                                     "    Get events that sequence number larger than 100.\n\n";
inline constexpr const OptionSet& eventOptions = optionSet<eventWords>;
