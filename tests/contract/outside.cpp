#include "outside.h"
#include "frame.h"

#include "changes/arrival.h"
#include "changes/health.h"
#include "devices/battery.h"
#include "devices/batteryDeeds.h"
#include "devices/enclosureElements.h"
#include "devices/flashMemory.h"
#include "devices/power.h"
#include "devices/solidState.h"
#include "frame/settle.h"
#include "lab/lab.h"
#include "media/surface.h"
#include "media/wear.h"
#include "raid/damage.h"
#include "state/due.h"
#include "state/simClock.h"
#include "state/storeFile.h"

static std::string statePath() {
    const char* path = getenv("KTRAID_SIM");
    return path ? path : "";
}

// Changes the state of the running test as another process would.
static void changeState(const std::function<void(sim::Store&)>& change) {
    sim::Store* store = sim::openExistingStore(statePath());
    sim::beginTransaction(*store, sim::Access::Write);
    change(*store);
    sim::commitTransaction(*store);
    sim::closeStore(store);
}

KT_U8 advance(uint64_t seconds) {
    changeState(
        [&](sim::Store& store) { sim::setClock(store, sim::simulatedNow(store) + seconds * 1000, 1000, true); });
    return KT_OK;
}

KT_U8 runClock(uint32_t speed) {
    changeState([&](sim::Store& store) { sim::setClock(store, sim::simulatedNow(store), speed, false); });
    return KT_OK;
}

std::string show() {
    sim::Store* store = sim::openExistingStore(statePath());
    std::string text = sim::stateToLab(*store);
    sim::closeStore(store);
    return text;
}

void makeState(const std::string& lab) {
    const sim::BuiltInLab source = {"lab", lab.c_str()};
    try {
        sim::replaceStore(statePath(), sim::fillFromLab, &source);
    } catch (const sim::LabError& error) {
        FAIL() << error.message;
    }
}

// What `act(context)` answers, done when all that was due has happened.
template <class Act>
static auto happen(KT_U8 adapter, Act act) {
    decltype(act(std::declval<sim::Context&>())) result = {};
    changeState([&](sim::Store& store) {
        sim::Context context{store, adapter, sim::simulatedNow(store)};
        if (sim::settleDue(context)) sim::settle(context);
        result = act(context);
    });
    return result;
}

// The same of a rule with its own arguments.
template <auto RULE, class... Args>
static KT_U8 deed(KT_U8 adapter, Args... args) {
    const auto done = happen(adapter, [&](sim::Context& context) { return RULE(context, args...); });
    if constexpr (std::is_same_v<decltype(done), const bool>) return done ? KT_OK : KT_ERR_FAILED;
    return done;
}

const Deed<KT_U16> failDisk = deed<sim::failDisk>;
const Deed<KT_U16> pullDisk = deed<[](auto& context, KT_U16 pd) { return sim::pullDisks(context, {pd}); }>;
const Deed<KT_U16> insertDisk = deed<[](auto& context, KT_U16 pd) { return sim::insertDisks(context, {pd}); }>;
const Deed<KT_U16> untripDisk = deed<[](auto& context, KT_U16 pd) { return sim::tripSmart(context, pd, false); }>;
const Deed<KT_U16, const char*, KT_U32> ageDisk =
    deed<[](auto&... args) { return sim::ageDisk(args...) == sim::Ageing::Done; }>;

KT_U8 replaceDisk(KT_U8 adapter, KT_U16 pd, KT_U64 sectors) {
    return happen(adapter, [&](sim::Context& context) {
        return sim::replaceDisk(context, pd, [&](_HD_Info& disk) { disk.Size = sectors ? sectors : disk.Size; });
    });
}

KT_U8 insertForeignDisks(KT_U8 adapter, const char* lab, const std::vector<KT_U16>& disks, std::vector<KT_U16>& ids) {
    const sim::BuiltInLab source = {"lab", lab};
    sim::Store* other = sim::openMemoryStore(sim::fillFromLab, &source);
    const KT_U8 status =
        happen(adapter, [&](sim::Context& context) { return sim::insertForeignDisks(context, *other, 0, disks, ids); });
    sim::closeStore(other);
    return status;
}

KT_U8 spoilSectors(KT_U8 adapter, KT_U16 pd, Flaw flaw, KT_U64 lba, KT_U32 count) {
    return happen(adapter, [&](sim::Context& context) {
        for (KT_U64 at = lba; at < lba + count; ++at)
            if (!sim::addBadSector(context, pd, at, sim::BadSector{flaw, 0, {}})) return KT_ERR_FAILED;
        return KT_OK;
    });
}

KT_U32 scratch(KT_U8 adapter, KT_U16 pd, Flaw flaw, KT_U32 count) {
    return happen(adapter, [&](sim::Context& context) {
        return sim::addBadSectors(context, pd, sim::BadSector{flaw, 0, {}}, count, nullptr);
    });
}

const Deed<> insertBattery = deed<sim::insertBattery>;
const Deed<> removeBattery = deed<sim::removeBattery>;
const Deed<> breakCharger = deed<[](auto& context) { return sim::breakCharger(context, true); }>;
const Deed<unsigned> setBatteryCharge = deed<sim::setBatteryCharge>;
const Deed<KT_S16> setBatteryTemperature = deed<sim::setBatteryTemperature>;
const Deed<KT_U16> setBatteryVoltage = deed<sim::setBatteryVoltage>;
const Deed<KT_U64> scheduleRelearn = deed<sim::scheduleRelearn>;

const Deed<KT_U16, KT_U8, KT_U8, const char*> setCondition = deed<sim::setElementCondition>;
const Deed<KT_U16, KT_U8, KT_U8, int> setReading = deed<sim::setElementReading>;

KT_U8 reboot(const std::function<void()>& meanwhile) {
    changeState([](sim::Store& store) { sim::powerDown(store, false); });
    meanwhile();
    changeState([](sim::Store& store) { sim::powerUp(store); });
    return KT_OK;
}

KT_U8 damageImage(KT_U8 adapter, KT_U8 type, ImagePart part) {
    static const sim::ImageFault FAULTS[] = {sim::ImageFault::Header, sim::ImageFault::Data, sim::ImageFault::Both};
    return deed<sim::damageImage>(adapter, type, FAULTS[part]);
}

std::string makeImage(KT_U8 type, KT_U8 major, KT_U16 subVendor, size_t size) {
    return sim::makeImage(*sim::imageKind(type), {major, 8, 9, 1234}, subVendor, sim::imageFiller(99, size));
}

std::string makeMicrocode(const char* model, const char* version, size_t size) {
    return sim::makeMicrocode(model, version, sim::imageFiller(7, size));
}
