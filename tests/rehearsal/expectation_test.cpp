#include "rehearsal/expectation.h"

#include <gtest/gtest.h>

#include "rehearsal/fault_text.h"

namespace {

using Lines = std::vector<std::string>;

Outcome someOutcome() {
    return {{{"install result", {"success"}},
             {"install files", {"/a = \"x\"", "/b = directory"}},
             {"install environment", {}},
             {"install log", {"line"}}},
            ""};
}

TEST(ExpectationTest, IsMetByTheOutcomeThatItWasWrittenFrom) {
    const std::string text = newExpectation(someOutcome());
    EXPECT_EQ(text,
              "[install result]\nsuccess\n\n[install files]\n/a = \"x\"\n/b = directory\n\n[install "
              "environment]\n");
    EXPECT_EQ(Expectation(text).differences(someOutcome()), Lines());
}

TEST(ExpectationTest, ShowsDifferencesBySection) {
    const Expectation expectation("[install result]\nsuccess\n[install files]\n/a = \"y\"\n/b = directory\n");
    EXPECT_EQ(expectation.differences(someOutcome()),
              (Lines{"@@ [install files] @@", "-/a = \"y\"", "+/a = \"x\"", " /b = directory"}));
}

TEST(ExpectationTest, LeavesOutSectionsThatNobodyCaresFor) {
    EXPECT_EQ(Expectation("").differences(someOutcome()), Lines());
    EXPECT_EQ(Expectation("[install result]\nsuccess").differences(someOutcome()), Lines());
}

TEST(ExpectationTest, ExpectsNothingInAnEmptySection) {
    EXPECT_EQ(Expectation("[install environment]\n").differences(someOutcome()), Lines());
    EXPECT_EQ(Expectation("[install log]\n").differences(someOutcome()),
              (Lines{"@@ [install log] @@", "+line"}));
}

TEST(ExpectationTest, AcceptsAnyValueWhereItSaysSo) {
    EXPECT_EQ(Expectation("[install files]\n/a = *\n/b = *\n").differences(someOutcome()), Lines());
    EXPECT_FALSE(Expectation("[install files]\n/a = *\n/c = *\n").differences(someOutcome()).empty());
}

TEST(ExpectationTest, SaysThatASectionIsUnknown) {
    const Lines lines = Expectation("[uninstall files]\n").differences(someOutcome());
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0], "@@ [uninstall files] @@");
}

TEST(ExpectationTest, KeepsItsSectionsCommentsAndAnyValuesWhenUpdated) {
    const Expectation expectation(
        "# head\n[install files]\n# about files\n/a = *\n/gone = *\n[uninstall files]\n");
    EXPECT_EQ(expectation.updated(someOutcome()),
              "# head\n\n[install files]\n# about files\n/a = *\n/b = directory\n");
    EXPECT_EQ(Expectation(expectation.updated(someOutcome())).differences(someOutcome()), Lines());
}

TEST(ExpectationTest, NamesTheLineThatIsWrong) {
    EXPECT_EQ(faultOf([] { Expectation("[a]\n[b\n"); }), "line 2: the name of a section ends with ]");
}

TEST(ExpectationTest, ComparesOrRefusesWhereverItIsCut) {
    const std::string text = newExpectation(someOutcome());
    int different = 0;
    for (std::size_t size = 0; size < text.size(); ++size) {
        faultOf([&] {
            different += Expectation(text.substr(0, size)).differences(someOutcome()).empty() ? 0 : 1;
        });
    }
    EXPECT_GT(different, 10);
}

TEST(OutcomeLinesTest, ShowAllSections) {
    EXPECT_EQ(outcomeLines({{{"a", {"1"}}, {"b", {}}}, ""}), (Lines{"[a]", "1", "", "[b]"}));
}

}  // namespace
