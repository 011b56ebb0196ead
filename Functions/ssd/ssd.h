#pragma once

#include "Public/options.h"

int doSsdDiagnostic(int argc, char** argv, _cmd_struct* row);
extern const char ssd_sh[];
extern const char ssd_help[];
extern const OptionSet ssdOptions;
int doSsdOp(int argc, char** argv, _cmd_struct* row);
extern const char ssdop_sh[];
extern const char ssdop_help[];
extern const OptionSet ssdopOptions;
