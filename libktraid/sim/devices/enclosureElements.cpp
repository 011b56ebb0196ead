#include "devices/enclosureElements.h"

#include "media/blocks.h"
#include "raid/activityRecords.h"

#include <algorithm>
#include <cstdio>

namespace sim {

static KT_U64 elementId(KT_U16 enclosure, KT_U8 type, KT_U8 element) {
    return (KT_U64{enclosure} << 16) + (KT_U64{type} << 8) + element;
}

static KT_U8 countElements(const Context& context, KT_U16 enclosure, KT_U8 type) {
    KT_U8 elements = 0;
    forEach<EnclosureElement>(context, elementId(enclosure, type, 0), [&](KT_U64 id, const EnclosureElement&) {
        if (id >> 8 != elementId(enclosure, type, 0) >> 8) return false;
        ++elements;
        return true;
    });
    return elements;
}

static KT_U8 checkElement(const Context& context, KT_U16 enclosure, KT_U8 type, KT_U8 element) {
    if (!find<_Enclosure_Info>(context, enclosure)) return KT_ERR_INVALID_ENCLOSURE;
    const KT_U8 elements = countElements(context, enclosure, type);
    const bool there = element == OVERALL_ELEMENT ? elements > 0 : element < elements;
    return there ? KT_OK : KT_ERR_INVALID_ELEMENT;
}

// Slots.

static std::optional<KT_U16> diskInSlot(const Context& context, KT_U16 enclosure, KT_U8 element) {
    std::optional<KT_U16> found;
    forEach<_HD_Info>(context, 0, [&](KT_U64 id, const _HD_Info& disk) {
        if (disk.Link.Self.EnclosureID == enclosure && disk.ElementIdx == element) found = static_cast<KT_U16>(id);
        return !found;
    });
    return found;
}

// What an array device element says of the virtual disks on the disk.
static KT_U8 raidBits(const Context& context, KT_U16 pd) {
    KT_U8 bits = 0;
    const _HD_Block_Info list = blocksOf(context, pd);
    for (int i = 0; i < list.BlkCount; ++i) {
        const auto block = find<_Block_Info>(context, list.BlkIDs[i]);
        Vd vd = {};
        if (!block || findVd(context, block->LDID, vd) != KT_OK) continue;
        const Activity activity = shownActivity(context, vd);
        const bool checked = activity.kind == KT_BGA_CHECK || activity.kind == KT_BGA_CHECK_FIX;
        if (block->Status == BLOCK_REBUILDING || block->Status == BLOCK_COPYING)
            bits |= isAlive(activity) ? SLOT_REBUILD : SLOT_REBUILD_ABORTED;
        if (checked && activity.state == KT_STATE_RUNNING) bits |= SLOT_CHECK;
        if (vd.info.Status == KT_VD_DEGRADED) bits |= SLOT_CRITICAL_ARRAY;
        if (vd.info.Status == KT_VD_OFFLINE) bits |= SLOT_FAILED_ARRAY;
    }
    return bits;
}

static void makeSlot(const Context& context, KT_U16 enclosure, KT_U8 type, KT_U8 element, KT_U8 (&status)[4]) {
    status[0] = SES_NOT_INSTALLED;
    status[1] = type == KT_SES_DEVICE ? element : KT_U8{0};
    status[2] = status[3] = 0;
    const auto pd = diskInSlot(context, enclosure, element);
    if (!pd) return;
    const auto disk = find<_HD_Info>(context, *pd);
    const PdState state = find<PdState>(context, *pd).value_or(PdState{});
    const bool fault = state.health == PD_FAILED || (state.raid & KT_PD_OFFLINE);
    status[0] = fault ? SES_CRITICAL : SES_OK;
    if (!fault && state.smartTripped) {
        status[0] = SES_NONCRITICAL;
        status[0] |= SES_PREDICTED_FAILURE;
    }
    if (type == KT_SES_ARRAY_DEVICE) {
        status[1] = fault ? 0 : SLOT_OK;
        if (state.raid & KT_PD_SPARE) status[1] |= SLOT_SPARE;
        status[1] |= raidBits(context, *pd);
    }
    if (disk && disk->LocateLEDStatus == 1) status[2] |= SLOT_IDENT;
    if (fault) status[3] |= SLOT_FAULT;
}

static void fillSlot(const Context& context, KT_U16 enclosure, KT_U8 type, KT_U8 element, KT_U8 (&status)[4]) {
    makeSlot(context, enclosure, type, element, status);
    const auto told = find<ToldSlot>(context, elementId(enclosure, type, element));
    if (told && memcmp(told->made, status, sizeof status) == 0) memcpy(status, told->shown, sizeof status);
}

void restoreSlots(const Context& context) {
    forEach<EnclosureElement>(context, 0, [&](KT_U64 id, const EnclosureElement& row) {
        const auto type = static_cast<KT_U8>(id >> 8);
        if (!isSlot(type)) return true;
        ToldSlot told = {};
        memcpy(told.shown, row.status, sizeof told.shown);
        if (std::all_of(std::begin(told.shown), std::end(told.shown), [](KT_U8 byte) { return byte == 0; }))
            return true;
        makeSlot(context, static_cast<KT_U16>(id >> 16), type, static_cast<KT_U8>(id), told.made);
        if (memcmp(told.shown, told.made, sizeof told.made) != 0) save(context, id, told);
        return true;
    });
}

// How bad a status code is: what is worst counts for all.
static int badness(KT_U8 code) {
    const KT_U8 rising[] = {SES_NOT_INSTALLED, SES_OK, SES_NONCRITICAL, SES_CRITICAL};
    for (int i = 0; i < 4; ++i)
        if (rising[i] == code) return i;
    return 2;
}

static void fillStatus(const Context& context, KT_U16 enclosure, KT_U8 type, KT_U8 element, KT_U8 (&status)[4]) {
    if (isSlot(type)) {
        fillSlot(context, enclosure, type, element, status);
        return;
    }
    const auto row = find<EnclosureElement>(context, elementId(enclosure, type, element));
    if (row) memcpy(status, row->status, sizeof status);
}

static void fillOverall(const Context& context, KT_U16 enclosure, KT_U8 type, KT_U8 (&status)[4]) {
    status[0] = SES_NOT_INSTALLED;
    const KT_U8 elements = countElements(context, enclosure, type);
    for (KT_U8 element = 0; element < elements; ++element) {
        KT_U8 one[4] = {};
        fillStatus(context, enclosure, type, element, one);
        const KT_U8 code = one[0] & SES_CODE_MASK;
        if (badness(code) > badness(status[0])) status[0] = code;
    }
}

KT_U8 getElementInfo(const Context& context, KT_U16 enclosure, KT_U8 type, KT_U8 element, _Enc_Element_Info& info) {
    const KT_U8 status = checkElement(context, enclosure, type, element);
    if (status != KT_OK) return status;
    info = {};
    info.EnclosureID = enclosure;
    info.ElementID = element;
    info.ElementType = type;
    if (element == OVERALL_ELEMENT) {
        fillOverall(context, enclosure, type, info.Status);
    } else {
        fillStatus(context, enclosure, type, element, info.Status);
    }
    return KT_OK;
}

static std::string elementText(const ElementKind& kind, KT_U8 element, const KT_U8 (&text)[64]) {
    const auto* own = reinterpret_cast<const char*>(text);
    if (*own) return std::string(own, strnlen(own, sizeof text));
    if (element == OVERALL_ELEMENT) return kind.name;
    char composed[48];
    snprintf(composed, sizeof composed, "%s %02u", kind.name, element);
    return composed;
}

KT_U8 getElementConfig(const Context& context, KT_U16 enclosure, KT_U8 type, KT_U8 element,
                       _Enc_Element_Config& config) {
    const KT_U8 status = checkElement(context, enclosure, type, element);
    if (status != KT_OK) return status;
    const auto row = find<EnclosureElement>(context, elementId(enclosure, type, element)).value_or(EnclosureElement{});
    const ElementKind* kind = elementKind(type);
    const std::string text = kind ? elementText(*kind, element, row.text) : "";
    config = {};
    config.EnclosureID = enclosure;
    config.ElementID = element;
    config.ElementType = type;
    config.NumberOfElements = countElements(context, enclosure, type);
    config.SubEnclosureID = row.subEnclosure;
    config.TextLength = static_cast<KT_U8>(text.size());
    memcpy(config.Text, text.data(), text.size());
    return KT_OK;
}

// Making enclosures.

KT_U16 addElement(const Context& context, KT_U16 enclosure, KT_U8 type, const std::string& text) {
    const KT_U8 element = countElements(context, enclosure, type);
    const Condition* good = conditionNamed(type, "ok");
    if (element == OVERALL_ELEMENT || !good) return KT_NO_ID;
    EnclosureElement row = {};
    memcpy(row.status, good->status, sizeof row.status);
    memcpy(row.text, text.data(), std::min(text.size(), sizeof row.text));
    save(context, elementId(enclosure, type, element), row);
    return element;
}

void addShelf(const Context& context, KT_U16 enclosure, unsigned slots) {
    struct Part {
        KT_U8 type;
        unsigned count;
    };
    const Part parts[] = {{KT_SES_ARRAY_DEVICE, slots}, {KT_SES_POWER_SUPPLY, 2}, {KT_SES_COOLING, 4},
                          {KT_SES_TEMPERATURE, 3},      {KT_SES_DOOR_LOCK, 1},    {KT_SES_ALARM, 1},
                          {KT_SES_DISPLAY, 1}};
    for (const Part& part : parts) {
        for (unsigned i = 0; i < part.count; ++i)
            addElement(context, enclosure, part.type, "");
    }
    addElement(context, enclosure, KT_SES_VOLTAGE, "12 V");
    addElement(context, enclosure, KT_SES_VOLTAGE, "5 V");
    setElementReading(context, enclosure, KT_SES_VOLTAGE, 1, 502);
    countElementTypes(context, enclosure);
}

void countElementTypes(const Context& context, KT_U16 enclosure) {
    auto info = find<_Enclosure_Info>(context, enclosure);
    if (!info) return;
    info->ElementTypeCount = 0;
    for (const ElementKind& kind : elementKinds())
        if (countElements(context, enclosure, kind.type)) info->ElementTypeCount++;
    save(context, enclosure, *info);
}

// What befalls them.

// The alarm says how bad the enclosure is, whether or not it was muted when that gets worse, and is silent when all is
// well.
static void soundAlarms(const Context& context, KT_U16 enclosure, KT_U8 status, bool worse) {
    const KT_U8 elements = countElements(context, enclosure, KT_SES_ALARM);
    for (KT_U8 element = 0; element < elements; ++element) {
        auto row = find<EnclosureElement>(context, elementId(enclosure, KT_SES_ALARM, element));
        if (!row || (row->status[0] & SES_CODE_MASK) != SES_OK) continue;
        const KT_U8 muted = worse ? KT_U8{0} : static_cast<KT_U8>(row->status[3] & ALARM_MUTED);
        row->status[3] = muted | (status == SES_CRITICAL ? KT_U8{TONE_CRITICAL} : KT_U8{TONE_NONCRITICAL});
        if (status == 0) row->status[3] = 0;
        save(context, elementId(enclosure, KT_SES_ALARM, element), *row);
    }
}

// A supply or a fan that is not in its bay is missed; of the others there may be fewer.
static KT_U8 worstOf(const Context& context, KT_U16 enclosure, KT_U8 type) {
    KT_U8 worst[4] = {};
    fillOverall(context, enclosure, type, worst);
    if (worst[0] == SES_CRITICAL || (type != KT_SES_POWER_SUPPLY && type != KT_SES_COOLING)) return worst[0];
    const KT_U8 elements = countElements(context, enclosure, type);
    for (KT_U8 element = 0; element < elements; ++element) {
        KT_U8 status[4] = {};
        fillStatus(context, enclosure, type, element, status);
        if ((status[0] & SES_CODE_MASK) == SES_NOT_INSTALLED) return SES_NONCRITICAL;
    }
    return worst[0];
}

// An enclosure is as well as the worst of its elements; slots do not count.
static void refreshEnclosure(const Context& context, KT_U16 enclosure) {
    auto info = find<_Enclosure_Info>(context, enclosure);
    if (!info) return;
    const KT_U8 before = info->Status ? info->Status : KT_U8{SES_OK};
    KT_U8 worst = SES_OK;
    for (const ElementKind& kind : elementKinds()) {
        const KT_U8 status = isSlot(kind.type) ? KT_U8{SES_OK} : worstOf(context, enclosure, kind.type);
        if (badness(status) > badness(worst)) worst = status;
    }
    info->Status = worst == SES_OK ? KT_U8{0} : worst;
    save(context, enclosure, *info);
    const int change = badness(worst) - badness(before);
    if (change != 0) soundAlarms(context, enclosure, info->Status, change > 0);
}

// What an element's status becomes, and what is logged of it.
struct NewStatus {
    KT_U8 bytes[4];
    EventName event;
    EventSeverity severity;
};

static void putStatus(const Context& context, KT_U16 enclosure, KT_U64 id, const NewStatus& status) {
    EnclosureElement row = find<EnclosureElement>(context, id).value_or(EnclosureElement{});
    const bool changes = (row.status[0] & SES_CODE_MASK) != status.bytes[0] || row.status[1] != status.bytes[1] ||
                         row.status[3] != status.bytes[3];
    memcpy(row.status, status.bytes, sizeof row.status);
    save(context, id, row);
    const auto element = static_cast<KT_U8>(id & 0xFF);
    if (changes && status.event != NO_EVENT)
        logEvent(context, status.event, context.adapter, status.severity, {element});
    refreshEnclosure(context, enclosure);
}

bool setElementCondition(const Context& context, KT_U16 enclosure, KT_U8 type, KT_U8 element, const std::string& word) {
    const Condition* condition = conditionNamed(type, word);
    if (!condition || isSlot(type) || element == OVERALL_ELEMENT) return false;
    if (checkElement(context, enclosure, type, element) != KT_OK) return false;
    const KT_U64 id = elementId(enclosure, type, element);
    NewStatus status = {{}, condition->event, condition->severity};
    memcpy(status.bytes, condition->status, sizeof status.bytes);
    const auto row = find<EnclosureElement>(context, id);
    const KT_U8 tone = type == KT_SES_ALARM && row ? row->status[3] & (TONE_CRITICAL | TONE_NONCRITICAL) : 0;
    if ((status.bytes[3] & ALARM_MUTED) && tone) status.bytes[3] = ALARM_MUTED | tone;
    const bool wasOpen = !row || (row->status[3] & DOOR_OPEN);
    if (condition->event == EVT_ENVIRONMENT_CLOSED && !wasOpen) status.event = NO_EVENT;
    putStatus(context, enclosure, id, status);
    return true;
}

// The voltage that a sensor named "5 V" watches, in hundredths; of others 12 V.
static int nominalVoltage(const EnclosureElement& row) {
    const int volts = row.text[0] >= '1' && row.text[0] <= '9' ? atoi(reinterpret_cast<const char*>(row.text)) : 12;
    return volts * 100;
}

bool setElementReading(const Context& context, KT_U16 enclosure, KT_U8 type, KT_U8 element, int value) {
    const KT_U64 id = elementId(enclosure, type, element);
    const auto row = find<EnclosureElement>(context, id);
    if (!row || element == OVERALL_ELEMENT) return false;
    const Reading* reading = readingOf(type, value, nominalVoltage(*row));
    if (!reading) return false;
    const bool same = (row->status[0] & SES_CODE_MASK) == reading->code;
    NewStatus status = {{}, same ? NO_EVENT : reading->event, reading->severity};
    putReading(type, *reading, value, status.bytes);
    putStatus(context, enclosure, id, status);
    return true;
}

void tellElements(const Context& context) {
    forEach<EnclosureElement>(context, 0, [&](KT_U64 id, const EnclosureElement& row) {
        const Alert alert = alertOf(static_cast<KT_U8>(id >> 8), row.status, nominalVoltage(row));
        if (alert.event == NO_EVENT || !find<_Enclosure_Info>(context, id >> 16)) return true;
        logEvent(context, alert.event, context.adapter, alert.severity, {static_cast<KT_U8>(id & 0xFF)});
        return true;
    });
}

} // namespace sim
