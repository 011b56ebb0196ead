#include "frame.h"
#include "outside.h"

#include <fstream>
#include <memory>

static const char LAB[] = R"({"adapters": [
  {"type": "array-based", "battery": true},
  {"type": "LD-based", "BIOSVersion.MajorVersion": 0, "BIOSVersion.MinorVersion": 0, "BIOSVersion.BuildNumber": 0}]})";
static const KT_U16 VENDOR = 0x1FA4; // of the lab's adapters

struct Flash : LabTest<LAB> {};

static std::unique_ptr<_Flash_Data> page(const std::string& data, KT_U16 number = 0, KT_BOOLEAN last = 1) {
    auto record = std::make_unique<_Flash_Data>();
    record->Size = static_cast<KT_U32>(data.size());
    record->PageNum = number;
    record->isLastPage = last;
    memcpy(record->Data, data.data(), std::min(data.size(), sizeof record->Data));
    return record;
}

static KT_U8 update(KT_U8 type, const std::string& image, KT_U8 adapter = 0) {
    KT_U8 status = KT_OK;
    for (size_t at = 0, number = 0; at < image.size() && status == KT_OK; ++number) {
        const std::string part = image.substr(at, sizeof _Flash_Data{}.Data);
        at += part.size();
        const auto record = page(part, static_cast<KT_U16>(number), at == image.size());
        status = KT_Flash_Bin(adapter, KT_FLASH_UPDATE, type, record.get());
    }
    return status;
}

static KT_U8 backup(KT_U8 type, std::string& image, KT_U8 adapter = 0) {
    image.clear();
    auto record = page("", 0, 0);
    for (KT_U16 number = 0; !record->isLastPage; ++number) {
        record->PageNum = number;
        const KT_U8 status = KT_Flash_Bin(adapter, KT_FLASH_BACKUP, type, record.get());
        if (status != KT_OK) return status;
        image.append(reinterpret_cast<const char*>(record->Data), record->Size);
    }
    return KT_OK;
}

static std::string image(KT_U8 type, size_t size, KT_U16 vendor = VENDOR) {
    return outside::makeImage(type, 7, vendor, size);
}

static _Adapter_Info info() {
    return adapterInfo(0);
}

TEST_F(Flash, FirmwareComesAndGoesInPages) {
    std::string factory;
    ASSERT_EQ(backup(KT_IMAGE_FIRMWARE, factory), KT_OK);
    EXPECT_GT(factory.size(), sizeof _Flash_Data{}.Data) << "the factory image takes two pages";
    const std::string wanted = image(KT_IMAGE_FIRMWARE, 2 * sizeof _Flash_Data{}.Data);
    newEvents();
    ASSERT_EQ(update(KT_IMAGE_FIRMWARE, wanted), KT_OK);
    EXPECT_EQ(newEvents(), Events({"10/17 of 0"}));
    EXPECT_EQ(info().FirmwareVersion.MajorVersion, 4) << "what runs, runs until the next boot";
    outside::reboot();
    EXPECT_EQ(info().FirmwareVersion.MajorVersion, 7);
    EXPECT_EQ(info().FirmwareVersion.BuildNumber, 1234);
    newEvents();
    reopen();
    std::string held;
    ASSERT_EQ(backup(KT_IMAGE_FIRMWARE, held), KT_OK);
    EXPECT_TRUE(held == wanted);
    EXPECT_EQ(newEvents(), Events({"10/18 of 0"}));
    ASSERT_EQ(update(KT_IMAGE_FIRMWARE, factory), KT_OK);
    outside::reboot();
    EXPECT_EQ(info().FirmwareVersion.MajorVersion, 4);
}

TEST_F(Flash, ABootFallsBackOnTheEarlierCopy) {
    const auto damage = [](outside::ImagePart fault) {
        outside::damageImage(0, KT_IMAGE_FIRMWARE, fault);
        outside::reboot();
    };
    const auto events = [&] {
        Events of10 = newEvents();
        std::erase_if(of10, [](const std::string& event) { return event.substr(0, 3) != "10/"; });
        return of10;
    };
    const std::string wanted = image(KT_IMAGE_FIRMWARE, 10);
    ASSERT_EQ(update(KT_IMAGE_FIRMWARE, wanted), KT_OK);
    events();
    damage(outside::HEADER);
    EXPECT_EQ(events(), (Events{"10/23 of 0", "10/21 of 0"}));
    EXPECT_EQ(info().FirmwareVersion.MajorVersion, 4) << "the factory's";
    EXPECT_EQ(info().firmware_img_health, 0);
    ASSERT_EQ(update(KT_IMAGE_FIRMWARE, wanted), KT_OK);
    EXPECT_EQ(info().firmware_img_health, 1);
    outside::damageImage(0, KT_IMAGE_FIRMWARE, outside::DATA);
    ASSERT_EQ(update(KT_IMAGE_FIRMWARE, wanted), KT_OK);
    damage(outside::DATA);
    EXPECT_EQ(info().FirmwareVersion.MajorVersion, 4) << "what is damaged is not kept as the earlier one";
    for (int i = 0; i < 2; ++i)
        ASSERT_EQ(update(KT_IMAGE_FIRMWARE, wanted), KT_OK);
    events();
    damage(outside::DATA);
    EXPECT_EQ(events(), (Events{"10/24 of 0", "10/21 of 0"}));
    EXPECT_EQ(info().FirmwareVersion.MajorVersion, 7) << "the one before";
    damage(outside::BOTH);
    EXPECT_EQ(events(), (Events{"10/25 of 0", "10/22 of 0", "10/3 of 0"}));
    _LD_Info_Request request = {};
    request.header = {0, KT_REQUEST_LIST, 0, 1, 0, 0, {}};
    EXPECT_EQ(KT_LD_GetInfo(0, &request), KT_ERR_LINK_TIMEOUT);
    EXPECT_EQ(KT_LD_GetInfo(1, &request), KT_OK) << "the other adapter runs";
    EXPECT_EQ(info().FirmwareVersion.MajorVersion, 0);
    ASSERT_EQ(update(KT_IMAGE_FIRMWARE, wanted), KT_OK);
    EXPECT_EQ(KT_LD_GetInfo(0, &request), KT_ERR_LINK_TIMEOUT) << "it has not booted yet";
    outside::reboot();
    EXPECT_EQ(KT_LD_GetInfo(0, &request), KT_OK);
    EXPECT_EQ(info().FirmwareVersion.MajorVersion, 7);
}

TEST_F(Flash, AnUpdateThatThePowerEndsCostsTheEarlierCopy) {
    ASSERT_EQ(KT_Flash_Bin(0, KT_FLASH_UPDATE, KT_IMAGE_BIN, page("half", 0, 0).get()), KT_OK);
    newEvents();
    outside::reboot();
    EXPECT_EQ(newEvents(), (Events{"12/7 of 0", "10/21 of 0", "0/9 of 0"}));
    EXPECT_EQ(info().boot_loader_img_health, 0);
    EXPECT_NE(info().BootLoaderVersion.MajorVersion, 0);
    EXPECT_EQ(KT_Flash_Bin(0, KT_FLASH_UPDATE, KT_IMAGE_BIN, page("half", 1, 1).get()), KT_ERR_FLASH_DESCRIPTOR);
    _LD_Info_Request request = {};
    request.header = {0, KT_REQUEST_LIST, 0, 1, 0, 0, {}};
    EXPECT_EQ(KT_LD_GetInfo(0, &request), KT_OK);
    outside::damageImage(0, KT_IMAGE_BIN, outside::DATA);
    outside::reboot();
    EXPECT_EQ(KT_LD_GetInfo(0, &request), KT_ERR_LINK_TIMEOUT);
}

TEST_F(Flash, BadImagesLeaveTheOldOne) {
    struct Bad {
        const char* what;
        std::string bytes;
        KT_U8 status;
        Events events;
    };
    std::string damaged = image(KT_IMAGE_BIOS, 1000);
    damaged[700] ^= 1;
    std::string renamed = image(KT_IMAGE_BIOS, 1000);
    renamed[40] ^= 1;
    const Bad bads[] = {
        {"data", damaged, KT_ERR_FLASH_DATA, {"10/19 of 0"}},
        {"header", renamed, KT_ERR_INVALID_MICROCODE, {"10/19 of 0"}},
        {"both", std::string(5000, 'x'), KT_ERR_INVALID_MICROCODE, {"10/19 of 0"}},
        {"short", "KTIM", KT_ERR_INVALID_MICROCODE, {"10/19 of 0"}},
        {"no data", image(KT_IMAGE_BIOS, 0), KT_ERR_FLASH_DATA, {"10/19 of 0"}},
        {"type", image(KT_IMAGE_FIRMWARE, 1000), KT_ERR_FLASH_TYPE, {"10/19 of 0"}},
        {"vendor", image(KT_IMAGE_BIOS, 1000, 7), KT_ERR_ADAPTER_DEVICE_MISMATCH, {"10/19 of 0"}},
        {"too big", image(KT_IMAGE_BIOS, 1024 * 1024), KT_ERR_OUT_OF_RANGE, {"10/15 of 0", "10/19 of 0"}},
        {"no version", outside::makeImage(KT_IMAGE_BIOS, 0, VENDOR, 4), KT_ERR_INVALID_MICROCODE, {"10/19 of 0"}},
    };
    for (const Bad& bad : bads) {
        EXPECT_EQ(update(KT_IMAGE_BIOS, bad.bytes), bad.status) << bad.what;
        EXPECT_EQ(newEvents(), bad.events) << bad.what;
        EXPECT_EQ(info().BIOSVersion.MajorVersion, 3) << bad.what;
        EXPECT_EQ(info().boot_rom_img_health, 1) << bad.what;
    }
    EXPECT_EQ(update(KT_IMAGE_FIRMWARE, image(KT_IMAGE_FIRMWARE, 10), 1), KT_ERR_FLASH_TYPE) << "it runs none";
}

TEST_F(Flash, PagesFollowOneAnother) {
    const auto put = [](KT_U8 type, KT_U16 number, KT_BOOLEAN last, size_t size) {
        const auto record = page(std::string(size, 'x'), number, last);
        return KT_Flash_Bin(0, KT_FLASH_UPDATE, type, record.get());
    };
    EXPECT_EQ(put(KT_IMAGE_BIOS, 1, 0, 10), KT_ERR_FLASH_DESCRIPTOR) << "the first is page 0";
    EXPECT_EQ(put(KT_IMAGE_BIOS, 0, 0, 10), KT_OK);
    EXPECT_EQ(put(KT_IMAGE_BIOS, 2, 1, 10), KT_ERR_FLASH_DESCRIPTOR) << "page 1 is missing";
    EXPECT_EQ(put(KT_IMAGE_BIOS, 1, 1, 10), KT_ERR_FLASH_DESCRIPTOR) << "the failed update is over";
    EXPECT_EQ(put(KT_IMAGE_BIOS, 0, 0, 10), KT_OK);
    newEvents();
    EXPECT_EQ(put(KT_IMAGE_BIOS, 0, 0, 10), KT_OK);
    EXPECT_EQ(newEvents(), Events({"10/21 of 0"})) << "half of the one before is there";
    EXPECT_EQ(put(KT_IMAGE_FIRMWARE, 1, 0, 10), KT_ERR_FLASH_DESCRIPTOR) << "another type";
    EXPECT_EQ(put(KT_IMAGE_BIOS, 0, 0, 0), KT_ERR_FLASH_DESCRIPTOR);
    EXPECT_EQ(put(KT_IMAGE_BIOS, 0, 2, 10), KT_ERR_FLASH_DESCRIPTOR);
    EXPECT_EQ(put(KT_IMAGE_BIOS, 0, 0, sizeof _Flash_Data{}.Data + 1), KT_ERR_BUFFER_TOO_BIG);
    EXPECT_EQ(put(5, 0, 0, 10), KT_ERR_FLASH_TYPE);
    const auto record = page("x");
    EXPECT_EQ(KT_Flash_Bin(0, 2, KT_IMAGE_BIOS, record.get()), KT_ERR_FLASH_ACTION);
    std::string none;
    EXPECT_EQ(backup(5, none), KT_ERR_FLASH_TYPE);
    auto beyond = page("", 40, 0);
    EXPECT_EQ(KT_Flash_Bin(0, KT_FLASH_BACKUP, KT_IMAGE_BIOS, beyond.get()), KT_ERR_FLASH_DESCRIPTOR);
}

TEST_F(Flash, AnnouncedSizeBinds) {
    const std::string bytes = image(KT_IMAGE_BIOS, 1000);
    _KT_FLASH_PER_DATA announcement = {KT_IMAGE_BIOS, {}, static_cast<KT_U32>(bytes.size() + 1)};
    ASSERT_EQ(KT_Flash_PreData(0, &announcement), KT_OK);
    EXPECT_EQ(update(KT_IMAGE_BIOS, bytes), KT_ERR_FLASH_DESCRIPTOR);
    --announcement.image_size;
    ASSERT_EQ(KT_Flash_PreData(0, &announcement), KT_OK);
    EXPECT_EQ(update(KT_IMAGE_BIOS, bytes), KT_OK);
    announcement.image_size = 0;
    EXPECT_EQ(KT_Flash_PreData(0, &announcement), KT_ERR_OUT_OF_RANGE);
    announcement.image_type = 9;
    EXPECT_EQ(KT_Flash_PreData(0, &announcement), KT_ERR_FLASH_TYPE);
    EXPECT_EQ(KT_Flash_PreData(1, &announcement), KT_ERR_NOT_ON_THIS_ADAPTER);
}

TEST_F(Flash, RawImagesNeedLeave) {
    EXPECT_EQ(update(KT_IMAGE_RAW, "any bytes"), KT_OK);
    std::string held;
    EXPECT_EQ(backup(KT_IMAGE_RAW, held), KT_OK);
    EXPECT_EQ(held, "any bytes");
    EXPECT_EQ(update(KT_IMAGE_RAW, "any bytes", 1), KT_ERR_NOT_ON_THIS_ADAPTER);
    _Adapter_Config_V2 config = adapterConfig(0);
    config.rawimg_update_disabled = 1;
    ASSERT_EQ(KT_Adapter_SetConfig(0, &config), KT_OK);
    EXPECT_EQ(update(KT_IMAGE_RAW, "any bytes"), KT_ERR_NOT_ON_THIS_ADAPTER);
    EXPECT_EQ(KT_Flash_Bin(0, KT_FLASH_ERASE, KT_IMAGE_RAW, page("").get()), KT_ERR_NOT_ON_THIS_ADAPTER);
}

TEST_F(Flash, EraseTakesVersionAndHealth) {
    const auto record = page("");
    ASSERT_EQ(KT_Flash_Bin(0, KT_FLASH_ERASE, KT_IMAGE_BIOS, record.get()), KT_OK);
    EXPECT_EQ(info().BIOSVersion.MajorVersion, 3) << "it was read at the boot";
    EXPECT_EQ(info().boot_rom_img_health, 0);
    EXPECT_EQ(info().autoload_img_health, 0) << "the BIOS takes autoload along";
    EXPECT_EQ(info().firmware_img_health, 1);
    EXPECT_EQ(info().img_health, 0);
    std::string held;
    EXPECT_EQ(backup(KT_IMAGE_BIOS, held), KT_ERR_FLASH_DATA);
    EXPECT_EQ(newEvents(), Events({"10/20 of 0"}));
    ASSERT_EQ(KT_API_RescanAdapter(), KT_OK);
    EXPECT_EQ(newEvents(), Events({"10/22 of 0", "10/3 of 0", "10/22 of 0", "10/3 of 0"}));
    EXPECT_EQ(backup(KT_IMAGE_BIOS, held, 1), KT_ERR_FLASH_DATA) << "that adapter came without a BIOS";
    ASSERT_EQ(update(KT_IMAGE_BIOS, image(KT_IMAGE_BIOS, 10)), KT_OK);
    EXPECT_EQ(info().boot_rom_img_health, 1);
    EXPECT_EQ(info().img_health, 0) << "autoload is still missing";
    EXPECT_EQ(KT_Flash_Bin(0, KT_FLASH_ERASE, 9, record.get()), KT_ERR_FLASH_TYPE);
    EXPECT_EQ(KT_Flash_Erase(0, 2), KT_ERR_INVALID_PARAMETER);
}

TEST_F(Flash, ErasingThePdPageForgetsIds) {
    start(R"({"adapters": [{"type": "array-based", "disks": [{"count": 6, "type": "SAS", "size": "100GB"}],
      "arrays": [{"level": "RAID1", "disks": [3, 4], "virtualDisks": [{"size": "10GiB"}]}]}]})");
    const auto ids = [] {
        std::vector<KT_U16> found;
        for (const _HD_Info& disk : readList(KT_PD_GetHDInfo, 0, &_HD_Info_Request::hdInfo))
            found.push_back(disk.Link.Self.DevID);
        return found;
    };
    EXPECT_EQ(outside::pullDisk(0, 1), KT_OK);
    EXPECT_EQ(outside::pullDisk(0, 3), KT_OK);
    ASSERT_EQ(KT_Flash_Erase(0, KT_PAGE_PD), KT_OK);
    EXPECT_EQ(ids(), (std::vector<KT_U16>{0, 2, 4, 5})) << "those in use stay";
    EXPECT_EQ(outside::pullDisk(0, 2), KT_OK);
    ASSERT_EQ(KT_Flash_Erase(0, KT_PAGE_PD), KT_OK);
    newEvents();
    EXPECT_EQ(outside::insertDisk(0, 0xF001), KT_OK);
    EXPECT_EQ(newEvents(), Events({"2/1 of 1", "2/54 of 1", "1/70 of 0"})) << "it was disk 3";
    for (const KT_U16 forgotten : Ids{0xF000, 0xF002})
        EXPECT_EQ(outside::insertDisk(0, forgotten), KT_OK);
    EXPECT_EQ(ids(), (std::vector<KT_U16>{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(outside::pullDisk(0, 3), KT_OK);
    ASSERT_EQ(KT_Flash_Erase(0, KT_PAGE_PD_FORCE), KT_OK);
    EXPECT_EQ(ids(), (std::vector<KT_U16>{0, 1, 2, 3, 4}));
    advance(3600);
    const _DG_Info array = dgInfo(0, 0);
    EXPECT_EQ(array.PDIDs[0], 1);
    EXPECT_EQ(array.PDIDs[1], 3);
    EXPECT_EQ(newEvents().back(), "1/1 of 0") << "the rebuild followed";
}

TEST_F(Flash, HeadersOfFiles) {
    const auto check = [&](const std::string& name, const std::string& bytes) {
        const std::string path = folder + "/" + name;
        std::ofstream(path, std::ios::binary) << bytes;
        KT_U8 type = 0xFF;
        KT_U32 major = 0;
        KT_U16 minor = 0, revision = 0, build = 0, vendor = 0xFFFF;
        const KT_U8 status = KT_Flash_GetHeaderInfo(path.c_str(), &type, &major, &minor, &revision, &build, &vendor);
        if (status != KT_OK) return std::to_string(status);
        return std::to_string(type) + " " + std::to_string(major) + "." + std::to_string(minor) + "." +
               std::to_string(revision) + "." + std::to_string(build) + " " + std::to_string(vendor);
    };
    EXPECT_EQ(check("good", image(KT_IMAGE_FIRMWARE, 5)), "3 7.8.9.1234 8100");
    EXPECT_EQ(check("empty", ""), std::to_string(KT_ERR_INVALID_FILE));
    EXPECT_EQ(check("text", std::string(200, 'a')), std::to_string(KT_ERR_INVALID_MICROCODE));
    EXPECT_EQ(check("none/none", ""), std::to_string(KT_ERR_INVALID_FILE));
    EXPECT_EQ(check("..", ""), std::to_string(KT_ERR_INVALID_FILE)) << "a folder";
}

static KT_U8 sumOf(const _HBA_Info_Page& settings) {
    KT_U8 sum = 0;
    for (size_t i = 0; i < sizeof settings; ++i)
        sum = static_cast<KT_U8>(sum + reinterpret_cast<const KT_U8*>(&settings)[i]);
    return sum;
}

static _HBA_Info_Page readSettings() {
    std::string bytes;
    EXPECT_EQ(backup(KT_IMAGE_CONFIG, bytes), KT_OK);
    _HBA_Info_Page settings = {};
    EXPECT_EQ(bytes.size(), sizeof settings);
    memcpy(&settings, bytes.data(), std::min(bytes.size(), sizeof settings));
    return settings;
}

static KT_U8 writeSettings(_HBA_Info_Page settings) {
    settings.Check_Sum = static_cast<KT_U8>(settings.Check_Sum - sumOf(settings));
    return update(KT_IMAGE_CONFIG, std::string(reinterpret_cast<const char*>(&settings), sizeof settings));
}

TEST_F(Flash, SettingsPageGovernsTheAdapter) {
    _HBA_Info_Page settings = readSettings();
    EXPECT_EQ(memcmp(settings.Signature, "TLVN", 4), 0);
    EXPECT_EQ(sumOf(settings), 0);
    EXPECT_EQ(memcmp(settings.Serial_Num, info().SerialNo, sizeof settings.Serial_Num), 0);
    EXPECT_EQ(memcmp(settings.model_number, info().ModelNumber, sizeof settings.model_number), 0);
    EXPECT_EQ(memcmp(settings.SAS_Address[3], info().PortSasAddress[3], 8), 0);
    EXPECT_EQ(
        std::vector<int>({settings.MajorRev, settings.Next_Page, settings.Major, settings.Minor, settings.Max_PHY_Num,
                          settings.RAID_Feature, settings.DSpinUpGroup, settings.DSpinUpTimer, settings.Delay_Time,
                          settings.PHY_Rate[0], settings.PHY_Rate[7], settings.bbu_charge_threshold,
                          settings.bbu_temp_lowerbound, settings.bbu_temp_upperbound, settings.bbu_volt_lowerbound,
                          settings.bbu_volt_upperbound}),
        std::vector<int>({1, 0xFFFF, 4, 1, 8, 2, 1, 1, 5, 1, 1, 85, 0, 60, 3300, 4300}));
    EXPECT_EQ(memcmp(&settings.PHY_Tuning[7], "\x26\x30\0", 3), 0);
    settings.Serial_Num[0] = 'Z';
    settings.SAS_Address[3][7] = 0xAB;
    settings.Rebuild_Rate = 77;
    settings.PHY_Tuning[5].Drive_En = 0x15;
    settings.bbu_charge_threshold = 60;
    settings.bbu_volt_lowerbound = 3000;
    ASSERT_EQ(writeSettings(settings), KT_OK);
    EXPECT_EQ(newEvents(), Events({"9/32 of 0", "9/33 of 0", "10/17 of 0"}));
    reopen();
    EXPECT_EQ(info().SerialNo[0], 'Z');
    EXPECT_EQ(info().PortSasAddress[3][7], 0xAB);
    _Adapter_Config_V2 config = adapterConfig(0);
    EXPECT_EQ(config.RebuildRate, 77);
    config.SyncRate = 11;
    ASSERT_EQ(KT_Adapter_SetConfig(0, &config), KT_OK);
    settings = readSettings();
    EXPECT_EQ(settings.PHY_Tuning[5].Drive_En, 0x15U);
    EXPECT_EQ(settings.Sync_Rate, 11) << "the page follows the settings";
    EXPECT_EQ(sumOf(settings), 0);
}

TEST_F(Flash, SettingsPageRefuses) {
    _HBA_Info_Page settings = readSettings();
    const std::string sound(reinterpret_cast<const char*>(&settings), sizeof settings);
    EXPECT_EQ(update(KT_IMAGE_CONFIG, sound.substr(1)), KT_ERR_FLASH_DESCRIPTOR);
    std::string wrong = sound;
    wrong[60] ^= 1;
    EXPECT_EQ(update(KT_IMAGE_CONFIG, wrong), KT_ERR_FLASH_DATA) << "the sum";
    EXPECT_EQ(newEvents(), Events({"10/19 of 0"}));
    settings.Signature[0] = 'X';
    EXPECT_EQ(writeSettings(settings), KT_ERR_FLASH_DATA);
    EXPECT_EQ(newEvents(), Events({"10/19 of 0"}));
    settings.Signature[0] = 'T';
    settings.MP_Rate = 101;
    EXPECT_EQ(writeSettings(settings), KT_ERR_FLASH_DATA);
    EXPECT_EQ(sumOf(readSettings()), 0);
    const auto record = page("");
    ASSERT_EQ(KT_Flash_Bin(0, KT_FLASH_ERASE, KT_IMAGE_CONFIG, record.get()), KT_OK);
    EXPECT_EQ(readSettings().Signature[0], 0xFF);
    EXPECT_EQ(info().hba_info_img_health, 0);
    EXPECT_EQ(info().SerialNo[0] | info().ModelNumber[0] | info().PortSasAddress[0][0], 0);
    EXPECT_EQ(update(KT_IMAGE_CONFIG, sound), KT_OK);
    EXPECT_EQ(info().hba_info_img_health, 1);
    EXPECT_NE(info().SerialNo[0], 0);
}

TEST_F(Flash, NvsramIsBounded) {
    const auto access = [](KT_U8 action, KT_U32 offset, KT_U32 length, _NVSRAM_Data& data) {
        data.Offset = offset;
        data.Length = length;
        return KT_Flash_NVSRAM(0, action, &data);
    };
    _NVSRAM_Data data = {};
    memset(data.Data, 0x5A, sizeof data.Data);
    ASSERT_EQ(access(KT_NVSRAM_WRITE, 250, 256, data), KT_OK);
    ASSERT_EQ(access(KT_NVSRAM_WRITE, 128 * 1024 - 1, 1, data), KT_OK);
    reopen();
    _NVSRAM_Data held = {};
    ASSERT_EQ(access(KT_NVSRAM_READ, 249, 256, held), KT_OK);
    EXPECT_EQ(held.Data[0], 0);
    EXPECT_EQ(std::string(held.Data + 1, held.Data + 256), std::string(255, 0x5A));
    ASSERT_EQ(access(KT_NVSRAM_READ, 505, 2, held), KT_OK);
    EXPECT_EQ(held.Data[0], 0x5A);
    EXPECT_EQ(held.Data[1], 0);
    EXPECT_EQ(access(KT_NVSRAM_READ, 128 * 1024 - 1, 2, data), KT_ERR_OUT_OF_RANGE);
    EXPECT_EQ(access(KT_NVSRAM_WRITE, 0xFFFFFFFF, 2, data), KT_ERR_OUT_OF_RANGE);
    EXPECT_EQ(access(KT_NVSRAM_READ, 0, 257, data), KT_ERR_BUFFER_TOO_BIG);
    EXPECT_EQ(access(KT_NVSRAM_READ, 0, 0, data), KT_ERR_INVALID_PARAMETER);
    EXPECT_EQ(access(2, 0, 1, data), KT_ERR_FLASH_ACTION);
}

TEST_F(Flash, RegistersKeepTheirValues) {
    _Register_Request request = {8, 16, {}, 0xFEDCBA9876543210};
    ASSERT_EQ(KT_Adapter_Write_Register(0, 0, 1, &request), KT_OK);
    request.Value = 0;
    ASSERT_EQ(KT_Adapter_Read_Register(0, 0, 1, &request), KT_OK);
    EXPECT_EQ(request.Value, 0xFEDCBA9876543210);
    ASSERT_EQ(KT_Adapter_Read_Register(0, 0, 0, &request), KT_OK);
    EXPECT_EQ(request.Value, 0U);
    EXPECT_EQ(KT_Adapter_Read_Register(0, 0, 2, &request), KT_ERR_OUT_OF_RANGE);
    EXPECT_EQ(KT_Adapter_Read_Register(0, 1, 0, &request), KT_ERR_INVALID_PARAMETER);
    outside::reboot();
    ASSERT_EQ(KT_Adapter_Read_Register(0, 0, 1, &request), KT_OK);
    EXPECT_EQ(request.Value, 0U) << "a boot forgets them";
    runClock(1); // a second takes a quarter of an hour
    ASSERT_EQ(KT_Adapter_Write_Register(0, 0, 1, &request), KT_OK);
    EXPECT_EQ(KT_Adapter_Read_Register(0, 0, 1, &request), KT_ERR_REGISTER_WRITING);
    EXPECT_EQ(KT_Adapter_Write_Register(0, 0, 1, &request), KT_ERR_REGISTER_WRITING);
    EXPECT_EQ(KT_Adapter_Read_Register(0, 0, 0, &request), KT_OK) << "the other one is not written";
    request.TotalSize = 8;
    EXPECT_EQ(KT_Adapter_Read_Register(0, 0, 0, &request), KT_ERR_WRONG_DATA);
}
