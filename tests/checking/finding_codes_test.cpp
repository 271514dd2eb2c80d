#include "checking/finding_codes.h"

#include <gtest/gtest.h>

#include <set>

namespace {

TEST(FindingCodes, HaveNamesThatAnOptionCanTake) {
    for (const FindingKind& kind : finding_kinds::kAll) {
        EXPECT_EQ(kind.name.find_first_not_of("abcdefghijklmnopqrstuvwxyz-"), std::string_view::npos)
            << kind.name;
        EXPECT_FALSE(kind.name.empty() || kind.name.starts_with('-')) << kind.name;
    }
}

TEST(FindingCodes, AreAllDifferent) {
    std::set<std::string_view> names;
    for (const FindingKind& kind : finding_kinds::kAll) {
        EXPECT_TRUE(names.insert(kind.name).second) << kind.name;
    }
}

TEST(FindingCodes, SayWhatToDoInOneSentence) {
    for (const FindingKind& kind : finding_kinds::kAll) {
        EXPECT_TRUE(kind.hint.ends_with('.')) << kind.name;
        EXPECT_EQ(kind.hint.find('\n'), std::string_view::npos) << kind.name;
    }
}

TEST(FindingCode, IsFoundByItsName) {
    constexpr FindingCode kCode = "element-idle";
    EXPECT_EQ(kCode.name(), "element-idle");
    EXPECT_EQ(kCode.severity(), Severity::kWarning);
    EXPECT_EQ(kCode.hint(), "Take it out.");
    EXPECT_EQ(FindingCode("element-unknown").severity(), Severity::kError);
}

}  // namespace
