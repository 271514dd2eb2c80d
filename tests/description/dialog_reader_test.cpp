#include "description/dialog_reader.h"

#include <gtest/gtest.h>

#include "description/colour_theme.h"
#include "description/pxml.h"
#include "log_lines.h"

namespace {

class DialogReaderTest : public testing::Test {
protected:
    bool read(const std::string& dialogs, bool uninstalling = false) {
        const std::string section = uninstalling ? "UninstallDialogs" : "Dialogs";
        return readWhole("<R><" + section + ">" + dialogs + "</" + section + "></R>", uninstalling);
    }
    bool readWhole(const std::string& text, bool uninstalling = false) {
        document_ = std::make_unique<PXML>();
        document_->parseText(text);
        return DialogReader(*document_, theme_, model_, log_.console()).readDialogs(uninstalling);
    }
    DialogDesc& page(int dialog = 0, int sub = -1) { return *model_.getDialog(dialog, sub); }
    // The only button of a dialog with this button.
    DialogButtonDesc button(const std::string& attributes) {
        EXPECT_TRUE(read("<D><Button x='1' y='2' " + attributes + ">b</Button></D>"));
        EXPECT_EQ(page().buttons.size(), 1U) << attributes;
        return page().buttons.empty() ? DialogButtonDesc() : page().buttons[0];
    }

    std::unique_ptr<PXML> document_;
    ColourTheme theme_;
    DialogModel model_;
    LogLines log_;
};

constexpr char kButton[] = "<Button x='1' y='1'>b</Button>";

TEST_F(DialogReaderTest, MissingSectionFails) {
    EXPECT_FALSE(readWhole("<R/>"));
    EXPECT_FALSE(readWhole("<R><Dialogs/></R>", true));
    EXPECT_FALSE(readWhole("<R><UninstallDialogs/></R>", false));
    EXPECT_FALSE(readWhole(""));
    EXPECT_TRUE(readWhole("<R><Dialogs/></R>"));
    EXPECT_EQ(model_.getDialogCount(), 0);
}

TEST_F(DialogReaderTest, CommonAttributesOfADialog) {
    theme_.setGroup("G", 5);
    read(
        std::string("<Welcome w='+10' h='x' BkgColour='e84d00' FgColour='group:G' Special='AutoNext;Busy' ") +
        "Condition='[A]' Retain='A;B'>" + kButton + "</Welcome><Next/>");
    ASSERT_EQ(model_.getDialogCount(), 2);
    EXPECT_STREQ(page().name.c_str(), "Welcome");
    EXPECT_EQ(document_->getName(page().node), "Welcome");
    EXPECT_EQ(page().width, 10);
    EXPECT_EQ(page().height, 0);
    EXPECT_EQ(page().backgroundColour, 0x004DE8);
    EXPECT_EQ(page().foregroundColour, 5);
    EXPECT_EQ(page().special, kDialogAutoNext | kDialogBusy);
    EXPECT_STREQ(page().conditionText.c_str(), "[A]");
    EXPECT_EQ(page().retain, (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(page().gate, nullptr);

    EXPECT_EQ(page(1).width, 760);
    EXPECT_EQ(page(1).height, 520);
    EXPECT_EQ(page(1).backgroundColour, -1);
    EXPECT_EQ(page(1).foregroundColour, -1);
    EXPECT_TRUE(page(1).retain.empty());
}

TEST_F(DialogReaderTest, OnlyATextMayShowValues) {
    read(
        "<D><Text x='1' y='2' ExpandVars=''>a</Text><Text x='1' y='2'>b</Text>"
        "<RichEditText x='1' y='2' ExpandVars='1'>c</RichEditText></D>");
    ASSERT_EQ(page().elements.size(), 4U) << "with the line of the furniture";
    EXPECT_TRUE(page().elements[0].expandsVariables);
    EXPECT_FALSE(page().elements[1].expandsVariables);
    EXPECT_FALSE(page().elements[2].expandsVariables);
}

TEST_F(DialogReaderTest, ElementsKeepTheirOrderAndNeedAPosition) {
    read(
        "<D><text x='1' y='2'>a\\nb\\n</text><Text x='1'>dropped</Text><Image y='1'>dropped</Image>"
        "<Image x='3' y='4' w='-5' h='6' Name='N' Condition='C' Details='size=18' HAlign='right' "
        "Format='TandrelMarkdown' "
        "VAlign='bottom' "
        "BkgColour='1' FgColour='2'>logo</Image><Unknown x='1' y='1'/></D>");
    ASSERT_EQ(page().elements.size(), 3U) << "two, and the line of the furniture";
    const DialogElementDesc& text = page().elements[0];
    EXPECT_EQ(text.kind, kElementText);
    EXPECT_EQ(text.text, "a\r\nb\r\n");
    EXPECT_EQ(text.width, 0);
    EXPECT_EQ(text.height, 0);
    EXPECT_EQ(text.horizontalAlign, 0);
    EXPECT_EQ(text.backgroundColour, -1);
    EXPECT_TRUE(text.name.isEmpty());
    const DialogElementDesc& image = page().elements[1];
    EXPECT_EQ(image.kind, kElementImage);
    EXPECT_EQ(image.x, 3);
    EXPECT_EQ(image.y, 4);
    EXPECT_EQ(image.width, -5);
    EXPECT_EQ(image.height, 6);
    EXPECT_STREQ(image.name.c_str(), "N");
    EXPECT_STREQ(image.condition.c_str(), "C");
    EXPECT_STREQ(image.details.c_str(), "size=18");
    EXPECT_STREQ(image.format.c_str(), "TandrelMarkdown");
    EXPECT_EQ(image.text, "logo");
    EXPECT_EQ(image.horizontalAlign, kAlignRight);
    EXPECT_EQ(image.verticalAlign, kAlignBottom);
    EXPECT_EQ(image.backgroundColour, 0x010000);
    EXPECT_EQ(image.foregroundColour, 0x020000);
    EXPECT_TRUE(log_.lines.empty());
}

TEST_F(DialogReaderTest, TextOfAnElementMayBeOfAnyLength) {
    const std::string text(1 << 20, 't');
    read("<D><Text x='1' y='1'>" + text + "</Text></D>");
    EXPECT_EQ(page().elements[0].text, text);
}

TEST_F(DialogReaderTest, FieldsWithAllTheirAttributes) {
    read(
        "<D><field Type='directory' Label='L' x='1' y='2' w='3' h='4' Content='a;b' Condition='C' "
        "Description='D' "
        "Enable='E' ValidationVariable='V' HAlign='center' VAlign='center' LabelColour='1' "
        "InputBkgColour='2' "
        "InputFgColour='3' ButtonBkgColour='4' ButtonFgColour='5' InvalidBkgColour='6' InvalidFgColour='7'>"
        "INSTALL_DIR</field><Field Type='Password'/></D>");
    ASSERT_EQ(page().fields.size(), 2U);
    const DialogFieldDesc& field = page().fields[0];
    EXPECT_EQ(field.type, kFieldDirectory);
    EXPECT_STREQ(field.label.c_str(), "L");
    EXPECT_STREQ(field.variable.c_str(), "INSTALL_DIR");
    EXPECT_EQ(field.x, 1);
    EXPECT_EQ(field.y, 2);
    EXPECT_EQ(field.width, 3);
    EXPECT_EQ(field.height, 4);
    EXPECT_STREQ(field.content.c_str(), "a;b");
    EXPECT_STREQ(field.condition.c_str(), "C");
    EXPECT_STREQ(field.description.c_str(), "D");
    EXPECT_STREQ(field.enable.c_str(), "E");
    EXPECT_STREQ(field.validationVariable.c_str(), "V");
    EXPECT_EQ(field.horizontalAlign, kAlignCenter);
    EXPECT_EQ(field.verticalAlign, kAlignCenter);
    const std::int32_t colours[] = {field.labelColour,      field.inputBackground,  field.inputForeground,
                                    field.buttonBackground, field.buttonForeground, field.invalidBackground,
                                    field.invalidForeground};
    for (std::int32_t i = 0; i < 7; ++i) {
        EXPECT_EQ(colours[i], (i + 1) << 16);
    }
    EXPECT_EQ(field.background, -1);
    const DialogFieldDesc& bare = page().fields[1];
    EXPECT_EQ(bare.type, kFieldPassword);
    EXPECT_EQ(bare.x, -1);
    EXPECT_EQ(bare.height, -1);
    EXPECT_EQ(bare.labelColour, -1);
    EXPECT_TRUE(bare.variable.isEmpty());
}

TEST_F(DialogReaderTest, FieldOfUnknownTypeIsDroppedAndLogged) {
    read("<D><Field Type='Date'>A</Field><Field>B</Field></D>");
    EXPECT_TRUE(page().fields.empty());
    EXPECT_EQ(log_.lines.size(), 2U);
}

TEST_F(DialogReaderTest, UninstallDialogsHaveNoFields) {
    EXPECT_TRUE(read("<D><Field Type='CheckBox'>A</Field><Text x='1' y='1'/></D>", true));
    EXPECT_TRUE(page().fields.empty());
    EXPECT_EQ(page().elements.size(), 2U);
}

TEST_F(DialogReaderTest, ButtonsNeedTextAndPosition) {
    read(
        "<D><Button x='1'>a</Button><Button y='1'>b</Button><Button x='1' y='1'/>"
        "<Button x='1' y='1'>  </Button><Button x='1' y='2'>c</Button></D>");
    ASSERT_EQ(page().buttons.size(), 1U);
    const DialogButtonDesc& button = page().buttons[0];
    EXPECT_STREQ(button.label.c_str(), "c");
    EXPECT_EQ(button.width, 80);
    EXPECT_EQ(button.height, 30);
    EXPECT_EQ(button.flags, 0U);
    EXPECT_EQ(button.shift, 0);
    EXPECT_EQ(button.backgroundColour, -1);
}

TEST_F(DialogReaderTest, ButtonAttributesAndFlags) {
    const DialogButtonDesc all = button(
        "Condition='C' EnableCondition='E' Action='' DialogShift='-2' LinkStyle='1' Disableable='1' "
        "Default='1' w='5' h='6' HAlign='RIGHT' VAlign='top' BkgColour='1' FgColour='2' "
        "ActiveBkgColour='3' ActiveFgColour='4'");
    EXPECT_STREQ(all.condition.c_str(), "C");
    EXPECT_STREQ(all.enableCondition.c_str(), "E");
    EXPECT_EQ(all.shift, -2);
    EXPECT_EQ(all.flags, 31U);
    EXPECT_EQ(all.width, 5);
    EXPECT_EQ(all.height, 6);
    EXPECT_EQ(all.horizontalAlign, kAlignRight);
    EXPECT_EQ(all.verticalAlign, kAlignTop);
    EXPECT_EQ(all.activeBackground, 0x030000);
    EXPECT_EQ(all.activeForeground, 0x040000);
    EXPECT_EQ(button("LinkStyle='2' Disableable='0' Default='x' DialogShift='0'").flags, 0U);
    EXPECT_EQ(button("HAlign='center' VAlign='center'").horizontalAlign, 0);
    EXPECT_EQ(button("HAlign='center' VAlign='center'").verticalAlign, 0);
}

TEST_F(DialogReaderTest, NameOfAButtonPresetsIt) {
    const DialogButtonDesc next = button("Name='Next'");
    EXPECT_EQ(next.shift, 1);
    EXPECT_EQ(next.flags, kButtonHasShift | kButtonDefault);
    EXPECT_STREQ(button("Name='Customize' Action='x'").action.c_str(), "[CUSTOMIZE]='1'");
}

TEST_F(DialogReaderTest, DialogsAheadOfTheFirstButtonGetTheFurniture) {
    read(std::string("<Welcome w='1' h='2'/><Files/><Last>") + kButton + "</Last><Behind/>");
    EXPECT_EQ(page(0).width, 500);
    EXPECT_EQ(page(0).height, 390);
    EXPECT_EQ(page(0).buttons.size(), 2U);
    EXPECT_EQ(page(1).buttons.size(), 3U);
    EXPECT_EQ(page(2).buttons.size(), 1U);
    EXPECT_EQ(page(3).buttons.size(), 0U);
    EXPECT_EQ(page(3).width, 760);
}

TEST_F(DialogReaderTest, ButtonsOfSubDialogsCount) {
    read(std::string("<F Special='HasSubDialogs'><TaskList><S/></TaskList><SubDialogs><S>") + kButton +
         "</S></SubDialogs></F>");
    EXPECT_TRUE(page().buttons.empty());
    EXPECT_EQ(page(0, 0).buttons.size(), 1U);
    EXPECT_TRUE(page(0, 0).elements.empty());
}

TEST_F(DialogReaderTest, SubDialogsComeInTheOrderOfTheTasks) {
    read(
        "<F Special='HasSubDialogs'>"
        "<TaskList><C CurrentLabel='1' FinishLabel='2' UnreachedLabel='3' ShowCondition='4' "
        "EnableCondition='5'/>"
        "<None/><A/></TaskList>"
        "<SubDialogs><A w='11'/><b/><C Special='Finish'><Trigger EvaluateOn='Set' "
        "Value=''/></C></SubDialogs></F>");
    ASSERT_EQ(page().tasks.size(), 3U);
    EXPECT_STREQ(page().tasks[0].name.c_str(), "C");
    EXPECT_STREQ(page().tasks[0].currentLabel.c_str(), "1");
    EXPECT_STREQ(page().tasks[0].finishLabel.c_str(), "2");
    EXPECT_STREQ(page().tasks[0].unreachedLabel.c_str(), "3");
    EXPECT_STREQ(page().tasks[0].showCondition.c_str(), "4");
    EXPECT_STREQ(page().tasks[0].enableCondition.c_str(), "5");
    EXPECT_EQ(page().tasks[0].state, 0);
    EXPECT_STREQ(page().tasks[1].name.c_str(), "None") << "a task without a sub-dialog is shown all the same";
    ASSERT_EQ(page().subDialogs.size(), 2U);
    EXPECT_STREQ(page(0, 0).name.c_str(), "C");
    EXPECT_EQ(page(0, 0).special, kDialogFinish);
    EXPECT_EQ(page(0, 0).triggers.size(), 1U);
    EXPECT_STREQ(page(0, 1).name.c_str(), "A");
    EXPECT_EQ(page(0, 1).width, 11);
}

TEST_F(DialogReaderTest, MissingPartsOfSubDialogsFail) {
    EXPECT_FALSE(read("<First/><F Special='HasSubDialogs'><SubDialogs/></F><Behind/>"));
    EXPECT_EQ(log_.lines, (std::vector<std::string>{"ERROR: Could NOT find <TaskList> tag! (parent: F)"}));
    EXPECT_EQ(model_.getDialogCount(), 1);
    log_.lines.clear();
    EXPECT_FALSE(read("<F Special='HasSubDialogs'><TaskList/></F>"));
    EXPECT_EQ(log_.lines, (std::vector<std::string>{"ERROR: Could NOT find <SubDialogs> tag! (parent: F)"}));
    EXPECT_TRUE(read("<F><TaskList><A/></TaskList></F>")) << "only a frame looks for them";
    EXPECT_TRUE(page().tasks.empty());
}

TEST_F(DialogReaderTest, TriggersAreReadInOrder) {
    read(
        "<D><Trigger EvaluateOn='Start;End' Type='FileCheck' Variable='V' Value='X' Condition='C'/>"
        "<trigger EvaluateOn='Dynamic' Type='VarReset' Variable='W'/>"
        "<Trigger EvaluateOn='DlgEval' Value='1'/></D>");
    ASSERT_EQ(page().triggers.size(), 3U);
    EXPECT_EQ(page().triggers[0].when, kTriggerOnStart | kTriggerOnEnd);
    EXPECT_EQ(page().triggers[0].type, kTriggerFileCheck);
    EXPECT_STREQ(page().triggers[0].variable.c_str(), "V");
    EXPECT_STREQ(page().triggers[0].value.c_str(), "X");
    EXPECT_STREQ(page().triggers[0].condition.c_str(), "C");
    EXPECT_EQ(page().triggers[1].type, kTriggerVarReset);
    EXPECT_EQ(page().triggers[2].type, kTriggerVarChange);
    EXPECT_TRUE(log_.lines.empty());
}

TEST_F(DialogReaderTest, TriggerWithoutMomentOrValueIsDropped) {
    read(
        "<D><Trigger Type='VarChange' Value='1'/><Trigger EvaluateOn='Set'/>"
        "<Trigger EvaluateOn='Set' Type='RunActions'/><Trigger EvaluateOn='Set' "
        "Type='VarRecalculation'/></D>");
    EXPECT_EQ(page().triggers.size(), 1U);
    const std::string warning =
        "WARNING: Extracted a trigger with no type nor specified value (Parent dlg name: D)";
    EXPECT_EQ(log_.lines, std::vector<std::string>(3, warning));
}

TEST_F(DialogReaderTest, UnknownTriggerTypeIsLoggedAndChangesAVariable) {
    read("<D><Trigger EvaluateOn='Set' Type='Odd' Value='1'/></D>");
    ASSERT_EQ(page().triggers.size(), 1U);
    EXPECT_EQ(page().triggers[0].type, kTriggerVarChange);
    EXPECT_EQ(log_.lines,
              (std::vector<std::string>{"WARNING: Unrecognized trigger type = Odd (Parent dlg name: D)"}));
}

TEST_F(DialogReaderTest, TextsAreCutAtTheirCapacities) {
    const std::string t(2000, 't');
    read("<" + t + " Condition='" + t + "'><Text x='1' y='1' Name='" + t + "' Details='" + t +
         "'/><Field Type='EditBox' Label='" + t + "' Content='" + t + "'>" + t +
         "</Field><Button x='1' y='1' Action='" + t + "'>" + t +
         "</Button><Trigger EvaluateOn='Set' Variable='" + t + "' Value='" + t + "' Condition='" + t +
         "'/></D>");
    EXPECT_EQ(page().name.view().size(), 199U);
    EXPECT_EQ(page().conditionText.view().size(), 511U);
    EXPECT_EQ(page().elements[0].name.view().size(), 199U);
    EXPECT_EQ(page().elements[0].details.view().size(), 511U);
    EXPECT_EQ(page().fields[0].label.view().size(), 199U);
    EXPECT_EQ(page().fields[0].variable.view().size(), 199U);
    EXPECT_EQ(page().fields[0].content.view().size(), 511U);
    EXPECT_EQ(page().buttons[0].label.view().size(), 199U);
    EXPECT_EQ(page().buttons[0].action.view().size(), 511U);
    EXPECT_EQ(page().triggers[0].variable.view().size(), 1023U);
    EXPECT_EQ(page().triggers[0].value.view().size(), 1023U);
    EXPECT_EQ(page().triggers[0].condition.view().size(), 511U);
}

TEST_F(DialogReaderTest, ReadingAgainStartsAnew) {
    read("<A/><B/>");
    read("<C/>");
    EXPECT_EQ(model_.getDialogCount(), 1);
}

TEST_F(DialogReaderTest, LogsNothingWithoutATarget) {
    log_.detach();
    EXPECT_TRUE(read("<D><Field/><Trigger Type='Odd'/></D>"));
    EXPECT_FALSE(read("<F Special='HasSubDialogs'><TaskList/></F>"));
    EXPECT_FALSE(read("<F Special='HasSubDialogs'/>"));
}

TEST_F(DialogReaderTest, ManyDialogsWithManyPartsAreRead) {
    std::string dialogs;
    for (int i = 0; i < 1000; ++i) {
        dialogs += "<D>";
        for (int j = 0; j < 20; ++j) {
            dialogs += "<Text x='1' y='1'>t</Text><Field Type='EditBox'>V</Field>";
        }
        dialogs += "</D>";
    }
    EXPECT_TRUE(read(dialogs));
    EXPECT_EQ(model_.getDialogCount(), 1000);
    EXPECT_EQ(model_.getFieldCount(999, -1), 20);
}

}  // namespace
