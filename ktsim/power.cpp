// The power of the machine.
#include "devices/power.h"

#include "commands.h"
#include "frame/invariants.h"
#include "state/due.h"
#include "state/simClock.h"

#include <memory>

using namespace sim;

static void checkAll(Store& store) {
    for (unsigned i = 0; i < adapterCount(store); ++i)
        checkAfterCall("ktsim power", Context{store, static_cast<KT_U8>(i), simulatedNow(store)});
}

static void switchOff(Store& store, bool pulled) {
    if (isPoweredOff(store)) throw CommandFailure{"the machine is off already"};
    powerDown(store, pulled);
}

static void switchOn(Store& store) {
    if (!isPoweredOff(store)) throw CommandFailure{"the machine is on already"};
    powerUp(store);
    settleAll(store);
    checkAll(store);
}

void addPower(const Command& app, Options& options) {
    app.addCommand("reboot", "Shut the machine down and boot it again").onGiven([&options] {
        changeState(options, [](Store& store) {
            if (isPoweredOff(store)) throw CommandFailure{"the machine is off (ktsim power on boots it)"};
            switchOff(store, false);
            switchOn(store);
        });
    });
    const Command power = app.addCommand("power", "Switch the machine with the adapters off or on");
    power.requireCommand(1, 1);
    const auto pulled = std::make_shared<bool>(false);
    const Command off = power.addCommand("off", "Shut it down; what happens to disks meanwhile shows at the next boot");
    off.addFlag("--pull", *pulled, "Pull the plug instead: nothing is written any more");
    off.onGiven([&options, pulled] { changeState(options, [&](Store& store) { switchOff(store, *pulled); }); });
    power.addCommand("on", "Boot it").onGiven([&options] { changeState(options, switchOn); });
}
