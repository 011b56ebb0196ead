#include "frame.h"

#include <memory>
#include <numeric>

static const char FLASH_LAB[] = R"({"adapters": [
  {"type": "array-based", "battery": true},
  {"type": "LD-based", "BIOSVersion.MajorVersion": 0, "BIOSVersion.MinorVersion": 0, "BIOSVersion.BuildNumber": 0}]})";
static const KT_U16 VENDOR = 0x1FA4; // of the lab's adapters

struct Flash : LabTest<FLASH_LAB> {};

static std::unique_ptr<_Flash_Data> page(const std::string& data, KT_U16 number = 0, KT_BOOLEAN last = 1) {
    auto record = std::make_unique<_Flash_Data>();
    record->Size = static_cast<KT_U32>(data.size());
    record->PageNum = number;
    record->isLastPage = last;
    memcpy(record->Data, data.data(), std::min(data.size(), sizeof record->Data));
    return record;
}

static KT_U8 update(KT_U8 type, const std::string& image, KT_U8 adapter = 0) {
    return sendPages(image, [&](_Flash_Data* page) { return KT_Flash_Bin(adapter, KT_FLASH_UPDATE, type, page); });
}

// An image as the adapter gives it out; empty when it answers the error that is expected.
static std::string backup(KT_U8 type, KT_U8 adapter = 0, KT_U8 expected = KT_OK) {
    std::string image;
    auto record = page("", 0, 0);
    for (KT_U16 number = 0; !record->isLastPage; ++number) {
        record->PageNum = number;
        const KT_U8 status = KT_Flash_Bin(adapter, KT_FLASH_BACKUP, type, record.get());
        EXPECT_EQ(status, expected);
        if (status != KT_OK) return "";
        image.append(reinterpret_cast<const char*>(record->Data), record->Size);
    }
    return image;
}

static std::string image(KT_U8 type, size_t size, KT_U16 vendor = VENDOR) {
    return makeImage(type, 7, vendor, size);
}

static KT_U8 erase(KT_U8 type) {
    return KT_Flash_Bin(0, KT_FLASH_ERASE, type, page("").get());
}

// The major versions of firmware, BIOS and boot loader, which images are sound (these three, autoload, the settings;
// and all of them), and the events since the last look; after calls that go well.
static std::string lookAtFlash(std::initializer_list<KT_U8> calls = {}) {
    succeed(calls);
    const _Adapter_Info info = adapterInfo(0);
    std::string seen;
    for (const auto& version : {info.FirmwareVersion, info.BIOSVersion, info.BootLoaderVersion})
        seen += std::to_string(version.MajorVersion);
    seen += ' ';
    for (const KT_BOOLEAN sound : {info.firmware_img_health, info.boot_rom_img_health, info.boot_loader_img_health,
                                   info.autoload_img_health, info.hba_info_img_health, info.img_health})
        seen += sound ? '+' : '-';
    return seen + " " + newEvents();
}

// What calls answer that need firmware that runs.
static KT_U8 listVds(KT_U8 adapter) {
    _LD_Info_Request request = {};
    request.header = {0, KT_REQUEST_LIST, 0, 1, 0, 0, {}};
    return KT_LD_GetInfo(adapter, &request);
}

TEST_F(Flash, FirmwareComesAndGoesInPages) {
    const std::string factory = backup(KT_IMAGE_FIRMWARE);
    EXPECT_GT(factory.size(), sizeof _Flash_Data{}.Data) << "the factory image takes two pages";
    EXPECT_EQ(lookAtFlash(), "432 ++++++ 10/18:0");
    const std::string wanted = image(KT_IMAGE_FIRMWARE, 2 * sizeof _Flash_Data{}.Data);
    EXPECT_EQ(lookAtFlash({update(KT_IMAGE_FIRMWARE, wanted)}), "432 ++++++ 10/17:0")
        << "what runs, runs until the next boot";
    EXPECT_EQ(lookAtFlash({reboot()}), "732 ++++++ 12/7:0 0/9:0");
    EXPECT_EQ(adapterInfo(0).FirmwareVersion.BuildNumber, 1234);
    succeed({reopen()});
    EXPECT_TRUE(backup(KT_IMAGE_FIRMWARE) == wanted);
}

TEST_F(Flash, ABootFallsBackOnTheEarlierCopy) {
    const auto write = [] { return update(KT_IMAGE_FIRMWARE, image(KT_IMAGE_FIRMWARE, 10)); };
    const auto damage = [](ImagePart part) { return damageImage(0, KT_IMAGE_FIRMWARE, part); };
    EXPECT_EQ(lookAtFlash({write()}), "432 ++++++ 10/17:0");
    EXPECT_EQ(lookAtFlash({damage(HEADER), reboot()}), "432 -++++- 12/7:0 10/23:0 10/21:0 0/9:0") << "the factory's";
    EXPECT_EQ(lookAtFlash({write()}), "432 ++++++ 10/17:0");
    EXPECT_EQ(lookAtFlash({damage(DATA), write(), damage(DATA), reboot()}),
              "432 -++++- 10/17:0 12/7:0 10/24:0 10/21:0 0/9:0")
        << "what is damaged is not kept as the earlier one";
    EXPECT_EQ(lookAtFlash({write(), write(), damage(DATA), reboot()}),
              "732 -++++- 10/17:0 10/17:0 12/7:0 10/24:0 10/21:0 0/9:0");
    EXPECT_EQ(lookAtFlash({damage(BOTH), reboot()}), "032 -++++- 12/7:0 10/25:0 10/22:0 10/3:0");
    succeed({listVds(1), write()});
    EXPECT_EQ(listVds(0), KT_ERR_LINK_TIMEOUT) << "it has not booted yet";
    EXPECT_EQ(lookAtFlash({reboot(), listVds(0)}), "732 ++++++ 10/17:0 0/9:0");
}

TEST_F(Flash, AnUpdateThatThePowerEndsCostsTheEarlierCopy) {
    EXPECT_EQ(lookAtFlash({KT_Flash_Bin(0, KT_FLASH_UPDATE, KT_IMAGE_BIN, page("half", 0, 0).get()), reboot()}),
              "432 ++-++- 12/7:0 10/21:0 0/9:0");
    EXPECT_EQ(KT_Flash_Bin(0, KT_FLASH_UPDATE, KT_IMAGE_BIN, page("half", 1, 1).get()), KT_ERR_FLASH_DESCRIPTOR);
    succeed({listVds(0), damageImage(0, KT_IMAGE_BIN, DATA), reboot()});
    EXPECT_EQ(listVds(0), KT_ERR_LINK_TIMEOUT);
}

TEST_F(Flash, BadImagesLeaveTheOldOne) {
    std::string damaged = image(KT_IMAGE_BIOS, 1000);
    std::string renamed = damaged;
    damaged[700] ^= 1;
    renamed[40] ^= 1;
    const std::pair<KT_U8, std::string> bads[] = {
        {KT_ERR_FLASH_DATA, damaged},
        {KT_ERR_FLASH_DATA, image(KT_IMAGE_BIOS, 0)},
        {KT_ERR_INVALID_MICROCODE, renamed},
        {KT_ERR_INVALID_MICROCODE, "KTIM"},
        {KT_ERR_INVALID_MICROCODE, makeImage(KT_IMAGE_BIOS, 0, VENDOR, 4)}, // version 0
        {KT_ERR_FLASH_TYPE, image(KT_IMAGE_FIRMWARE, 1000)},
        {KT_ERR_ADAPTER_DEVICE_MISMATCH, image(KT_IMAGE_BIOS, 1000, 7)},
        {KT_ERR_OUT_OF_RANGE, image(KT_IMAGE_BIOS, 1024 * 1024)},
    };
    for (const auto& [status, bytes] : bads) {
        EXPECT_EQ(update(KT_IMAGE_BIOS, bytes), status) << bytes.size();
        EXPECT_EQ(lookAtFlash(), status == KT_ERR_OUT_OF_RANGE ? "432 ++++++ 10/15:0 10/19:0" : "432 ++++++ 10/19:0");
    }
    EXPECT_EQ(update(KT_IMAGE_FIRMWARE, image(KT_IMAGE_FIRMWARE, 10), 1), KT_ERR_FLASH_TYPE) << "it runs none";
}

TEST_F(Flash, PagesFollowOneAnother) {
    const auto put = [](KT_U8 type, KT_U16 number, KT_BOOLEAN last, size_t size) {
        return KT_Flash_Bin(0, KT_FLASH_UPDATE, type, page(std::string(size, 'x'), number, last).get());
    };
    EXPECT_EQ(put(KT_IMAGE_BIOS, 1, 0, 10), KT_ERR_FLASH_DESCRIPTOR) << "the first is page 0";
    succeed({put(KT_IMAGE_BIOS, 0, 0, 10)});
    answer(KT_ERR_FLASH_DESCRIPTOR, {put(KT_IMAGE_BIOS, 2, 1, 10), put(KT_IMAGE_BIOS, 1, 1, 10)}); // and it is over
    EXPECT_EQ(LOG_OF(0, put(KT_IMAGE_BIOS, 0, 0, 10), put(KT_IMAGE_BIOS, 0, 0, 10)), "10/21:0") << "half is there";
    EXPECT_EQ(put(KT_IMAGE_FIRMWARE, 1, 0, 10), KT_ERR_FLASH_DESCRIPTOR) << "another type";
    answer(KT_ERR_FLASH_DESCRIPTOR, {put(KT_IMAGE_BIOS, 0, 0, 0), put(KT_IMAGE_BIOS, 0, 2, 10)});
    EXPECT_EQ(put(KT_IMAGE_BIOS, 0, 0, sizeof _Flash_Data{}.Data + 1), KT_ERR_BUFFER_TOO_BIG);
    EXPECT_EQ(put(5, 0, 0, 10), KT_ERR_FLASH_TYPE);
    EXPECT_EQ(KT_Flash_Bin(0, 2, KT_IMAGE_BIOS, page("x").get()), KT_ERR_FLASH_ACTION);
    EXPECT_EQ(KT_Flash_Bin(0, KT_FLASH_BACKUP, KT_IMAGE_BIOS, page("", 40, 0).get()), KT_ERR_FLASH_DESCRIPTOR);
}

TEST_F(Flash, AnnouncedSizeBinds) {
    const std::string bytes = image(KT_IMAGE_BIOS, 1000);
    const auto announce = [](size_t size, KT_U8 type = KT_IMAGE_BIOS, KT_U8 adapter = 0) {
        const _KT_FLASH_PER_DATA announcement = {type, {}, static_cast<KT_U32>(size)};
        return KT_Flash_PreData(adapter, &announcement);
    };
    succeed({announce(bytes.size() + 1)});
    EXPECT_EQ(update(KT_IMAGE_BIOS, bytes), KT_ERR_FLASH_DESCRIPTOR);
    succeed({announce(bytes.size()), update(KT_IMAGE_BIOS, bytes)});
    EXPECT_EQ(announce(0), KT_ERR_OUT_OF_RANGE);
    EXPECT_EQ(announce(1, 9), KT_ERR_FLASH_TYPE);
    EXPECT_EQ(announce(1, KT_IMAGE_BIOS, 1), KT_ERR_NOT_ON_THIS_ADAPTER);
}

TEST_F(Flash, RawImagesNeedLeave) {
    succeed({update(KT_IMAGE_RAW, "any bytes")});
    EXPECT_EQ(backup(KT_IMAGE_RAW), "any bytes");
    EXPECT_EQ(update(KT_IMAGE_RAW, "any bytes", 1), KT_ERR_NOT_ON_THIS_ADAPTER);
    succeed({configure(0, &Config::rawimg_update_disabled, 1)});
    answer(KT_ERR_NOT_ON_THIS_ADAPTER, {update(KT_IMAGE_RAW, "any bytes"), erase(KT_IMAGE_RAW)});
}

TEST_F(Flash, EraseTakesVersionAndHealth) {
    EXPECT_EQ(lookAtFlash({erase(KT_IMAGE_BIOS)}), "432 +-+-+- ")
        << "its version was read at the boot; autoload is gone, too";
    backup(KT_IMAGE_BIOS, 0, KT_ERR_FLASH_DATA);
    EXPECT_EQ(lookAtFlash({KT_API_RescanAdapter()}), "432 +-+-+- 10/20:0 10/22:0 10/3:0 10/22:0 10/3:0");
    backup(KT_IMAGE_BIOS, 1, KT_ERR_FLASH_DATA); // that adapter came without a BIOS
    EXPECT_EQ(lookAtFlash({update(KT_IMAGE_BIOS, image(KT_IMAGE_BIOS, 10))}), "432 +++-+- 10/17:0");
    EXPECT_EQ(KT_Flash_Erase(0, 2), KT_ERR_INVALID_PARAMETER);
}

TEST_F(Flash, ErasingThePdPageForgetsIds) {
    start(R"({"adapters": [{"type": "array-based", "disks": [{"count": 6, "type": "SAS", "size": "100GB"}],
      "arrays": [{"level": "RAID1", "disks": [3, 4], "virtualDisks": [{"size": "10GiB"}]}]}]})");
    const auto ids = [] {
        Ids found;
        for (const _HD_Info& disk : readList(KT_PD_GetHDInfo, KT_U8{0}, &_HD_Info_Request::hdInfo))
            found.push_back(disk.Link.Self.DevID);
        return found;
    };
    succeed({pullDisk(0, 1), pullDisk(0, 3), KT_Flash_Erase(0, KT_PAGE_PD)});
    EXPECT_EQ(ids(), (Ids{0, 2, 4, 5})) << "those in use stay";
    succeed({pullDisk(0, 2), KT_Flash_Erase(0, KT_PAGE_PD)});
    EXPECT_EQ(LOG_OF(0, insertDisk(0, 0xF001)), "2/1:1 2/54:1 1/70:0") << "it was disk 3";
    succeed({insertDisk(0, 0xF000), insertDisk(0, 0xF002)});
    EXPECT_EQ(ids(), (Ids{0, 1, 2, 3, 4, 5}));
    succeed({pullDisk(0, 3), KT_Flash_Erase(0, KT_PAGE_PD_FORCE)});
    EXPECT_EQ(ids(), (Ids{0, 1, 2, 3, 4}));
    EXPECT_EQ(look(0, 0, {advance(HOUR)}), "online 1 3") << "the rebuild followed";
}

TEST_F(Flash, HeadersOfFiles) {
    const auto check = [&](const std::string& name, const std::string& bytes) {
        const std::string path = folder.path + "/" + name;
        writeText(path, bytes);
        KT_U8 type = 0xFF;
        KT_U32 major = 0;
        KT_U16 minor = 0, revision = 0, build = 0, vendor = 0xFFFF;
        const KT_U8 status = KT_Flash_GetHeaderInfo(path.c_str(), &type, &major, &minor, &revision, &build, &vendor);
        return status ? Ints{status} : Ints{type, static_cast<int>(major), minor, revision, build, vendor};
    };
    EXPECT_EQ(check("good", image(KT_IMAGE_FIRMWARE, 5)), (Ints{KT_IMAGE_FIRMWARE, 7, 8, 9, 1234, VENDOR}));
    EXPECT_EQ(check("text", std::string(200, 'a')), Ints{KT_ERR_INVALID_MICROCODE});
    for (const char* name : {"empty", "none/none", ".."})
        EXPECT_EQ(check(name, ""), Ints{KT_ERR_INVALID_FILE});
}

static KT_U8 sumOf(const _HBA_Info_Page& settings) {
    const auto* bytes = reinterpret_cast<const KT_U8*>(&settings);
    return static_cast<KT_U8>(std::accumulate(bytes, bytes + sizeof settings, 0));
}

static _HBA_Info_Page readSettings() {
    const std::string bytes = backup(KT_IMAGE_CONFIG);
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
    _Adapter_Info info = adapterInfo(0);
    EXPECT_EQ(memcmp(settings.Signature, "TLVN", 4), 0);
    EXPECT_EQ(sumOf(settings), 0);
    EXPECT_EQ(memcmp(settings.Serial_Num, info.SerialNo, sizeof settings.Serial_Num), 0);
    EXPECT_EQ(
        (Ints{settings.MajorRev, settings.Next_Page, settings.Major, settings.Minor, settings.Max_PHY_Num,
              settings.RAID_Feature, settings.DSpinUpGroup, settings.DSpinUpTimer, settings.Delay_Time,
              settings.PHY_Rate[0], settings.PHY_Rate[7], settings.bbu_charge_threshold, settings.bbu_temp_lowerbound,
              settings.bbu_temp_upperbound, settings.bbu_volt_lowerbound, settings.bbu_volt_upperbound}),
        (Ints{1, 0xFFFF, 4, 1, 8, 2, 1, 1, 5, 1, 1, 85, 0, 60, 3300, 4300}));
    EXPECT_EQ(memcmp(&settings.PHY_Tuning[7], "\x26\x30\0", 3), 0);
    settings.Serial_Num[0] = 'Z';
    settings.SAS_Address[3][7] = 0xAB;
    settings.Rebuild_Rate = 77;
    settings.PHY_Tuning[5].Drive_En = 0x15;
    settings.bbu_charge_threshold = 60;
    settings.bbu_volt_lowerbound = 3000;
    EXPECT_EQ(LOG_OF(0, writeSettings(settings), reopen()), "9/32:0 9/33:0 10/17:0");
    EXPECT_EQ(LOG_OF(0, writeSettings(settings)), "10/17:0") << "the limits are these already";
    info = adapterInfo(0);
    EXPECT_EQ((Ints{info.SerialNo[0], info.PortSasAddress[3][7], adapterConfig(0).RebuildRate}), (Ints{'Z', 0xAB, 77}));
    succeed({configure(0, &Config::SyncRate, 11)});
    settings = readSettings();
    EXPECT_EQ(settings.PHY_Tuning[5].Drive_En, 0x15U);
    EXPECT_EQ(settings.Sync_Rate, 11) << "the page follows the settings";
}

TEST_F(Flash, SettingsPageRefuses) {
    _HBA_Info_Page settings = readSettings();
    const std::string sound(reinterpret_cast<const char*>(&settings), sizeof settings);
    newEvents();
    EXPECT_EQ(update(KT_IMAGE_CONFIG, sound.substr(1)), KT_ERR_FLASH_DESCRIPTOR);
    std::string wrong = sound;
    wrong[60] ^= 1;
    EXPECT_EQ(update(KT_IMAGE_CONFIG, wrong), KT_ERR_FLASH_DATA) << "the sum";
    settings.Signature[0] = 'X';
    EXPECT_EQ(writeSettings(settings), KT_ERR_FLASH_DATA);
    settings.Signature[0] = 'T';
    settings.MP_Rate = 101;
    EXPECT_EQ(writeSettings(settings), KT_ERR_FLASH_DATA);
    EXPECT_EQ(lookAtFlash(), "432 ++++++ 10/19:0 10/19:0 10/19:0");
    EXPECT_EQ(sumOf(readSettings()), 0);
    succeed({erase(KT_IMAGE_CONFIG)});
    EXPECT_EQ(readSettings().Signature[0], 0xFF);
    EXPECT_EQ(lookAtFlash().substr(4, 5), "++++-");
    const _Adapter_Info blank = adapterInfo(0);
    const Config config = adapterConfig(0);
    EXPECT_EQ(blank.SerialNo[0] | blank.ModelNumber[0] | blank.PortSasAddress[0][0] | config.SerialNo[0] |
                  config.ModelNumber[0],
              0);
    EXPECT_EQ(lookAtFlash({update(KT_IMAGE_CONFIG, sound)}).substr(4, 5), "+++++");
    EXPECT_NE(adapterInfo(0).SerialNo[0], 0);
}

TEST_F(Flash, NvsramIsBounded) {
    _NVSRAM_Data data = {};
    const auto access = [&](KT_U8 action, KT_U32 offset, KT_U32 length) {
        data.Offset = offset;
        data.Length = length;
        return KT_Flash_NVSRAM(0, action, &data);
    };
    memset(data.Data, 0x5A, sizeof data.Data);
    succeed({access(KT_NVSRAM_WRITE, 250, 256), access(KT_NVSRAM_WRITE, 128 * 1024 - 1, 1), reopen(),
             access(KT_NVSRAM_READ, 249, 256)});
    EXPECT_EQ(data.Data[0], 0);
    EXPECT_EQ(std::string(data.Data + 1, data.Data + 256), std::string(255, 0x5A));
    succeed({access(KT_NVSRAM_READ, 505, 2)});
    EXPECT_EQ((Ints{data.Data[0], data.Data[1]}), (Ints{0x5A, 0}));
    answer(KT_ERR_OUT_OF_RANGE, {access(KT_NVSRAM_READ, 128 * 1024 - 1, 2), access(KT_NVSRAM_WRITE, 0xFFFFFFFF, 2)});
    EXPECT_EQ(access(KT_NVSRAM_READ, 0, 257), KT_ERR_BUFFER_TOO_BIG);
    EXPECT_EQ(access(KT_NVSRAM_READ, 0, 0), KT_ERR_INVALID_PARAMETER);
    EXPECT_EQ(access(2, 0, 1), KT_ERR_FLASH_ACTION);
}

TEST_F(Flash, RegistersKeepTheirValues) {
    _Register_Request request = {8, 16, {}, 0xFEDCBA9876543210};
    const auto read = [&](KT_U8 type, KT_U32 address) { return KT_Adapter_Read_Register(0, type, address, &request); };
    const auto write = [&](KT_U32 address) { return KT_Adapter_Write_Register(0, 0, address, &request); };
    succeed({write(1), read(0, 0)});
    EXPECT_EQ(request.Value, 0U);
    succeed({read(0, 1)});
    EXPECT_EQ(request.Value, 0xFEDCBA9876543210);
    EXPECT_EQ(read(0, 2), KT_ERR_OUT_OF_RANGE);
    EXPECT_EQ(read(1, 0), KT_ERR_INVALID_PARAMETER);
    succeed({reboot(), read(0, 1)});
    EXPECT_EQ(request.Value, 0U) << "a boot forgets them";
    succeed({runClock(1), write(1), read(0, 0)}); // a second takes a quarter of an hour
    answer(KT_ERR_REGISTER_WRITING, {read(0, 1), write(1)});
    request.TotalSize = 8;
    EXPECT_EQ(read(0, 0), KT_ERR_WRONG_DATA);
}
