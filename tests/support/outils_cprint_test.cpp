#include "support/outils_cprint.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/memory/memory_console_device.h"

namespace {

TEST(ColourPrintTest, DropsTheSequencesWithoutColour) {
    MemoryConsoleDevice device;
    device.columns = 80;
    outils_cprint(device, false, "a\x1B[31mred\x1B[0m b");
    EXPECT_EQ("ared b", device.output);
}

TEST(ColourPrintTest, PassesThemOnToATerminalOnly) {
    MemoryConsoleDevice terminal;
    terminal.columns = 80;
    outils_cprint(terminal, true, "a\x1B[31mred\x1B[0m");
    EXPECT_EQ("a\x1B[31mred\x1B[0m", terminal.output);
    MemoryConsoleDevice pipe;
    outils_cprint(pipe, true, "a\x1B[31mred\x1B[0m");
    EXPECT_EQ("ared", pipe.output);
}

TEST(ColourPrintTest, PassesNoOtherControlCharactersOn) {
    MemoryConsoleDevice device;
    device.columns = 80;
    outils_cprint(device, true, "a\b\x1B[1mb\xC2\x9B");
    EXPECT_EQ("a?\x1B[1mb?", device.output);
}

TEST(ColourPrintTest, ReportsASequenceWithoutItsEnd) {
    for (const char* text : {"a\x1B[31", "a\x1B[1111111111111111111111m", "a\x1B"}) {
        MemoryConsoleDevice device;
        outils_cprint(device, false, text);
        EXPECT_EQ("aoutils_cprint: Incorrect ESC length!", device.output);
    }
}

TEST(ColourPrintTest, ReportsAnOutputThatHasFailed) {
    MemoryConsoleDevice device;
    device.outputLimit = 0;
    outils_cprint(device, false, "a");
    EXPECT_EQ("outils_cprint: Invalid handle!", device.errors);
}

TEST(ColourPrintTest, PrintsNothingForAnEmptyText) {
    MemoryConsoleDevice device;
    outils_cprint(device, true, "");
    EXPECT_EQ("", device.output);
    EXPECT_EQ("", device.errors);
}

TEST(ColourPrintTest, FormatsAndCutsTheText) {
    MemoryConsoleDevice device;
    outils_cprintf(device, false, "%s is \x1B[1m%d", "six", 6);
    EXPECT_EQ("six is 6", device.output);
    device.output.clear();
    outils_cprintf(device, false, "%s", std::string(5000, 'x').c_str());
    EXPECT_EQ(std::string(4095, 'x'), device.output);
}

}  // namespace
