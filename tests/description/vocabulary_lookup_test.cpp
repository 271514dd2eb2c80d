#include "description/vocabulary_lookup.h"

#include <gtest/gtest.h>

#include "description/dialog_words.h"

namespace {

std::string partsOf(std::string_view words) {
    std::string parts;
    vocabulary::forEachWord(words, [&](std::string_view word) { parts += "(" + std::string(word) + ")"; });
    return parts;
}

TEST(VocabularyLookup, FindsElementsAndAttributes) {
    PXML document;
    document.parseText("<R><FileSet Name='a'/><FileSet/><fn/></R>");
    const std::int32_t first = vocabulary::findElement(document, "FileSet");
    EXPECT_EQ(vocabulary::attributeOf(document, first, "Name"), "a");
    const std::int32_t second = vocabulary::findElement(document, "FileSet", first);
    EXPECT_EQ(vocabulary::attributeOf(document, second, "Name"), std::nullopt);
    EXPECT_FALSE(vocabulary::hasAttribute(document, second, "Name"));
    EXPECT_EQ(vocabulary::findChild(document, 0, "FileSet"), first);
    EXPECT_TRUE(vocabulary::isCalled(document, 3, "FN"));
    EXPECT_FALSE(vocabulary::isCalled(document, 0, "FN"));
}

TEST(VocabularyLookup, GivesTheMeaningOfAWordInAnyCase) {
    constexpr vocabulary::Row<int> kRows[] = {{"left", 1}, {"right", 2}};
    EXPECT_EQ(vocabulary::meaningOf(kRows, "RIGHT"), 2);
    EXPECT_EQ(vocabulary::meaningOf(kRows, "center"), std::nullopt);
    EXPECT_EQ(vocabulary::meaningOf(kRows, ""), std::nullopt);
}

TEST(VocabularyLookup, VisitsEachPartOfAText) {
    EXPECT_EQ(partsOf("a;b"), "(a)(b)");
    EXPECT_EQ(partsOf("a;;b"), "(a)()(b)");
    EXPECT_EQ(partsOf(""), "");
    EXPECT_EQ(partsOf("one"), "(one)");
    EXPECT_EQ(partsOf("a;"), "(a)()");
}

// A word that is in its list but means nothing to the reader would be a trap for authors.
TEST(VocabularyLookup, HasAMeaningForEachWordOfDialogs) {
    for (const std::string_view word : vocabulary::kElementKinds) {
        EXPECT_TRUE(DialogWords::elementKind(word)) << word;
    }
    for (const std::string_view word : vocabulary::kFieldTypes) {
        EXPECT_TRUE(DialogWords::fieldType(word)) << word;
    }
    for (const std::string_view word : vocabulary::kTriggerTypes) {
        EXPECT_TRUE(DialogWords::triggerType(word)) << word;
    }
    for (const std::string_view word : vocabulary::kHorizontalAligns) {
        EXPECT_NE(DialogWords::horizontalAlign(word), 0) << word;
    }
    for (const std::string_view word : vocabulary::kVerticalAligns) {
        EXPECT_NE(DialogWords::verticalAlign(word), 0) << word;
    }
    for (const std::string_view word : vocabulary::kSpecials) {
        EXPECT_NE(DialogWords::special(word), 0U) << word;
    }
    for (const std::string_view word : vocabulary::kTriggerMoments) {
        EXPECT_NE(DialogWords::triggerMoments(word), 0U) << word;
    }
}

}  // namespace
