#include "ui/gui/gui_page.h"

#include "platform/memory/memory_file_system.h"
#include "ui/gui/page_fixture.h"
#include "ui/gui/page_pictures.h"
#include "ui/gui/task_list.h"

namespace {

class GuiPageTest : public PageTest {
public:
    GuiPageTest() { session.addDialog("Page"); }

    DialogFieldDesc& describe(const char* variable) {
        auto& list = session.dialogs[0].fields;
        list.emplace_back();
        list.back().type = kFieldEditBox;
        list.back().variable.assign(variable);
        list.back().label.assign(variable);
        return list.back();
    }
    int boxY(const char* variable) { return window.the(ControlKind::kTextBox, variable).place.y; }

    static constexpr int kStep = RecordingToolkit::kBoxHeight + 5;
    MemoryFileSystem files;
    PagePictures pictures{session, files, [] { return 0U; }, {}};
    TaskList tasks{*this, pictures};
    GuiPage page{*this, pictures, tasks};
};

TEST_F(GuiPageTest, StacksFieldsWithoutAHeightFromTheFirstLine) {
    describe("A");
    describe("B");
    page.build(0, -1);
    EXPECT_EQ(boxY("A"), 60);
    EXPECT_EQ(boxY("B"), 60 + kStep);
}

TEST_F(GuiPageTest, AHiddenFieldLeavesNoHole) {
    describe("A");
    describe("B").condition.assign("no");
    describe("C");
    session.conditions["no"] = 0;
    page.build(0, -1);
    EXPECT_EQ(boxY("C"), 60 + kStep);
}

TEST_F(GuiPageTest, AFieldWithAHeightMovesThoseBelowIt) {
    describe("A").y = 200;
    describe("B");
    DialogFieldDesc& bottom = describe("C");
    bottom.y = 100;
    bottom.verticalAlign = kAlignBottom;
    page.build(0, -1);
    EXPECT_EQ(boxY("A"), 200);
    EXPECT_EQ(boxY("B"), 200 + kStep);
    EXPECT_EQ(boxY("C"), 500);
}

TEST_F(GuiPageTest, TabGoesThroughButtonsElementsAndFields) {
    describe("A");
    session.dialogs[0].elements.emplace_back();
    session.dialogs[0].elements.back().kind = kElementText;
    session.dialogs[0].buttons.emplace_back();
    session.dialogs[0].buttons.back().label.assign("Next");
    page.build(0, -1);
    std::vector<ControlKind> kinds;
    for (const auto& [id, control] : window.controls) {
        kinds.push_back(control.kind);
    }
    EXPECT_EQ(kinds, (std::vector<ControlKind>{ControlKind::kButton, ControlKind::kText, ControlKind::kLabel,
                                               ControlKind::kTextBox}));
}

TEST_F(GuiPageTest, FillsTheFieldsAndStoresWhatChanged) {
    describe("A");
    session.variables["A"] = "value";
    page.build(0, -1);
    EXPECT_EQ(window.the(ControlKind::kTextBox).text, "value");
    session.variables["A"] = "other";
    page.loadFields();
    EXPECT_EQ(window.the(ControlKind::kTextBox).text, "other");
    page.storeFields();
    EXPECT_EQ(session.variables["A"], "other");
}

TEST_F(GuiPageTest, TellsItsVariableWhetherAFieldIsValid) {
    describe("A").validationVariable.assign("A_VALID");
    describe("B").validationVariable.assign("B_VALID");
    session.variables = {{"A", "x"}, {"B", " "}};
    page.build(0, -1);
    EXPECT_FALSE(page.validateFields());
    EXPECT_EQ(session.variables["A_VALID"], "1");
    EXPECT_EQ(session.variables["B_VALID"], "0");
}

TEST_F(GuiPageTest, AHiddenFieldNeverBlocks) {
    describe("A").condition.assign("no");
    session.conditions["no"] = 0;
    page.build(0, -1);
    EXPECT_TRUE(page.validateFields());
}

TEST_F(GuiPageTest, KnowsTheFieldOfAControl) {
    describe("A");
    page.build(0, -1);
    const DialogField* field = page.fieldOf(window.find(ControlKind::kTextBox));
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->description().variable.view(), "A");
    EXPECT_EQ(page.fieldOf(99), nullptr);
}

TEST_F(GuiPageTest, AnUnknownFieldIsLeftOut) {
    describe("A").type = 0;
    describe("B");
    page.build(0, -1);
    EXPECT_EQ(boxY("B"), 60);
}

TEST_F(GuiPageTest, LeavesNothingBehind) {
    describe("A");
    page.build(0, -1);
    page.clear();
    EXPECT_TRUE(window.controls.empty());
}

}  // namespace
