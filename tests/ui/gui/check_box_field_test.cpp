#include "ui/gui/check_box_field.h"

#include "ui/gui/page_fixture.h"

namespace {

class CheckBoxFieldTest : public PageTest {
protected:
    CheckBoxFieldTest() {
        description.type = kFieldCheckBox;
        description.variable.assign("OPTION");
        description.label.assign("Create a shortcut");
    }

    void make(const char* value) {
        session.variables["OPTION"] = value;
        field = std::make_unique<CheckBoxField>(*this, description);
        field->create();
        field->place(60);
        field->load();
    }
    RecordingToolkit::Control& box() { return window.the(ControlKind::kCheckBox); }
    void click() {
        box().isChecked = !box().isChecked;
        field->onActivate(window.find(ControlKind::kCheckBox));
    }

    DialogFieldDesc description;
    std::unique_ptr<CheckBoxField> field;
};

TEST_F(CheckBoxFieldTest, IsCheckedForEachValueButZero) {
    for (const auto& [value, checked] :
         std::map<const char*, bool>{{"1", true}, {"2", true}, {"", true}, {"0", false}}) {
        make(value);
        EXPECT_EQ(box().isChecked, checked) << value;
        field.reset();
    }
}

TEST_F(CheckBoxFieldTest, StoresOneOrZero) {
    make("2");
    field->store();
    EXPECT_EQ(session.variables["OPTION"], "1");
    box().isChecked = false;
    field->store();
    EXPECT_EQ(session.variables["OPTION"], "0");
}

TEST_F(CheckBoxFieldTest, AClickStoresAndTellsThePage) {
    make("0");
    click();
    EXPECT_EQ(session.variables["OPTION"], "1");
    EXPECT_EQ(choices, std::vector<ControlId>{window.find(ControlKind::kCheckBox)});
}

TEST_F(CheckBoxFieldTest, AClickThatChangesNothingIsKeptQuiet) {
    make("1");
    field->onActivate(window.find(ControlKind::kCheckBox));
    EXPECT_TRUE(choices.empty());
}

TEST_F(CheckBoxFieldTest, IsAsLargeAsItsCaptionUnlessTheDescriptionSaysMore) {
    make("0");
    EXPECT_EQ(box().place.width, 17 * RecordingToolkit::kCharacter + RecordingToolkit::kButtonHeight);
    EXPECT_EQ(field->place(0), 5 * 3 / 2 + RecordingToolkit::kButtonHeight);
    field.reset();
    description.width = 300;
    description.height = 40;
    fontScale = 2.0;
    make("0");
    EXPECT_EQ(box().place.width, 600);
    EXPECT_EQ(box().place.height, 80);
    EXPECT_EQ(field->place(0), 15 + 80);
}

TEST_F(CheckBoxFieldTest, WritesNothingWhileItIsHidden) {
    description.condition.assign("hidden");
    session.conditions["hidden"] = 0;
    make("2");
    field->store();
    EXPECT_EQ(session.variables["OPTION"], "2");
}

TEST_F(CheckBoxFieldTest, ExplainsItselfByItsToolTip) {
    description.description.assign("On the desktop");
    make("0");
    EXPECT_EQ(box().toolTip, "On the desktop");
}

}  // namespace
