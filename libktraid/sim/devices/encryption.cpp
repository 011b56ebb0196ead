#include "devices/encryption.h"

#include "changes/ciphers.h"
#include "changes/outage.h"

#include <algorithm>
#include <set>
#include <vector>

namespace sim {

static const size_t SECRET_SIZE = sizeof(_AES_Entry_Config::key_content);

static Digest keyDigest(const KT_U8* key) {
    return sha256("key" + std::string(reinterpret_cast<const char*>(key), SECRET_SIZE));
}

static Digest passwordDigest(const Context& context, KT_U8 entry, const KT_U8* password) {
    std::string text = "password";
    text += static_cast<char>(context.adapter);
    text += static_cast<char>(entry);
    return sha256(text.append(reinterpret_cast<const char*>(password), SECRET_SIZE));
}

static bool isEmpty(const KT_U8* secret) {
    return std::all_of(secret, secret + SECRET_SIZE, [](KT_U8 byte) { return byte == 0; });
}

static KT_U8 checkEntry(const Context& context, KT_U8 entry) {
    const KT_U8 status = checkCrypto(context);
    if (status != KT_OK) return status;
    return entry < adapterInfo(context).MaxAESEntry ? KT_OK : KT_ERR_ENTRY_RANGE;
}

// KT_OK when the entry exists, holds a key and opens with the password.
static KT_U8 unlock(const Context& context, KT_U8 entry, const KT_U8* password, AesEntry& found) {
    const KT_U8 status = checkEntry(context, entry);
    if (status != KT_OK) return status;
    const auto held = find<AesEntry>(context, entry);
    if (!held) return KT_ERR_ENTRY_NO_KEY;
    // Of a twin's entry nobody knows the password: it takes any.
    const bool any = held->password == Digest{};
    if (!any && !(held->password == passwordDigest(context, entry, password))) return KT_ERR_PASSWORD_MISMATCH;
    found = *held;
    return KT_OK;
}

KT_U8 getAesOverview(const Context& context, _aes_entry_info& info) {
    const KT_U8 status = checkCrypto(context);
    if (status != KT_OK) return status;
    info = {};
    KT_U8 port = 0;
    for (_aes_port_entry& shown : info.aes_port) {
        const bool used = checkCryptoPort(context, port) == KT_OK;
        shown.id = used ? port : KT_U8{255};
        shown.entry = used ? cryptoPort(context, port).entry : KT_U8{NO_ENTRY};
        ++port;
    }
    for (size_t entry = 0; entry < std::size(info.entry); ++entry)
        info.entry[entry] = find<AesEntry>(context, entry) ? 1 : 0;
    return KT_OK;
}

KT_U8 getAesEntry(const Context& context, KT_U8 entry, _AES_ENTRY_INFO& info) {
    const KT_U8 status = checkEntry(context, entry);
    if (status != KT_OK) return status;
    info = {};
    info.id = entry;
    info.hasKey = find<AesEntry>(context, entry) ? 1 : 0;
    return KT_OK;
}

KT_U8 getAesPort(const Context& context, KT_U8 port, _AES_PORT_INFO& info) {
    const KT_U8 status = checkCryptoPort(context, port);
    if (status != KT_OK) return status;
    info = {};
    info.id = port;
    info.entry = cryptoPort(context, port).entry;
    return KT_OK;
}

KT_U8 getAesPortConfig(const Context& context, KT_U8 port, _AES_Port_Config& config) {
    const KT_U8 status = checkCryptoPort(context, port);
    if (status != KT_OK) return status;
    config = {};
    config.port_id = port;
    config.aes_enable = cryptoPort(context, port).enabled;
    return KT_OK;
}

KT_U8 getAesEntryConfig(const Context& context, _AES_Entry_Config& config, const KT_U8* password) {
    AesEntry entry = {};
    const KT_U8 status = unlock(context, config.entry_id, password, entry);
    if (status != KT_OK) return status;
    const KT_U8 id = config.entry_id;
    config = {};
    config.entry_id = id;
    config.key_length = entry.keyLength;
    return KT_OK;
}

static KT_U8 removeKey(const Context& context, KT_U8 id, const KT_U8* password) {
    AesEntry entry = {};
    const KT_U8 status = unlock(context, id, password, entry);
    if (status == KT_ERR_ENTRY_NO_KEY) return KT_ERR_KEY_LENGTH;
    if (status != KT_OK) return status;
    bool linked = false;
    forEach<AesPort>(context, 0, [&](KT_U64, const AesPort& port) {
        linked = port.entry == id;
        return !linked;
    });
    if (linked) return KT_ERR_INVALID_REQUEST;
    erase<AesEntry>(context, id);
    return KT_OK;
}

KT_U8 setAesEntryConfig(const Context& context, const _AES_Entry_Config& config, const KT_U8* password) {
    const KT_U8 status = checkEntry(context, config.entry_id);
    if (status != KT_OK) return status;
    if (config.key_length > SECRET_SIZE) return KT_ERR_KEY_LENGTH;
    if (config.key_length == 0) return removeKey(context, config.entry_id, password);
    if (find<AesEntry>(context, config.entry_id)) return KT_ERR_KEY_PRESENT;
    KT_U8 key[SECRET_SIZE] = {};
    memcpy(key, config.key_content, config.key_length);
    if (isEmpty(key)) return KT_ERR_KEY_LENGTH;
    if (isEmpty(password)) return KT_ERR_WRONG_DATA;
    save(context, config.entry_id,
         AesEntry{config.key_length, {}, keyDigest(key), passwordDigest(context, config.entry_id, password)});
    return KT_OK;
}

KT_U8 verifyAesKey(const Context& context, const _AES_Entry_Config& config, const KT_U8* password) {
    if (config.key_length == 0 || config.key_length > SECRET_SIZE) return KT_ERR_KEY_LENGTH;
    AesEntry entry = {};
    const KT_U8 status = unlock(context, config.entry_id, password, entry);
    if (status != KT_OK) return status;
    return entry.key == keyDigest(config.key_content) ? KT_OK : KT_ERR_KEY_MISMATCH;
}

KT_U8 changeAesPassword(const Context& context, const _AES_Entry_Config& config, const KT_U8* newPassword) {
    AesEntry entry = {};
    const KT_U8 status = unlock(context, config.entry_id, config.key_content, entry);
    if (status != KT_OK) return status;
    if (isEmpty(newPassword) || memcmp(config.user_auth, newPassword, SECRET_SIZE) != 0) return KT_ERR_WRONG_DATA;
    entry.password = passwordDigest(context, config.entry_id, newPassword);
    save(context, config.entry_id, entry);
    return KT_OK;
}

// Working disks of a port that a running system is on.
static std::vector<KT_U16> systemDisks(const Context& context, const std::vector<KT_U16>& disks) {
    std::set<KT_U16> carrying;
    forEachVd(context, [&](const Vd& vd) {
        if (!runsSystem(vd)) return;
        for (const KT_U16 id : vd.info.BlockIDs) {
            if (const auto block = find<_Block_Info>(context, id)) carrying.insert(block->HDID);
        }
    });
    std::vector<KT_U16> found;
    for (const KT_U16 pd : disks) {
        const PdState disk = find<PdState>(context, pd).value_or(PdState{});
        const bool works = !(disk.raid & KT_PD_OFFLINE);
        if (works && (disk.hasOs || carrying.count(pd) != 0)) found.push_back(pd);
    }
    return found;
}

// Takes the port's disks offline and online as its cipher now demands. Refused, and undone by the frame, when a running
// system would lose one of its disks, even one that it could do without.
static KT_U8 reviewPort(const Context& context, KT_U8 port) {
    std::vector<KT_U16> disks;
    forEach<_HD_Info>(context, 0, [&](KT_U64 id, const _HD_Info& disk) {
        if (rootPort(context, disk.Link.Parent) == port) disks.push_back(static_cast<KT_U16>(id));
        return true;
    });
    const std::vector<KT_U16> before = systemDisks(context, disks);
    reviewCiphers(context, disks);
    const bool lost = std::any_of(before.begin(), before.end(), [&](KT_U16 pd) {
        return find<PdState>(context, pd).value_or(PdState{}).raid & KT_PD_OFFLINE;
    });
    return lost ? KT_U8{KT_ERR_VD_HAS_OS} : KT_U8{KT_OK};
}

void lockPorts(const Context& context) {
    std::vector<KT_U8> ports;
    forEach<AesPort>(context, 0, [&](KT_U64 id, const AesPort& port) {
        if (port.entry != NO_ENTRY) ports.push_back(static_cast<KT_U8>(id));
        return true;
    });
    for (const KT_U8 id : ports) {
        AesPort port = cryptoPort(context, id);
        port.entry = NO_ENTRY;
        save(context, id, port);
    }
    if (ports.empty()) return;
    std::vector<KT_U16> disks;
    forEach<_HD_Info>(context, 0, [&](KT_U64 id, const _HD_Info&) {
        disks.push_back(static_cast<KT_U16>(id));
        return true;
    });
    reviewCiphers(context, disks);
}

KT_U8 setAesPortConfig(const Context& context, const _AES_Port_Config& config) {
    const KT_U8 status = checkCryptoPort(context, config.port_id);
    if (status != KT_OK) return status;
    if (config.aes_enable > 1) return KT_ERR_INVALID_PARAMETER;
    AesPort port = cryptoPort(context, config.port_id);
    if (config.aes_enable && port.entry == NO_ENTRY) return KT_ERR_KEY_ABSENT;
    port.enabled = config.aes_enable;
    save(context, config.port_id, port);
    return reviewPort(context, config.port_id);
}

KT_U8 setAesLink(const Context& context, KT_U8 port, const _AES_Entry_Config& entry) {
    KT_U8 status = checkCryptoPort(context, port);
    if (status != KT_OK) return status;
    AesEntry unlocked = {};
    status = unlock(context, entry.entry_id, entry.user_auth, unlocked);
    if (status != KT_OK) return status;
    AesPort state = cryptoPort(context, port);
    if (state.entry != NO_ENTRY) return KT_ERR_KEY_PRESENT;
    state.entry = entry.entry_id;
    save(context, port, state);
    return reviewPort(context, port);
}

KT_U8 clearAesLink(const Context& context, KT_U8 port) {
    const KT_U8 status = checkCryptoPort(context, port);
    if (status != KT_OK) return status;
    if (cryptoPort(context, port).entry == NO_ENTRY) return KT_ERR_INVALID_REQUEST;
    erase<AesPort>(context, port);
    return reviewPort(context, port);
}

KT_U8 forceDiskOnline(const Context& context, const _AES_Entry_Config& config, KT_U16 pd, KT_U8 percentage) {
    const KT_U8 status = checkCrypto(context);
    if (status != KT_OK) return status;
    if (config.key_length != SECRET_SIZE) return KT_ERR_KEY_LENGTH;
    if (percentage < 10 || percentage > 100 || percentage % 10 != 0) return KT_ERR_OUT_OF_RANGE;
    const auto disk = find<_HD_Info>(context, pd);
    if (!disk) return KT_ERR_INVALID_PD;
    DiskCipher cipher = find<DiskCipher>(context, pd).value_or(DiskCipher{});
    const auto port = rootPort(context, disk->Link.Parent);
    if (!cipher.offline || !port) return KT_ERR_DISK_NOT_OFFLINE;
    const AesPort state = cryptoPort(context, *port);
    const auto entry = state.enabled ? find<AesEntry>(context, state.entry) : std::nullopt;
    cipher.offline = 0;
    cipher.key = entry ? entry->key : Digest{};
    saveCipher(context, pd, cipher);
    PdState online = find<PdState>(context, pd).value_or(PdState{});
    online.config.crypto = entry ? 1 : 0;
    online.config.AESPercentage = entry ? percentage : KT_U8{0};
    online.hasMbr = 0;
    online.hasOs = 0;
    save(context, pd, online);
    return bringDiskUp(context, pd, true);
}

} // namespace sim
