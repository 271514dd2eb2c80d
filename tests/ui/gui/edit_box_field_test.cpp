#include "ui/gui/edit_box_field.h"

#include "ui/gui/page_fixture.h"

namespace {

class EditBoxFieldTest : public PageTest {
protected:
    EditBoxFieldTest() {
        description.type = kFieldEditBox;
        description.variable.assign("NAME");
        description.label.assign("Your name");
        description.x = 100;
        description.width = 500;
        session.variables["NAME"] = "Ann";
    }

    void make(bool password = false) {
        field = password ? std::make_unique<PasswordField>(*this, description)
                         : std::make_unique<EditBoxField>(*this, description);
        field->create();
        field->place(60);
        field->load();
    }
    RecordingToolkit::Control& box() { return window.the(ControlKind::kTextBox); }
    RecordingToolkit::Control& label() { return window.the(ControlKind::kLabel); }
    void type(std::string_view text) {
        window.at(window.find(ControlKind::kTextBox)).text = text;
        field->onText();
    }

    DialogFieldDesc description;
    std::unique_ptr<EditBoxField> field;
};

TEST_F(EditBoxFieldTest, GivesTwoFifthsToTheLabelAndTheRestToTheBox) {
    make();
    EXPECT_EQ(label().place, (Place{100, 64, 200, 13}));
    EXPECT_EQ(box().place, (Place{305, 60, 290, 21}));
}

TEST_F(EditBoxFieldTest, StepsByTheTallerPartAndAGap) {
    description.condition.assign("shown");
    field = std::make_unique<EditBoxField>(*this, description);
    field->create();
    EXPECT_EQ(field->place(60), 60 + 21 + 5);
}

TEST_F(EditBoxFieldTest, ScalesItsPlaceAndItsGaps) {
    fontScale = 1.5;
    make();
    EXPECT_EQ(label().place.x, 150);
    EXPECT_EQ(label().place.width, 300);
    EXPECT_EQ(box().place, (Place{150 + 300 + 7, 60, 450 - 14, 21}));
}

TEST_F(EditBoxFieldTest, ReachesToTheMarginWithoutAWidth) {
    description.x = -1;
    description.width = 0;
    make();
    EXPECT_EQ(label().place.x, 20);
    EXPECT_EQ(label().place.width, 760 * 2 / 5);
}

TEST_F(EditBoxFieldTest, CountsFromTheRightEdgeWhenItIsAlignedThere) {
    description.horizontalAlign = kAlignRight;
    description.x = 600;
    make();
    EXPECT_EQ(label().place.x, 200);
}

TEST_F(EditBoxFieldTest, ShowsTheValueAndTheExplanation) {
    description.description.assign("As on the invoice");
    make();
    EXPECT_EQ(box().text, "Ann");
    EXPECT_EQ(label().toolTip, "As on the invoice");
    EXPECT_EQ(box().label, window.find(ControlKind::kLabel));
    EXPECT_TRUE(box().isShown);
}

TEST_F(EditBoxFieldTest, StoresWhatTheUserTypesWithoutSurroundingSpace) {
    make();
    type("  Bob \t");
    EXPECT_EQ(session.variables["NAME"], "Bob");
    EXPECT_EQ(box().text, "  Bob \t");
    EXPECT_EQ(textChanges, 1);
}

TEST_F(EditBoxFieldTest, StoresNothingThatTheUserDidNotChange) {
    session.variables["NAME"] = " Ann ";
    make();
    field->store();
    EXPECT_EQ(session.variables["NAME"], " Ann ");
}

TEST_F(EditBoxFieldTest, LoadingLeavesTheBoxThatHasTheFocus) {
    make();
    window.focus = window.find(ControlKind::kTextBox);
    session.variables["NAME"] = "Other";
    field->load();
    EXPECT_EQ(box().text, "Ann");
    window.focus = 0;
    field->load();
    EXPECT_EQ(box().text, "Other");
}

TEST_F(EditBoxFieldTest, LoadingAMissingVariableLeavesTheBox) {
    make();
    session.variables.clear();
    field->load();
    EXPECT_EQ(box().text, "Ann");
}

TEST_F(EditBoxFieldTest, IsInvalidWhenItHoldsWhiteSpaceAlone) {
    make();
    type(" \t ");
    EXPECT_FALSE(field->validate());
    type("x");
    EXPECT_TRUE(field->validate());
}

TEST_F(EditBoxFieldTest, IsValidAndWritesNothingWhileItIsHidden) {
    description.condition.assign("hidden");
    session.conditions["hidden"] = 0;
    session.variables["NAME"] = "";
    make();
    EXPECT_FALSE(box().isShown);
    EXPECT_FALSE(label().isShown);
    EXPECT_TRUE(field->validate());
    box().text = "new";
    field->onText();
    EXPECT_EQ(session.variables["NAME"], "");
}

TEST_F(EditBoxFieldTest, TakesNoRoomWhileItIsHidden) {
    description.condition.assign("hidden");
    session.conditions["hidden"] = 0;
    make();
    EXPECT_EQ(field->place(60), 60);
}

TEST_F(EditBoxFieldTest, ShowsByItsColoursWhetherItIsValid) {
    session.themed = true;
    description.inputForeground = 1;
    description.inputBackground = 2;
    description.invalidForeground = 3;
    description.invalidBackground = 4;
    description.labelColour = 5;
    make();
    EXPECT_EQ(box().colours, (ControlColours{1, 2, -1, -1}));
    EXPECT_EQ(label().colours.foreground, 5);
    box().text = "";
    field->validate();
    EXPECT_EQ(box().colours, (ControlColours{3, 4, -1, -1}));
}

TEST_F(EditBoxFieldTest, LeavesTheColoursToTheToolkitWithoutATheme) {
    description.inputBackground = 2;
    description.labelColour = 5;
    make();
    EXPECT_EQ(box().colours, ControlColours{});
    EXPECT_EQ(label().colours, ControlColours{});
}

TEST_F(EditBoxFieldTest, CutsTheFirstValueAtItsCapacity) {
    session.variables["NAME"] = std::string(600, 'a');
    field = std::make_unique<EditBoxField>(*this, description);
    field->create();
    EXPECT_EQ(box().text.size(), 511U);
    field->place(60);
    field->load();
    EXPECT_EQ(box().text.size(), 600U);
}

TEST_F(EditBoxFieldTest, TakesItsControlsOffThePage) {
    make();
    field.reset();
    EXPECT_TRUE(window.controls.empty());
}

TEST_F(EditBoxFieldTest, APasswordKeepsItsSpacesAndMustNotBeEmpty) {
    description.type = kFieldPassword;
    make(true);
    const ControlId password = window.find(ControlKind::kPasswordBox);
    window.at(password).text = " pass ";
    field->onText();
    EXPECT_EQ(session.variables["NAME"], " pass ");
    EXPECT_TRUE(field->validate());
    window.at(password).text = " ";
    EXPECT_TRUE(field->validate());
    window.at(password).text = "";
    EXPECT_FALSE(field->validate());
}

}  // namespace
