#include "devices/battery.h"
#include "commands.h"
#include "devices/batteryDeeds.h"
#include "raid/cacheMode.h"
#include "state/simClock.h"

#include <cmath>
#include <cstdio>
#include <memory>

using namespace sim;

static const char* stateWord(const _BBU_Info& info) {
    if (info.status & KT_BBU_CHARGING) return "charging";
    if (info.status & KT_BBU_DISCHARGING) return "discharging";
    return "idle";
}

static void showBattery(Context& context) {
    _BBU_Info info = {};
    if (getBattery(context, info) != KT_OK) {
        printf("Adapter %u has no place for a battery.\n", context.adapter);
        return;
    }
    if ((info.status & KT_BBU_PRESENT) == 0) {
        printf("Adapter %u has no battery.\n", context.adapter);
        return;
    }
    printf("%-13s%s, %u%%\n", "Charge", stateWord(info), info.percentage);
    printf("%-13s%.2f of %.2f Wh, %u cycles\n", "Capacity", info.capacity / 100.0, info.maxCapacity / 100.0,
           info.rechargeCycle);
    printf("%-13s%.2f C (%d to %d C)\n", "Temperature", info.temperature / 100.0, info.tempLow, info.tempHigh);
    printf("%-13s%.2f V (%.2f to %.2f V)\n", "Voltage", info.voltage / 1000.0, info.voltLow / 1000.0,
           info.voltHigh / 1000.0);
    printf("%-13s%s\n", "VD caches", batteryKeepsCache(context) ? "survive a power failure" : "are not safe");
}

using BatteryChange = std::function<bool(Context&)>;

static void change(const Options& options, const BatteryChange& how) {
    changeAdapter(options, [&](Context& context) {
        if (!how(context)) throw CommandFailure{"adapter " + std::to_string(context.adapter) + " has no such battery"};
        settleAll(context.store);
    });
}

// A subcommand that changes something about the battery; `how` answers false when there is none.
static Command addBatteryChange(const Command& battery, Options& options, const char* word, const char* help,
                                const BatteryChange& how) {
    const Command command = battery.addCommand(word, help);
    addAdapterOption(command, options);
    command.onGiven([&options, how] { change(options, how); });
    return command;
}

struct BatteryOptions {
    double number = 0;
    std::string text;
};

static void addReadings(const Command& battery, Options& options, const std::shared_ptr<BatteryOptions>& wanted) {
    addBatteryChange(
        battery, options, "charge", "Set the charge in percent",
        [wanted](Context& context) { return setBatteryCharge(context, static_cast<unsigned>(wanted->number)); })
        .addOption("PERCENT", wanted->number)
        .required()
        .check(between(0, 100));
    addBatteryChange(battery, options, "temperature", "Set the temperature in degrees Celsius",
                     [wanted](Context& context) {
                         return setBatteryTemperature(context, static_cast<KT_S16>(std::lround(wanted->number * 100)));
                     })
        .addOption("CELSIUS", wanted->number)
        .required()
        .check(between(-100, 200));
    addBatteryChange(battery, options, "voltage", "Set the voltage in volts",
                     [wanted](Context& context) {
                         return setBatteryVoltage(context, static_cast<KT_U16>(std::lround(wanted->number * 1000)));
                     })
        .addOption("VOLTS", wanted->number)
        .required()
        .check(between(0, 60));
}

static bool relearnIn(Context& context, const std::string& duration) {
    KT_U64 seconds = 0;
    if (!parseDuration(duration, seconds))
        throw CommandFailure{"\"" + duration + "\" is not a duration such as 90m, 2h30m or 3d"};
    return scheduleRelearn(context, seconds);
}

void addBattery(const Command& app, Options& options) {
    const Command battery = app.addCommand("battery", "The battery backup unit of an adapter");
    battery.requireCommand(1, 1);
    const auto wanted = std::make_shared<BatteryOptions>();
    addBatteryChange(battery, options, "show", "Print how it does", [](Context& context) {
        showBattery(context);
        return true;
    });
    addBatteryChange(battery, options, "insert", "Put a new one in", insertBattery);
    const Command remove = battery.addCommand("remove", "Take it out");
    addAdapterOption(remove, options);
    addForceOption(remove, options);
    remove.onGiven([&options] {
        change(options, [](Context& context) { return hasBattery(context); });
        // Asked with the state let go of: nobody else waits for the answer.
        if (!confirm(options, "Caches of virtual disks will not survive a power failure. Take the battery out?"))
            throw CommandFailure{"nothing was changed"};
        change(options, removeBattery);
    });
    addReadings(battery, options, wanted);
    addBatteryChange(battery, options, "charger", "Break the charger, or repair it",
                     [wanted](Context& context) { return breakCharger(context, wanted->text == "broken"); })
        .addOption("STATE", wanted->text, "broken or working")
        .required()
        .check(oneOf({"broken", "working"}));
    addBatteryChange(battery, options, "relearn", "Schedule the next relearn",
                     [wanted](Context& context) { return relearnIn(context, wanted->text); })
        .addOption("IN", wanted->text, "For instance 45s, 90m, 5h, 3d")
        .required();
}
