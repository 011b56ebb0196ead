// What the state holds: one kind of row for each record type. The library's own records are kept as they are; the
// structs here hold what those do not. A change of any of them is a change of the state's version (store.h).
#pragma once

#include "ktraid.h"

namespace sim {

enum : KT_U8 { ADAPTER_GLOBAL = 255 }; // rows that belong to no adapter
inline constexpr KT_U64 NEVER = ~KT_U64{0};

enum Kind : KT_U8 {
    KIND_GLOBAL = 1,
    KIND_CLOCK = 2,
    KIND_FAULT = 3,
    KIND_ADAPTER = 10,
    KIND_ADAPTER_CONFIG = 11,
    KIND_ADAPTER_STATE = 12,
    KIND_VD = 20,
    KIND_VD_STATE = 21,
    KIND_VD_TARGET = 22,
    KIND_VD_AWAY = 23,
    KIND_DG = 30,
    KIND_DG_STATE = 31,
    KIND_PD = 40,
    KIND_PD_STATE = 41,
    KIND_PD_PULLED = 42,
    KIND_PD_PULLED_BLOCKS = 45,
    KIND_BAD_SECTOR = 46,
    KIND_PD_ARRAY_LABEL = 47,
    KIND_BLOCK = 50,
    KIND_PD_BLOCKS = 51,
    KIND_PM = 60,
    KIND_EXPANDER = 61,
    KIND_ENCLOSURE = 62,
    KIND_EVENT = 70,
    KIND_BATTERY = 80
    // Each further kind of the peripherals takes a free number and a line in KindOf below (or beside its struct).
};

// A long-running job: of a virtual disk, an array or a disk (media patrol). Times are milliseconds of the simulated
// clock, amounts KiB. Its progress follows from these by activityDone(); nothing has to tick.
struct Activity {
    KT_U8 kind;    // KT_BGA_*, or KT_PD_BGA_* of a disk; 0 = none
    KT_U8 state;   // KT_STATE_*
    KT_U16 disk;   // the disk being rebuilt or copied to; KT_NO_ID = none
    KT_U8 resumes; // private to the rules: what restarts an interrupted or auto-paused job
    KT_U8 reserved[3];
    KT_U64 work;      // the whole amount
    KT_U64 done;      // the part done at `since`
    KT_U64 since;     // when it last began to run, or when `speed` last changed
    KT_U64 speed;     // KiB per second
    KT_U64 announced; // private to the rules: the last percentage that was logged
};

// One row, id 0, ADAPTER_GLOBAL.
struct GlobalState {
    KT_U16 adapterCount;
    KT_U16 reserved;
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

// One row an adapter, id 0. `due...` are the moments at which settling has something to do (NEVER, or 0 = unknown).
struct AdapterState {
    KT_U64 dueRaid;
    KT_U64 duePeripherals;
    KT_U8 muted;
    KT_U8 paused;   // KT_LD_PauseAll in force
    KT_U16 patrols; // disks with a media patrol of any state; spares the status calls looking at every disk
    KT_U8 reserved[4];
};

struct VdState {
    KT_U8 cachePolicy; // KT_CACHE_* as configured; _LD_Info.CacheMode is what is in force
    KT_U8 hasOs;
    KT_U8 initialized; // parity or mirror known to be consistent
    KT_U8 waterMark;   // TandemWaterMark of its creation
    KT_U8 unfinished;  // foreign, and in the middle of a migration that cannot be gone on with here
    KT_U8 reserved;
    KT_U16 linkedDisk; // KT_VDHDD_AddLink; KT_NO_ID = none
    KT_U64 offline;    // milliseconds: when it last went offline; what disks missed before is lost on them
    Activity activity;
    KT_U16 homes[128]; // whose place each slot is; a spare may stand in for that disk. Unused in an array
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
    KT_U64 left;        // milliseconds: when it went offline
    KT_U64 reservedKib; // kept at the disk's end for metadata; the rest is its valid size
    Activity patrol;
};

// A disk that was pulled out: its rows wait here, listed nowhere, until it comes back.
struct PulledDisk {
    _HD_Info info;
    PdState state;
};

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
    KT_U64 left; // milliseconds: when it went
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

template <class Record>
struct KindOf;
#define KTSIM_KIND(record, kindNumber)                                                                                 \
    template <>                                                                                                        \
    struct KindOf<record> {                                                                                            \
        static constexpr Kind value = static_cast<Kind>(kindNumber);                                                   \
    }
KTSIM_KIND(GlobalState, KIND_GLOBAL);
KTSIM_KIND(Clock, KIND_CLOCK);
KTSIM_KIND(Fault, KIND_FAULT);
KTSIM_KIND(_Adapter_Info, KIND_ADAPTER);
KTSIM_KIND(_Adapter_Config_V2, KIND_ADAPTER_CONFIG);
KTSIM_KIND(AdapterState, KIND_ADAPTER_STATE);
KTSIM_KIND(_LD_Info, KIND_VD);
KTSIM_KIND(VdState, KIND_VD_STATE);
KTSIM_KIND(VdTarget, KIND_VD_TARGET);
KTSIM_KIND(AwayVd, KIND_VD_AWAY);
KTSIM_KIND(_DG_Info, KIND_DG);
KTSIM_KIND(DgState, KIND_DG_STATE);
KTSIM_KIND(_HD_Info, KIND_PD);
KTSIM_KIND(PdState, KIND_PD_STATE);
KTSIM_KIND(PulledDisk, KIND_PD_PULLED);
KTSIM_KIND(PulledBlocks, KIND_PD_PULLED_BLOCKS);
KTSIM_KIND(BadSector, KIND_BAD_SECTOR);
KTSIM_KIND(ArrayLabel, KIND_PD_ARRAY_LABEL);
KTSIM_KIND(_Block_Info, KIND_BLOCK);
KTSIM_KIND(_HD_Block_Info, KIND_PD_BLOCKS);
KTSIM_KIND(_PM_Info, KIND_PM);
KTSIM_KIND(_Exp_Info, KIND_EXPANDER);
KTSIM_KIND(_Enclosure_Info, KIND_ENCLOSURE);
KTSIM_KIND(_Event, KIND_EVENT);
KTSIM_KIND(_BBU_Info, KIND_BATTERY);

} // namespace sim
