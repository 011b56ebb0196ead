#include "Public/commandSet.h"

_cmd_struct* pCmdTable = nullptr;
_cmd_struct* pInCmdTable = nullptr;
KT_U16 cmdTableSize = 0;
KT_U16 inCmdTableSize = 0;
