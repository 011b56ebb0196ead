// What is known of a disk beside its record goes where the disk goes, and goes with it.
#include "changes/arrival.h"
#include "changes/branches.h"
#include "changes/diskIds.h"
#include "changes/health.h"
#include "media/surface.h"
#include "sim.h"

#include <gtest/gtest.h>
#include <set>

static const char DISKS_LAB[] = R"({"adapters": [{"disks": [{"count": 3, "type": "SATA SSD", "size": "10GB"}]}]})";

template <class... Records>
struct Kinds {
    static void put(const Context& context, KT_U16 pd) {
        const auto one = [&]<class Record>(Record record) {
            reinterpret_cast<unsigned char*>(&record)[0] = 1;
            save(context, pd, record);
        };
        (one(Records{}), ...);
    }
    static std::string at(const Context& context, KT_U16 pd) {
        return std::string({(find<Records>(context, pd) ? '+' : '-')...}) + std::to_string(badSectorCount(context, pd));
    }
};
using Known = Kinds<DiskAge, ToldHealth, DiskCipher, SolidState, MicrocodeUpdate, ArrayLabel>;

struct Disks : testing::Test, MemoryState {
    Disks() : MemoryState(DISKS_LAB) { beginTransaction(*store, Access::Write); }
    void SetUp() override {
        Known::put(context, 1);
        for (const KT_U64 lba : {5U, 9U})
            addBadSector(context, 1, lba, BadSector{FLAW_UNREADABLE, 0, {}});
    }
};

TEST_F(Disks, KeepWhatIsKnownOfThemUnderANewId) {
    ASSERT_EQ(pullDisks(context, {0}), KT_OK);
    renumberDisks(context);
    EXPECT_EQ(Known::at(context, 0), "++++++2");
    EXPECT_EQ(Known::at(context, 1), "------0") << "that is another disk's id now";
}

TEST_F(Disks, AreNewWhereTheyAreReplaced) {
    const KT_U64 reserved = find<PdState>(context, 1)->reservedKib;
    ASSERT_EQ(replaceDisk(context, 1, nullptr), KT_OK);
    EXPECT_EQ(find<PdState>(context, 1)->reservedKib, reserved);
    EXPECT_EQ(Known::at(context, 1), "+-----0") << "a life of its own";
    EXPECT_EQ(find<DiskAge>(context, 1)->born, context.now);
}

TEST_F(Disks, BringToAnotherAdapterWhatIsTheirOwn) {
    const MemoryState elsewhere(DISKS_LAB);
    beginTransaction(*elsewhere.store, Access::Write);
    const Context& there = elsewhere.context;
    Ids ids;
    ASSERT_EQ(insertForeignDisks(there, *store, 0, {1, 0}, ids), KT_OK);
    EXPECT_EQ(ids, (Ids{3, 4}));
    std::set<std::string> names; // they are of the same make as the disks there
    for (const KT_U16 pd : all<_HD_Info>(there))
        names.insert(std::string(reinterpret_cast<const char*>(find<_HD_Info>(there, pd)->WWN), 8));
    EXPECT_EQ(names.size(), 5U);
    EXPECT_EQ(Known::at(there, 3), "+-++--2") << "what an adapter tells or wrote of it stays there";
}

TEST(Places, OfADiskWhoseExpanderIsGoneAreElsewhere) {
    const MemoryState state(R"({"adapters": [{"expanders": [{}], "disks": [{"count": 2, "on": "expander"}]}]})");
    beginTransaction(*state.store, Access::Write);
    const Context& context = state.context;
    KT_U8 port = 0;
    while (port < 8 && pullCable(context, port) != KT_OK)
        ++port;
    ASSERT_EQ(insertDisks(context, {1}), KT_OK);
    EXPECT_EQ(find<_HD_Info>(context, 1)->Link.Parent.DevType, KT_LINK_HBA);
    ASSERT_EQ(insertCable(context, port), KT_OK);
    EXPECT_EQ(find<_HD_Info>(context, 0)->Link.Parent.DevType, KT_LINK_EXPANDER);
}

// Another disk that went by itself does not come back with a shelf, whatever was in it.
TEST(Places, ComeBackAlone) {
    const MemoryState state(
        R"({"adapters": [{"expanders": [{}], "enclosures": [{"id": 1}], "disks": [{"count": 2, "on": "HBA"}]}]})");
    beginTransaction(*state.store, Access::Write);
    const Context& context = state.context;
    ASSERT_EQ(pullDisks(context, {1}), KT_OK);
    ASSERT_EQ(pullEnclosure(context, 1), KT_OK);
    ASSERT_EQ(insertEnclosure(context, 1), KT_OK);
    EXPECT_TRUE(find<_Enclosure_Info>(context, 1));
    EXPECT_FALSE(find<_HD_Info>(context, 1));
}
