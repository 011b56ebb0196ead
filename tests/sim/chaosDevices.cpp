#include "chaos.h"
#include "devices/batteryDeeds.h"
#include "devices/elementConditions.h"
#include "devices/enclosureElements.h"
#include "devices/flashImage.h"
#include "devices/flashMemory.h"
#include "devices/solidState.h"
#include "media/disks.h"
#include "media/wear.h"
#include "raid/levels.h"
#include "state/adapterInfo.h"

#include <algorithm>
#include <numeric>

// One of few keys or passwords.
static void putSecret(Chaos& run, KT_U8 (&field)[32]) {
    std::fill(std::begin(field), std::end(field), static_cast<KT_U8>(run.rarely(6) ? 'b' : 'a'));
}

static KT_U16 lockedDisk(Chaos& run) {
    const auto isLocked = [](const DiskCipher& cipher) { return cipher.offline != 0; };
    return run.among(idsWhere<DiskCipher>(run.context(), isLocked), 20);
}

static void useCipher(Chaos& run) {
    _AES_Entry_Config entry = {};
    entry.entry_id = run.byte(run.rarely(4) ? 6 : 2);
    entry.key_length = run.rarely(5) ? run.byte(34) : KT_U8{32};
    putSecret(run, entry.key_content);
    putSecret(run, entry.user_auth);
    const _AES_PORT_INFO port = {run.byte(run.rarely(4) ? 5 : 2), entry.entry_id, {}};
    const _AES_Port_Config config = {port.id, run.byte(2), {}};
    const KT_U8 percentage = run.rarely(8) ? run.byte(120) : static_cast<KT_U8>(10 * run.pick(11));
    switch (run.pick(8)) {
    case 0:
        return void(KT_AES_SetEntryConfig(run.adapter, &entry, entry.user_auth));
    case 1:
        return void(KT_AES_GetEntryConfig(run.adapter, &entry, entry.user_auth));
    case 2:
        return void(KT_AES_SetPortConfig(run.adapter, &config));
    case 3:
        return void(KT_AES_ClearLink(run.adapter, port.id));
    case 4:
        return void(KT_AES_VerifyKey(run.adapter, &entry, entry.user_auth));
    case 5:
        return void(KT_AES_ChangePwd(run.adapter, &entry, entry.user_auth));
    case 6:
        return void(KT_AES_ForcePDOnline(run.adapter, &entry, lockedDisk(run), percentage));
    default:
        return void(KT_AES_SetLink(run.adapter, &port, &entry));
    }
}

static void useCiphers(Chaos& run) {
    for (int i = 0; i < 8; ++i)
        useCipher(run);
}

// A file in its pages, which may end too soon, come twice or be damaged.
static void sendPages(Chaos& run, std::string file, const std::function<KT_U8(_Flash_Data*)>& send) {
    if (run.rarely(4)) file[run.pick(static_cast<unsigned>(file.size()))] ^= 1;
    const auto page = std::make_unique<_Flash_Data>();
    for (size_t at = 0; at < file.size() && !run.rarely(12); at += page->Size, ++page->PageNum) {
        page->Size = static_cast<KT_U32>(std::min<size_t>(file.size() - at, FLASH_PAGE));
        page->isLastPage = at + page->Size == file.size();
        memcpy(page->Data, file.data() + at, page->Size);
        send(page.get());
        if (run.rarely(12)) send(page.get());
    }
}

static std::string filler(Chaos& run) {
    const KT_U16 seed = run.pick(99);
    return imageFiller(seed, run.rarely(6) ? 200000 : 3000);
}

static void useFlash(Chaos& run) {
    const KT_U8 type = run.byte(7);
    const ImageKind* kind = imageKind(type);
    if (kind == nullptr || run.rarely(4)) {
        const auto page = std::make_unique<_Flash_Data>();
        page->PageNum = run.pick(3);
        KT_Flash_Bin(run.adapter, run.rarely(4) ? KT_FLASH_ERASE : KT_FLASH_BACKUP, type, page.get());
        return;
    }
    const KT_U16 vendor = run.rarely(5) ? run.pick(9) : adapterInfo(run.context()).SubVenID;
    const ImageVersion version = {run.pick(9), run.pick(9), run.pick(9), run.pick(9)};
    const std::string image = makeImage(*kind, version, vendor, filler(run));
    const _KT_FLASH_PER_DATA announced = {type, {}, static_cast<KT_U32>(image.size())};
    if (!run.rarely(5)) KT_Flash_PreData(run.adapter, &announced);
    sendPages(run, image, [&](_Flash_Data* page) { return KT_Flash_Bin(run.adapter, KT_FLASH_UPDATE, type, page); });
}

// The page of settings, with some of them others, and a sum that is mostly right.
static void writeSettings(Chaos& run) {
    const auto page = std::make_unique<_Flash_Data>();
    KT_Flash_Bin(run.adapter, KT_FLASH_BACKUP, KT_IMAGE_CONFIG, page.get());
    _HBA_Info_Page settings;
    memcpy(&settings, page->Data, sizeof settings);
    settings.bbu_charge_threshold = run.byte(110);
    settings.bbu_temp_upperbound = run.byte(90);
    settings.bbu_volt_lowerbound = run.pick(6000);
    settings.Serial_Num[run.pick(4)] = static_cast<KT_U8>('a' + run.pick(20));
    settings.Rebuild_Rate = run.byte(104);
    auto* bytes = reinterpret_cast<KT_U8*>(&settings);
    bytes[run.pick(sizeof settings)] ^= 1;
    if (!run.rarely(6)) {
        settings.Check_Sum =
            static_cast<KT_U8>(settings.Check_Sum - std::accumulate(bytes, bytes + sizeof settings, 0));
    }
    memcpy(page->Data, &settings, sizeof settings);
    KT_Flash_Bin(run.adapter, KT_FLASH_UPDATE, KT_IMAGE_CONFIG, page.get());
}

// Commands for the disk itself, and for its light.
static void useDisk(Chaos& run) {
    const KT_U8 commands[] = {KT_ATA_SMART, KT_ATA_SMART, KT_ATA_SMART, 0xEF, 0xEF, 0xE7, 0x20};
    const KT_U8 features[] = {KT_SMART_RETURN_STATUS, KT_SMART_RETURN_STATUS, 0xD8, 0xD9, 0x02, 0x82};
    for (int i = 0; i < 4; ++i) {
        _ATA_PassThrough command = {};
        command.Command = run.oneOf(commands);
        command.Features = run.oneOf(features);
        command.LBAMid = run.rarely(9) ? KT_U8{0} : KT_U8{KT_SMART_LBA_MID};
        command.LBAHigh = run.rarely(9) ? KT_U8{0} : KT_U8{KT_SMART_LBA_HIGH};
        command.Protocol = run.rarely(9) ? 1 : 0;
        KT_PassThrough_ATA(run.adapter, run.disk(), &command);
        const KT_U8 kind = run.byte(3);
        const KT_U16 id = run.pick(5);
        KT_LocateArrayDevice(run.adapter, kind, id, run.byte(2));
    }
}

static void useSolidState(Chaos& run) {
    const KT_U16 pd = run.among(idsWhere<_HD_Info>(run.context(), isSolidState), 20);
    _SSD_Diagnostic diagnostic = {};
    diagnostic.Action = run.byte(4);
    KT_SSD_Diagnostic(run.adapter, pd, &diagnostic);
    const auto disk = find<_HD_Info>(run.context(), pd);
    if (!disk || !run.rarely(4)) return;
    const std::string version = std::to_string(run.pick(99));
    const std::string file = makeMicrocode({std::begin(disk->Model), std::end(disk->Model)}, version, filler(run));
    const KT_U8 mode = run.byte(2);
    sendPages(run, file, [&](_Flash_Data* page) { return KT_Download_SSD_Microcode(run.adapter, pd, mode, page); });
}

static void useRegisters(Chaos& run) {
    _NVSRAM_Data data = {run.pick(200) * 997U, run.pick(260), {}, {run.byte(9), run.byte(9)}};
    KT_Flash_NVSRAM(run.adapter, run.byte(3), &data);
    _Register_Request request = {8, static_cast<KT_U8>(run.rarely(5) ? 0 : 16), {}, run.pick(999)};
    const KT_U16 address = run.pick(3);
    KT_Adapter_Write_Register(run.adapter, run.rarely(5), address, &request);
    KT_Adapter_Read_Register(run.adapter, 0, address, &request);
}

static void useHybrids(Chaos& run) {
    const _Tandemix_Entry_Request entry = {
        {0, run.rarely(9) ? KT_U8{KT_REQUEST_LIST} : KT_U8{KT_REQUEST_ITEM}, 0, 1, 0, 0, {}},
        run.pick(60) * 8U,
        run.pick(60)};
    const auto isHybrid = [](const _LD_Info& vd) { return isHybridLevel(vd.RaidMode); };
    const KT_U16 vd = run.among(idsWhere<_LD_Info>(run.context(), isHybrid), 5);
    if (run.rarely(8)) KT_Tandemix_RemoveEntriesTable(run.adapter, vd);
    KT_Tandemix_AddFSEntries(run.adapter, vd, &entry, run.byte(2));
}

// What people, age and weather do to what is not a disk, and to how long a disk will live.
static void befall(Chaos& run) {
    beginTransaction(*run.store, Access::Write);
    const Context context = run.context();
    const auto kinds = elementKinds();
    const KT_U8 type = kinds[run.pick(static_cast<unsigned>(kinds.size()))].type;
    const auto words = conditionWords(type);
    const auto aspects = agingWords();
    const KT_U8 element = run.byte(3);
    const KT_U16 amount = run.pick(3000);
    switch (run.pick(8)) {
    case 0:
        setElementReading(context, 1, type, element, run.rarely(3) ? 4 * amount : amount / 2);
        break;
    case 1:
        setBatteryCharge(context, run.pick(101));
        break;
    case 2:
        setBatteryTemperature(context, static_cast<KT_S16>(run.pick(9000)));
        break;
    case 3:
        setBatteryVoltage(context, static_cast<KT_U16>(3000 + run.pick(9000)));
        break;
    case 4:
        breakCharger(context, run.rarely(2));
        break;
    case 5:
        scheduleRelearn(context, run.pick(4000));
        break;
    case 6:
        damageImage(context, static_cast<KT_U8>(amount % 7), run.rarely(2) ? ImageFault::Header : ImageFault::Data);
        break;
    default:
        setElementCondition(context, 1, type, element, words[run.pick(static_cast<unsigned>(words.size()))]);
        ageDisk(context, run.disk(), aspects[amount % aspects.size()], amount);
    }
    commitTransaction(*run.store);
}

void useDevices(Chaos& run) {
    static void (*const USES[])(Chaos&) = {useCiphers,    useCiphers,    useCiphers,   useFlash,   writeSettings,
                                           useSolidState, useSolidState, useRegisters, useHybrids, useDisk,
                                           befall,        befall,        befall};
    USES[run.pick(std::size(USES))](run);
}

template <class Record>
static void ask(KT_U8 adapter, KT_U16 id, KT_U8 (*call)(KT_U8, KT_U16, Record*)) {
    const auto record = std::make_unique<Record>();
    call(adapter, id, record.get());
}

void lookAtDevices(KT_U8 adapter) {
    for (KT_U16 id = 0; id < 20; ++id) {
        ask(adapter, id, KT_PD_GetFreeSpaceInfo);
        ask(adapter, id, KT_PD_GET_SMART_INFO);
        ask(adapter, id, KT_SSD_SmartReadData);
        ask(adapter, id, KT_BLK_GetHDBlock);
        ask(adapter, id, KT_Tandemix_GetEntriesTableInfo);
        ask(adapter, id, KT_VDHDD_GetLink);
        ask(adapter, id, KT_LD_GetTargetLDInfo);
        _Device_Magic disk = {id, {}, {}};
        _Device_Magic vd = {id, {}, {}};
        KT_Tandem_GetHDMagic(adapter, 1, &disk);
        KT_Tandem_GetVDMagic(adapter, 1, &vd);
        KT_DiskHasOS(adapter, static_cast<KT_U8>(id % 3), 1, &id);
    }
    for (const ElementKind& kind : elementKinds()) {
        for (const KT_U8 element : {KT_U8{0}, KT_U8{1}, KT_U8{2}, KT_U8{OVERALL_ELEMENT}}) {
            _Enc_Element_Info info = {};
            _Enc_Element_Config config = {};
            KT_ENC_GetElementInfo(adapter, 1, kind.type, element, &info);
            KT_ENC_GetElementConfig(adapter, 1, kind.type, element, &config);
        }
    }
    _aes_entry_info ciphers = {};
    KT_AES_GetEntryInfo(adapter, &ciphers);
    for (KT_U8 i = 0; i < 6; ++i) {
        _AES_ENTRY_INFO entry = {};
        _AES_PORT_INFO port = {};
        _AES_Port_Config config = {};
        KT_AES_OnlyGetEntryInfo(adapter, i, &entry);
        KT_AES_OnlyGetPortInfo(adapter, i, &port);
        KT_AES_GetPortConfig(adapter, i, &config);
    }
    _HD_MBR_Info records = {20, {}, {}, {}};
    std::iota(records.HDIDs, records.HDIDs + 20, KT_U16{0});
    KT_PD_GetMBRInfo(adapter, &records);
    _BBU_Info battery = {};
    KT_BBU_GetInfo(adapter, &battery);
    KT_U8 version = 0;
    _Adapter_Info info = {};
    KT_Adapter_GetInfo(adapter, &version, &info);
    _Adapter_Config_V2 config = {};
    KT_Adapter_GetConfig(adapter, &config);
    KT_U8 count = 0;
    _Event events[5] = {};
    KT_EVT_GetEvent(adapter, std::size(events), &count, events);
    _Event_Message messages[50] = {};
    KT_EVT_GetEventMessage(adapter, std::size(messages), &count, messages);
}
