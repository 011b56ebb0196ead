// What a write cache holds when the power goes, with the disks that it is for pulled meanwhile.
#include "changes/arrival.h"
#include "changes/health.h"
#include "devices/power.h"
#include "sim.h"
#include "state/events.h"

#include <gtest/gtest.h>

static const char CACHES_LAB[] = R"({"adapters": [{"type": "LD-based", "battery": true, "disks": [{"count": 3}],
    "virtualDisks": [{"level": "RAID1", "disks": [0, 1], "size": "1GB", "cache": "on"}]}]})";

struct Caches : testing::Test, MemoryState {
    Caches() : MemoryState(CACHES_LAB) { beginTransaction(*store, Access::Write); }
    unsigned count(EventName name) const {
        unsigned events = 0;
        forEach<_Event>(context, 0, [&](KT_U64, const _Event& event) {
            events += isEvent(event, name) ? 1 : 0;
            return true;
        });
        return events;
    }
};

TEST_F(Caches, AreKeptThroughEveryCutThatTheBatteryLasts) {
    powerDown(*store, true);
    ASSERT_EQ(pullDisks(context, {0, 1}), KT_OK);
    powerUp(*store);
    powerDown(*store, true);
    powerUp(*store);
    EXPECT_EQ(count(EVT_ADAPTER_FLUSH_FINISHED), 0U);
    ASSERT_EQ(insertDisks(context, {0, 1}), KT_OK);
    EXPECT_EQ(count(EVT_ADAPTER_FLUSH_FINISHED), 1U);
    EXPECT_EQ(count(EVT_ADAPTER_PAGE_ECC_ERROR), 0U);
}
