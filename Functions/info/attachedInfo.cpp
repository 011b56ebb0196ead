// Port multipliers, expanders and the battery.
#include "Functions/info/info.h"

KT_U8 getPMInfo(KT_U16) {
    return static_cast<KT_U8>(notAvailable("info -o pm"));
}

KT_U8 getExpInfo(KT_U16) {
    return static_cast<KT_U8>(notAvailable("info -o exp"));
}

KT_U8 getBBUInfo() {
    return static_cast<KT_U8>(notAvailable("info -o bbu"));
}
