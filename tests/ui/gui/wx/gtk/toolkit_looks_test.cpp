#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <string>

#include "ui/gui/wx/gtk/desktop_settings.h"
#include "ui/gui/wx/window_fixture.h"

// Run with letters of the usual size, and with those of twice the size.

namespace {

constexpr std::int32_t kWhite = 0xFFFFFF;
constexpr std::int32_t kBrown = 0x104080;
constexpr Dot kBrownDot{0x80, 0x40, 0x10};

// As the desktop's accent and its links are.
bool isBlue(const Dot& dot) {
    return dot.blue > dot.red + 80;
}

bool isBrown(const Dot& dot) {
    return dot == kBrownDot;
}

// As a daemon for the desktop's settings tells it.
void setDesktopTheme(const char* name) {
    g_object_set(gtk_settings_get_default(), "gtk-theme-name", name, nullptr);
}

// What the toolkit has heard of the desktop, whatever it makes of it.
bool isDesktopSetting(const char* name, int wanted) {
    GValue value = G_VALUE_INIT;
    g_value_init(&value, G_TYPE_INT);
    return gdk_screen_get_setting(gdk_screen_get_default(), name, &value) != FALSE &&
           g_value_get_int(&value) == wanted;
}

class ToolkitLooks : public WindowTest {
protected:
    // Of the best size, shown.
    ControlId showBest(ControlKind kind, std::string_view text, const ControlColours& colours = {}) {
        ControlSpec spec;
        spec.kind = kind;
        spec.text = text;
        spec.place = {20, 20, 0, 0};
        spec.colours = colours;
        const ControlId control = toolkit->add(spec);
        toolkit->show(control, true);
        return control;
    }
    int letterHeight() { return toolkit->measureText("\xC3\x84g").height; }
};

}  // namespace

TEST_F(ToolkitLooks, ABoxHasRoomForItsLettersBeforeItWasEverShown) {
    inFrame([&] {
        for (const ControlKind kind : {ControlKind::kTextBox, ControlKind::kPasswordBox}) {
            const ControlId box = add(kind, "words", {20, 20, 200, 0});
            EXPECT_GE(toolkit->place(box).height, letterHeight() * 3 / 2);
            EXPECT_LE(toolkit->place(box).height, letterHeight() * 3);
        }
    });
}

TEST_F(ToolkitLooks, AMarkIsAboutAsHighAsTheLetters) {
    for (const bool isThemed : {false, true}) {
        inFrame(
            [&] {
                for (const ControlKind kind : {ControlKind::kCheckBox, ControlKind::kRadioButton}) {
                    const ControlId choice = showBest(kind, "Install the manual");
                    const int words = toolkit->measureText("Install the manual").width;
                    EXPECT_GE(toolkit->place(choice).width - words, letterHeight());
                    EXPECT_LE(toolkit->place(choice).width - words, letterHeight() * 2);
                    toolkit->remove(choice);
                }
            },
            isThemed);
    }
}

TEST_F(ToolkitLooks, ABarFillsTheHeightOfItsPlace) {
    inFrame([&] {
        for (const int height : {16, 40, 90}) {
            const ControlId bar = add(ControlKind::kProgressBar, {}, {20, 20, 300, height});
            toolkit->setProgress(bar, 50);
            toolkit->show(bar, true);
            waitUntil([&] { return pixelsOf(bar).highest(isBlue) >= height * 3 / 4; },
                      "a bar of that height");
            toolkit->remove(bar);
        }
    });
}

TEST_F(ToolkitLooks, AThemedBarFillsItsPlaceInItsOwnColours) {
    inFrame(
        [&] {
            const ControlId bar = add(ControlKind::kProgressBar, {}, {20, 20, 300, 60});
            toolkit->setColours(bar, {kBrown, kWhite, -1, -1});
            toolkit->setProgress(bar, 50);
            toolkit->show(bar, true);
            waitUntil([&] { return pixelsOf(bar).highest(isBrown) >= 30; }, "a bar of that colour");
            EXPECT_EQ(pixelsOf(bar).count(isBlue), 0);
        },
        true);
}

TEST_F(ToolkitLooks, ALinkHasTheDesktopsColourOfLinks) {
    inFrame([&] {
        const ControlId link = showBest(ControlKind::kLinkButton, "More about it");
        waitUntil([&] { return pixelsOf(link).count(isBlue) > 20; }, "a link in blue");
        toolkit->setColours(link, {});
        toolkit->setPageColours(0x000000, kWhite);
        waitUntil([&] { return pixelsOf(link).count(isBlue) > 20; }, "a link in blue again");
    });
}

TEST_F(ToolkitLooks, AThemedLinkHasItsOwnColour) {
    inFrame(
        [&] {
            const ControlId link =
                showBest(ControlKind::kLinkButton, "More about it", {kBrown, kWhite, -1, -1});
            waitUntil([&] { return pixelsOf(link).count(isBrown) > 20; }, "a link of that colour");
            EXPECT_EQ(pixelsOf(link).count(isBlue), 0);
        },
        true);
}

TEST_F(ToolkitLooks, AThemedMarkHasTheColourOfItsCaption) {
    inFrame(
        [&] {
            for (const ControlKind kind : {ControlKind::kCheckBox, ControlKind::kRadioButton}) {
                const ControlId choice = showBest(kind, "i", {kBrown, kWhite, -1, -1});
                toolkit->setChecked(choice, true);
                waitUntil([&] { return pixelsOf(choice).count(isBrown) >= letterHeight(); },
                          "a mark of that colour");
                EXPECT_EQ(pixelsOf(choice).count(isBlue), 0);
                toolkit->remove(choice);
            }
        },
        true);
}

TEST_F(ToolkitLooks, AThemedDocumentKeepsItsColoursWhenTheDesktopChangesItsOwn) {
    inFrame(
        [&] {
            const ControlId document = add(ControlKind::kRichText, "words", {20, 20, 200, 100});
            toolkit->setColours(document, {kBrown, 0xF0F8FF, -1, -1});
            toolkit->show(document, true);
            const auto isPaper = [](const Dot& dot) { return dot == Dot{0xFF, 0xF8, 0xF0}; };
            const auto isItsOwn = [&] { return pixelsOf(document).count(isPaper) > 200 * 100 / 2; };
            waitUntil(isItsOwn, "a document in its colours");
            setDesktopTheme("HighContrastInverse");
            toolkit->processEvents();
            EXPECT_TRUE(isItsOwn());
            setDesktopTheme("Adwaita");
        },
        true);
}

TEST_F(ToolkitLooks, RowsOfTasksFollowTheColoursOfTheDesktop) {
    inFrame([&] {
        const ControlId list = add(ControlKind::kTaskList, {}, {20, 20, 200, 100});
        toolkit->addTask(list, {"WWWW", -1, -1, false});
        toolkit->show(list, true);
        const auto isBright = [](const Dot& dot) { return dot.red > 220 && dot.green > 220; };
        const auto isDark = [](const Dot& dot) { return dot.red < 100 && dot.green < 100; };
        waitUntil([&] { return pixelsOf(list).count(isDark) > 20; }, "dark letters");
        EXPECT_GT(pixelsOf(list).count(isBright), 200 * 100 / 2);
        setDesktopTheme("HighContrastInverse");
        waitUntil([&] { return pixelsOf(list).count(isBright) > 20; }, "bright letters");
        waitUntil([&] { return pixelsOf(list).count(isDark) > 200 * 100 / 2; }, "a dark list");
        setDesktopTheme("Adwaita");
    });
}

TEST_F(ToolkitLooks, LettersKeepTheirSizeWhenTheDesktopEnlargesItsOwn) {
    inFrame([&] {
        const Extent before = toolkit->measureText("Install the manual");
        const ControlId choice = showBest(ControlKind::kCheckBox, "Install the manual");
        const Place place = toolkit->place(choice);
        toolkit->remove(choice);
        DesktopSettings desktop;
        desktop.setDensity(240);
        waitUntil([] { return isDesktopSetting("gtk-xft-dpi", 240 * 1024); }, "larger letters");
        toolkit->processEvents();
        EXPECT_EQ(toolkit->measureText("Install the manual"), before);
        EXPECT_EQ(toolkit->place(showBest(ControlKind::kCheckBox, "Install the manual")), place);
    });
}
