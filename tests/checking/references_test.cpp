#include "checking/references.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> namesOf(const std::vector<Reference>& references) {
    std::vector<std::string> names;
    for (const Reference& reference : references) {
        names.emplace_back(reference.name);
    }
    return names;
}

TEST(References, InBracketsGoToTheNextBracket) {
    EXPECT_THAT(namesOf(bracketReferences("a[B]c[D_1][$HOME]")), ElementsAre("B", "D_1", "$HOME"));
    EXPECT_THAT(namesOf(bracketReferences("[a-z] [A [B]")), ElementsAre("a-z", "A [B"));
    EXPECT_THAT(bracketReferences("[-a] [ b] []"), IsEmpty()) << "these begin no name";
    const std::vector<Reference> references = bracketReferences("ab[C]d");
    ASSERT_EQ(references.size(), 1U);
    EXPECT_EQ(references[0].at, 2U);
    EXPECT_EQ(references[0].end, 5U);
}

TEST(References, WithoutAnEndAreNotClosed) {
    const std::vector<Reference> open = bracketReferences("a[B");
    ASSERT_EQ(open.size(), 1U);
    EXPECT_EQ(open[0].name, "B");
    EXPECT_FALSE(open[0].isClosed);
    const std::vector<Reference> last = bracketReferences("a[");
    ASSERT_EQ(last.size(), 1U);
    EXPECT_EQ(last[0].name, "");
    EXPECT_FALSE(last[0].isClosed);
    EXPECT_TRUE(bracketReferences("[B]")[0].isClosed);
}

TEST(References, WithADollarEndBeforeTheFirstOtherCharacter) {
    EXPECT_THAT(namesOf(dollarReferences("$A.txt/$B_1$C $")), ElementsAre("A", "B_1$C", ""));
    EXPECT_THAT(namesOf(dollarReferences("$$HOME")), ElementsAre("$HOME"));
    EXPECT_THAT(dollarReferences("none"), IsEmpty());
}

TEST(References, FindVariablesWithPlainNames) {
    EXPECT_TRUE(isPlainVariableName("INSTALL_DIR2"));
    for (const char* name : {"", "A B", "A-B", "$A", "\xC3\xA4"}) {
        EXPECT_FALSE(isPlainVariableName(name)) << name;
    }
    EXPECT_TRUE(isEnvironmentName("$HOME"));
    EXPECT_FALSE(isEnvironmentName("HOME"));
    for (const char* const name : {"DIR", "$HOME", "$ProgramFiles(x86)"}) {
        EXPECT_TRUE(isReferenceName(name)) << name;
    }
    for (const char* const name : {"", "$", "MY DIR", "a-z"}) {
        EXPECT_FALSE(isReferenceName(name)) << name;
    }
}

}  // namespace
