#include "ui/refresh_flags.h"

#include <gtest/gtest.h>

#include "contracts/installer_ui.h"
#include "description/dialog_model.h"

namespace {

struct RefreshFlags : testing::Test {
    DialogModel dialogs;

    RefreshFlags() { dialogs.add(DialogDesc()); }

    DialogDesc& page() { return dialogs.getDialogs()[0]; }
    DialogDesc& sub() {
        page().special = kDialogHasSubDialogs;
        page().subDialogs.resize(1);
        return page().subDialogs[0];
    }
    static void addField(DialogDesc& to, const char* condition, const char* validation = "") {
        to.fields.emplace_back();
        to.fields.back().condition.assign(condition);
        to.fields.back().validationVariable.assign(validation);
    }
    static void addElement(DialogDesc& to, const char* condition) {
        to.elements.emplace_back();
        to.elements.back().condition.assign(condition);
    }
    static void addButton(DialogDesc& to, const char* condition) {
        to.buttons.emplace_back();
        to.buttons.back().enableCondition.assign(condition);
    }
    static void addTask(DialogDesc& to, const char* condition) {
        to.tasks.emplace_back();
        to.tasks.back().enableCondition.assign(condition);
    }
    std::uint32_t flags(std::string_view variable, int dialog = 0, int subDialog = -1) {
        return getRefreshFlags(dialogs, variable, dialog, subDialog);
    }
};

TEST_F(RefreshFlags, GivesNoneForWhatIsNotThere) {
    addField(page(), "[VAR]");
    EXPECT_EQ(flags("VAR", 1), 0U);
    EXPECT_EQ(flags("VAR", -1), 0U);
    EXPECT_EQ(flags("VAR"), kRefreshFields);
}

TEST_F(RefreshFlags, GivesElementsForAnyVariableWhereATextShowsOne) {
    addElement(page(), "");
    page().elements[0].text = "To [DIR]";
    EXPECT_EQ(flags("DIR"), 0U);
    page().elements[0].expandsVariables = true;
    EXPECT_EQ(flags("DIR"), kRefreshElements);
    EXPECT_EQ(flags("OTHER"), kRefreshElements);
    page().elements[0].text = "Nothing";
    EXPECT_EQ(flags("DIR"), 0U);
}

TEST_F(RefreshFlags, DistinguishesFieldsElementsButtonsAndTasks) {
    addField(page(), "[F]==1");
    addElement(page(), "[E]==1");
    addButton(page(), "[B]==1");
    addTask(page(), "[T]==1");
    EXPECT_EQ(flags("F"), kRefreshFields);
    EXPECT_EQ(flags("E"), kRefreshElements);
    EXPECT_EQ(flags("B"), kRefreshButtons);
    EXPECT_EQ(flags("T"), kRefreshTasks);
    EXPECT_EQ(flags("X"), 0U);
    EXPECT_EQ(flags("==1"), kRefreshFields | kRefreshElements | kRefreshButtons | kRefreshTasks);
}

TEST_F(RefreshFlags, LooksAtEachFieldElementButtonAndTask) {
    for (const char* condition : {"[A]", "", "[VAR]"}) {
        addField(page(), condition);
        addElement(page(), condition);
        addButton(page(), condition);
        addTask(page(), condition);
    }
    EXPECT_EQ(flags("VAR"), kRefreshFields | kRefreshElements | kRefreshButtons | kRefreshTasks);
}

TEST_F(RefreshFlags, ComparesWithCaseAndFindsPartsOfLongerNames) {
    addElement(page(), "[MY_VARIABLE]");
    EXPECT_EQ(flags("VAR"), kRefreshElements);
    EXPECT_EQ(flags("var"), 0U);
}

TEST_F(RefreshFlags, FollowsTheValidationOfEveryFieldIntoElements) {
    addField(page(), "", "VALID_A");
    addField(page(), "", "");
    addField(page(), "", "VALID_B");
    addElement(page(), "[VALID_B]==0");
    addButton(page(), "[VALID_A]==0");
    EXPECT_EQ(flags("OTHER"), kRefreshElements);
}

TEST_F(RefreshFlags, FindsNamesOfAnyLengthAtAnyPlace) {
    addField(page(), "", "AB");
    addField(page(), "", "xyz");
    for (const char* condition : {"AB", "--AB", "ABxy", "--xyz--"}) {
        page().elements.clear();
        addElement(page(), condition);
        EXPECT_EQ(flags("OTHER"), kRefreshElements) << condition;
    }
    for (const char* condition : {"Ab xy", "A", ""}) {
        page().elements.clear();
        addElement(page(), condition);
        EXPECT_EQ(flags("OTHER"), 0U) << condition;
    }
}

TEST_F(RefreshFlags, FindsAnEmptyNameInEveryCondition) {
    addElement(page(), "x");
    addButton(page(), "");
    EXPECT_EQ(flags(""), kRefreshElements);
}

TEST_F(RefreshFlags, DoesNotTakeAnEmptyValidationForAName) {
    addField(page(), "", "");
    addElement(page(), "[X]");
    EXPECT_EQ(flags("OTHER"), 0U);
}

TEST_F(RefreshFlags, LooksAtTheSubDialogButAtTheTasksOfItsFrame) {
    addField(sub(), "[VAR]");
    addTask(sub(), "[TASK]");
    addTask(page(), "[VAR]");
    addElement(page(), "[VAR]");
    EXPECT_EQ(flags("VAR", 0, 0), kRefreshFields | kRefreshTasks);
    EXPECT_EQ(flags("TASK", 0, 0), 0U);
}

TEST_F(RefreshFlags, LooksAtTheDialogForASubDialogThatIsNotThere) {
    addField(sub(), "[VAR]");
    addElement(page(), "[VAR]");
    EXPECT_EQ(flags("VAR", 0, 1), kRefreshElements);
    EXPECT_EQ(flags("VAR", 0, -1), kRefreshElements);
    page().special = 0;
    EXPECT_EQ(flags("VAR", 0, 0), kRefreshElements);
}

TEST_F(RefreshFlags, FindsNamesAmongManyFieldsAndElements) {
    for (int i = 0; i < 10000; ++i) {
        addField(page(), "", ("VALID_" + std::to_string(i) + "_X").c_str());
        addElement(page(), ("[OTHER_" + std::to_string(i) + "]==1").c_str());
    }
    EXPECT_EQ(flags("VAR"), 0U);
    addElement(page(), "[VALID_9999_X]");
    EXPECT_EQ(flags("VAR"), kRefreshElements);
}

}  // namespace
