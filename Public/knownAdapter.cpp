#include "Public/knownAdapter.h"

#include "Public/common.h"
#include "Public/errorMsg.h"

bool isKnownAdapter(KT_U8 adapter, int& result) {
    const KT_U8 status = gAdapterStatus[adapter];
    if (status == KT_OK) return true;
    out("\nUnable to get info of adapter %d (error %d: %s).\n", adapter, status, ErrorMessage(status));
    result = status;
    return false;
}
