#include "ktsetup/values.h"

#include <strings.h>

#include "Public/listing.h"
#include "Public/output.h"
#include "Public/utility.h"

// The text of a field without the blanks that fill it up.
template <size_t N>
static std::string labelOf(const KT_U8 (&field)[N]) {
    char text[N + 1];
    std::string label = fieldText(text, field, N);
    label.erase(label.find_last_not_of(' ') + 1);
    return label;
}

// One candidate for each record; a list that breaks off offers nothing rather than a part.
template <class Record, class Request, class Make>
static std::vector<Candidate> idsOf(KT_U8 (*call)(KT_U8, Request*), Make make) {
    std::vector<Candidate> found;
    const ListEnd end = walkList<Record>(call, EVERYTHING, recordsPerPage(sizeof(Record)), [&](const Record& record) {
        found.push_back(make(record));
        return true;
    });
    if (end.status != KT_OK) found.clear();
    return found;
}

static std::vector<Candidate> disks() {
    return idsOf<_HD_Info>(KT_PD_GetHDInfo, [](const _HD_Info& disk) {
        return Candidate{std::to_string(disk.Link.Self.DevID), labelOf(disk.Model)};
    });
}

static std::vector<Candidate> virtualDisks() {
    return idsOf<_LD_Info>(KT_LD_GetInfo, [](const _LD_Info& ld) {
        return Candidate{std::to_string(ld.ID), labelOf(ld.Name)};
    });
}

static std::vector<Candidate> arrays() {
    return idsOf<_DG_Info>(KT_DG_GetInfo, [](const _DG_Info& array) {
        return Candidate{std::to_string(array.DGID), labelOf(array.Name)};
    });
}

static std::vector<Candidate> enclosures() {
    return idsOf<_Enclosure_Info>(KT_ENC_GetEnclosureInfo, [](const _Enclosure_Info& enclosure) {
        return Candidate{std::to_string(enclosure.EnclosureID), labelOf(enclosure.ProductID)};
    });
}

static std::vector<Candidate> adapters() {
    std::vector<Candidate> found;
    for (unsigned i = 0; i < gNumAdaptersFound; ++i) {
        found.push_back({std::to_string(i), {}});
    }
    return found;
}

static std::vector<Candidate> wordsOf(const char* argument) {
    std::vector<Candidate> found;
    std::string_view word;
    while (nextWord(argument, word))
        found.push_back({std::string(word), {}});
    return found;
}

static Takes takesId(const std::string& object) {
    static constexpr struct {
        char word[8];
        Takes takes;
    } objects[] = {{"vd", Takes::Vd},       {"ld", Takes::Vd},       {"tandem", Takes::Vd},
                   {"pd", Takes::Disk},     {"hd", Takes::Disk},     {"spare", Takes::Disk},
                   {"array", Takes::Array}, {"hba", Takes::Adapter}, {"enc", Takes::Enclosure}};
    for (const auto& row : objects) {
        if (strcasecmp(row.word, object.c_str()) == 0) return row.takes;
    }
    return Takes::Text;
}

std::vector<Candidate> valuesOf(const OptionSet& set, const LongOption& option, const std::string& object) {
    switch (option.takes == Takes::ObjectId ? takesId(object) : option.takes) {
    case Takes::Words:
        return wordsOf(shownArgument(set, option));
    case Takes::Adapter:
        return adapters();
    case Takes::Disk:
    case Takes::Disks:
        return disks();
    case Takes::Vd:
        return virtualDisks();
    case Takes::Array:
        return arrays();
    case Takes::Enclosure:
        return enclosures();
    default:
        return {};
    }
}
