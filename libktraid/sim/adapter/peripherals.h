/* What the state holds of an adapter's peripherals beyond the library's own records. */
#ifndef KTSIM_ADAPTER_PERIPHERALS_H
#define KTSIM_ADAPTER_PERIPHERALS_H

#include "adapter/digest.h"
#include "store.h"

namespace sim {

enum : KT_U8 {
    KIND_DISK_AGE = 43,
    KIND_DISK_CIPHER = 44,
    KIND_ENCLOSURE_ELEMENT = 63,
    KIND_BATTERY_STATE = 81,
    KIND_AES_ENTRY = 90,
    KIND_AES_PORT = 91,
    KIND_SETTINGS_PAGE = 100,
    KIND_FLASH_IMAGE = 101,
    KIND_FLASH_CHUNK = 102,
    KIND_FLASH_UPDATE = 103,
    KIND_NVSRAM = 104,
    KIND_MAILBOX = 105,
    KIND_TANDEM_TABLE = 110,
    KIND_TANDEM_ENTRY = 111
};

enum : KT_U8 { NO_ENTRY = 255 };

/* A key entry, id = its number; no row = no key. Only digests of the secrets are kept. */
struct AesEntry {
    KT_U8 keyLength;
    KT_U8 reserved[7];
    Digest key;
    Digest password;
};

/* An encrypting port, id = its number; no row = no link, switched off. */
struct AesPort {
    KT_U8 entry; /* NO_ENTRY = no link */
    KT_U8 enabled;
    KT_U8 reserved[6];
};

/* What a disk is encrypted with, id = the disk's; no row = a plain disk that nothing is wrong with. */
struct DiskCipher {
    Digest key;    /* as AesEntry.key; zero = plain */
    KT_U8 offline; /* it is offline because of its cipher */
    KT_U8 reserved[7];
};

KTSIM_KIND(AesEntry, KIND_AES_ENTRY);
KTSIM_KIND(AesPort, KIND_AES_PORT);
KTSIM_KIND(DiskCipher, KIND_DISK_CIPHER);

/* The adapter's record; zero when it has none. */
inline _Adapter_Info adapterInfo(const Context& context) {
    return find<_Adapter_Info>(context, 0).value_or(_Adapter_Info{});
}

} // namespace sim
#endif
