#pragma once

#include "Public/options.h"

int doStatus(int argc, char** argv, _cmd_struct* row);
extern const char status_sh[];
extern const char status_help[];
extern const OptionSet statusOptions;

void hdStatus_printf(const _HD_SMART_STATUS* status);
