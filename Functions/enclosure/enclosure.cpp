#include "Functions/enclosure/enclosure.h"

#include <strings.h>

#include "Public/errorMsg.h"
#include "Public/listing.h"
#include "Public/utility.h"

// -a takes a value and means nothing: it prints the help.

KT_U8 SetElementType(const char* word) {
    static const struct {
        const char* word;
        KT_U8 type;
    } types[] = {{"dev", KT_SES_DEVICE},  {"arydev", KT_SES_ARRAY_DEVICE}, {"pow", KT_SES_POWER_SUPPLY},
                 {"fan", KT_SES_COOLING}, {"tpr", KT_SES_TEMPERATURE},     {"dor", KT_SES_DOOR_LOCK},
                 {"alm", KT_SES_ALARM},   {"dpl", KT_SES_DISPLAY},         {"vlt", KT_SES_VOLTAGE}};
    for (const auto& row : types) {
        if (strcasecmp(row.word, word) == 0) return row.type;
    }
    return 0;
}

void PrintEncInfo(const _Enclosure_Info* enclosure) {
    const KT_U8(&id)[8] = enclosure->LogicalID;
    out("Enclosure ID: %d\n", enclosure->EnclosureID);
    out("Adapter ID: %d\n", enclosure->AdapterID);
    if (enclosure->Status == 0) {
        out("Status: OK\n");
    } else {
        out("Status: Unstable\n");
    }
    out("Logical ID: 0x%02X%02X%02X%02x%02X%02X%02X%02x\n", id[0], id[1], id[2], id[3], id[4], id[5], id[6], id[7]);
    out("Vendor ID: %s\n", FieldText(enclosure->VendorID).text);
    out("Product ID: %s\n", FieldText(enclosure->ProductID).text);
    out("Revision Level: %s\n", FieldText(enclosure->RevisionLevel).text);
}

static KT_U8 failed(KT_U8 status) {
    out("\nUnable to get enclosure info (error %d: %s)\n", status, ErrorMessage(status));
    return status;
}

// Calls report(enclosure record) -> status for the enclosures asked for and answers the last status that was not KT_OK:
// an enclosure that fails does not keep the others from being reported.
template <class Report>
static KT_U8 forEachEnclosure(KT_U16 enclosure, Report report) {
    KT_U8 status = KT_OK;
    KT_U16 perPage = recordsPerPage(sizeof(_Enclosure_Info));
    ListEnd end = walkList<_Enclosure_Info, Cut::Shows>(KT_ENC_GetEnclosureInfo, itemRange(enclosure), perPage,
                                                        [&](const _Enclosure_Info& found) {
                                                            KT_U8 reported = report(found);
                                                            if (reported != KT_OK) status = reported;
                                                            return true;
                                                        });
    if (end.status != KT_OK) return failed(end.status);
    if (end.total == 0) out("\nNo enclosure is found\n");
    return status;
}

KT_U8 getEnclosureInfo(KT_U8, KT_U16 enclosure) {
    return forEachEnclosure(enclosure, [](const _Enclosure_Info& found) {
        PrintEncInfo(&found);
        return KT_U8{KT_OK};
    });
}

static KT_U8 reportElement(KT_U8 adapter, KT_U16 enclosure, KT_U8 type, KT_U8 element) {
    _Enc_Element_Info info = {};
    KT_U8 status = KT_ENC_GetElementInfo(adapter, enclosure, type, element, &info);
    if (status != KT_OK) return failed(status);
    PrintEncElementInfo(&info);
    out("\n");
    return KT_OK;
}

// One element, or all of a type in turn: the configuration says how many there are.
static KT_U8 reportElements(KT_U8 adapter, KT_U16 enclosure, KT_U8 type, KT_U8 element) {
    if (element != ALL_ELEMENTS) return reportElement(adapter, enclosure, type, element);
    _Enc_Element_Config config = {};
    KT_U8 status = KT_ENC_GetElementConfig(adapter, enclosure, type, ALL_ELEMENTS, &config);
    if (status != KT_OK) return failed(status);
    if (config.NumberOfElements == 0) out("\nNo element is found\n");
    for (KT_U8 i = 0; i < config.NumberOfElements && status == KT_OK; ++i) {
        status = reportElement(adapter, enclosure, type, i);
    }
    return status;
}

KT_U8 getElementInfo(KT_U8 adapter, KT_U16 enclosure, KT_U8 element, KT_U8 type) {
    if (enclosure != ALL_ITEMS) return reportElements(adapter, enclosure, type, element);
    return forEachEnclosure(enclosure, [&](const _Enclosure_Info& found) {
        return reportElements(adapter, found.EnclosureID, type, element);
    });
}

static KT_U8 reportElementConfig(KT_U8 adapter, KT_U16 enclosure, KT_U8 type, KT_U8 element) {
    _Enc_Element_Config config = {};
    KT_U8 status = KT_ENC_GetElementConfig(adapter, enclosure, type, element, &config);
    if (status != KT_OK) return failed(status);
    PrintEncElementConfig(&config);
    out("\n");
    return KT_OK;
}

KT_U8 getElementConfigInfo(KT_U8 adapter, KT_U16 enclosure, KT_U8 element, KT_U8 type) {
    if (enclosure != ALL_ITEMS) return reportElementConfig(adapter, enclosure, type, element);
    return forEachEnclosure(enclosure, [&](const _Enclosure_Info& found) {
        return reportElementConfig(adapter, found.EnclosureID, type, element);
    });
}

namespace {
enum class EncObject { Enclosure, Element, ElementConfig };
struct EncOptions {
    EncObject object = EncObject::Enclosure;
    int enclosure = ALL_ITEMS;
    int element = ALL_ELEMENTS;
    KT_U8 type = 0;
};
} // namespace

static Take takeObject(const char* word, EncOptions& o) {
    if (strcasecmp(word, "enc") == 0) {
        o.object = EncObject::Enclosure;
    } else if (strcasecmp(word, "ele") == 0) {
        o.object = EncObject::Element;
    } else if (strcasecmp(word, "elecfg") == 0) {
        o.object = EncObject::ElementConfig;
    } else {
        out("-o: invalid option '%s'\n", word);
        return Take::Failed;
    }
    return Take::Yes;
}

static Take takeOption(int option, const char* value, EncOptions& o) {
    switch (option) {
    case 'o':
        return takeObject(value, o);
    case 'e':
        if (parseCapped(emptyIsZero(value), o.element)) return Take::Yes;
        out("-e: invalid element id '%s'\n", value);
        return Take::Failed;
    case 'i':
        if (parseCapped(emptyIsZero(value), o.enclosure)) return Take::Yes;
        out("-i: invalid enclosure id '%s'\n", value);
        return Take::Failed;
    case 't':
        o.type = SetElementType(value);
        if (o.type == 0) {
            out("-t: element type error:'%s'\n", value);
            return Take::Failed;
        }
        return Take::Yes;
    default:
        return Take::Help;
    }
}

static bool checkOptions(const char* command, const OptionCounts& given, const EncOptions& o) {
    if (!givenOnce(encOptions, given)) return false;
    if (given['i'] > 0 && o.enclosure >= ALL_ITEMS) {
        out("-i : invalid id %d\n", o.enclosure);
        return false;
    }
    if (given['e'] > 0 && o.element >= ALL_ELEMENTS) {
        out("-e: element id should be less than 255\n");
        return false;
    }
    if (!givenRequired(encOptions, given, command)) return false;
    if (o.object != EncObject::Enclosure && given['t'] == 0) {
        out("Missing -t: please specify the type of the given element id\n");
        return false;
    }
    return true;
}

int doEnclosure(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    EncOptions o;
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    if (!scanOptions({argc, argv, row}, encOptions, given, result, take)) return result;
    if (!checkOptions(argv[0], given, o)) return 1;
    auto enclosure = static_cast<KT_U16>(o.enclosure);
    auto element = static_cast<KT_U8>(o.element);
    switch (o.object) {
    case EncObject::Element:
        return getElementInfo(gCurrentAdapter, enclosure, element, o.type);
    case EncObject::ElementConfig:
        return getElementConfigInfo(gCurrentAdapter, enclosure, element, o.type);
    default:
        return getEnclosureInfo(gCurrentAdapter, enclosure);
    }
}
