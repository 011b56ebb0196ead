#include "lab/labPeripheralFields.h"

#include "lab/labFieldMaker.h"

namespace sim {

static constexpr Field AGE_FIELDS[] = {
    NUM(DiskAge, reallocated), NUM(DiskAge, pending),     NUM(DiskAge, uncorrectable), NUM(DiskAge, readErrors),
    NUM(DiskAge, spinRetries), NUM(DiskAge, linkErrors),  NUM(DiskAge, hours),         NUM(DiskAge, wear),
    NUM(DiskAge, warmth),      NUM(DiskAge, mostPending), NUM(DiskAge, mostWarmth),    NUM(DiskAge, powerCycles),
    NUM(DiskAge, born),        NUM(DiskAge, pulled),      NUM(DiskAge, writtenKib)};
static constexpr Field SECTOR_FIELDS[] = {NUM(BadSector, flaw), NUM(BadSector, known)};
static constexpr Field CIPHER_FIELDS[] = {HEX(DiskCipher, key.bytes), NUM(DiskCipher, offline)};
static constexpr Field SOLID_STATE_FIELDS[] = {
    NUM(SolidState, state), NUM(SolidState, extended), NUM(SolidState, result),   NUM(SolidState, waiting),
    NUM(SolidState, hours), NUM(SolidState, started),  NUM(SolidState, errorLba), TXT(SolidState, microcode)};
static constexpr Field MICROCODE_FIELDS[] = {NUM(MicrocodeUpdate, nextPage),         NUM(MicrocodeUpdate, received),
                                             NUM(MicrocodeUpdate, checksum),         NUM(MicrocodeUpdate, expected),
                                             NUM(MicrocodeUpdate, expectedChecksum), TXT(MicrocodeUpdate, version)};
static constexpr Field ELEMENT_FIELDS[] = {HEX(EnclosureElement, status), NUM(EnclosureElement, subEnclosure),
                                           TXT(EnclosureElement, text)};
static constexpr Field BATTERY_STATE_FIELDS[] = {
    NUM(BatteryState, since),         NUM(BatteryState, nextRelearn),    NUM(BatteryState, relearnStarted),
    NUM(BatteryState, charge),        NUM(BatteryState, designCapacity), NUM(BatteryState, mode),
    NUM(BatteryState, relearn),       NUM(BatteryState, announced),      NUM(BatteryState, rechargeBelow),
    NUM(BatteryState, chargerBroken), NUM(BatteryState, complaints),     NUM(BatteryState, abnormal),
    NUM(BatteryState, drain)};
static constexpr Field ENTRY_FIELDS[] = {NUM(AesEntry, keyLength), HEX(AesEntry, key.bytes),
                                         HEX(AesEntry, password.bytes)};
static constexpr Field PORT_FIELDS[] = {NUM(AesPort, entry), NUM(AesPort, enabled)};
static constexpr Field SETTINGS_FIELDS[] = {
    TXT(_HBA_Info_Page, Signature),
    NUM(_HBA_Info_Page, MinorRev),
    NUM(_HBA_Info_Page, MajorRev),
    NUM(_HBA_Info_Page, Next_Page),
    NUM(_HBA_Info_Page, Major),
    NUM(_HBA_Info_Page, Minor),
    NUM(_HBA_Info_Page, OEM_Num),
    NUM(_HBA_Info_Page, Build_Num),
    NUM(_HBA_Info_Page, Page_Code),
    NUM(_HBA_Info_Page, Max_PHY_Num),
    NUM(_HBA_Info_Page, RAID_Feature),
    NUM(_HBA_Info_Page, HBA_Flag),
    NUM(_HBA_Info_Page, Boot_Device),
    NUM(_HBA_Info_Page, DSpinUpGroup),
    NUM(_HBA_Info_Page, DSpinUpTimer),
    NUM(_HBA_Info_Page, Delay_Time),
    NUM(_HBA_Info_Page, bbu_charge_threshold),
    NUM(_HBA_Info_Page, bbu_temp_lowerbound),
    NUM(_HBA_Info_Page, bbu_temp_upperbound),
    NUM(_HBA_Info_Page, bbu_volt_lowerbound),
    NUM(_HBA_Info_Page, bbu_volt_upperbound),
    TXT(_HBA_Info_Page, Serial_Num),
    HEX(_HBA_Info_Page, SAS_Address),
    NUM(_HBA_Info_Page, FFE_Control),
    TXT(_HBA_Info_Page, model_number),
    NUM(_HBA_Info_Page, PHY_Rate),
    HEX(_HBA_Info_Page, PHY_Tuning),
    NUM(_HBA_Info_Page, BGA_Rate),
    NUM(_HBA_Info_Page, Sync_Rate),
    NUM(_HBA_Info_Page, Init_Rate),
    NUM(_HBA_Info_Page, Rebuild_Rate),
    NUM(_HBA_Info_Page, Migration_Rate),
    NUM(_HBA_Info_Page, Copyback_Rate),
    NUM(_HBA_Info_Page, MP_Rate),
    NUM(_HBA_Info_Page, Check_Sum),
};
static constexpr Field IMAGE_FIELDS[] = {NUM(FlashImage, state), NUM(FlashImage, size), VERSION(FlashImage, version)};
static constexpr Field UPDATE_FIELDS[] = {NUM(FlashUpdate, imageType), NUM(FlashUpdate, announced),
                                          NUM(FlashUpdate, nextPage), NUM(FlashUpdate, expected),
                                          NUM(FlashUpdate, received)};
static constexpr Field NVSRAM_FIELDS[] = {HEX(NvsramPage, bytes)};
static constexpr Field MAILBOX_FIELDS[] = {NUM(Mailbox, value), NUM(Mailbox, writingUntil)};
static constexpr Field HYBRID_FIELDS[] = {HEX(HybridTable, guid), NUM(HybridTable, used)};
static constexpr Field HYBRID_ENTRY_FIELDS[] = {NUM(HybridEntry, start), NUM(HybridEntry, length)};

// The pages of flash images have no fields; they are printed as rows of bytes.
static constexpr RecordFields PERIPHERAL_TABLES[] = {
    TABLE(KIND_DISK_AGE, "diskAges", DiskAge, AGE_FIELDS),
    TABLE(KIND_BAD_SECTOR, "badSectors", BadSector, SECTOR_FIELDS),
    TABLE(KIND_DISK_CIPHER, "diskCiphers", DiskCipher, CIPHER_FIELDS),
    TABLE(KIND_SOLID_STATE, "solidState", SolidState, SOLID_STATE_FIELDS),
    TABLE(KIND_MICROCODE_UPDATE, "microcodeUpdates", MicrocodeUpdate, MICROCODE_FIELDS),
    TABLE(KIND_ENCLOSURE_ELEMENT, "enclosureElements", EnclosureElement, ELEMENT_FIELDS),
    TABLE(KIND_BATTERY_STATE, "batteryState", BatteryState, BATTERY_STATE_FIELDS),
    TABLE(KIND_AES_ENTRY, "keyEntries", AesEntry, ENTRY_FIELDS),
    TABLE(KIND_AES_PORT, "encryptingPorts", AesPort, PORT_FIELDS),
    TABLE(KIND_SETTINGS_PAGE, "settingsPage", _HBA_Info_Page, SETTINGS_FIELDS),
    TABLE(KIND_FLASH_IMAGE, "flashImages", FlashImage, IMAGE_FIELDS),
    TABLE(KIND_FLASH_UPDATE, "flashUpdate", FlashUpdate, UPDATE_FIELDS),
    TABLE(KIND_NVSRAM, "nvsram", NvsramPage, NVSRAM_FIELDS),
    TABLE(KIND_MAILBOX, "mailbox", Mailbox, MAILBOX_FIELDS),
    TABLE(KIND_HYBRID_TABLE, "hybridTables", HybridTable, HYBRID_FIELDS),
    TABLE(KIND_HYBRID_ENTRY, "hybridEntries", HybridEntry, HYBRID_ENTRY_FIELDS),
};

std::span<const RecordFields> peripheralTables() {
    return PERIPHERAL_TABLES;
}

} // namespace sim
