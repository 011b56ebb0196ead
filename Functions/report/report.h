#pragma once

#include "Public/options.h"

int doReport(int argc, char** argv, _cmd_struct* row);
extern const char report_sh[];
extern const char report_help[];
extern const OptionSet reportOptions;
