#include "ui/gui/page_buttons.h"

#include "ui/gui/page_fixture.h"

namespace {

class PageButtonsTest : public PageTest {
public:
    PageButtonsTest() { session.addDialog("Welcome"); }

    DialogButtonDesc& describe(const char* label, std::uint32_t flags = 0) {
        auto& list = session.dialogs[0].buttons;
        list.emplace_back();
        list.back().label.assign(label);
        list.back().flags = flags;
        return list.back();
    }
    ControlId id(const char* label) { return window.find(ControlKind::kButton, label); }
    ControlId focus(bool defaultOnly) { return buttons.firstToFocus(defaultOnly, defaultButton); }

    PageButtons buttons{*this};
    ControlId defaultButton = 0;
};

TEST_F(PageButtonsTest, PlacesAndShowsTheButtonsOfAPage) {
    DialogButtonDesc& next = describe("&Next");
    next.x = 100;
    next.y = 50;
    next.horizontalAlign = kAlignRight;
    next.verticalAlign = kAlignBottom;
    buttons.build(0, -1);
    EXPECT_EQ(window.at(id("&Next")).place, (Place{700, 550, 80, 30}));
    EXPECT_TRUE(window.isShown(id("&Next")));
    EXPECT_EQ(buttons.find(id("&Next")), &session.dialogs[0].buttons[0]);
    EXPECT_EQ(buttons.find(99), nullptr);
}

TEST_F(PageButtonsTest, AButtonInTheStyleOfALinkIsOne) {
    describe("Website", kButtonLinkStyle);
    buttons.build(0, -1);
    EXPECT_NE(window.find(ControlKind::kLinkButton, "Website"), 0);
}

TEST_F(PageButtonsTest, StartsAsItsConditionsSay) {
    describe("A").condition.assign("no");
    describe("B").enableCondition.assign("no");
    session.conditions["no"] = 0;
    buttons.build(0, -1);
    EXPECT_FALSE(window.isShown(id("A")));
    EXPECT_TRUE(window.isEnabled(id("A")));
    EXPECT_TRUE(window.isShown(id("B")));
    EXPECT_FALSE(window.isEnabled(id("B")));
}

TEST_F(PageButtonsTest, ARefreshFollowsTheConditions) {
    describe("A").condition.assign("shown");
    describe("B").enableCondition.assign("enabled");
    describe("C");
    buttons.build(0, -1);
    session.conditions["shown"] = 0;
    session.conditions["enabled"] = 0;
    window.enable(id("C"), false);
    buttons.refresh();
    EXPECT_FALSE(window.isShown(id("A")));
    EXPECT_FALSE(window.isEnabled(id("B")));
    EXPECT_FALSE(window.isEnabled(id("C"))) << "a button without a condition stays as it is";
}

TEST_F(PageButtonsTest, ItsOwnConditionWinsOverTheWaitForWork) {
    describe("Next", kButtonDisableable).enableCondition.assign("enabled");
    describe("Back", kButtonDisableable);
    describe("Help");
    buttons.build(0, -1);
    buttons.enableDisableable(false);
    EXPECT_TRUE(window.isEnabled(id("Next")));
    EXPECT_FALSE(window.isEnabled(id("Back")));
    EXPECT_TRUE(window.isEnabled(id("Help")));
    session.conditions["enabled"] = 0;
    buttons.enableDisableable(true);
    EXPECT_FALSE(window.isEnabled(id("Next")));
    EXPECT_TRUE(window.isEnabled(id("Back")));
}

TEST_F(PageButtonsTest, TheFirstDefaultButtonThatCanTakesTheFocus) {
    describe("A");
    describe("B", kButtonDefault);
    describe("C", kButtonDefault);
    buttons.build(0, -1);
    EXPECT_EQ(focus(true), id("B"));
    EXPECT_EQ(defaultButton, id("B"));
    window.enable(id("B"), false);
    EXPECT_EQ(focus(true), id("C"));
    EXPECT_EQ(defaultButton, id("C"));
}

TEST_F(PageButtonsTest, AHiddenDefaultButtonIsStillTheDefault) {
    describe("A", kButtonDefault).condition.assign("no");
    describe("B");
    session.conditions["no"] = 0;
    buttons.build(0, -1);
    EXPECT_EQ(focus(true), 0);
    EXPECT_EQ(defaultButton, id("A"));
    EXPECT_EQ(focus(false), id("B"));
    EXPECT_EQ(defaultButton, id("A"));
}

TEST_F(PageButtonsTest, AccessKeysComeFromTheCaptions) {
    describe("&Next");
    describe("Save && &quit");
    describe("R&&D");
    describe("\xC3\x84&\xC3\xA4");
    describe("End&");
    buttons.build(0, -1);
    std::vector<AccessKey> keys;
    buttons.addAccessKeys(keys);
    ASSERT_EQ(keys.size(), 3U);
    EXPECT_EQ(keys[0].key, U'N');
    EXPECT_EQ(keys[0].control, id("&Next"));
    EXPECT_EQ(keys[1].key, U'q');
    EXPECT_EQ(keys[2].key, U'\u00E4');
}

TEST_F(PageButtonsTest, HasTheColoursOfTheDescriptionOnlyWithATheme) {
    DialogButtonDesc& button = describe("A");
    button.foregroundColour = 1;
    button.backgroundColour = 2;
    button.activeForeground = 3;
    button.activeBackground = 4;
    buttons.build(0, -1);
    EXPECT_EQ(window.at(id("A")).colours, ControlColours{});
    session.themed = true;
    buttons.build(0, -1);
    EXPECT_EQ(window.at(id("A")).colours, (ControlColours{1, 2, 3, 4}));
    EXPECT_EQ(window.controls.size(), 1U) << "those of the page before are gone";
}

}  // namespace
