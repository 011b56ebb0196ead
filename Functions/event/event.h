#pragma once

#include "Public/options.h"

// How many events one run asks for: the most recent ones.
inline constexpr KT_U8 EVENTS_ASKED = 50;

// Prints one event: number, time, severity, description and, where there is any, its sense data.
void evt_printf(const _Event* event);

int doEvent(int argc, char** argv, _cmd_struct* row);
extern const char event_sh[];
extern const char event_help[];
extern const OptionSet eventOptions;
