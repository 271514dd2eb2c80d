#include "checking/finding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "checking/findings_of.h"

namespace {

using testing::ElementsAre;

TEST(Findings, StandInTheOrderOfTheirPlaces) {
    Findings findings("one\ntwo");
    EXPECT_TRUE(findings.empty());
    findings.add("element-unknown", 5, "b");
    findings.add("word-unknown", 1, "c");
    findings.add("element-unknown", 1, "c");
    findings.add("element-unknown", 1, "a");
    EXPECT_FALSE(findings.empty());
    const std::vector<Finding> sorted = findings.sorted();
    EXPECT_THAT(shown(sorted), ElementsAre("1:2 element-unknown", "1:2 element-unknown", "1:2 word-unknown",
                                           "2:2 element-unknown"));
    EXPECT_EQ(sorted[0].message, "a");
    EXPECT_EQ(sorted[1].message, "c");
}

TEST(Findings, KeepEachOnce) {
    Findings findings("text");
    findings.add("word-unknown", 2, "same", "first hint");
    findings.add("word-unknown", 2, "same", "second hint");
    findings.add("word-unknown", 3, "same");
    EXPECT_EQ(findings.sorted().size(), 2U);
    EXPECT_EQ(findings.sorted().front().hint, "first hint");
}

TEST(Findings, TakeTheHintOfTheCodeWithoutOneOfTheirOwn) {
    Findings findings("text");
    findings.add("form-unclosed", 0, "a");
    findings.add("form-unclosed", 1, "b", "Shut it.");
    EXPECT_EQ(findings.sorted()[0].hint, "Close it.");
    EXPECT_EQ(findings.sorted()[1].hint, "Shut it.");
}

}  // namespace
