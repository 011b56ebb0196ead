// The kinds of rows in the state, all in one place: their numbers stand in the files that users have. A kind that goes
// leaves its number unused.
#pragma once

#include "state/records.h"

namespace sim {

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
    KIND_VD_BOOT = 24,
    KIND_KEPT_CACHE = 25,
    KIND_DG = 30,
    KIND_DG_STATE = 31,
    KIND_PD = 40,
    KIND_PD_STATE = 41,
    KIND_PD_PULLED = 42,
    KIND_DISK_AGE = 43,
    KIND_DISK_CIPHER = 44,
    KIND_SOLID_STATE = 48,
    KIND_MICROCODE_UPDATE = 49,
    KIND_TOLD_HEALTH = 52,
    KIND_PD_PULLED_BLOCKS = 45,
    KIND_BAD_SECTOR = 46,
    KIND_PD_ARRAY_LABEL = 47,
    KIND_BLOCK = 50,
    KIND_PD_BLOCKS = 51,
    KIND_PM = 60,
    KIND_EXPANDER = 61,
    KIND_ENCLOSURE = 62,
    KIND_ENCLOSURE_ELEMENT = 63,
    KIND_ENCLOSURE_AWAY = 64,
    KIND_EXPANDER_AWAY = 65,
    KIND_PM_AWAY = 66,
    KIND_BRANCH_AWAY = 67,
    KIND_TOLD_SLOT = 68,
    KIND_EVENT = 70,
    KIND_BATTERY = 80,
    KIND_BATTERY_STATE = 81,
    KIND_TOLD_BATTERY = 82,
    KIND_AES_ENTRY = 90,
    KIND_AES_PORT = 91,
    KIND_SETTINGS_PAGE = 100,
    KIND_FLASH_IMAGE = 101,
    KIND_FLASH_CHUNK = 102,
    KIND_FLASH_UPDATE = 103,
    KIND_NVSRAM = 104,
    KIND_MAILBOX = 105,
    KIND_FLASH_STAGED = 106,
    KIND_HYBRID_TABLE = 110,
    KIND_HYBRID_ENTRY = 111
};

// The record that the rows of each kind hold.
#define STATE_RECORDS(X)                                                                                               \
    X(GlobalState, KIND_GLOBAL)                                                                                        \
    X(Clock, KIND_CLOCK)                                                                                               \
    X(Fault, KIND_FAULT)                                                                                               \
    X(_Adapter_Info, KIND_ADAPTER)                                                                                     \
    X(_Adapter_Config_V2, KIND_ADAPTER_CONFIG)                                                                         \
    X(AdapterState, KIND_ADAPTER_STATE)                                                                                \
    X(_LD_Info, KIND_VD)                                                                                               \
    X(VdState, KIND_VD_STATE)                                                                                          \
    X(VdTarget, KIND_VD_TARGET)                                                                                        \
    X(AwayVd, KIND_VD_AWAY)                                                                                            \
    X(BootVd, KIND_VD_BOOT)                                                                                            \
    X(KeptCache, KIND_KEPT_CACHE)                                                                                      \
    X(_DG_Info, KIND_DG)                                                                                               \
    X(DgState, KIND_DG_STATE)                                                                                          \
    X(_HD_Info, KIND_PD)                                                                                               \
    X(PdState, KIND_PD_STATE)                                                                                          \
    X(PulledDisk, KIND_PD_PULLED)                                                                                      \
    X(PulledBlocks, KIND_PD_PULLED_BLOCKS)                                                                             \
    X(BadSector, KIND_BAD_SECTOR)                                                                                      \
    X(ArrayLabel, KIND_PD_ARRAY_LABEL)                                                                                 \
    X(_Block_Info, KIND_BLOCK)                                                                                         \
    X(_HD_Block_Info, KIND_PD_BLOCKS)                                                                                  \
    X(_PM_Info, KIND_PM)                                                                                               \
    X(_Exp_Info, KIND_EXPANDER)                                                                                        \
    X(_Enclosure_Info, KIND_ENCLOSURE)                                                                                 \
    X(_Event, KIND_EVENT)                                                                                              \
    X(_BBU_Info, KIND_BATTERY)                                                                                         \
    X(FlashImage, KIND_FLASH_IMAGE)                                                                                    \
    X(FlashUpdate, KIND_FLASH_UPDATE)                                                                                  \
    X(NvsramPage, KIND_NVSRAM)                                                                                         \
    X(Mailbox, KIND_MAILBOX)                                                                                           \
    X(_HBA_Info_Page, KIND_SETTINGS_PAGE)                                                                              \
    X(BatteryState, KIND_BATTERY_STATE)                                                                                \
    X(AwayEnclosure, KIND_ENCLOSURE_AWAY)                                                                              \
    X(AwayExpander, KIND_EXPANDER_AWAY)                                                                                \
    X(AwayMultiplier, KIND_PM_AWAY)                                                                                    \
    X(AwayBranch, KIND_BRANCH_AWAY)                                                                                    \
    X(EnclosureElement, KIND_ENCLOSURE_ELEMENT)                                                                        \
    X(DiskAge, KIND_DISK_AGE)                                                                                          \
    X(HybridTable, KIND_HYBRID_TABLE)                                                                                  \
    X(HybridEntry, KIND_HYBRID_ENTRY)                                                                                  \
    X(AesEntry, KIND_AES_ENTRY)                                                                                        \
    X(AesPort, KIND_AES_PORT)                                                                                          \
    X(DiskCipher, KIND_DISK_CIPHER)                                                                                    \
    X(SolidState, KIND_SOLID_STATE)                                                                                    \
    X(MicrocodeUpdate, KIND_MICROCODE_UPDATE)                                                                          \
    X(ToldHealth, KIND_TOLD_HEALTH)                                                                                    \
    X(ToldSlot, KIND_TOLD_SLOT)                                                                                        \
    X(ToldBattery, KIND_TOLD_BATTERY)

template <class Record>
struct KindOf;
#define STATE_KIND_OF(Record, kind)                                                                                    \
    template <>                                                                                                        \
    struct KindOf<Record> {                                                                                            \
        static constexpr Kind value = kind;                                                                            \
    };
STATE_RECORDS(STATE_KIND_OF)
#undef STATE_KIND_OF

// The pages of flash images are rows without a record.
constexpr bool kindsDiffer() {
#define STATE_KIND_NUMBER(Record, kind) kind,
    const Kind kinds[] = {STATE_RECORDS(STATE_KIND_NUMBER) KIND_FLASH_CHUNK, KIND_FLASH_STAGED};
#undef STATE_KIND_NUMBER
    const Kind* const end = kinds + sizeof kinds / sizeof *kinds;
    for (const Kind* one = kinds; one != end; ++one) {
        for (const Kind* other = one + 1; other != end; ++other) {
            if (*one == *other) return false;
        }
    }
    return true;
}
static_assert(kindsDiffer(), "two records share the number of their rows");

} // namespace sim
