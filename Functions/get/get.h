// The get command: the settings of virtual disks, arrays, disks or the adapter, and the links of hybrid virtual disks.
#pragma once

#include "Public/options.h"

int doGet(int argc, char** argv, _cmd_struct* row);
extern const char get_sh[];
extern const char get_help[];
extern const OptionSet getOptions;

void hdGet_printf(const _HD_CONFIG* config);
void dgGet_printf(const _DG_CONFIG* config);
void ldGet_printf(const _LD_Config* config);
void hbaGet_printf(KT_U8 adapter, const _Adapter_Config_V2* config);
