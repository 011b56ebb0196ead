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
    KIND_FLASH_STAGED = 106,
    KIND_NVSRAM = 104,
    KIND_MAILBOX = 105,
    KIND_TANDEM_TABLE = 110,
    KIND_TANDEM_ENTRY = 111
};

enum : KT_U8 { NO_ENTRY = 255 };

enum : KT_U8 { BATTERY_IDLE, BATTERY_CHARGING, BATTERY_DISCHARGING };
enum : KT_U8 { RELEARN_NONE, RELEARN_PENDING, RELEARN_DISCHARGING, RELEARN_CHARGING };

/* How the battery does, id 0, beside its _BBU_Info, which holds what does not move by itself. */
struct BatteryState {
    KT_U64 since;          /* milliseconds: when `charge` was right */
    KT_U64 nextRelearn;    /* milliseconds */
    KT_U64 relearnStarted; /* milliseconds */
    KT_U32 charge;         /* millionths of the capacity */
    KT_U16 designCapacity; /* 0.01 Wh; the capacity of a new one */
    KT_U8 mode;            /* BATTERY_* */
    KT_U8 relearn;         /* RELEARN_* */
    KT_U8 announced;       /* warnings given of the next relearn */
    KT_U8 rechargeBelow;   /* percent */
    KT_U8 chargerBroken;
    KT_U8 complaints; /* what is wrong and was logged: bits of the rules in battery.cpp */
    KT_U8 abnormal;   /* virtual disks with automatic cache write through */
    KT_U8 reserved[3];
};

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

enum : KT_U8 { IMAGE_STORED = 0, IMAGE_ERASED = 1 };

/* A flash region, id = the image type; no row = as the adapter left the factory. Its pages are rows of
   KIND_FLASH_CHUNK with the id (type << 16) + page. */
struct FlashImage {
    KT_U8 state;
    KT_U8 reserved[3];
    KT_U32 size;
};

/* The update that is under way, id 0. Its pages wait as rows of KIND_FLASH_STAGED, id = page. */
struct FlashUpdate {
    KT_U8 imageType;
    KT_U8 announced; /* `expected` is what KT_Flash_PreData said */
    KT_U16 nextPage;
    KT_U32 expected;
    KT_U32 received;
};

/* 256 bytes of NVSRAM, id = offset / 256; no row = zero. */
struct NvsramPage {
    KT_U8 bytes[256];
};

/* The mailbox registers, id 0. */
struct Mailbox {
    KT_U64 value[2];
    KT_U64 writingUntil[2]; /* milliseconds of the simulated clock */
};

KTSIM_KIND(FlashImage, KIND_FLASH_IMAGE);
KTSIM_KIND(FlashUpdate, KIND_FLASH_UPDATE);
KTSIM_KIND(NvsramPage, KIND_NVSRAM);
KTSIM_KIND(Mailbox, KIND_MAILBOX);
KTSIM_KIND(_HBA_Info_Page, KIND_SETTINGS_PAGE);
KTSIM_KIND(BatteryState, KIND_BATTERY_STATE);
KTSIM_KIND(AesEntry, KIND_AES_ENTRY);
KTSIM_KIND(AesPort, KIND_AES_PORT);
KTSIM_KIND(DiskCipher, KIND_DISK_CIPHER);

/* The adapter's record; zero when it has none. */
inline _Adapter_Info adapterInfo(const Context& context) {
    return find<_Adapter_Info>(context, 0).value_or(_Adapter_Info{});
}

} // namespace sim
#endif
