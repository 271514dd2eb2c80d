#include "ui/gui/install_parameter_field.h"

#include "platform/written_path.h"
#include "ui/gui/page_fixture.h"

namespace {

class InstallParameterFieldTest : public PageTest {
protected:
    InstallParameterFieldTest() {
        description.type = kFieldInstallParameter;
        description.variable.assign("VALUE");
        description.label.assign("Name");
        description.x = 0;
        description.width = 500;
    }

    std::string shown(const char* content, const char* held, const char* explanation = "") {
        description.content.assign(content);
        description.description.assign(explanation);
        session.variables["VALUE"] = held;
        field = std::make_unique<InstallParameterField>(*this, description);
        field->create();
        field->place(60);
        field->load();
        name = window.find(ControlKind::kLabel, "Name");
        value = name + 1;
        return window.at(value).text;
    }

    DialogFieldDesc description;
    std::unique_ptr<InstallParameterField> field;
    ControlId name = 0;
    ControlId value = 0;
};

TEST_F(InstallParameterFieldTest, ShowsADirectoryAsTheSystemWritesIt) {
    EXPECT_EQ(shown("directory", "\\opt\\product\\"), platform::writtenPath("\\opt\\product"));
}

TEST_F(InstallParameterFieldTest, AScreenReaderSaysTheValue) {
    shown("EditBox", "something");
    EXPECT_EQ(window.at(value).name, "");
    EXPECT_EQ(window.at(value).label, 0);
}

TEST_F(InstallParameterFieldTest, ShowsACheckBoxAsYesOrNo) {
    EXPECT_EQ(shown("CheckBox", "1"), "Yes");
    EXPECT_EQ(shown("CheckBox", "2"), "Yes");
    EXPECT_EQ(shown("CheckBox", "0"), "No");
    EXPECT_EQ(shown("CheckBox", ""), "No");
}

TEST_F(InstallParameterFieldTest, ShowsTheChosenItemOfAList) {
    EXPECT_EQ(shown("RadioButtons", "0", "Small;Usual;All"), "Small");
    EXPECT_EQ(shown("RadioButtons", "2", "Small;Usual;All"), "All");
}

TEST_F(InstallParameterFieldTest, ShowsNothingForAValueBeyondTheList) {
    EXPECT_EQ(shown("RadioButtons", "3", "Small;Usual;All"), "");
}

TEST_F(InstallParameterFieldTest, ShowsNoItemWhenNothingWasChosen) {
    EXPECT_EQ(shown("RadioButtons", "", "Small;Usual;All"), "Error reading parameter!");
}

TEST_F(InstallParameterFieldTest, ShowsInformationAsItStands) {
    EXPECT_EQ(shown("Info", "ignored", "About 20 MB"), "About 20 MB");
}

TEST_F(InstallParameterFieldTest, ShowsATextAsItIs) {
    EXPECT_EQ(shown("EditBox", "some text"), "some text");
}

TEST_F(InstallParameterFieldTest, SaysThatItCantReadAParameterOfAnUnknownKind) {
    EXPECT_EQ(shown("Slider", "1"), "Error reading parameter!");
    EXPECT_EQ(shown("", "1"), "Error reading parameter!");
}

TEST_F(InstallParameterFieldTest, ExplainsTheNameOfChoicesOnly) {
    shown("EditBox", "x", "  Two   words ");
    EXPECT_EQ(window.at(name).toolTip, "Two words");
    field.reset();
    shown("Info", "x", "Text");
    EXPECT_EQ(window.at(name).toolTip, "");
}

TEST_F(InstallParameterFieldTest, SharesItsWidthBetweenNameAndValue) {
    shown("EditBox", "x");
    EXPECT_EQ(window.at(name).place, (Place{0, 60, 200, 13}));
    EXPECT_EQ(window.at(value).place, (Place{205, 60, 295, 13}));
    EXPECT_EQ(field->place(0), 13 + 5);
}

TEST_F(InstallParameterFieldTest, ShortensAValueThatDoesNotFitAndExplainsItInWhole) {
    description.width = 200;  // 115 for the value, 23 characters
    const std::string text = "a value that is much too long";
    EXPECT_EQ(shown("EditBox", text.c_str()), text.substr(0, 20) + "...");
    EXPECT_EQ(window.at(value).toolTip, text);
}

TEST_F(InstallParameterFieldTest, CutsBetweenCharacters) {
    EXPECT_EQ(shortenedText(window, "\xC3\xA4\xC3\xB6\xC3\xBC", 5 * 5), "\xC3\xA4...");
    EXPECT_EQ(shortenedText(window, "abcdef", 1), "...");
    EXPECT_EQ(shortenedText(window, "abc", 15), "abc");
}

TEST_F(InstallParameterFieldTest, OnlyAnEmptyDirectoryIsInvalid) {
    shown("Directory", "");
    EXPECT_FALSE(field->validate());
    field.reset();
    shown("EditBox", "");
    EXPECT_TRUE(field->validate());
    field.reset();
    description.condition.assign("hidden");
    session.conditions["hidden"] = 0;
    shown("Directory", "");
    EXPECT_TRUE(field->validate());
}

}  // namespace
