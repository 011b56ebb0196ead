#include "frame.h"

// Three disks on ports 0 to 2 of an encrypting adapter with one entry more than ports, the first of them with the
// system; and an adapter that cannot encrypt.
static const char ENCRYPTION_LAB[] = R"({"adapters": [
  {"type": "LD-based", "MaxAESEntry": 5, "MaxAESPort": 4, "PortCount": 3,
   "disks": [{"size": "1TB", "port": 0, "os": true}, {"count": 2, "size": "1TB", "port": 1}]},
  {"type": "array-based"}]})";

static const KT_U16 DISK = 1; // on port 1

static _AES_Entry_Config entryConfig(KT_U8 entry, const char* key, const char* password, KT_U8 length = 32) {
    _AES_Entry_Config config = {};
    config.entry_id = entry;
    config.key_length = length;
    memcpy(config.key_content, key, strlen(key));
    memcpy(config.user_auth, password, strlen(password));
    return config;
}

// The calls that take a key or a password.
static KT_U8 setKey(KT_U8 entry, const char* key, const char* password, KT_U8 length = 32, KT_U8 adapter = 0) {
    _AES_Entry_Config config = entryConfig(entry, key, password, length);
    return KT_AES_SetEntryConfig(adapter, &config, config.user_auth);
}
static KT_U8 verify(KT_U8 entry, const char* key, const char* password, KT_U8 length = 32) {
    _AES_Entry_Config config = entryConfig(entry, key, password, length);
    return KT_AES_VerifyKey(0, &config, config.user_auth);
}
static KT_U8 changePassword(KT_U8 entry, const char* from, const char* to) {
    _AES_Entry_Config config = entryConfig(entry, from, to);
    return KT_AES_ChangePwd(0, &config, config.user_auth);
}
static KT_U8 link(KT_U8 port, KT_U8 entry, const char* password) {
    const _AES_PORT_INFO info = {port, entry, {}};
    const _AES_Entry_Config config = entryConfig(entry, "", password);
    return KT_AES_SetLink(0, &info, &config);
}
static KT_U8 enable(KT_U8 port, KT_U8 on) {
    const _AES_Port_Config config = {port, on, {}};
    return KT_AES_SetPortConfig(0, &config);
}
static KT_U8 forceOnline(KT_U16 pd, KT_U8 percentage) {
    const _AES_Entry_Config config = entryConfig(0, "", "");
    return KT_AES_ForcePDOnline(0, &config, pd, percentage);
}

// How disk 1 is after the calls, whose answers are KT_OK: what part of it is encrypted, and what was logged.
static std::string diskAfter(std::initializer_list<KT_U8> calls) {
    succeed(calls);
    const _HD_CONFIG config = pdConfig(0, DISK);
    EXPECT_EQ(config.Online == 0, (roleOf(0, DISK) & KT_PD_OFFLINE) != 0);
    EXPECT_EQ(config.crypto != 0, config.AESPercentage != 0);
    return (config.Online ? "online " : "offline ") + std::to_string(config.AESPercentage) + "% " + newEvents();
}

struct Encryption : LabTest<ENCRYPTION_LAB> {};

TEST_F(Encryption, EntriesKeepTheirKeyBehindAPassword) {
    const char* longest = "0123456789abcdef0123456789abcdef";
    const auto get = [](_AES_Entry_Config& config) { return KT_AES_GetEntryConfig(0, &config, config.user_auth); };
    _AES_Entry_Config config = entryConfig(4, "", longest, 0);
    _AES_Entry_Config wrong = entryConfig(4, "", "x", 0);
    succeed({setKey(4, "key", longest, 3), reopen(), verify(4, "key", longest), get(config)});
    EXPECT_EQ((Ints{config.key_length, config.key_content[0]}), (Ints{3, 0})) << "a key never leaves its entry";
    EXPECT_EQ(verify(4, "Key", longest), KT_ERR_KEY_MISMATCH);
    answer(KT_ERR_PASSWORD_MISMATCH,
           {verify(4, "key", "0123456789abcdef0123456789abcde"), changePassword(4, "wrong", "new"), get(wrong)});
    EXPECT_EQ(changePassword(4, longest, ""), KT_ERR_WRONG_DATA);
    succeed({changePassword(4, longest, "new"), verify(4, "key", "new")});
    EXPECT_EQ(verify(4, "key", longest), KT_ERR_PASSWORD_MISMATCH);
}

TEST_F(Encryption, EntriesRefuse) {
    answer(KT_ERR_ENTRY_RANGE, {setKey(5, "key", "pw"), changePassword(9, "pw", "new")});
    answer(KT_ERR_KEY_LENGTH, {setKey(0, "key", "pw", 33), setKey(0, "", "pw"), setKey(0, "key", "pw", 0)});
    EXPECT_EQ(setKey(0, "key", "pw", 32, 1), KT_ERR_NOT_ON_THIS_ADAPTER);
    answer(KT_ERR_ENTRY_NO_KEY, {verify(0, "key", "pw"), changePassword(0, "pw", "new")});
    succeed({setKey(0, "key", "pw")});
    EXPECT_EQ(setKey(0, "other", "pw"), KT_ERR_KEY_PRESENT);
    EXPECT_EQ(setKey(0, "", "wrong", 0), KT_ERR_PASSWORD_MISMATCH);
    EXPECT_EQ(setKey(0, "", "pw", 0), KT_OK) << "a key of no length is taken away";
    EXPECT_EQ(verify(0, "key", "pw"), KT_ERR_ENTRY_NO_KEY);
}

TEST_F(Encryption, OverviewNamesPortsAndEntries) {
    _aes_entry_info info = {};
    _AES_ENTRY_INFO entry = {};
    _AES_PORT_INFO port = {};
    _AES_Port_Config config = {};
    succeed({setKey(3, "key", "pw"), link(2, 3, "pw"), KT_AES_GetEntryInfo(0, &info),
             KT_AES_OnlyGetEntryInfo(0, 3, &entry), KT_AES_OnlyGetPortInfo(0, 2, &port),
             KT_AES_GetPortConfig(0, 2, &config)});
    Ints ports;
    for (int i = 0; i < 4; ++i)
        ports.insert(ports.end(), {info.aes_port[i].id, info.aes_port[i].entry});
    EXPECT_EQ(ports, (Ints{0, 255, 1, 255, 2, 3, 255, 255}));
    EXPECT_EQ(Ints(info.entry, info.entry + 10), (Ints{0, 0, 0, 1, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ((Ints{entry.hasKey, port.entry, config.port_id}), (Ints{1, 3, 2}));
    EXPECT_EQ(setKey(3, "", "pw", 0), KT_ERR_INVALID_REQUEST) << "a port uses the key";
}

TEST_F(Encryption, PortsRefuse) {
    succeed({setKey(0, "key", "pw")});
    EXPECT_EQ(enable(1, 1), KT_ERR_KEY_ABSENT);
    EXPECT_EQ(enable(1, 2), KT_ERR_INVALID_PARAMETER);
    EXPECT_EQ(enable(3, 1), KT_ERR_PORT_NOT_FOUND);
    answer(KT_ERR_PORT_RANGE, {enable(4, 1), link(4, 0, "pw")});
    EXPECT_EQ(link(1, 0, "wrong"), KT_ERR_PASSWORD_MISMATCH);
    EXPECT_EQ(link(1, 2, "pw"), KT_ERR_ENTRY_NO_KEY);
    EXPECT_EQ(link(1, 5, "pw"), KT_ERR_ENTRY_RANGE);
    EXPECT_EQ(KT_AES_ClearLink(0, 1), KT_ERR_INVALID_REQUEST);
    succeed({link(1, 0, "pw"), link(0, 0, "pw")});
    EXPECT_EQ(link(1, 0, "pw"), KT_ERR_KEY_PRESENT);
    EXPECT_EQ(enable(0, 1), KT_ERR_VD_HAS_OS) << "the system runs from its disk";
}

TEST_F(Encryption, DisksFollowTheirPort) {
    EXPECT_EQ(diskAfter({setKey(0, "key", "pw"), setKey(1, "other key", "pw"), link(1, 0, "pw")}), "online 0% ");
    EXPECT_EQ(forceOnline(DISK, 100), KT_ERR_DISK_NOT_OFFLINE);
    EXPECT_EQ(diskAfter({enable(1, 1)}), "offline 0% 2/55:1");
    EXPECT_EQ(diskAfter({enable(1, 0)}), "online 0% 2/54:1") << "plain like its port again";
    EXPECT_EQ(diskAfter({enable(1, 1)}), "offline 0% 2/55:1");
    EXPECT_EQ(forceOnline(DISK, 55), KT_ERR_OUT_OF_RANGE);
    EXPECT_EQ(forceOnline(77, 50), KT_ERR_INVALID_PD);
    EXPECT_EQ(diskAfter({forceOnline(DISK, 60)}), "online 60% 2/54:1");
    EXPECT_EQ(diskAfter({KT_AES_ClearLink(0, 1)}), "offline 60% 2/56:1");
    EXPECT_EQ(diskAfter({link(1, 0, "pw"), enable(1, 1)}), "online 60% 2/54:1") << "its own key opens it";
    EXPECT_EQ(diskAfter({KT_AES_ClearLink(0, 1), link(1, 1, "pw"), enable(1, 1)}), "offline 60% 2/56:1") << "not so";
    EXPECT_EQ(diskAfter({KT_AES_ClearLink(0, 1), forceOnline(DISK, 100)}), "online 0% 2/54:1") << "on a plain port";
    EXPECT_EQ(diskAfter({pullDisk(0, DISK), link(1, 1, "pw"), enable(1, 1), insertDisk(0, DISK)}),
              "offline 0% 2/0:1 2/1:1 2/55:1")
        << "its port has changed while it was away";
}

TEST_F(Encryption, SecretsAreNotShown) {
    succeed({setKey(0, "SECRETKEY", "SECRETPASS")});
    const std::string shown = show();
    for (const char* hidden : {"SECRET", "534543524554"})
        EXPECT_EQ(shown.find(hidden), std::string::npos);
    start(shown);
    EXPECT_EQ(verify(0, "SECRETKEY", "SECRETPASS"), KT_OK) << "what is shown makes the same state again";
}

TEST_F(Encryption, VirtualDisksFeelIt) {
    const auto begin = [&](const std::string& vd) {
        start(R"({"adapters": [{"type": "LD-based", "PortCount": 8,
          "disks": [{"count": 2, "type": "SATA", "size": "1TB", "on": "HBA", "port": 0}],
          "virtualDisks": [{"disks": [0, 1], "size": "10GiB", )" +
              vd + R"(}], "keys": [{"id": 0, "key": "key", "password": "pw", "ports": [{"id": 0}, {"id": 1}]}]}]})");
    };
    begin(R"("level": "RAID1", "os": true)");
    EXPECT_EQ(enable(1, 1), KT_ERR_VD_HAS_OS) << "a running system keeps all of its disks";
    EXPECT_EQ(look(0, 0), "online 0 1");
    begin(R"("level": "RAID1")");
    EXPECT_EQ(diskAfter({enable(1, 1)}), "offline 0% 2/55:1 1/4:0");
    EXPECT_EQ(KT_PD_SetHDStatus(0, DISK, 1), KT_ERR_KEY_MISMATCH);
    EXPECT_EQ(diskAfter({}), "offline 0% ") << "setting it up does not make its cipher fit";
    EXPECT_EQ(diskAfter({forceOnline(DISK, 100)}), "online 100% 2/54:1 1/70:0");
    EXPECT_EQ(look(0, 0, {advance(2 * DAY)}), "online 0 1");
    newEvents();
    EXPECT_EQ(diskAfter({replaceDisk(0, DISK)}), "offline 0% 2/0:1 1/4:0 2/1:1 2/55:1") << "a new disk is plain";
    begin(R"("level": "RAID0")");
    EXPECT_EQ(look(0, 0, {enable(1, 1), enable(1, 0)}), "online 0 1") << "nothing was written";
    EXPECT_EQ(look(0, 0, {enable(1, 1), forceOnline(DISK, 100)}), "offline 0 -") << "it has lost its data";
}

TEST_F(Encryption, ASpareStandsByAgainWhenItsPortIsOpened) {
    succeed({setKey(0, "key", "pw"), link(DISK, 0, "pw"), enable(DISK, 1), forceOnline(DISK, 100),
             KT_PD_FreeHD2GlobalSpare(0, DISK)});
    newEvents();
    EXPECT_EQ(diskAfter({reboot()}), "offline 100% 12/7:0 0/9:0 2/57:1");
    EXPECT_EQ(diskAfter({link(DISK, 0, "pw")}), "online 100% 2/9:1");
    EXPECT_EQ(roleOf(0, DISK), KT_PD_GLOBAL_SPARE);
}
