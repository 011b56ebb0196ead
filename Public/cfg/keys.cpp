#include "Public/cfg/keys.h"

#include <bit>
#include <cstring>
#include <iterator>

// In the order in which they are tried. Only the beginning of a value is compared, so of two words that begin alike
// the longer one stands first.
static const struct {
    const char* word;
    KT_U8 code;
} checkedWords[] = {
    {"DISABLE", CFG_DISABLE},     {"ENABLE", CFG_ENABLE},
    {"1.5Gb/s", CFG_1_5_GBS},     {"3Gb/s", CFG_3_GBS},
    {"6Gb/s", CFG_6_GBS},         {"RAID0", CFG_RAID0},
    {"RAID10", CFG_RAID10},       {"RAID1E", CFG_RAID1E},
    {"RAID1", CFG_RAID1},         {"RAID50", CFG_RAID50},
    {"RAID5", CFG_RAID5},         {"RAID60", CFG_RAID60},
    {"RAID6", CFG_RAID6},         {"WRITETHROUGH", CFG_WRITETHROUGH},
    {"WRITEBACK", CFG_WRITEBACK}, {"READAHEAD", CFG_READAHEAD},
    {"NONE", CFG_NONE},           {"QUICK", CFG_QUICK},
};

KT_U8 check_str(const char* word) {
    for (const auto& row : checkedWords) {
        if (strncasecmp(word, row.word, strlen(row.word)) == 0) return row.code;
    }
    return CFG_NO_WORD;
}

const char* cfgWord(KT_U8 code) {
    for (const auto& row : checkedWords) {
        if (row.code == code) return row.word;
    }
    return "";
}

static KT_U32 load(const void* record, const CfgField& field, unsigned index) {
    KT_U32 bytes = 0;
    memcpy(&bytes, static_cast<const char*>(record) + field.offset + index * field.stride, field.size);
    return bytes;
}

KT_U32 fieldValue(const void* record, const CfgField& field, unsigned index) {
    return (load(record, field, index) & field.mask) >> std::countr_zero(field.mask);
}

void setFieldValue(void* record, const CfgField& field, unsigned index, KT_U32 value) {
    KT_U32 bytes = load(record, field, index) & ~field.mask;
    bytes |= value << std::countr_zero(field.mask) & field.mask;
    memcpy(static_cast<char*>(record) + field.offset + index * field.stride, &bytes, field.size);
}

static const CfgWord switchWords[] = {{CFG_ENABLE, 1}, {CFG_DISABLE, 0}};
// For a bit that switches its feature off.
static const CfgWord disableWords[] = {{CFG_ENABLE, 0}, {CFG_DISABLE, 1}};
// A faster rate is known as a word, but is no value of this key.
static const CfgWord rateWords[] = {{CFG_1_5_GBS, 0}, {CFG_3_GBS, 1}};
static const CfgWord levelWords[] = {{CFG_RAID0, KT_RAID0},   {CFG_RAID1, KT_RAID1},  {CFG_RAID10, KT_RAID10},
                                     {CFG_RAID1E, KT_RAID1E}, {CFG_RAID5, KT_RAID5},  {CFG_RAID6, KT_RAID6},
                                     {CFG_RAID50, KT_RAID50}, {CFG_RAID60, KT_RAID60}};
static const CfgWord writeWords[] = {{CFG_WRITETHROUGH, KT_CACHE_OFF}, {CFG_WRITEBACK, 0}};
static const CfgWord readWords[] = {{CFG_NONE, 0}, {CFG_READAHEAD, 1}};
static const CfgWord initWords[] = {{CFG_QUICK, KT_INIT_QUICK}};

#define PAGE_FIELD(name) offsetof(_HBA_Info_Page, name), sizeof(_HBA_Info_Page::name)
#define PORT_FIELD(name)                                                                                               \
    offsetof(_HBA_Info_Page, name), sizeof(_HBA_Info_Page::name[0]), sizeof(_HBA_Info_Page::name[0])
#define VD_FIELD(name) offsetof(_LD_Info, name), sizeof(_LD_Info::name)
#define SPARE_FIELD(name) offsetof(_HD_RAID_STATUS, name), sizeof(_HD_RAID_STATUS::name)
#define WORDS(list)                                                                                                    \
    { list, std::size(list) }

// clang-format off
static const CfgKey adapterKeys[] = {
    {.key = "[SERIAL_NUMBER]", .form = CfgForm::Raw, .owner = CfgOwner::Page, .field = {PAGE_FIELD(Serial_Num)},
     .writtenBytes = sizeof(_HBA_Info_Page::Serial_Num)},
    {.key = "[SILENT_MODE]", .form = CfgForm::Word, .owner = CfgOwner::Page,
     .field = {PAGE_FIELD(HBA_Flag), 0, 0x2}, .words = WORDS(switchWords),
     .invalid = "Restore_Error: invalid flag for silent mode."},
    {.key = "[INT13]", .form = CfgForm::Word, .owner = CfgOwner::Page,
     .field = {PAGE_FIELD(HBA_Flag), 0, 0x1}, .words = WORDS(switchWords),
     .invalid = "Restore_Error: invalid flag for INT13"},
    {.key = "[ERROR_STOP]", .form = CfgForm::Word, .owner = CfgOwner::Page,
     .field = {PAGE_FIELD(HBA_Flag), 0, 0x4}, .words = WORDS(switchWords),
     .invalid = "Restore_Error: invalid flag for ERROR_STOP."},
    {.key = "[RAID FEATURE]", .form = CfgForm::Word, .owner = CfgOwner::Page,
     .field = {PAGE_FIELD(RAID_Feature), 0, 0x2}, .words = WORDS(switchWords),
     .invalid = "Restore_Error: invalid flag for RAID Feature."},
    {.key = "[RAID5]", .form = CfgForm::Word, .owner = CfgOwner::Page,
     .field = {PAGE_FIELD(RAID_Feature), 0, 0x1}, .words = WORDS(disableWords),
     .invalid = "Restore_Error: invalid flag for RAID5 "},
    {.key = "[SPINUP GROUP]", .form = CfgForm::Number, .owner = CfgOwner::Page, .field = {PAGE_FIELD(DSpinUpGroup)},
     .checkedRadix = 16, .low = 1, .high = 8,
     .invalid = "Restore_Error: invalid flag for SPINUP GROUP ",
     .outOfRange = "Restore_Error:SPINUP_GROUP should be 1~8"},
    {.key = "[SPINUP TIME]", .form = CfgForm::Number, .owner = CfgOwner::Page, .field = {PAGE_FIELD(DSpinUpTimer)},
     .checkedRadix = 16, .high = 7,
     .invalid = "Restore_Error:  invalid flag for SPINUP TIME",
     .outOfRange = "Restore_Error:SPINUP_TIME should be 0~7"},
    {.key = "[HDD-DETECT TIME(S)]", .form = CfgForm::Number, .owner = CfgOwner::Page, .field = {PAGE_FIELD(Delay_Time)},
     .checkedRadix = 16, .high = 32,
     .invalid = "Restore_Error:  invalid flag for HDD-Detect Time",
     .outOfRange = "Restore_Error:HDD-Detect Time should be 0~32"},
    {.key = "[SERIAL_CONSOLE]", .form = CfgForm::Word, .owner = CfgOwner::Page,
     .field = {PAGE_FIELD(HBA_Flag), 0, 0x200}, .words = WORDS(switchWords),
     .invalid = "Restore_Error: invalid flag for Serial Console"},
    {.key = "[SUBVENDOR_ID]", .form = CfgForm::Discarded, .owner = CfgOwner::Page, .use = CfgUse::ReadOnly},
    {.key = "[SUBDEVICE_ID]", .form = CfgForm::Discarded, .owner = CfgOwner::Page, .use = CfgUse::ReadOnly},
    {.key = "[MODEL_NUMBER]", .form = CfgForm::NoRule, .owner = CfgOwner::Page, .use = CfgUse::ReadOnly,
     .invalid = "Restore_Error: unknown config  in the file!"},
};

static const CfgKey portKeys[] = {
    {.key = "[PORT ID]", .form = CfgForm::PortId, .owner = CfgOwner::Port, .use = CfgUse::Always,
     .high = 7, // the page has room for eight ports
     .invalid = "Restore_Error:invalid port id in the file ",
     .outOfRange = "Restore_Error: port id in the file exceed MAX_PORT_NUMBER!"},
    {.key = "[SASADDRESS]", .form = CfgForm::SasAddress, .owner = CfgOwner::Port, .field = {PORT_FIELD(SAS_Address)}},
    {.key = "[RATE]", .form = CfgForm::Word, .owner = CfgOwner::Port, .field = {PORT_FIELD(PHY_Rate)},
     .words = WORDS(rateWords), .invalid = "Restore_Error: invalid flag for Port Rate! "},
    {.key = "[AMP]", .form = CfgForm::Number, .owner = CfgOwner::Port, .use = CfgUse::Always,
     .field = {PORT_FIELD(PHY_Tuning), 0x000F}, .writtenRadix = 16, .checkedRadix = 16, .readRadix = 16, .high = 0xF,
     .invalid = "Restore_Error: AMP flag isn't a hex digit",
     .outOfRange = "Restore_Error: AMP flag is bigger than '0xf'!"},
    {.key = "[PRE_EMPHASIS]", .form = CfgForm::Number, .owner = CfgOwner::Port, .use = CfgUse::Always,
     .field = {PORT_FIELD(PHY_Tuning), 0x0070}, .writtenRadix = 16, .high = 7,
     .invalid = "Restore_Error: pre-emphasis flag isn't a digit!",
     .outOfRange = "Restore_Error: pre-emphasis flag exceeds '0x7'"},
    {.key = "[DRIVE]", .form = CfgForm::Number, .owner = CfgOwner::Port, .use = CfgUse::Always,
     .field = {PORT_FIELD(PHY_Tuning), 0x1F80}, .writtenRadix = 16, .checkedRadix = 16, .readRadix = 16, .high = 0x3F,
     .invalid = "Restore_Error: phy Drive flag isn't a hex digit",
     .outOfRange = "Restore_Error: phy Drive flag exceeds '0x3f'"},
    {.key = "[PRE_HALF]", .form = CfgForm::Word, .owner = CfgOwner::Port, .use = CfgUse::Always,
     .field = {PORT_FIELD(PHY_Tuning), 0x2000}, .words = WORDS(switchWords),
     .invalid = "Restore_Error: PHY Half Pre-emphasis flag is invalid!"},
};

#define NO_VD .beforeId = "Restore_Error: invalid vd id!"
#define NO_SPARE .beforeId = "Restore_Error: invalid pd id for spare config!"
static const CfgKey raidKeys[] = {
    {.key = "[VD ID]", .form = CfgForm::VdId, .owner = CfgOwner::Vd, .field = {VD_FIELD(ID)}, .high = KT_NO_ID - 1,
     .invalid = "Restore_Error: vd id isn't a digit!", .outOfRange = "Restore_Error: vd id is invalid!"},
    {.key = "[RAID NAME]", .form = CfgForm::Raw, .owner = CfgOwner::Vd, .field = {VD_FIELD(Name)},
     .writtenBytes = 15, .mostCharacters = 16, .invalid = "Restore_Error: length of vd name exceeds 16!",
     .beforeId = "Restore_Error: vd id is invalid!"},
    {.key = "[RAID MODE]", .form = CfgForm::Word, .owner = CfgOwner::Vd, .field = {VD_FIELD(RaidMode)},
     .words = WORDS(levelWords), .invalid = "Restore_Error: invalid vd raid mode!", NO_VD},
    // Read as megabytes, which the record keeps until it is created from; written from the adapter's kilobytes.
    {.key = "[CAPACITY (M)]", .form = CfgForm::Number, .owner = CfgOwner::Vd,
     .field = {offsetof(_LD_Info, Size), sizeof(KT_U32)}, .writtenShift = 10,
     .invalid = "Restore_Error: vd capacity(M) isn't a digit! ",
     .outOfRange = "Restore_Error: vd capacity(M) isn't a digit! ", NO_VD},
    {.key = "[PD MEMBER]", .form = CfgForm::Members, .owner = CfgOwner::Vd,
     .invalid = "Restore_Error: failed to restore vd's member disk ", NO_VD},
    {.key = "[BLOCK SIZE (K)]", .form = CfgForm::Number, .owner = CfgOwner::Vd, .field = {VD_FIELD(StripeBlockSize)},
     .high = 0xFFFF, .invalid = "Restore_Error: vd block size(k) isn't a digit! ",
     .outOfRange = "Restore_Error: vd block size(k) isn't a digit! ", NO_VD},
    {.key = "[WRITE POLICY]", .form = CfgForm::Word, .owner = CfgOwner::Vd,
     .field = {VD_FIELD(CacheMode), 0, 0x0B}, .words = WORDS(writeWords),
     .invalid = "Restore_Error: invalid vd write cache! ", NO_VD},
    {.key = "[READ POLICY]", .form = CfgForm::Word, .owner = CfgOwner::Vd,
     .field = {VD_FIELD(CacheMode), 0, KT_CACHE_READ_AHEAD}, .words = WORDS(readWords), .alwaysWritten = "NONE",
     .invalid = "Restore_Error: invalid vd read cache!", NO_VD},
    // A restored record carries its initialisation here.
    {.key = "[INIT MODE]", .form = CfgForm::Word, .owner = CfgOwner::Vd, .field = {VD_FIELD(BGAStatus)},
     .words = WORDS(initWords), .alwaysWritten = "QUICK", NO_VD},
    {.key = "[PARITY DISK]", .form = CfgForm::Number, .owner = CfgOwner::Vd, .field = {VD_FIELD(NumParityDisk)},
     .high = 0xFF, .onParityLevels = true, .invalid = "Restore_Error: vd parity disk isn't a digit!",
     .outOfRange = "Restore_Error: vd parity disk isn't a digit!", NO_VD},
    {.key = "[SPARE ID]", .form = CfgForm::SpareId, .owner = CfgOwner::Spare,
     .invalid = "Restore_Error: spare disk id isn't a digit!",
     .outOfRange = "Restore_Error: spare disk id isn't a digit!"},
    {.key = "[PHYSICAL DISK ID]", .form = CfgForm::SparePd, .owner = CfgOwner::Spare, .field = {SPARE_FIELD(HDID)},
     .high = KT_NO_ID - 1, .invalid = "Restore_Error: invalid pd id for spare config!",
     .outOfRange = "Restore_Error: invalid pd id for spare config!", NO_SPARE},
    {.key = "[VIRTUAL DISK ID]", .form = CfgForm::SpareArray, .owner = CfgOwner::Spare,
     .field = {SPARE_FIELD(DGID)}, .writtenRadix = 16, .checkedRadix = 16, .readRadix = 16, .high = KT_NO_ID - 1,
     .invalid = "Restore_Error: invalid vd id!", .outOfRange = "Restore_Error: invalid vd id!", NO_SPARE},
};

const CfgSection cfgSections[CFG_SECTIONS] = {
    {"[ADAPTER CONFIG]", adapterKeys, std::size(adapterKeys), "Restore_Error: unknown HBA config option!"},
    {"[PORT CONFIG]", portKeys, std::size(portKeys), "Restore_Error: unknown port config option!"},
    {"[RAID CONFIG]", raidKeys, std::size(raidKeys), "Restore_Error: unknown raid config option!"},
};
// clang-format on
