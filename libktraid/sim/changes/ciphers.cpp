#include "changes/ciphers.h"

#include "changes/outage.h"
#include "state/events.h"

namespace sim {

KT_U8 checkCrypto(const Context& context) {
    return adapterInfo(context).AdvancedFeatures & KT_ADV_CRYPTO ? KT_OK : KT_ERR_NOT_ON_THIS_ADAPTER;
}

KT_U8 checkCryptoPort(const Context& context, KT_U8 port) {
    const KT_U8 status = checkCrypto(context);
    if (status != KT_OK) return status;
    const _Adapter_Info info = adapterInfo(context);
    if (port >= info.MaxAESPort) return KT_ERR_PORT_RANGE;
    return port < info.PortCount ? KT_OK : KT_ERR_PORT_NOT_FOUND;
}

AesPort cryptoPort(const Context& context, KT_U8 port) {
    return find<AesPort>(context, port).value_or(AesPort{NO_ENTRY, 0, {}});
}

std::optional<KT_U8> rootPort(const Context& context, _Link_Endpoint parent) {
    for (int depth = 0; depth < 8; ++depth) {
        if (parent.DevType == KT_LINK_HBA) return parent.PhyID[0];
        if (parent.DevType == KT_LINK_PM) {
            const auto multiplier = find<_PM_Info>(context, parent.DevID);
            if (!multiplier) break;
            parent = multiplier->Link.Parent;
        } else {
            const auto expander = find<_Exp_Info>(context, parent.DevID);
            if (!expander) break;
            parent = expander->Link.Parent;
        }
    }
    return std::nullopt;
}

// The event that says why the disk cannot work on its port; none when it can.
static std::optional<EventName> cipherComplaint(const Context& context, KT_U8 port, const DiskCipher& cipher) {
    const AesPort state = cryptoPort(context, port);
    const bool encrypted = !(cipher.key == Digest{});
    if (!state.enabled && !encrypted) return std::nullopt;
    if (!state.enabled) return EVT_PD_CRYPTO_ON_PLAIN_PORT;
    if (!encrypted) return EVT_PD_PLAIN_ON_CRYPTO_PORT;
    const auto entry = find<AesEntry>(context, state.entry);
    if (entry && entry->key == cipher.key) return std::nullopt;
    return EVT_PD_CIPHER_MISMATCH;
}

void saveCipher(const Context& context, KT_U16 pd, const DiskCipher& cipher) {
    if (cipher.offline || !(cipher.key == Digest{})) {
        save(context, pd, cipher);
    } else {
        erase<DiskCipher>(context, pd);
    }
}

void reviewCiphers(const Context& context, const std::vector<KT_U16>& pds) {
    std::vector<KT_U16> locked;
    std::vector<KT_U16> opened;
    for (const KT_U16 pd : pds) {
        DiskCipher cipher = find<DiskCipher>(context, pd).value_or(DiskCipher{});
        const auto disk = find<_HD_Info>(context, pd);
        const auto state = find<PdState>(context, pd);
        const auto port = disk ? rootPort(context, disk->Link.Parent) : std::nullopt;
        if (!state || !port || checkCryptoPort(context, *port) != KT_OK) continue;
        const auto complaint = cipherComplaint(context, *port, cipher);
        if (complaint && !(state->raid & KT_PD_OFFLINE)) {
            cipher.offline = 1;
            logEvent(context, *complaint, pd);
            locked.push_back(pd);
        } else if (!complaint && cipher.offline) {
            cipher.offline = 0;
            opened.push_back(pd);
        } else {
            continue;
        }
        saveCipher(context, pd, cipher);
    }
    if (!locked.empty()) loseDisks(context, locked);
    if (!opened.empty()) bringDisksUp(context, opened);
}

const char* whyLocked(const Context& context, KT_U16 pd) {
    const auto disk = find<_HD_Info>(context, pd);
    const auto cipher = find<DiskCipher>(context, pd);
    const auto port = disk ? rootPort(context, disk->Link.Parent) : std::nullopt;
    if (!cipher || !cipher->offline || !port) return "";
    switch (cipherComplaint(context, *port, *cipher).value_or(EVT_PD_CIPHER_MISMATCH)) {
    case EVT_PD_PLAIN_ON_CRYPTO_PORT:
        return "it is plain, its port encrypts";
    case EVT_PD_CRYPTO_ON_PLAIN_PORT:
        return "it is encrypted, its port is not";
    default:
        return cryptoPort(context, *port).entry == NO_ENTRY ? "no key is mounted at its port"
                                                            : "the key of its port is not its own";
    }
}

} // namespace sim
