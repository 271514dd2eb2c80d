#include "checking/text_uses.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "checking/check_bench.h"

namespace {

using testing::ElementsAre;

// "text: how references are read" of each text.
std::vector<std::string> usesIn(const std::string& sections) {
    std::vector<std::string> uses;
    CheckBench([&](const CheckedParts& parts) {
        forEachText(parts.context, [&](const TextUse& use) {
            static constexpr const char* kNames[] = {"none", "brackets", "dollars", "name"};
            uses.push_back(std::string(use.text) + ": " + kNames[static_cast<int>(use.references)]);
        });
    }).find(sections);
    return uses;
}

TEST(TextUses, TellHowReferencesOfATextAreRead) {
    EXPECT_THAT(usesIn("<FileSet Name='s'><FN Dest='[D]' Condition='[C]==1'>f</FN></FileSet>"),
                ElementsAre("s: none", "f: none", "[D]: brackets", "[C]==1: brackets"));
    EXPECT_THAT(usesIn("<Dialogs><P><Field Type='EditBox' Label='l'>V</Field></P></Dialogs>"),
                ElementsAre("V: name", "EditBox: none", "l: none"));
}

TEST(TextUses, TellTheSourcesOfValuesApart) {
    EXPECT_THAT(usesIn("<DefValues><Value Name='A' DataType='value'>$B</Value></DefValues>"),
                ElementsAre("$B: dollars", "A: none", "value: none"));
    EXPECT_THAT(usesIn("<DefValues><Value Name='A' DataType='envvar'>B</Value></DefValues>"),
                ElementsAre("B: none", "A: none", "envvar: none"));
}

TEST(TextUses, KnowThatTheRegistryExpandsOnlyWhenItIsTold) {
    const auto value = [](const std::string& expand) {
        return "<AdditionalInstall><Registry><AddValue Value='v' " + expand +
               ">[D]</AddValue></Registry></AdditionalInstall>";
    };
    EXPECT_EQ(usesIn(value("")).front(), "[D]: none");
    EXPECT_EQ(usesIn(value("Expand='1'")).front(), "[D]: brackets");
    EXPECT_EQ(usesIn(value("Expand='0'")).front(), "[D]: none");
}

TEST(TextUses, KnowTheValuesOfTriggers) {
    EXPECT_THAT(usesIn("<Dialogs><P><Trigger Variable='V' Value='[A]'/></P></Dialogs>"),
                ElementsAre("V: name", "[A]: brackets"));
    EXPECT_THAT(usesIn("<Dialogs><P><Trigger Type='RunActions' Value='C'/></P></Dialogs>"),
                ElementsAre("RunActions: none", "C: none"));
}

TEST(TextUses, LeaveOutWhatHasNoPlace) {
    EXPECT_THAT(usesIn("<Odd a='[A]'>[B]</Odd><FileSet Name='s' Odd='[C]'/>"), ElementsAre("s: none"));
}

}  // namespace
