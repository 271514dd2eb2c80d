#include "text/installer_html_translator.h"

#include <gtest/gtest.h>

#include "play_events.h"

namespace {

InstallerHTMLSettings withoutFrame() {
    InstallerHTMLSettings settings;
    settings.html.emitHead = false;
    settings.html.emitFoot = false;
    settings.html.baseLevel = 0;
    return settings;
}

std::string html(const InstallerHTMLSettings& settings, std::string_view script = "<doc><p>a</p></doc>") {
    InstallerHTMLTranslator translator(settings);
    return played(translator, script);
}

TEST(InstallerHTMLTranslator, HasTheDefaultSettings) {
    const InstallerHTMLSettings settings;
    EXPECT_FALSE(settings.useColour);
    EXPECT_FALSE(settings.useSize);
    EXPECT_EQ(settings.colour, 0U);
    EXPECT_EQ(settings.size, 12);
    EXPECT_TRUE(settings.html.emitHead);
}

TEST(InstallerHTMLTranslator, WritesNoFontTagWithoutColourAndSize) {
    EXPECT_EQ(html(withoutFrame()), "<p>a</p>\n");
}

TEST(InstallerHTMLTranslator, ASizeAloneLeavesTheFontTagOpen) {
    InstallerHTMLSettings settings = withoutFrame();
    settings.useSize = true;
    settings.size = 2;
    EXPECT_EQ(html(settings), "<font size=\"2\">\n<p>a</p>\n");
}

TEST(InstallerHTMLTranslator, ReducesTheSizeToItsLastDigitInTheSettingsToo) {
    InstallerHTMLSettings settings = withoutFrame();
    settings.useSize = true;
    InstallerHTMLTranslator translator(settings);
    EXPECT_EQ(translator.getSettings().size, 12);
    EXPECT_EQ(played(translator, "<doc></doc>"), "<font size=\"2\">\n");
    EXPECT_EQ(translator.getSettings().size, 2);
    settings.size = 255;
    EXPECT_EQ(html(settings, "<doc></doc>"), "<font size=\"5\">\n");
    settings.size = 20;
    EXPECT_EQ(html(settings, "<doc></doc>"), "<font size=\"0\">\n");
}

TEST(InstallerHTMLTranslator, AColourOpensAndClosesTheFontTag) {
    InstallerHTMLSettings settings = withoutFrame();
    settings.useColour = true;
    settings.colour = 0xE84D00;
    EXPECT_EQ(html(settings), "<font color=\"#e84d00\">\n<p>a</p>\n\n</font>");
    settings.colour = 0xFF00000A;
    EXPECT_EQ(html(settings), "<font color=\"#00000a\">\n<p>a</p>\n\n</font>") << "the low 24 bits count";
}

TEST(InstallerHTMLTranslator, WritesTheColourBeforeTheSize) {
    InstallerHTMLSettings settings = withoutFrame();
    settings.useColour = true;
    settings.useSize = true;
    settings.size = 3;
    EXPECT_EQ(html(settings), "<font color=\"#000000\" size=\"3\">\n<p>a</p>\n\n</font>");
    settings.html.newlines = false;
    EXPECT_EQ(html(settings), "<font color=\"#000000\" size=\"3\"><p>a</p></font>");
}

TEST(InstallerHTMLTranslator, WritesTheFontTagInsideTheBody) {
    InstallerHTMLSettings settings;
    settings.useColour = true;
    settings.html.customHead = "HEAD|";
    settings.html.customFoot = "|FOOT";
    EXPECT_EQ(html(settings, "<doc></doc>"), "HEAD|<font color=\"#000000\">\n\n</font>|FOOT");
    settings.html.customFoot.clear();
    EXPECT_EQ(html(settings, "<doc></doc>"), "HEAD|<font color=\"#000000\">\n\n</font>\t</body>\n</html>\n");
}

}  // namespace
