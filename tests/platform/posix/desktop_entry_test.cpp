#include "platform/posix/desktop_entry.h"

#include <gtest/gtest.h>

#include "fakes/desktop_entry_reader.h"

namespace {

using platform::ApplicationEntry;
using platform::desktopEntryName;
using platform::desktopEntryOf;
using platform::desktopLinkOf;

// What a desktop makes of an entry with this command.
std::vector<std::string> commandReadBack(const std::vector<std::string>& command) {
    ApplicationEntry entry;
    entry.name = "Demo";
    entry.command = command;
    return DesktopEntryReader(desktopEntryOf(entry)).command();
}

TEST(DesktopEntryTest, AnApplicationSaysWhatItIs) {
    EXPECT_EQ(desktopEntryOf({"Demo", "A demo", {"/opt/demo", "-a"}, "/opt", "/opt/demo.png"}),
              "[Desktop Entry]\nVersion=1.5\nType=Application\nName=Demo\nComment=A demo\n"
              "Exec=/opt/demo -a\nPath=/opt\nIcon=/opt/demo.png\n");
}

TEST(DesktopEntryTest, LeavesOutEmptyTexts) {
    EXPECT_EQ(desktopEntryOf({"Demo", "", {"demo"}, "", ""}),
              "[Desktop Entry]\nVersion=1.5\nType=Application\nName=Demo\nExec=demo\n");
}

TEST(DesktopEntryTest, ALinkHasAnUrl) {
    EXPECT_EQ(desktopLinkOf("Page", "http://example.com/%20?a=b"),
              "[Desktop Entry]\nVersion=1.5\nType=Link\nName=Page\nURL=http://example.com/%20?a=b\n");
}

TEST(DesktopEntryTest, KeepsATextInItsLine) {
    const std::string text = " a\\b\nExec=evil\r\tc";
    const std::string entry = desktopEntryOf({"n", text, {"demo"}, "", ""});
    EXPECT_NE(entry.find("Comment=\\sa\\\\b\\nExec=evil\\r\\tc\n"), std::string::npos) << entry;
    const DesktopEntryReader reader(entry);
    EXPECT_EQ(reader.value("Comment"), text);
    EXPECT_EQ(reader.value("Exec"), "demo");
    EXPECT_EQ(DesktopEntryReader(desktopLinkOf(text, text)).value("URL"), text);
}

TEST(DesktopEntryTest, WritesPlainWordsWithoutQuotes) {
    const std::string entry = desktopEntryOf({"n", "", {"/opt/demo-1.0_x@y", "--a=b,c:d"}, "", ""});
    EXPECT_NE(entry.find("Exec=/opt/demo-1.0_x@y --a=b,c:d\n"), std::string::npos) << entry;
}

TEST(DesktopEntryTest, QuotesReservedCharacters) {
    for (const char c : std::string(" \t\n\"'\\><~|&;$*?#()`")) {
        const std::string word = std::string("a") + c + "b";
        EXPECT_EQ(commandReadBack({"/opt/demo", word}), (std::vector<std::string>{"/opt/demo", word}))
            << word;
        EXPECT_EQ(commandReadBack({word}), std::vector<std::string>{word}) << word;
    }
}

TEST(DesktopEntryTest, QuotesAndEscapesAreThoseOfTheFormat) {
    const std::string entry = desktopEntryOf({"n", "", {"/a b", "c\\d", "$e", "f\"g", "h`i", ""}, "", ""});
    EXPECT_NE(entry.find("Exec=\"/a b\" \"c\\\\\\\\d\" \"\\\\$e\" \"f\\\\\"g\" \"h\\\\`i\" \"\"\n"),
              std::string::npos)
        << entry;
}

TEST(DesktopEntryTest, EscapesAPercentSign) {
    const std::string entry = desktopEntryOf({"n", "", {"/a%f", "100%"}, "", ""});
    EXPECT_NE(entry.find("Exec=/a%%f 100%%\n"), std::string::npos) << entry;
    EXPECT_EQ(commandReadBack({"/a%f", "%%", "a %u"}), (std::vector<std::string>{"/a%f", "%%", "a %u"}));
}

TEST(DesktopEntryTest, KeepsAnyByte) {
    std::string all;
    for (int c = 1; c < 256; ++c) {
        all += static_cast<char>(c);
    }
    EXPECT_EQ(commandReadBack({all, all}), (std::vector<std::string>{all, all}));
    EXPECT_EQ(DesktopEntryReader(desktopEntryOf({"n", all, {"demo"}, all, all})).value("Comment"), all);
}

TEST(DesktopEntryTest, TheNameIsThatOfTheFileWithoutItsEnding) {
    EXPECT_EQ(desktopEntryName("/a.b/Demo Program.desktop"), "Demo Program");
    EXPECT_EQ(desktopEntryName("/a/Demo.lnk"), "Demo");
    EXPECT_EQ(desktopEntryName("/a/Demo.URL"), "Demo");
    EXPECT_EQ(desktopEntryName("Demo 1.5"), "Demo 1.5");
    EXPECT_EQ(desktopEntryName("/a/.lnk"), ".lnk");
}

}  // namespace
