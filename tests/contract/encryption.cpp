#include "frame.h"
#include "outside.h"

// Three disks on ports 0 to 2 of an encrypting adapter with one entry more than ports, the first of them with the
// system; and an adapter that cannot encrypt.
static const char LAB[] = R"({"adapters": [
  {"type": "LD-based", "MaxAESEntry": 5, "MaxAESPort": 4, "PortCount": 3,
   "disks": [{"size": "1TB", "port": 0, "os": true}, {"count": 2, "size": "1TB", "port": 1}]},
  {"type": "array-based"}]})";

static const KT_U16 DISK = 1; // on port 1

struct Secret {
    KT_U8 bytes[32];
    explicit Secret(const char* text) : bytes() { memcpy(bytes, text, strlen(text)); }
};

static _AES_Entry_Config entryConfig(KT_U8 entry, const char* key, const char* password, KT_U8 length = 32) {
    _AES_Entry_Config config = {};
    config.entry_id = entry;
    config.key_length = length;
    memcpy(config.key_content, Secret(key).bytes, 32);
    memcpy(config.user_auth, Secret(password).bytes, 32);
    return config;
}

static KT_U8 setKey(KT_U8 entry, const char* key, const char* password, KT_U8 length = 32, KT_U8 adapter = 0) {
    _AES_Entry_Config config = entryConfig(entry, key, password, length);
    return KT_AES_SetEntryConfig(adapter, &config, Secret(password).bytes);
}

static KT_U8 verify(KT_U8 entry, const char* key, const char* password, KT_U8 length = 32) {
    _AES_Entry_Config config = entryConfig(entry, key, password, length);
    return KT_AES_VerifyKey(0, &config, Secret(password).bytes);
}

static KT_U8 changePassword(KT_U8 entry, const char* from, const char* to) {
    _AES_Entry_Config config = entryConfig(entry, from, to);
    return KT_AES_ChangePwd(0, &config, Secret(to).bytes);
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

static bool offline(KT_U16 pd) {
    return roleOf(0, pd) & KT_PD_OFFLINE;
}

struct Encryption : LabTest<LAB> {};

TEST_F(Encryption, EntriesKeepTheirKeyBehindAPassword) {
    const char* longest = "0123456789abcdef0123456789abcdef";
    ASSERT_EQ(setKey(4, "key", longest, 3), KT_OK);
    reopen();
    EXPECT_EQ(verify(4, "key", longest), KT_OK);
    EXPECT_EQ(verify(4, "Key", longest), KT_ERR_KEY_MISMATCH);
    EXPECT_EQ(verify(4, "key", "0123456789abcdef0123456789abcde"), KT_ERR_PASSWORD_MISMATCH);
    _AES_Entry_Config config = entryConfig(4, "", "", 0);
    ASSERT_EQ(KT_AES_GetEntryConfig(0, &config, Secret(longest).bytes), KT_OK);
    EXPECT_EQ(config.key_length, 3);
    EXPECT_EQ(config.key_content[0], 0) << "a key never leaves its entry";
    EXPECT_EQ(KT_AES_GetEntryConfig(0, &config, Secret("x").bytes), KT_ERR_PASSWORD_MISMATCH);
    EXPECT_EQ(changePassword(4, "wrong", "new"), KT_ERR_PASSWORD_MISMATCH);
    EXPECT_EQ(changePassword(4, longest, ""), KT_ERR_WRONG_DATA);
    EXPECT_EQ(changePassword(4, longest, "new"), KT_OK);
    EXPECT_EQ(verify(4, "key", longest), KT_ERR_PASSWORD_MISMATCH);
    EXPECT_EQ(verify(4, "key", "new"), KT_OK);
}

TEST_F(Encryption, EntriesRefuse) {
    EXPECT_EQ(setKey(5, "key", "pw"), KT_ERR_ENTRY_RANGE);
    EXPECT_EQ(setKey(0, "key", "pw", 33), KT_ERR_KEY_LENGTH);
    EXPECT_EQ(setKey(0, "", "pw"), KT_ERR_KEY_LENGTH);
    EXPECT_EQ(setKey(0, "key", "pw", 0), KT_ERR_KEY_LENGTH);
    EXPECT_EQ(setKey(0, "key", "pw", 32, 1), KT_ERR_NOT_ON_THIS_ADAPTER);
    EXPECT_EQ(verify(0, "key", "pw"), KT_ERR_ENTRY_NO_KEY);
    EXPECT_EQ(changePassword(0, "pw", "new"), KT_ERR_ENTRY_NO_KEY);
    EXPECT_EQ(changePassword(9, "pw", "new"), KT_ERR_ENTRY_RANGE);
    ASSERT_EQ(setKey(0, "key", "pw"), KT_OK);
    EXPECT_EQ(setKey(0, "other", "pw"), KT_ERR_KEY_PRESENT);
    EXPECT_EQ(verify(0, "key", "pw", 0), KT_ERR_KEY_LENGTH);
    EXPECT_EQ(setKey(0, "", "wrong", 0), KT_ERR_PASSWORD_MISMATCH);
    EXPECT_EQ(setKey(0, "", "pw", 0), KT_OK) << "a key of no length is taken away";
    EXPECT_EQ(verify(0, "key", "pw"), KT_ERR_ENTRY_NO_KEY);
}

TEST_F(Encryption, OverviewNamesPortsAndEntries) {
    ASSERT_EQ(setKey(3, "key", "pw"), KT_OK);
    ASSERT_EQ(link(2, 3, "pw"), KT_OK);
    _aes_entry_info info = {};
    ASSERT_EQ(KT_AES_GetEntryInfo(0, &info), KT_OK);
    EXPECT_EQ(std::vector<int>({info.aes_port[0].id, info.aes_port[2].id, info.aes_port[3].id}),
              std::vector<int>({0, 2, 255}));
    EXPECT_EQ(std::vector<int>({info.aes_port[0].entry, info.aes_port[2].entry, info.aes_port[3].entry}),
              std::vector<int>({255, 3, 255}));
    EXPECT_EQ(std::vector<int>(info.entry, info.entry + 10), std::vector<int>({0, 0, 0, 1, 0, 0, 0, 0, 0, 0}));
    _AES_ENTRY_INFO entry = {};
    ASSERT_EQ(KT_AES_OnlyGetEntryInfo(0, 3, &entry), KT_OK);
    EXPECT_EQ(entry.hasKey, 1);
    _AES_PORT_INFO port = {};
    ASSERT_EQ(KT_AES_OnlyGetPortInfo(0, 2, &port), KT_OK);
    EXPECT_EQ(port.entry, 3);
    _AES_Port_Config config = {};
    ASSERT_EQ(KT_AES_GetPortConfig(0, 2, &config), KT_OK);
    EXPECT_EQ(config.port_id, 2);
    EXPECT_EQ(setKey(3, "", "pw", 0), KT_ERR_INVALID_REQUEST) << "a port uses the key";
}

TEST_F(Encryption, PortsRefuse) {
    ASSERT_EQ(setKey(0, "key", "pw"), KT_OK);
    EXPECT_EQ(enable(1, 1), KT_ERR_KEY_ABSENT);
    EXPECT_EQ(enable(1, 2), KT_ERR_INVALID_PARAMETER);
    EXPECT_EQ(enable(3, 1), KT_ERR_PORT_NOT_FOUND);
    EXPECT_EQ(enable(4, 1), KT_ERR_PORT_RANGE);
    EXPECT_EQ(link(1, 0, "wrong"), KT_ERR_PASSWORD_MISMATCH);
    EXPECT_EQ(link(1, 2, "pw"), KT_ERR_ENTRY_NO_KEY);
    EXPECT_EQ(link(1, 5, "pw"), KT_ERR_ENTRY_RANGE);
    EXPECT_EQ(link(4, 0, "pw"), KT_ERR_PORT_RANGE);
    EXPECT_EQ(KT_AES_ClearLink(0, 1), KT_ERR_INVALID_REQUEST);
    ASSERT_EQ(link(1, 0, "pw"), KT_OK);
    EXPECT_EQ(link(1, 0, "pw"), KT_ERR_KEY_PRESENT);
    ASSERT_EQ(link(0, 0, "pw"), KT_OK);
    EXPECT_EQ(enable(0, 1), KT_ERR_VD_HAS_OS) << "the system runs from its disk";
}

TEST_F(Encryption, DisksFollowTheirPort) {
    ASSERT_EQ(setKey(0, "key", "pw"), KT_OK);
    ASSERT_EQ(setKey(1, "other key", "pw"), KT_OK);
    ASSERT_EQ(link(1, 0, "pw"), KT_OK);
    EXPECT_FALSE(offline(DISK));
    EXPECT_EQ(forceOnline(DISK, 100), KT_ERR_DISK_NOT_OFFLINE);
    ASSERT_EQ(enable(1, 1), KT_OK);
    EXPECT_TRUE(offline(DISK));
    EXPECT_FALSE(offline(0)) << "a disk on another port";
    EXPECT_EQ(newEvents(), Events({"2/55 of 1"}));
    ASSERT_EQ(enable(1, 0), KT_OK);
    EXPECT_FALSE(offline(DISK)) << "a plain disk is back when its port is plain again";

    ASSERT_EQ(enable(1, 1), KT_OK);
    EXPECT_EQ(forceOnline(DISK, 55), KT_ERR_OUT_OF_RANGE);
    EXPECT_EQ(forceOnline(77, 50), KT_ERR_INVALID_PD);
    ASSERT_EQ(forceOnline(DISK, 60), KT_OK);
    EXPECT_FALSE(offline(DISK));
    const _HD_CONFIG config = pdConfig(0, DISK);
    EXPECT_EQ(std::vector<int>({config.crypto, config.AESPercentage, config.Online}), std::vector<int>({1, 60, 1}));
    newEvents();

    ASSERT_EQ(KT_AES_ClearLink(0, 1), KT_OK);
    EXPECT_TRUE(offline(DISK));
    EXPECT_EQ(newEvents(), Events({"2/56 of 1"}));
    ASSERT_EQ(link(1, 0, "pw"), KT_OK);
    ASSERT_EQ(enable(1, 1), KT_OK);
    EXPECT_FALSE(offline(DISK)) << "its own key opens it";
    ASSERT_EQ(KT_AES_ClearLink(0, 1), KT_OK);
    ASSERT_EQ(link(1, 1, "pw"), KT_OK);
    ASSERT_EQ(enable(1, 1), KT_OK);
    EXPECT_TRUE(offline(DISK)) << "another key does not";
    ASSERT_EQ(KT_AES_ClearLink(0, 1), KT_OK);
    ASSERT_EQ(forceOnline(DISK, 100), KT_OK);
    EXPECT_FALSE(offline(DISK)) << "forced online on a plain port it is a plain disk";
    EXPECT_EQ(pdConfig(0, DISK).AESPercentage, 0);

    ASSERT_EQ(outside::pullDisk(0, DISK), KT_OK);
    ASSERT_EQ(link(1, 1, "pw"), KT_OK);
    ASSERT_EQ(enable(1, 1), KT_OK);
    ASSERT_EQ(outside::insertDisk(0, DISK), KT_OK);
    EXPECT_TRUE(offline(DISK)) << "its port has changed while it was away";
}

TEST_F(Encryption, SecretsAreNotShown) {
    ASSERT_EQ(setKey(0, "SECRETKEY", "SECRETPASS"), KT_OK);
    const std::string shown = show();
    for (const char* hidden : {"SECRET", "534543524554"})
        EXPECT_EQ(shown.find(hidden), std::string::npos);
    start(shown.c_str());
    EXPECT_EQ(verify(0, "SECRETKEY", "SECRETPASS"), KT_OK) << "what is shown makes the same state again";
}

TEST_F(Encryption, VirtualDisksFeelIt) {
    std::string lab = R"({"adapters": [{"type": "LD-based", "PortCount": 8,
      "disks": [{"count": 2, "type": "SATA", "size": "1TB", "on": "HBA", "port": 0}],
      "virtualDisks": [{"level": "RAID1", "disks": [0, 1], "size": "10GiB", "os": true}],
      "keys": [{"id": 0, "key": "key", "password": "pw", "ports": [{"id": 0}, {"id": 1}]}]}]})";
    start(lab.c_str());
    EXPECT_EQ(enable(1, 1), KT_ERR_VD_HAS_OS) << "a running system keeps all of its disks";
    EXPECT_EQ(vdInfo(0, 0).Status, KT_VD_ONLINE);
    EXPECT_FALSE(offline(DISK));
    start(lab.replace(lab.find("true"), 4, "false").c_str());
    ASSERT_EQ(enable(1, 1), KT_OK);
    EXPECT_EQ(vdInfo(0, 0).Status, KT_VD_DEGRADED);
    EXPECT_EQ(KT_PD_SetHDStatus(0, DISK, 1), KT_ERR_KEY_MISMATCH);
    EXPECT_TRUE(offline(DISK)) << "setting it up does not make its cipher fit";
    ASSERT_EQ(forceOnline(DISK, 100), KT_OK);
    EXPECT_FALSE(offline(DISK));
    advance(48 * 3600);
    EXPECT_FALSE(offline(DISK));
    EXPECT_EQ(outside::replaceDisk(0, DISK), KT_OK);
    EXPECT_TRUE(offline(DISK)) << "a new disk is a plain one";
}

TEST_F(Encryption, ASpareStandsByAgainWhenItsPortIsOpened) {
    ASSERT_EQ(setKey(0, "key", "pw"), KT_OK);
    ASSERT_EQ(link(DISK, 0, "pw"), KT_OK);
    ASSERT_EQ(enable(DISK, 1), KT_OK);
    ASSERT_EQ(forceOnline(DISK, 100), KT_OK);
    ASSERT_EQ(KT_PD_FreeHD2GlobalSpare(0, DISK), KT_OK);
    outside::reboot();
    EXPECT_TRUE(offline(DISK));
    newEvents();
    ASSERT_EQ(link(DISK, 0, "pw"), KT_OK);
    EXPECT_EQ(roleOf(0, DISK), KT_PD_GLOBAL_SPARE);
    EXPECT_EQ(newEvents(), (std::vector<std::string>{"2/9 of 1"}));
}

TEST_F(Encryption, WhatIsForcedOnlineHasLostItsData) {
    start(R"({"adapters": [{"type": "LD-based", "PortCount": 8,
      "disks": [{"count": 2, "type": "SATA", "size": "1TB", "on": "HBA", "port": 0}],
      "virtualDisks": [{"level": "RAID0", "disks": [0, 1], "size": "10GiB"}],
      "keys": [{"id": 0, "key": "key", "password": "pw", "ports": [{"id": 1}]}]}]})");
    ASSERT_EQ(enable(1, 1), KT_OK);
    ASSERT_EQ(enable(1, 0), KT_OK);
    EXPECT_EQ(vdInfo(0, 0).Status, KT_VD_ONLINE) << "nothing was written";
    ASSERT_EQ(enable(1, 1), KT_OK);
    ASSERT_EQ(forceOnline(DISK, 100), KT_OK);
    EXPECT_EQ(vdInfo(0, 0).Status, KT_VD_OFFLINE);
    EXPECT_FALSE(offline(DISK));
}
