#include "outside.h"

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
#include "state.h"
#include "state/simClock.h"

#include <gtest/gtest.h>

namespace outside {

// What `act(context)` answers, done when all that was due has happened.
template <class Act>
static auto happen(KT_U8 adapter, Act act) {
    decltype(act(std::declval<sim::Context&>())) result = {};
    changeState([&](sim::Store& store) {
        sim::Context context{store, adapter, sim::simulatedNow(store)};
        sim::settle(context);
        result = act(context);
    });
    return result;
}

// The same of a rule with its own arguments.
template <auto RULE, class... Args>
static auto deed(KT_U8 adapter, Args... args) {
    return happen(adapter, [&](sim::Context& context) { return RULE(context, args...); });
}

const Deed<KT_U8, KT_U16> failDisk = deed<sim::failDisk>;
const Deed<KT_U8, KT_U16> pullDisk = deed<[](auto& context, KT_U16 pd) { return sim::pullDisks(context, {pd}); }>;
const Deed<KT_U8, KT_U16> insertDisk = deed<[](auto& context, KT_U16 pd) { return sim::insertDisks(context, {pd}); }>;
const Deed<KT_U8, KT_U16> untripDisk =
    deed<[](auto& context, KT_U16 pd) { return sim::tripSmart(context, pd, false); }>;

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

bool ageDisk(KT_U8 adapter, KT_U16 pd, const char* aspect, KT_U32 amount) {
    return deed<sim::ageDisk>(adapter, pd, aspect, amount) == sim::Ageing::Done;
}

KT_U32 spoil(KT_U8 adapter, KT_U16 pd, Flaw flaw, KT_U64 lba, KT_U32 count) {
    return happen(adapter, [&](sim::Context& context) {
        KT_U32 spoiled = 0;
        for (KT_U32 i = 0; i < count; ++i)
            spoiled += sim::addBadSector(context, pd, lba + i, sim::BadSector{flaw, 0, {}}) ? 1U : 0U;
        return spoiled;
    });
}

KT_U32 scratch(KT_U8 adapter, KT_U16 pd, Flaw flaw, KT_U32 count) {
    return deed<sim::addBadSectors>(adapter, pd, sim::BadSector{flaw, 0, {}}, count, nullptr);
}

const Deed<bool> insertBattery = deed<sim::insertBattery>;
const Deed<bool> removeBattery = deed<sim::removeBattery>;
const Deed<bool> breakCharger = deed<[](auto& context) { return sim::breakCharger(context, true); }>;
const Deed<bool, unsigned> setBatteryCharge = deed<sim::setBatteryCharge>;
const Deed<bool, KT_S16> setBatteryTemperature = deed<sim::setBatteryTemperature>;
const Deed<bool, KT_U16> setBatteryVoltage = deed<sim::setBatteryVoltage>;
const Deed<bool, KT_U64> scheduleRelearn = deed<sim::scheduleRelearn>;

const Deed<bool, KT_U16, KT_U8, KT_U8, const char*> setCondition = deed<sim::setElementCondition>;
const Deed<bool, KT_U16, KT_U8, KT_U8, int> setReading = deed<sim::setElementReading>;

void reboot() {
    changeState([](sim::Store& store) {
        sim::powerDown(store, false);
        sim::powerUp(store);
    });
}

void damageImage(KT_U8 adapter, KT_U8 type, ImagePart part) {
    static const sim::ImageFault FAULTS[] = {sim::ImageFault::Header, sim::ImageFault::Data, sim::ImageFault::Both};
    EXPECT_EQ(deed<sim::damageImage>(adapter, type, FAULTS[part]), KT_OK);
}

std::string makeImage(KT_U8 type, KT_U8 major, KT_U16 subVendor, size_t size) {
    return sim::makeImage(*sim::imageKind(type), {major, 8, 9, 1234}, subVendor, sim::imageFiller(99, size));
}

std::string makeMicrocode(const char* model, const char* version, size_t size) {
    return sim::makeMicrocode(model, version, sim::imageFiller(7, size));
}

} // namespace outside
