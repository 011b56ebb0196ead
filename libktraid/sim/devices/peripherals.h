// What the state holds of an adapter's peripherals beyond the library's own records.
#pragma once

#include "raid/volumes.h"
#include "state/digest.h"
#include "state/store.h"

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

// How the battery does, id 0, beside its _BBU_Info, which holds what does not move by itself.
struct BatteryState {
    KT_U64 since;          // milliseconds: when `charge` was right
    KT_U64 nextRelearn;    // milliseconds
    KT_U64 relearnStarted; // milliseconds
    KT_U32 charge;         // millionths of the capacity
    KT_U16 designCapacity; // 0.01 Wh; the capacity of a new one
    KT_U8 mode;            // BATTERY_*
    KT_U8 relearn;         // RELEARN_*
    KT_U8 announced;       // warnings given of the next relearn
    KT_U8 rechargeBelow;   // percent
    KT_U8 chargerBroken;
    KT_U8 complaints; // what is wrong and was logged: bits of the rules in battery.cpp
    KT_U8 abnormal;   // virtual disks with automatic cache write through
    KT_U8 reserved[3];
};

// One SES element, id = (enclosure << 16) + (type << 8) + element. The slots' status follows from their disks.
struct EnclosureElement {
    KT_U8 status[4]; // the SES status element
    KT_U8 subEnclosure;
    KT_U8 reserved[3];
    KT_U8 text[64]; // what the enclosure calls it; empty = the type's name and the number
};

// What has befallen a disk, id = the disk's; no row = nothing but time.
struct DiskAge {
    KT_U32 reallocated; // sectors
    KT_U32 pending;
    KT_U32 uncorrectable;
    KT_U32 readErrors;
    KT_U32 spinRetries;
    KT_U32 linkErrors;
    KT_U32 hours;       // beyond those since it was made
    KT_U32 wear;        // percent of a solid state disk's life
    KT_U32 warmth;      // degrees above its usual temperature
    KT_U32 mostPending; // the most there ever were
    KT_U32 mostWarmth;
    KT_U32 powerCycles; // beyond those of its first years
    KT_U64 born;        // milliseconds: when its hours began to count; 0 = as its serial number says
    KT_U64 pulled;      // milliseconds: when it was last taken out; its hours stand still meanwhile
    KT_U64 writtenKib;  // by activities, on a solid state disk
};

// The table of a hybrid virtual disk, id = its id. It belongs to the virtual disk that has that GUID only.
struct TandemTable {
    KT_U8 guid[8];
    KT_U16 used;
    KT_U8 reserved[6];
};

// id = (virtual disk << 16) + number
struct TandemEntry {
    KT_U64 start;
    KT_U64 length;
};

// A key entry, id = its number; no row = no key. Only digests of the secrets are kept.
struct AesEntry {
    KT_U8 keyLength;
    KT_U8 reserved[7];
    Digest key;
    Digest password;
};

// An encrypting port, id = its number; no row = no link, switched off.
struct AesPort {
    KT_U8 entry; // NO_ENTRY = no link
    KT_U8 enabled;
    KT_U8 reserved[6];
};

// What a disk is encrypted with, id = the disk's; no row = a plain disk that nothing is wrong with.
struct DiskCipher {
    Digest key;    // as AesEntry.key; zero = plain
    KT_U8 offline; // it is offline because of its cipher
    KT_U8 reserved[7];
};

enum : KT_U8 { IMAGE_STORED = 0, IMAGE_ERASED = 1 };

// A flash region, id = the image type; no row = as the adapter left the factory. Its pages are rows of
// KIND_FLASH_CHUNK with the id (type << 16) + page.
struct FlashImage {
    KT_U8 state;
    KT_U8 reserved[3];
    KT_U32 size;
};

// The update that is under way, id 0. Its pages wait as rows of KIND_FLASH_STAGED, id = page.
struct FlashUpdate {
    KT_U8 imageType;
    KT_U8 announced; // `expected` is what KT_Flash_PreData said
    KT_U16 nextPage;
    KT_U32 expected;
    KT_U32 received;
};

// 256 bytes of NVSRAM, id = offset / 256; no row = zero.
struct NvsramPage {
    KT_U8 bytes[256];
};

// The mailbox registers, id 0.
struct Mailbox {
    KT_U64 value[2];
    KT_U64 writingUntil[2]; // milliseconds of the simulated clock
};

KTSIM_KIND(FlashImage, KIND_FLASH_IMAGE);
KTSIM_KIND(FlashUpdate, KIND_FLASH_UPDATE);
KTSIM_KIND(NvsramPage, KIND_NVSRAM);
KTSIM_KIND(Mailbox, KIND_MAILBOX);
KTSIM_KIND(_HBA_Info_Page, KIND_SETTINGS_PAGE);
KTSIM_KIND(BatteryState, KIND_BATTERY_STATE);
KTSIM_KIND(EnclosureElement, KIND_ENCLOSURE_ELEMENT);
KTSIM_KIND(DiskAge, KIND_DISK_AGE);
KTSIM_KIND(TandemTable, KIND_TANDEM_TABLE);
KTSIM_KIND(TandemEntry, KIND_TANDEM_ENTRY);
KTSIM_KIND(AesEntry, KIND_AES_ENTRY);
KTSIM_KIND(AesPort, KIND_AES_PORT);
KTSIM_KIND(DiskCipher, KIND_DISK_CIPHER);

// What only the disk itself carried is gone with it: to be called when another disk takes its id.
void forgetDisk(const Context& context, KT_U16 pd);

} // namespace sim
