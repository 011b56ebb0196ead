// What the state holds: one kind of row for each record type. The library's own records are kept as they are; the
// structs here hold what those do not. A change of any of them is a change of the state's version (store.h).
#pragma once

#include "ktraid.h"
#include "state/digest.h"

namespace sim {

enum : KT_U8 { ADAPTER_GLOBAL = 255 }; // rows that belong to no adapter
inline constexpr KT_U64 NEVER = ~KT_U64{0};

// A long-running activity: of a virtual disk, an array or a disk (media patrol). Times are milliseconds of the
// simulated clock, amounts KiB. Its progress follows from these by activityDone(); nothing has to tick.
struct Activity {
    KT_U8 kind;  // KT_BGA_*, or KT_PD_BGA_* of a disk; 0 = none
    KT_U8 state; // KT_STATE_*
    KT_U16 disk; // the disk being rebuilt or copied to; KT_NO_ID = none
    KT_U8 reserved[4];
    KT_U64 work;      // the whole amount
    KT_U64 done;      // the part done at `since`
    KT_U64 since;     // when it last began to run, or when `speed` last changed
    KT_U64 speed;     // KiB per second
    KT_U64 announced; // private to the rules: the last percentage that was logged
};

// One row, id 0, ADAPTER_GLOBAL.
struct GlobalState {
    KT_U16 adapterCount;
    KT_U8 powerOff; // the machine is switched off: no call is answered
    KT_U8 reserved;
    KT_U32 rescanCount;
    KT_U32 sgVersion; // the simulated driver's, as /dev/sg0 would answer it: 30536 = 3.5.36
    KT_U32 reserved1;
    char lab[64]; // the lab it was made from
};

// One row, id 0, ADAPTER_GLOBAL: the time that everything goes by = base + (real - realBase) * speed / 1000. It only
// ever runs forward; what the adapters' clock is set to is that far from it. See simClock.h.
struct Clock {
    KT_U64 base;
    KT_U64 realBase;
    KT_U32 speed; // thousandths; 1000 = real time
    KT_U8 stopped;
    KT_U8 reserved[3];
    int64_t ahead; // milliseconds that the clock shows more
};

enum : KT_U8 { ADAPTER_UP = 0, ADAPTER_OFF = 1, ADAPTER_DEAD = 2 };

// One row an adapter, id 0. `due...` are the moments at which settling has something to do (NEVER, or 0 = unknown).
struct AdapterState {
    KT_U64 dueRaid;
    KT_U64 duePeripherals;
    KT_U8 muted;
    KT_U8 down;     // ADAPTER_*: without power, or booted without sound firmware
    KT_U16 patrols; // disks with a media patrol of any state: without any, status calls need not look at every disk
    KT_U8 reserved[4];
    KT_U64 losses;      // how often disks were lost, one at a time or several at one blow
    KT_U64 lossesAtOff; // `losses` when it last went down: what was lost since has missed nothing until it is up again
};

struct VdState {
    KT_U8 cachePolicy; // KT_CACHE_* as configured; _LD_Info.CacheMode is what is in force
    KT_U8 hasOs;
    KT_U8 initialized; // parity or mirror known to be consistent
    KT_U8 whole;       // it was made of all that there was, and grows when there is more
    KT_U8 unfinished;  // foreign, and in the middle of a migration that cannot be gone on with here
    KT_U8 reserved;
    KT_U16 linkedDisk; // KT_VDHDD_AddLink; KT_NO_ID = none
    KT_U64 offline;    // the AdapterState.losses that it last went offline at; what was lost earlier has missed writes
    Activity activity;
    KT_U16 homes[128]; // whose place each slot is; a spare may stand in for that disk. Unused in an array
};

enum : KT_U8 { CACHE_CLEAN = 0, CACHE_KEPT = 1, CACHE_LOST = 2 };

// How a virtual disk was when the power went, until the adapter has booted; id = the virtual disk's.
struct BootVd {
    KT_U8 guid[8];
    KT_U8 status;
    KT_U8 cache;   // CACHE_*: what happens to what was in it unwritten
    KT_U8 working; // members that did
    KT_U8 there;   // slots with a disk, working or not
    KT_U8 filling; // its, or its array's, KT_BGA_REBUILD or KT_BGA_COPY_BACK; 0 = neither
    KT_U8 reserved[3];
};

// What the cache holds for a virtual disk that is offline. The id of its row means nothing.
struct KeptCache {
    KT_U8 guid[8]; // of the virtual disk
    KT_U8 lost;    // its battery failed it; the boot tells so
    KT_U8 reserved[7];
};

// What a migrating virtual disk is turning into.
struct VdTarget {
    _LD_Info info;
    KT_U16 homes[128]; // whose place each slot will be, whether or not that disk is there
};

// A virtual disk that is on pulled disks only, or was deleted without them: it comes back with them as a foreign one.
// The id of its row means nothing.
struct AwayVd {
    _LD_Info info;
    VdState state;
};

struct DgState {
    KT_U8 writeCacheOn;
    KT_U8 memberCount; // slots, whether or not a disk is in them; _DG_Info.PDIDs lists the disks that are there
    KT_U8 reserved[6];
    Activity activity;
    KT_U16 members[128]; // the disk in each slot, KT_NO_ID = missing
    KT_U16 homes[128];   // whose place each slot is; a spare may stand in for that disk
};

enum : KT_U8 { PD_HEALTHY = 0, PD_FAILED = 1 };

enum : KT_U8 { TOLD_REBUILD = 1, TOLD_COPY_BACK = 2 };

struct PdState {
    _HD_CONFIG config;
    KT_U8 raid;   // KT_PD_* flags of _HD_RAID_STATUS
    KT_U8 health; // PD_HEALTHY or PD_FAILED
    KT_U8 hasMbr;
    KT_U8 hasOs;
    KT_U16 dgid; // the array it is a member or the dedicated spare of; KT_NO_ID = none
    KT_U8 smartTripped;
    KT_U8 toldTooSmall; // TOLD_*: what it is too small for was logged since a disk was lost
    KT_U64 left;        // the AdapterState.losses that it went offline with
    KT_U64 reservedKib; // kept at the disk's end for metadata; the rest is its valid size
    Activity patrol;
};

// A disk that was pulled out: its rows wait here, listed nowhere, until it comes back.
struct PulledDisk {
    _HD_Info info;
    PdState state;
    KT_U64 loss;  // the AdapterState.losses that it was pulled with
    KT_U8 shared; // a report had put another disk into the same place
    KT_U8 reserved[7];
};

// What the adapter does not see since a shelf or a cable was pulled; id = theirs, `loss` as above.
struct AwayEnclosure {
    _Enclosure_Info info;
    KT_U64 loss;
};
struct AwayExpander {
    _Exp_Info info;
    KT_U64 loss;
};
struct AwayMultiplier {
    _PM_Info info;
    KT_U64 loss;
};
// A cable that was pulled, id = the adapter's port, or a shelf, id = CABLES + its id.
struct AwayBranch {
    KT_U64 loss;
};
inline constexpr KT_U64 CABLES = 256;

// What virtual disks had on a pulled disk, so that they know it again.
struct PulledBlock {
    _Block_Info block;
    KT_U8 guid[8]; // of the virtual disk
    KT_U16 slot;   // in it; KT_NO_ID = only in what it is turning into
    KT_U16 target; // 1 + the slot in what it is turning into; 0 = none
    KT_U8 reserved[4];
};
struct PulledBlocks {
    KT_U8 count;
    KT_U8 raid;  // its PdState.raid
    KT_U16 dgid; // its array, or the array it was a spare of
    KT_U16 slot; // in that array
    KT_U16 reserved;
    KT_U64 left; // the AdapterState.losses that it went with
    PulledBlock entries[128];
};

// What its array wrote on a disk that came from another adapter, kept until the array is imported.
struct ArrayLabel {
    KT_U8 guid[8]; // of the array's first virtual disk, as that is known here
    KT_U8 name[sizeof(_DG_Info::Name)];
    KT_U8 spare; // the disk stood by for the array
    KT_U8 reserved[7];
};

enum SectorFlaw : KT_U8 {
    FLAW_UNREADABLE = 1,
    FLAW_LOST = 2, // sound, but marked by the adapter: what should be there could not be made from the other members
    FLAW_WRONG = 3 // reads well, but is not what was written
};

// A sector of a disk with something wrong, id = (disk << 48) + LBA; see media/surface.h.
struct BadSector {
    KT_U8 flaw;
    KT_U8 known; // the drive has met it, and counts it as pending
    KT_U8 reserved[6];
};

enum : KT_U8 { FAULT_STATUS = 0, FAULT_COUNT = 1, FAULT_TEXT = 2, FAULT_NEXT = 3 };

// One row a fault, ADAPTER_GLOBAL: meets the calls of that name from the after-th on, `times` times.
struct Fault {
    char call[48];
    KT_U8 kind;
    KT_U8 status;
    KT_U8 adapter; // ADAPTER_GLOBAL = any
    KT_U8 reserved;
    KT_U32 after; // calls that pass first
    KT_U32 times; // 0 = for ever
    KT_U32 seen;
};

enum : KT_U8 { NO_ENTRY = 255 };

enum : KT_U8 { BATTERY_IDLE, BATTERY_CHARGING, BATTERY_DISCHARGING };
enum : KT_U8 { RELEARN_NONE, RELEARN_PENDING, RELEARN_DISCHARGING, RELEARN_CHARGING };

// What becomes of the charge: as `mode` says, or, without power, it leaks away or keeps a cache.
enum : KT_U8 { DRAIN_NONE, DRAIN_LEAK, DRAIN_CACHE };

enum : KT_U8 { BATTERY_CHANGE_NONE, BATTERY_CHANGE_REMOVED, BATTERY_CHANGE_NEW, BATTERY_CHANGE_REPLACED };

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
    KT_U8 drain;      // DRAIN_*
    KT_U8 untold;     // BATTERY_CHANGE_*: what was done to it while the adapter was down
    KT_U8 reserved;
};

// One SES element, id = (enclosure << 16) + (type << 8) + element. The slots' status follows from their disks.
struct EnclosureElement {
    KT_U8 status[4]; // the SES status element
    KT_U8 subEnclosure;
    KT_U8 reserved[3];
    KT_U8 text[64]; // what the enclosure calls it; empty = the type's name and the number
};

// What adapters tell that these ones are twins of, where it is not what the rules here make of the same: shown as it is
// as long as the rules make the same as at first. Battery: id 0; slots: id as of EnclosureElement.
struct ToldBattery {
    _BBU_Info shown;
    _BBU_Info made;
};
struct ToldSlot {
    KT_U8 shown[4];
    KT_U8 made[4];
};
// The same of a disk's attributes, id = the disk's: they stand still until the disk ages by what befalls it.
struct ToldHealth {
    _SMART_Info shown;
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

// What a solid state disk remembers of its last self-test and of the microcode that waits for its next start, id = the
// disk's; no row = neither.
struct SolidState {
    KT_U8 state; // KT_SSD_*; one that runs may be over
    KT_U8 extended;
    KT_U8 result;       // the drive's own code
    KT_U8 waiting;      // the microcode below takes effect when it starts next
    KT_U32 hours;       // when the test ended
    KT_U64 started;     // milliseconds
    KT_U64 errorLba;    // KT_SSD_NO_LBA = none
    KT_U8 microcode[8]; // its version, as _HD_Info shows it
};

// A download of microcode to a disk that is under way, id = the disk's.
struct MicrocodeUpdate {
    KT_U32 nextPage;
    KT_U32 received; // bytes behind the header
    KT_U32 checksum; // of those
    KT_U32 expected; // what the header says of them
    KT_U32 expectedChecksum;
    KT_U8 version[8];
    KT_U8 reserved[4];
};

// The table of a hybrid virtual disk, id = its id. It belongs to the virtual disk that has that GUID only.
struct HybridTable {
    KT_U8 guid[8];
    KT_U16 used;
    KT_U8 reserved[6];
};

// id = (virtual disk << 16) + number
struct HybridEntry {
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

enum : KT_U8 { IMAGE_STORED = 0, IMAGE_ERASED = 1, IMAGE_FACTORY = 2 };

// A flash region. Its id is the image type, of the copy before the latest that + 256; no row of either = as the adapter
// left the factory. Its pages are rows of KIND_FLASH_CHUNK with the id (its id << 16) + page.
struct FlashImage {
    KT_U8 state;
    KT_U8 reserved[3];
    KT_U32 size;
    _Version_Info_CIM version; // of the factory's image
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

} // namespace sim
