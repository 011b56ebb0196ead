#include "Public/cfg/writer.h"

#include <algorithm>
#include <cstring>

#include "Public/cfg/sasAddress.h"
#include "Public/common.h"
#include "Public/utility.h"

static const char banner[] =
    "########################################################################################\n"
    "#                    HBA Configuration Help                                            #\n"
    "#                                                                                      #\n"
    "# 1.Config PHY tuning.Features([TRANS_AMP][TRANS_EMPHASIS_AMP][TRANS_AMP_ADJUST]) are  #\n"
    "#   related with phy tuning values which equals to 'FFFF' means no need to configure.  #\n"
    "########################################################################################\n";

static std::string numberText(KT_U32 value, KT_U8 radix) {
    char digits[32];
    return {digits, U32_TRANSLATE_STR(digits, value, 0, radix)};
}

static const char* wordText(const CfgKey& key, KT_U32 value) {
    for (size_t i = 0; i < key.words.count; ++i) {
        if (key.words.words[i].value == value) return cfgWord(key.words.words[i].code);
    }
    return "";
}

static std::string membersText(const _LD_Info& ld) {
    std::string text;
    for (unsigned i = 0; i < cfgMembers(ld); ++i) {
        if (ld.BlockIDs[i] == KT_NO_ID) continue;
        if (!text.empty()) text += ',';
        text += numberText(ld.BlockIDs[i], 10);
    }
    return text;
}

std::string cfgValueText(const CfgKey& key, const void* record, unsigned index) {
    if (key.alwaysWritten != nullptr) return key.alwaysWritten;
    unsigned element = key.owner == CfgOwner::Port ? index : 0;
    switch (key.form) {
    case CfgForm::Raw:
        return {static_cast<const char*>(record) + key.field.offset, key.writtenBytes};
    case CfgForm::Word:
        return wordText(key, fieldValue(record, key.field, element));
    case CfgForm::SasAddress:
        return sasAddressText(static_cast<const _HBA_Info_Page*>(record)->SAS_Address[index]);
    case CfgForm::Members:
        return membersText(*static_cast<const _LD_Info*>(record));
    case CfgForm::PortId:
    case CfgForm::SpareId:
        return numberText(index, key.writtenRadix);
    case CfgForm::SpareArray:
        if ((static_cast<const _HD_RAID_STATUS*>(record)->Status & KT_PD_DEDICATED_SPARE) == 0) {
            return numberText(CFG_GLOBAL_SPARE, key.writtenRadix);
        }
        [[fallthrough]];
    default:
        return numberText(fieldValue(record, key.field, element) >> key.writtenShift, key.writtenRadix);
    }
}

std::string shownCfgValue(const std::string& written) {
    std::string shown = written.c_str();
    for (char& c : shown) {
        if (c < 0x20 || c > 0x7E) c = '?';
    }
    return shown;
}

bool isWritten(const CfgKey& key, const void* record, KT_U8 mode) {
    if (key.use == CfgUse::ReadOnly || (key.use == CfgUse::FullForm && mode == CFG_PHY_FORM)) return false;
    return !key.onParityLevels || hasParityDisks(static_cast<const _LD_Info*>(record)->RaidMode);
}

unsigned cfgPorts(KT_U8 adapter) {
    return std::min<unsigned>(gAdapterInfo[adapter].PortCount, getMaxPortNum());
}

// What a group of lines is about: an adapter, a port, a virtual disk or a spare, and which of them.
namespace {
struct Described {
    CfgOwner owner;
    const void* record;
    unsigned index;
};
} // namespace

static void appendGroup(std::string& text, const CfgSection& section, const Described& what, KT_U8 mode) {
    for (size_t i = 0; i < section.count; ++i) {
        const CfgKey& key = section.keys[i];
        if (key.owner != what.owner || !isWritten(key, what.record, mode)) continue;
        text += key.key;
        text += '=';
        text += cfgValueText(key, what.record, what.index);
        text += '\n';
    }
}

static void appendHeader(std::string& text, const CfgSection& section) {
    text += section.header;
    text += '\n';
    text += CFG_BEGIN;
    text += '\n';
}

static void appendEnd(std::string& text) {
    text += CFG_END;
    text += '\n';
}

static void appendRaid(std::string& text, const _LD_Info* lds, KT_U8 ldCount, const _HD_RAID_STATUS* spares,
                       KT_U8 spareCount) {
    const CfgSection& section = cfgSections[CFG_RAID_SECTION];
    appendHeader(text, section);
    for (unsigned i = 0; i < ldCount; ++i) {
        if (i > 0) text += '\n';
        appendGroup(text, section, {CfgOwner::Vd, &lds[i], i}, CFG_FULL_FORM);
    }
    unsigned number = 0;
    for (unsigned i = 0; i < spareCount; ++i) {
        if ((spares[i].Status & KT_PD_SPARE) == 0) continue;
        text += '\n';
        appendGroup(text, section, {CfgOwner::Spare, &spares[i], number++}, CFG_FULL_FORM);
    }
    appendEnd(text);
}

// What it takes is settled. NOLINTNEXTLINE(readability-function-size)
size_t KT_Form_Grammar(KT_U8 adapter, std::string& text, const _HBA_Info_Page* page, const _LD_Info* lds, KT_U8 ldCount,
                       const _HD_RAID_STATUS* spares, KT_U8 spareCount, KT_U8 mode) {
    if (memcmp(page->Signature, CFG_SIGNATURE, sizeof page->Signature) != 0) return 0;
    size_t before = text.size();
    text += banner;
    if (mode != CFG_PHY_FORM) {
        appendHeader(text, cfgSections[CFG_ADAPTER_SECTION]);
        appendGroup(text, cfgSections[CFG_ADAPTER_SECTION], {CfgOwner::Page, page, 0}, mode);
        appendEnd(text);
        text += '\n';
    }
    appendHeader(text, cfgSections[CFG_PORT_SECTION]);
    for (unsigned port = 0; port < cfgPorts(adapter); ++port) {
        text += '\n';
        appendGroup(text, cfgSections[CFG_PORT_SECTION], {CfgOwner::Port, page, port}, mode);
    }
    appendEnd(text);
    text += '\n';
    if (mode != CFG_PHY_FORM) appendRaid(text, lds, ldCount, spares, spareCount);
    return text.size() - before;
}
