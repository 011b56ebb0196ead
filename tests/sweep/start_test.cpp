// Starting and rescanning on a library that reports more adapters than are supported.
#include <gtest/gtest.h>
#include <string>

#include "Public/start.h"
#include "ktsetup/commandTables.h"
#include "tests/support/printed.h"

extern "C" int KT_STUB_Adapters;

namespace {

int dispatch(std::string first, std::string second = "", std::string third = "") {
    char* words[] = {first.data(), second.data(), third.data(), nullptr};
    int count = second.empty() ? 1 : 3;
    return cmdDispatcher(count, words);
}

TEST(Start, UsesTheFirstSixteenAdaptersAndCapsNoCountLater) {
    setCommandSets(ldBasedCommands, arrayBasedCommands);
    KT_STUB_Adapters = 255;
    EXPECT_EQ(printedBy([] { EXPECT_TRUE(startLibrary()); }), "SG driver version 3.5.36.\nCLI supports 16 adapters!\n");
    EXPECT_EQ(gNumAdaptersFound, 16);
    EXPECT_EQ(printedBy([] { EXPECT_EQ(dispatch("adapter", "-i", "16"), 1); }), "Adapter 16 does not exist.\n");
    EXPECT_EQ(printedBy([] { dispatch("adapter"); }),
              "Total number of adapters: 255\nCurrent default adapter ID for CLI commands: 0\n");
    EXPECT_EQ(printedBy([] { EXPECT_EQ(dispatch("adapter", "-i", "254"), 0); }), "");
    EXPECT_EQ(gCurrentAdapter, 254);
    printedBy([] { EXPECT_EQ(dispatch("rescan", "-a", "scan"), 0); });
    EXPECT_EQ(gCurrentAdapter, 0);
    EXPECT_EQ(gNumAdaptersFound, 255);
}

} // namespace
