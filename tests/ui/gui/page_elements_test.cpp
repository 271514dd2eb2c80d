#include "ui/gui/page_elements.h"

#include "platform/memory/memory_file_system.h"
#include "ui/gui/page_fixture.h"
#include "ui/gui/page_pictures.h"
#include "ui/gui/task_list.h"
#include "ui/gui/test_pictures.h"

namespace {

class PageElementsTest : public PageTest {
public:
    PageElementsTest() { session.addDialog("Page"); }

    DialogElementDesc& describe(DialogElementKind kind, const char* text = "", const char* name = "") {
        auto& list = session.dialogs[0].elements;
        list.emplace_back();
        list.back().kind = kind;
        list.back().text = text;
        list.back().name.assign(name);
        list.back().width = 100;
        list.back().height = 50;
        return list.back();
    }
    RecordingToolkit::Control* shown(ControlKind kind) {
        const ControlId control = window.find(kind);
        return control == 0 ? nullptr : &window.at(control);
    }

    MemoryFileSystem files;
    PagePictures pictures{session, files, [] { return 0U; }, {}};
    TaskList tasks{*this, pictures};
    PageElements elements{*this, pictures, tasks};
};

TEST_F(PageElementsTest, EachKindHasItsControl) {
    session.resources["Document"] = "Hello";
    session.resources["Picture"] = rawPicture(10, 10, 1);
    session.resources["Slide0"] = rawPicture(10, 10, 1);
    describe(kElementText, "Text");
    describe(kElementImage, "Picture");
    describe(kElementHLine);
    describe(kElementRichEditText, "Document");
    describe(kElementProgress);
    describe(kElementList);
    describe(kElementTaskLB);
    describe(kElementBorder);
    describe(kElementSlideShow, "1", "Slide");
    describe(kElementHtmlEditText, "Document");
    describe(kElementPlainEditText, "Document");
    elements.build(0, -1);
    std::vector<ControlKind> kinds;
    for (const auto& [id, control] : window.controls) {
        kinds.push_back(control.kind);
        EXPECT_TRUE(control.isShown);
    }
    EXPECT_EQ(kinds,
              (std::vector<ControlKind>{ControlKind::kText, ControlKind::kPicture, ControlKind::kLine,
                                        ControlKind::kRichText, ControlKind::kProgressBar,
                                        ControlKind::kLines, ControlKind::kTaskList, ControlKind::kFrame,
                                        ControlKind::kPicture, ControlKind::kHtml, ControlKind::kPlainText}));
}

TEST_F(PageElementsTest, ATextHasNoCarriageReturns) {
    describe(kElementText, "one\r\ntwo");
    elements.build(0, -1);
    EXPECT_EQ(shown(ControlKind::kText)->text, "one\ntwo");
}

TEST_F(PageElementsTest, ATextFollowsTheVariablesThatItNames) {
    describe(kElementText, "To [DIR]").expandsVariables = true;
    session.shownTexts["To [DIR]"] = "To /opt";
    elements.build(0, -1);
    EXPECT_EQ(shown(ControlKind::kText)->text, "To /opt");
    session.shownTexts["To [DIR]"] = "To /srv\r\n\x1B";
    elements.refresh();
    EXPECT_EQ(shown(ControlKind::kText)->text, "To /srv\n?");
}

TEST_F(PageElementsTest, WhatThePackageLacksIsNotThere) {
    session.resources["Empty"] = "";
    session.resources["Broken"] = "no picture";
    describe(kElementImage, "Missing");
    describe(kElementImage, "Empty");
    describe(kElementImage, "Broken");
    describe(kElementRichEditText, "Missing");
    describe(kElementHtmlEditText, "Empty");
    describe(kElementPlainEditText, "Missing");
    describe(kElementSlideShow, "3", "Slide");
    describe(kElementSlideShow, "3");
    describe(kElementSlideShow, "0", "Slide");
    elements.build(0, -1);
    EXPECT_TRUE(window.controls.empty());
}

TEST_F(PageElementsTest, DocumentsShowTheirContent) {
    session.resources["Markdown"] = "# Title\n";
    session.resources["Rich"] = "{\\rtf1 Hello}";
    session.resources["Page"] = "<body>Hello</body>";
    session.resources["Plain"] = "one\r\ntwo";
    describe(kElementRichEditText, "Rich");
    describe(kElementHtmlEditText, "Page");
    describe(kElementPlainEditText, "Plain");
    elements.build(0, -1);
    ASSERT_FALSE(shown(ControlKind::kRichText)->rich.empty());
    EXPECT_EQ(shown(ControlKind::kHtml)->html, "<body>Hello</body>");
    EXPECT_EQ(shown(ControlKind::kPlainText)->text, "one\ntwo");
}

TEST_F(PageElementsTest, ABrokenDocumentIsAnEmptyControl) {
    session.resources["Rich"] = "{\\rtf1 Hello";
    describe(kElementRichEditText, "Rich");
    elements.build(0, -1);
    ASSERT_NE(shown(ControlKind::kRichText), nullptr);
}

TEST_F(PageElementsTest, AFalseConditionHidesUntilItHolds) {
    describe(kElementText, "Text").condition.assign("shown");
    session.conditions["shown"] = 0;
    elements.build(0, -1);
    EXPECT_FALSE(shown(ControlKind::kText)->isShown);
    session.conditions["shown"] = 1;
    elements.refresh();
    EXPECT_TRUE(shown(ControlKind::kText)->isShown);
    session.conditions["shown"] = 0;
    elements.refresh();
    EXPECT_FALSE(shown(ControlKind::kText)->isShown);
}

TEST_F(PageElementsTest, APictureIsMadeWhenItIsFirstShown) {
    session.resources["Picture"] = rawPicture(10, 10, 7);
    describe(kElementImage, "Picture").condition.assign("shown");
    session.conditions["shown"] = 0;
    elements.build(0, -1);
    EXPECT_TRUE(window.controls.empty());
    session.conditions["shown"] = 1;
    elements.refresh();
    ASSERT_NE(shown(ControlKind::kPicture), nullptr);
    EXPECT_EQ(shown(ControlKind::kPicture)->picture, (Extent{10, 10}));
    EXPECT_EQ(shown(ControlKind::kPicture)->pixels.front(), 7);
    session.conditions["shown"] = 0;
    elements.refresh();
    EXPECT_FALSE(shown(ControlKind::kPicture)->isShown);
}

TEST_F(PageElementsTest, ASmallPictureIsAlignedInItsRectangle) {
    session.resources["Picture"] = rawPicture(10, 10, 7);
    DialogElementDesc& element = describe(kElementImage, "Picture");
    element.horizontalAlign = kAlignCenter;
    element.verticalAlign = kAlignCenter;
    elements.build(0, -1);
    EXPECT_EQ(shown(ControlKind::kPicture)->place, (Place{45, 20, 10, 10}));
}

TEST_F(PageElementsTest, APictureTakesFewerUnitsThanPixelsOnADenseScreen) {
    session.resources["Picture"] = rawPicture(10, 10, 7);
    pictures.setScale(1.0, 2.0);
    describe(kElementImage, "Picture");
    elements.build(0, -1);
    EXPECT_EQ(shown(ControlKind::kPicture)->picture, (Extent{20, 20}));
    EXPECT_EQ(shown(ControlKind::kPicture)->place, (Place{0, 0, 10, 10}));
}

TEST_F(PageElementsTest, ShowingThePageHonoursTheConditions) {
    describe(kElementText, "A");
    describe(kElementText, "B").condition.assign("no");
    session.conditions["no"] = 0;
    elements.build(0, -1);
    elements.showAll(false);
    EXPECT_FALSE(window.the(ControlKind::kText, "A").isShown);
    elements.showAll(true);
    EXPECT_TRUE(window.the(ControlKind::kText, "A").isShown);
    EXPECT_FALSE(window.the(ControlKind::kText, "B").isShown);
}

TEST_F(PageElementsTest, FindsByNameAndKind) {
    describe(kElementText, "A", "Same");
    describe(kElementProgress, "", "Same");
    elements.build(0, -1);
    EXPECT_EQ(elements.find("Same", {kElementProgress}), window.find(ControlKind::kProgressBar));
    EXPECT_EQ(elements.find("Same", {kElementText, kElementList}), window.find(ControlKind::kText));
    EXPECT_EQ(elements.find("same", {kElementText}), 0);
}

TEST_F(PageElementsTest, AKeptElementOutlivesItsPage) {
    describe(kElementText, "A", "A");
    describe(kElementText, "B", "B");
    describe(kElementText, "C", "C");
    elements.build(0, -1);
    PageElements kept(*this, pictures, tasks);
    auto element = elements.take("A");
    ASSERT_TRUE(element);
    kept.keep(std::move(*element));
    EXPECT_FALSE(elements.take("A"));
    elements.clear();
    EXPECT_EQ(window.controls.size(), 1U);
    EXPECT_EQ(kept.find("A", {kElementText}), window.find(ControlKind::kText, "A"));
}

TEST_F(PageElementsTest, TheLastElementCanBeTakenAsWell) {
    describe(kElementText, "A", "A");
    elements.build(0, -1);
    auto element = elements.take("A");
    ASSERT_TRUE(element);
    EXPECT_EQ(element->control, window.find(ControlKind::kText, "A"));
    EXPECT_EQ(element->description->text, "A");
}

TEST_F(PageElementsTest, ColoursComeWithATheme) {
    DialogElementDesc& element = describe(kElementText, "A");
    element.foregroundColour = 0x123456;
    elements.build(0, -1);
    EXPECT_EQ(shown(ControlKind::kText)->colours, ControlColours{});
    session.themed = true;
    elements.build(0, -1);
    EXPECT_EQ(shown(ControlKind::kText)->colours.foreground, 0x123456);
}

}  // namespace
