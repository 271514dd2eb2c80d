#include "ui/gui/radio_buttons_field.h"

#include "ui/gui/page_fixture.h"

namespace {

class RadioButtonsFieldTest : public PageTest {
protected:
    RadioButtonsFieldTest() {
        description.type = kFieldRadioButtons;
        description.variable.assign("KIND");
        description.label.assign("Kind");
        description.content.assign("Small;Usual;All");
    }

    void make(const char* value) {
        session.variables["KIND"] = value;
        field = std::make_unique<RadioButtonsField>(*this, description);
        field->create();
        field->place(100);
        field->load();
    }
    RecordingToolkit::Control& button(const char* caption) {
        return window.the(ControlKind::kRadioButton, caption);
    }
    std::string chosen() {
        std::string captions;
        for (const auto& [id, control] : window.controls) {
            captions += control.isChecked ? control.text : "";
        }
        return captions;
    }
    void choose(const char* caption) {
        const ControlId control = window.find(ControlKind::kRadioButton, caption);
        window.setChecked(control, true);
        field->onActivate(control);
    }

    DialogFieldDesc description;
    std::unique_ptr<RadioButtonsField> field;
};

TEST_F(RadioButtonsFieldTest, PutsTheButtonsBelowTheLabel) {
    make("0");
    constexpr int kStep = RecordingToolkit::kButtonHeight + 5;
    EXPECT_EQ(window.the(ControlKind::kLabel).place.y, 105);
    EXPECT_EQ(button("Small").place.x, 25);
    EXPECT_EQ(button("Small").place.y, 105 + 13 + 5);
    EXPECT_EQ(button("All").place.y, 105 + 13 + 5 + 2 * kStep);
    EXPECT_EQ(field->place(0), 5 + 13 + 5 + 3 * kStep);
}

TEST_F(RadioButtonsFieldTest, TheFirstButtonStartsTheGroup) {
    make("0");
    EXPECT_TRUE(button("Small").startsGroup);
    EXPECT_FALSE(button("Usual").startsGroup);
}

TEST_F(RadioButtonsFieldTest, ChoosesTheButtonWithTheNumberOfTheValue) {
    make("1");
    EXPECT_EQ(chosen(), "Usual");
}

TEST_F(RadioButtonsFieldTest, ChoosesNoneForANumberThatNoButtonHas) {
    for (const char* value : {"-1", "3", "99"}) {
        make(value);
        EXPECT_EQ(chosen(), "") << value;
        field->store();
        EXPECT_EQ(session.variables["KIND"], "-1");
        field.reset();
    }
}

TEST_F(RadioButtonsFieldTest, StoresTheNumberAndTellsThePage) {
    make("0");
    choose("All");
    EXPECT_EQ(session.variables["KIND"], "2");
    EXPECT_EQ(choices, std::vector<ControlId>{window.find(ControlKind::kRadioButton, "All")});
}

TEST_F(RadioButtonsFieldTest, AChoiceThatIsNoChangeOrHasNoVariableIsKeptQuiet) {
    make("2");
    choose("All");
    session.variables.clear();
    choose("Small");
    EXPECT_TRUE(choices.empty());
    EXPECT_TRUE(session.variables.empty());
}

TEST_F(RadioButtonsFieldTest, AButtonWithAFalseConditionStaysDisabledWhenTheFieldComesBack) {
    description.enable.assign("yes|no");
    description.condition.assign("shown");
    session.conditions["no"] = 0;
    make("0");
    EXPECT_TRUE(button("Small").isEnabled);
    EXPECT_FALSE(button("Usual").isEnabled);
    EXPECT_TRUE(button("All").isEnabled);
    session.conditions["shown"] = 0;
    field->place(100);
    EXPECT_FALSE(button("Small").isEnabled);
    EXPECT_FALSE(button("Small").isShown);
    session.conditions["shown"] = 1;
    field->place(100);
    EXPECT_TRUE(button("Small").isEnabled);
    EXPECT_FALSE(button("Usual").isEnabled);
}

TEST_F(RadioButtonsFieldTest, EachButtonHasItsPieceOfTheExplanation) {
    description.description.assign("Little;Most");
    make("0");
    EXPECT_EQ(button("Small").toolTip, "Little");
    EXPECT_EQ(button("Usual").toolTip, "Most");
    EXPECT_EQ(button("All").toolTip, "");
}

TEST_F(RadioButtonsFieldTest, AScreenReaderSaysTheLabelAndTheCaption) {
    make("0");
    EXPECT_EQ(button("Small").name, "Kind: Small");
    EXPECT_EQ(button("All").name, "Kind: All");
    EXPECT_EQ(button("All").label, 0);
    description.label.assign("");
    make("0");
    EXPECT_EQ(button("Small").name, "Small");
}

TEST_F(RadioButtonsFieldTest, HasNoButtonsWithoutItems) {
    description.content.assign("");
    make("0");
    EXPECT_EQ(window.controls.size(), 1U);
}

}  // namespace
