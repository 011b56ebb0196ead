#include "Report/words.h"

#include <iterator>

const char* wordOf(CodeWords words, unsigned code) {
    for (const CodeWord& row : words) {
        if (row.code == code) return row.word;
    }
    return nullptr;
}

std::optional<unsigned> codeOf(CodeWords words, const std::string& word) {
    for (const CodeWord& row : words) {
        if (word == row.word) return row.code;
    }
    return std::nullopt;
}

static constexpr CodeWord diskTypes[] = {{KT_HD_SATA, "SATA"},
                                         {KT_HD_SAS, "SAS"},
                                         {KT_HD_SATA | KT_HD_SSD, "SATA SSD"},
                                         {KT_HD_SAS | KT_HD_SSD, "SAS SSD"},
                                         {KT_HD_PATA, "PATA"},
                                         {KT_HD_SATA | KT_HD_ATAPI, "ATAPI"}};
static constexpr CodeWord parents[] = {
    {KT_LINK_HBA, "HBA"}, {KT_LINK_PM, "PM"}, {KT_LINK_EXPANDER, "expander"}, {KT_LINK_ENCLOSURE, "enclosure"}};
static constexpr CodeWord levels[] = {{KT_RAID0, "RAID0"},   {KT_RAID1, "RAID1"},
                                      {KT_RAID5, "RAID5"},   {KT_RAID6, "RAID6"},
                                      {KT_RAID10, "RAID10"}, {KT_RAID1E, "RAID1E"},
                                      {KT_RAID50, "RAID50"}, {KT_RAID60, "RAID60"},
                                      {KT_JBOD, "JBOD"},     {KT_TANDEM_CAPACITY, "TANDEM CAPACITY"},
                                      {KT_HYBRID, "HYBRID"}, {KT_TANDEM_SAFE, "TANDEM SAFE"}};
static constexpr CodeWord vdStatuses[] = {{KT_VD_ONLINE, "online"},
                                          {KT_VD_DEGRADED, "degraded"},
                                          {KT_VD_DELETED, "deleted"},
                                          {KT_VD_OFFLINE, "offline"},
                                          {KT_VD_PARTIALLY_OPTIMAL, "partially optimal"},
                                          {KT_VD_FOREIGN, "foreign"},
                                          {KT_VD_IMPORTABLE, "importable"},
                                          {KT_VD_NOT_IMPORTABLE, "not importable"},
                                          {KT_VD_CONFLICTED, "conflicted"},
                                          {KT_VD_PLUGIN_CONFLICTED, "plugin conflicted"},
                                          {KT_VD_USING_TABLE, "using table"}};
static constexpr CodeWord activities[] = {{KT_BGA_REBUILD, "rebuild"},
                                          {KT_BGA_CHECK_FIX, "check and fix"},
                                          {KT_BGA_CHECK, "check"},
                                          {KT_BGA_INIT_QUICK, "quick init"},
                                          {KT_BGA_INIT_FOREGROUND, "foreground init"},
                                          {KT_BGA_MIGRATION, "migration"},
                                          {KT_BGA_INIT_BACKGROUND, "background init"},
                                          {KT_BGA_COPY_BACK, "copy back"}};
static constexpr CodeWord patrols[] = {{KT_PD_BGA_MEDIA_PATROL, "media patrol"}, {KT_PD_BGA_DATA_SCRUB, "data scrub"}};
static constexpr CodeWord states[] = {{KT_STATE_RUNNING, "running"},
                                      {KT_STATE_ABORTED, "aborted"},
                                      {KT_STATE_PAUSED, "paused"},
                                      {KT_STATE_AUTO_PAUSED, "auto paused"},
                                      {KT_STATE_INTERRUPTED, "interrupted"}};
static constexpr CodeWord arrayStatuses[] = {{0, "functional"}, {1, "disk missing"}};
static constexpr CodeWord elementTypes[] = {
    {KT_SES_DEVICE, "dev"},  {KT_SES_ARRAY_DEVICE, "arydev"}, {KT_SES_POWER_SUPPLY, "pow"},
    {KT_SES_COOLING, "fan"}, {KT_SES_TEMPERATURE, "tpr"},     {KT_SES_DOOR_LOCK, "dor"},
    {KT_SES_ALARM, "alm"},   {KT_SES_DISPLAY, "dpl"},         {KT_SES_VOLTAGE, "vlt"}};
static constexpr CodeWord elementStatuses[] = {
    {0, "unsupported"},   {1, "ok"},      {2, "critical"},      {3, "non-critical"},     {4, "unrecoverable"},
    {5, "not installed"}, {6, "unknown"}, {7, "not available"}, {8, "no access allowed"}};
static constexpr CodeWord severities[] = {
#define SEVERITY(code, name, word) {code, word},
#include "events/eventList.inc"
};
static constexpr CodeWord attributeStates[] = {
    {KT_SMART_GOOD, "ok"}, {KT_SMART_FAILING, "failing"}, {KT_SMART_FAILED_BEFORE, "failed before"}};

static constexpr CodeWord portTypes[] = {{KT_HD_SATA, "SATA"}, {KT_HD_PATA, "PATA"}, {KT_HD_SAS, "SAS"}};
static constexpr CodeWord raidModes[] = {{KT_MODE_RAID0, "RAID0"},
                                         {KT_MODE_RAID1, "RAID1"},
                                         {KT_MODE_RAID5, "RAID5"},
                                         {KT_MODE_RAID6, "RAID6"},
                                         {KT_MODE_RAID10, "RAID10"},
                                         {KT_MODE_RAID1E, "RAID1E"},
                                         {KT_MODE_RAID50, "RAID50"},
                                         {KT_MODE_RAID60, "RAID60"},
                                         {KT_MODE_JBOD, "JBOD"},
                                         {KT_MODE_TANDEM_CAPACITY, "TANDEM CAPACITY"},
                                         {KT_MODE_TANDEM_SAFE, "TANDEM SAFE"},
                                         {KT_MODE_HYBRID, "HYBRID"}};
static constexpr CodeWord features[] = {
    {KT_FEATURE_REBUILD, "rebuild"},           {KT_FEATURE_BACKGROUND_INIT, "background init"},
    {KT_FEATURE_SYNC, "synchronize"},          {KT_FEATURE_MIGRATION, "migration"},
    {KT_FEATURE_MEDIA_PATROL, "media patrol"}, {KT_FEATURE_FOREGROUND_INIT, "foreground init"},
    {KT_FEATURE_COPY_BACK, "copy back"},       {KT_FEATURE_SAME_TYPE_ONLY, "only same type hd for create"}};
// The bits of _Adapter_Info.AdvancedFeatures by number. Those of switchedOff take a feature away.
static constexpr CodeWord advanced[] = {{0, "event sense code"},
                                        {1, "big stripe"},
                                        {2, "flash bios"},
                                        {3, "bbu"},
                                        {4, "config in flash"},
                                        {5, "cpu efficiency"},
                                        {6, "multi VD"},
                                        {7, "spc 4"},
                                        {8, "ses2"},
                                        {9, "module consolidate"},
                                        {10, "image health"},
                                        {11, "phy control by port"},
                                        {11, "sata phy ctrl"},
                                        {12, "crypto"},
                                        {13, "time setting by application"},
                                        {14, "vd write cache"},
                                        {15, "vd read cache"},
                                        {16, "smart"},
                                        {17, "rounding"},
                                        {18, "hd set free"},
                                        {19, "hd write cache"},
                                        {22, "aes partition"},
                                        {23, "tandemix intelligent init"},
                                        {24, "set spare"},
                                        {25, "hybrid switch"},
                                        {26, "hot plug"},
                                        {27, "ata pass through"},
                                        {28, "remap"},
                                        {29, "access register"},
                                        {30, "oem data"},
                                        {31, "flash predata"},
                                        {31, "raw update"}};
static constexpr unsigned switchedOff = 0x3FU << 14 | 1U << 24;
static constexpr CodeWord drives[] = {
    {KT_HD_NCQ, "NCQ"}, {KT_HD_WRITE_CACHE, "write cache"}, {KT_HD_48BIT_LBA, "48 bits LBA"}, {KT_HD_SMART, "SMART"}};

const CodeWords diskTypeWords = diskTypes;
const CodeWords parentWords = parents;
const CodeWords levelWords = levels;
const CodeWords vdStatusWords = vdStatuses;
const CodeWords activityWords = activities;
const CodeWords patrolWords = patrols;
const CodeWords stateWords = states;
const CodeWords arrayStatusWords = arrayStatuses;
const CodeWords elementTypeWords = elementTypes;
const CodeWords elementStatusWords = elementStatuses;
const CodeWords severityWords = severities;
const CodeWords attributeWords = attributeStates;
const CodeWords portTypeBits = portTypes;
const CodeWords raidModeBits = raidModes;
const CodeWords featureBits = features;
const CodeWords driveBits = drives;

KT_U64 driveSpeed(unsigned code) {
    static constexpr KT_U64 speeds[] = {0, 1500000000, 3000000000, 6000000000, 12000000000};
    return code < std::size(speeds) ? speeds[code] : 0;
}

KT_U64 busSpeed(unsigned code) {
    static constexpr KT_U64 speeds[] = {0, 2500000000, 5000000000, 8000000000};
    return code < std::size(speeds) ? speeds[code] : 0;
}

bool isRedundant(const std::string& level) {
    return level.compare(0, 4, "RAID") == 0 && level != "RAID0";
}

std::vector<const char*> advancedWords(const _Adapter_Info& info) {
    // Spares are set for the sake of rebuilding: without that, their bit says nothing.
    unsigned bits = info.AdvancedFeatures ^ switchedOff;
    if ((info.Features & KT_FEATURE_REBUILD) == 0) bits &= ~static_cast<unsigned>(KT_ADV_NO_SET_SPARE);
    std::vector<const char*> words;
    for (const CodeWord& row : advanced) {
        if (info.AdvancedFeatures != 0 && (bits >> row.code & 1)) words.push_back(row.word);
    }
    return words;
}
