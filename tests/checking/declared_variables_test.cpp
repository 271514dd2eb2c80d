#include "checking/declared_variables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "checking/check_bench.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kSections =
    "<InstallerControlVariables><InstallError>FAILED</InstallError></InstallerControlVariables>\n"
    "<DefValues>\n"
    "<Value Name='Where' DataType='value'>/opt</Value>\n"
    "<Value Name='KIND' DataType='value' Condition='1==0'>0</Value>\n"
    "<Value Name='kind' DataType='Value'>1</Value>\n"
    "<Value Name='LATER' DataType='value'>$Where/x</Value>\n"
    "<Value Name='HOME_DIR' DataType='envvar'>HOME</Value>\n"
    "</DefValues>\n"
    "<Dialogs><P>\n"
    "<Field Type='Directory' ValidationVariable='IS_GOOD'>WHERE</Field>\n"
    "<Field Type='InstallParameter'>KIND</Field>\n"
    "<Trigger EvaluateOn='End' Variable='SET' Value='1'/>\n"
    "<Button x='1' y='1' Action=\"[CHOSEN]='1';[KIND]='2'\">b</Button>\n"
    "</P></Dialogs>";

void look(const std::function<void(const DeclaredVariables& variables)>& look) {
    bool hasLooked = false;
    CheckBench([&](const CheckedParts& parts) {
        look(parts.variables);
        hasLooked = true;
    }).find(kSections);
    EXPECT_TRUE(hasLooked);
}

TEST(DeclaredVariables, AreFoundInAnyCase) {
    look([](const DeclaredVariables& variables) {
        ASSERT_NE(variables.find("kInD"), nullptr);
        EXPECT_EQ(variables.find("kInD")->name, "KIND");
        EXPECT_EQ(variables.find("kInD")->values.size(), 2U);
        EXPECT_EQ(variables.find("NONE"), nullptr);
        EXPECT_EQ(variables.find("TEMP_DIR"), nullptr) << "predefined";
    });
}

TEST(DeclaredVariables, KnowWhoSetsThem) {
    look([](const DeclaredVariables& variables) {
        EXPECT_TRUE(variables.find("FAILED")->isControl);
        EXPECT_TRUE(variables.find("IS_GOOD")->isValidation);
        EXPECT_TRUE(variables.find("SET")->isAssigned);
        EXPECT_TRUE(variables.find("CHOSEN")->isAssigned);
        EXPECT_TRUE(variables.find("KIND")->isAssigned);
        EXPECT_FALSE(variables.find("KIND")->isAsked) << "it is only shown";
        EXPECT_TRUE(variables.find("WHERE")->isAsked);
        EXPECT_TRUE(variables.find("WHERE")->isText);
    });
}

TEST(DeclaredVariables, KnowTheirLiteralValues) {
    look([](const DeclaredVariables& variables) {
        EXPECT_THAT(variables.knownValues("KIND"), ElementsAre("0", "1"));
        EXPECT_THAT(variables.knownValues("LATER"), IsEmpty()) << "it depends on another one";
        EXPECT_THAT(variables.knownValues("HOME_DIR"), IsEmpty());
        EXPECT_THAT(variables.knownValues("NONE"), IsEmpty());
    });
}

TEST(DeclaredVariables, KeepTheirOrder) {
    look([](const DeclaredVariables& variables) {
        EXPECT_THAT(variables.names(),
                    ElementsAre("Where", "KIND", "LATER", "HOME_DIR", "FAILED", "IS_GOOD", "SET", "CHOSEN"));
    });
}

TEST(AssignedBy, ReadsAssignmentsAsTheButtonsDo) {
    bool isValid = false;
    EXPECT_THAT(assignedBy("[A]='1';[B]=''", isValid), ElementsAre("A", "B"));
    EXPECT_TRUE(isValid);
    for (const char* action : {"", "Cancel", "help", "Cancelled"}) {
        EXPECT_THAT(assignedBy(action, isValid), IsEmpty());
        EXPECT_TRUE(isValid) << action;
    }
    for (const char* action : {"[A]=1", "A='1'", "[A]=='1'", "[A]='1", "[A B]='1'", "Next"}) {
        assignedBy(action, isValid);
        EXPECT_FALSE(isValid) << action;
    }
}

}  // namespace
