#include "Public/cfg/losses.h"

#include <cstring>

#include "Public/cfg/reader.h"
#include "Public/cfg/writer.h"
#include "Public/saidBy.h"
#include "Public/utility.h"

namespace {
// A value as it would come back from the text: whether cfg/reader takes it, and what it puts into the page.
struct ReadBack {
    bool taken;
    _HBA_Info_Page page;
};

struct Search {
    const CfgSaved& saved;
    CfgRaid& read;
    std::vector<std::string>& losses;
};

// One value of a record: whose it is, the record, and the port or the number of the spare.
struct Place {
    std::string owner;
    const void* record;
    unsigned index;
};
} // namespace

// Megabytes, in a text and here, are kibibytes of the adapter without so many low bits.
static std::string sizeText(KT_U64 size, unsigned shift) {
    return std::to_string(size >> shift) + " M";
}

static std::string memberText(const _LD_Info& ld) {
    std::string text;
    for (unsigned i = 0; i < cfgMembers(ld); ++i) {
        if (i > 0) text += ',';
        text += ld.BlockIDs[i] == KT_NO_ID ? "-" : std::to_string(ld.BlockIDs[i]);
    }
    return text;
}

static std::string wordText(const CfgKey& key, KT_U32 value) {
    for (size_t i = 0; i < key.words.count; ++i) {
        if (key.words.words[i].value == value) return cfgWord(key.words.words[i].code);
    }
    bool level = strcmp(key.key, "[RAID MODE]") == 0;
    return level ? RaidModeStr(static_cast<KT_U8>(value)) : std::to_string(value);
}

// Bytes up to the first NUL, in quotes.
static std::string rawText(const CfgKey& key, const void* record) {
    char text[64] = {};
    fieldText(text, static_cast<const KT_U8*>(record) + key.field.offset, key.field.size);
    return std::string("'") + text + "'";
}

// A value as people read it; `shift` as in sizeText. Alike before and behind the text when nothing is lost.
static std::string valueText(const CfgKey& key, const void* record, unsigned index, unsigned shift) {
    unsigned element = key.owner == CfgOwner::Port ? index : 0;
    switch (key.form) {
    case CfgForm::Raw:
        return rawText(key, record);
    case CfgForm::Members:
        return memberText(*static_cast<const _LD_Info*>(record));
    case CfgForm::Word:
        return wordText(key, fieldValue(record, key.field, element));
    case CfgForm::Number:
        if (key.writtenShift != 0) return sizeText(static_cast<const _LD_Info*>(record)->Size, shift);
        return std::to_string(fieldValue(record, key.field, element));
    default:
        return cfgValueText(key, record, index);
    }
}

// A text that holds nothing but one line, with what the reader needs to take it.
static std::string textAround(const CfgKey& key, const Place& place, const std::string& line) {
    const std::string noPorts = "[PORT CONFIG]\n[END]\n";
    const std::string noRaid = "[RAID CONFIG]\n[END]\n";
    switch (key.owner) {
    case CfgOwner::Page:
        return "[ADAPTER CONFIG]\n" + line + "[END]\n" + noPorts + noRaid;
    case CfgOwner::Port:
        return "[PORT CONFIG]\n[PORT ID]=" + std::to_string(place.index) + "\n" + line + "[END]\n" + noRaid;
    case CfgOwner::Spare:
        return noPorts + "[RAID CONFIG]\n[SPARE ID]=0\n" + line + "[END]\n";
    default:
        break;
    }
    std::string vd = key.form == CfgForm::VdId ? "" : "[VD ID]=0\n";
    if (key.onParityLevels) vd += "[RAID MODE]=RAID6\n";
    return noPorts + "[RAID CONFIG]\n" + vd + line + "[END]\n";
}

static ReadBack readBack(const Search& search, std::string text) {
    ReadBack back = {};
    _file_sasaddr_place_info_t places = {};
    KT_U16 counts = 0;
    clean_comment(text.data(), text.size());
    saidBy([&] {
        back.taken = KT_Analyze_Grammar(text.data(), text.size(), &places, &back.page, search.read.lds,
                                        search.read.spares, &counts, CFG_FULL_FORM);
    });
    return back;
}

static void checkValue(const Search& search, const CfgKey& key, const Place& place) {
    const std::string written = cfgValueText(key, place.record, place.index);
    const ReadBack back = readBack(search, textAround(key, place, std::string(key.key) + "=" + written + "\n"));
    const std::string has = valueText(key, place.record, place.index, 10);
    if (!back.taken) {
        search.losses.push_back(place.owner + ": " + key.key + " " + has + " is written as '" + shownCfgValue(written) +
                                "', which restore_cfg refuses");
        return;
    }
    const void* record = &back.page;
    if (key.owner == CfgOwner::Vd) record = &search.read.lds[0];
    if (key.owner == CfgOwner::Spare) record = &search.read.spares[0];
    const std::string comes = valueText(key, record, place.index, 0);
    if (has == comes) return;
    // A size says itself what it is.
    const std::string name = key.writtenShift != 0 ? "" : std::string(key.key) + " ";
    search.losses.push_back(place.owner + ": " + name + has + " is written as " + comes);
}

// The values of one record that are written. The numbers of ports and spares are the writer's own, and how a virtual
// disk is initialised is no property of it.
static void checkRecord(const Search& search, int section, CfgOwner owner, const Place& place) {
    const KT_U8 mode = search.saved.mode;
    for (size_t i = 0; i < cfgSections[section].count; ++i) {
        const CfgKey& key = cfgSections[section].keys[i];
        if (key.owner != owner || !isWritten(key, place.record, mode)) continue;
        bool own = key.form == CfgForm::PortId || key.form == CfgForm::SpareId || strcmp(key.key, "[INIT MODE]") == 0;
        if (!own) checkValue(search, key, place);
    }
}

std::vector<std::string> cfgLosses(const CfgSaved& saved) {
    std::vector<std::string> losses;
    CfgRaidHolder read = newCfgRaid();
    if (read == nullptr) return losses;
    const Search search = {saved, *read, losses};
    // Of a text with the PHY tuning alone isWritten() leaves the keys of ports.
    checkRecord(search, CFG_ADAPTER_SECTION, CfgOwner::Page, {"adapter", &saved.page, 0});
    for (unsigned port = 0; port < saved.ports; ++port) {
        checkRecord(search, CFG_PORT_SECTION, CfgOwner::Port, {"port " + std::to_string(port), &saved.page, port});
    }
    for (unsigned i = 0; i < saved.raid.ldCount; ++i) {
        const _LD_Info& ld = saved.raid.lds[i];
        checkRecord(search, CFG_RAID_SECTION, CfgOwner::Vd, {"virtual disk " + std::to_string(ld.ID), &ld, i});
    }
    for (unsigned i = 0; i < saved.raid.spareCount; ++i) {
        const _HD_RAID_STATUS& spare = saved.raid.spares[i];
        checkRecord(search, CFG_RAID_SECTION, CfgOwner::Spare, {"spare disk " + std::to_string(spare.HDID), &spare, i});
    }
    return losses;
}
