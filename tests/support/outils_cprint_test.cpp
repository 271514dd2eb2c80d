#include "support/outils_cprint.h"

#include <gtest/gtest.h>

#include "fakes/fake_console_device.h"

namespace {

TEST(ColourPrintTest, DropsTheSequencesWithoutColour) {
    FakeConsoleDevice device;
    device.columns = 80;
    outils_cprint(0, "a\x1B[31mred\x1B[0m b", device);
    EXPECT_EQ("ared b", device.output);
}

TEST(ColourPrintTest, PassesThemOnToATerminalOnly) {
    FakeConsoleDevice terminal;
    terminal.columns = 80;
    outils_cprint(1, "a\x1B[31mred\x1B[0m", terminal);
    EXPECT_EQ("a\x1B[31mred\x1B[0m", terminal.output);
    FakeConsoleDevice pipe;
    outils_cprint(1, "a\x1B[31mred\x1B[0m", pipe);
    EXPECT_EQ("ared", pipe.output);
}

TEST(ColourPrintTest, TellsASequenceWithoutItsEnd) {
    for (const char* text : {"a\x1B[31", "a\x1B[1111111111111111111111m", "a\x1B"}) {
        FakeConsoleDevice device;
        outils_cprint(0, text, device);
        EXPECT_EQ("aoutils_cprint: Incorrect ESC length!", device.output);
    }
}

TEST(ColourPrintTest, TellsAnOutputThatHasFailed) {
    FakeConsoleDevice device;
    device.outputLimit = 0;
    outils_cprint(0, "a", device);
    EXPECT_EQ("outils_cprint: Invalid handle!", device.errors);
}

TEST(ColourPrintTest, TakesNullAsEmpty) {
    FakeConsoleDevice device;
    outils_cprint(1, nullptr, device);
    EXPECT_EQ("", device.output);
    EXPECT_EQ("", device.errors);
}

}  // namespace
