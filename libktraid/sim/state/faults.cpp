#include "state/faults.h"

#include <algorithm>

namespace sim {

struct TextField {
    const char* call;
    size_t offset;
    size_t size;
};

#define KTSIM_TEXT(call, record, field)                                                                                \
    { call, offsetof(record, field), sizeof(record::field) }
static const TextField TEXT_FIELDS[] = {
    KTSIM_TEXT("KT_Adapter_GetInfo", _Adapter_Info, SerialNo),
    KTSIM_TEXT("KT_Adapter_GetInfo", _Adapter_Info, ModelNumber),
    KTSIM_TEXT("KT_Adapter_GetConfig", _Adapter_Config_V2, SerialNo),
    KTSIM_TEXT("KT_Adapter_GetConfig", _Adapter_Config_V2, ModelNumber),
    KTSIM_TEXT("KT_LD_GetInfo", _LD_Info, Name),
    KTSIM_TEXT("KT_LD_GetTargetLDInfo", _LD_Info, Name),
    KTSIM_TEXT("KT_LD_GetConfig", _LD_Config, Name),
    KTSIM_TEXT("KT_DG_GetInfo", _DG_Info, Name),
    KTSIM_TEXT("KT_DG_GetConfig", _DG_CONFIG, Name),
    KTSIM_TEXT("KT_PD_GetHDInfo", _HD_Info, Model),
    KTSIM_TEXT("KT_PD_GetHDInfo", _HD_Info, SerialNo),
    KTSIM_TEXT("KT_PD_GetHDInfo", _HD_Info, FWVersion),
    KTSIM_TEXT("KT_PD_GetHDInfo_Ext", _HD_Info, Model),
    KTSIM_TEXT("KT_PD_GetHDInfo_Ext", _HD_Info, SerialNo),
    KTSIM_TEXT("KT_PD_GetHDInfo_Ext", _HD_Info, FWVersion),
    KTSIM_TEXT("KT_PD_GetExpanderInfo", _Exp_Info, VendorID),
    KTSIM_TEXT("KT_PD_GetExpanderInfo", _Exp_Info, ProductID),
    KTSIM_TEXT("KT_PD_GetExpanderInfo", _Exp_Info, ProductRevision),
    KTSIM_TEXT("KT_PD_GetExpanderInfo", _Exp_Info, ComponentVendorID),
    KTSIM_TEXT("KT_ENC_GetEnclosureInfo", _Enclosure_Info, VendorID),
    KTSIM_TEXT("KT_ENC_GetEnclosureInfo", _Enclosure_Info, ProductID),
    KTSIM_TEXT("KT_ENC_GetEnclosureInfo", _Enclosure_Info, RevisionLevel),
    KTSIM_TEXT("KT_ENC_GetElementConfig", _Enc_Element_Config, Text),
    KTSIM_TEXT("KT_EVT_GetEventMessage", _Event_Message, time),
    KTSIM_TEXT("KT_EVT_GetEventMessage", _Event_Message, msg),
    KTSIM_TEXT("KT_Tandem_GetHDMagic", _Device_Magic, Magic),
    KTSIM_TEXT("KT_Tandem_GetVDMagic", _Device_Magic, Magic),
};

static const char* const LIST_CALLS[] = {
    "KT_LD_GetInfo",         "KT_LD_GetStatus",    "KT_LD_GetConfig",         "KT_DG_GetInfo",
    "KT_DG_GetConfig",       "KT_PD_GetHDInfo",    "KT_PD_GetHDInfo_Ext",     "KT_PD_GetHDRaidStatus",
    "KT_PD_GetConfig",       "KT_PD_GetBGAStatus", "KT_PD_GetSmartStatus",    "KT_PD_GetPMInfo",
    "KT_PD_GetExpanderInfo", "KT_BLK_GetInfo",     "KT_ENC_GetEnclosureInfo",
};
// They count, and begin where they are told to.
static const char* const COUNTING_CALLS[] = {"KT_EVT_GetEvent", "KT_EVT_GetEventMessage"};

bool canStrike(const char* call, KT_U8 kind) {
    const auto isCall = [call](const char* name) { return strcmp(name, call) == 0; };
    const bool lists = std::any_of(std::begin(LIST_CALLS), std::end(LIST_CALLS), isCall);
    if (kind == FAULT_NEXT) return lists;
    if (kind == FAULT_COUNT) return lists || std::any_of(std::begin(COUNTING_CALLS), std::end(COUNTING_CALLS), isCall);
    if (kind == FAULT_TEXT) {
        return std::any_of(std::begin(TEXT_FIELDS), std::end(TEXT_FIELDS),
                           [&](const TextField& field) { return isCall(field.call); });
    }
    return true;
}

std::optional<KT_U64> findFault(Store& store, const char* call, KT_U8 adapter) {
    std::optional<KT_U64> found;
    forEach<Fault>(store, ADAPTER_GLOBAL, 0, [&](KT_U64 id, const Fault& fault) {
        const bool concerns = fault.adapter == ADAPTER_GLOBAL || fault.adapter == adapter;
        if (concerns && strncmp(fault.call, call, sizeof fault.call) == 0) found = id;
        return !found;
    });
    return found;
}

bool strikeFault(Store& store, KT_U64 id, Fault& fault) {
    fault = find<Fault>(store, ADAPTER_GLOBAL, id).value_or(Fault{});
    ++fault.seen;
    const bool strikes = fault.seen > fault.after;
    if (strikes && fault.times != 0 && fault.seen - fault.after >= fault.times) {
        eraseRow(store, {ADAPTER_GLOBAL, KIND_FAULT, id});
    } else {
        save(store, ADAPTER_GLOBAL, id, fault);
    }
    return strikes;
}

KT_U64 addFault(Store& store, const Fault& fault) {
    const KT_U64 id = lastRow(store, ADAPTER_GLOBAL, KIND_FAULT).value_or(0) + 1;
    save(store, ADAPTER_GLOBAL, id, fault);
    return id;
}

void fillTexts(const char* call, void* record) {
    for (const TextField& field : TEXT_FIELDS)
        if (strcmp(field.call, call) == 0) memset(static_cast<char*>(record) + field.offset, 'X', field.size);
}

} // namespace sim
