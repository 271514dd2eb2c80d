#include "description/vocabulary.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

template <typename Rows>
std::set<std::string> pagesOf(const Rows& rows) {
    std::set<std::string> pages;
    for (const auto& row : rows) {
        pages.emplace(row.page);
    }
    return pages;
}

TEST(Vocabulary, HoldsEachElementOnce) {
    std::set<std::string_view> names;
    for (const vocabulary::Element& element : vocabulary::kElements) {
        EXPECT_TRUE(names.insert(element.name).second) << element.name;
    }
}

TEST(Vocabulary, HoldsEachAttributeOfAnElementOnce) {
    std::set<std::pair<std::string_view, std::string_view>> names;
    for (const vocabulary::Attribute& attribute : vocabulary::kAttributes) {
        EXPECT_TRUE(names.emplace(attribute.element, attribute.name).second)
            << attribute.element << " " << attribute.name;
        EXPECT_NE(attribute.kind, vocabulary::Kind::kNone) << attribute.name;
    }
}

TEST(Vocabulary, GivesAttributesToKnownElementsOnly) {
    for (const vocabulary::Attribute& attribute : vocabulary::kAttributes) {
        EXPECT_TRUE(attribute.element.starts_with('(') || vocabulary::isElement(attribute.element))
            << attribute.element;
    }
}

TEST(Vocabulary, HoldsEachWordOfAListOnce) {
    for (const vocabulary::WordList& list : vocabulary::kWordLists) {
        EXPECT_FALSE(list.words.empty()) << list.name;
        EXPECT_EQ(std::set<std::string_view>(list.words.begin(), list.words.end()).size(), list.words.size())
            << list.name;
    }
}

TEST(Vocabulary, NamesAPageForEachRow) {
    for (const auto& pages : {pagesOf(vocabulary::kElements), pagesOf(vocabulary::kAttributes),
                              pagesOf(vocabulary::kWordLists)}) {
        for (const std::string& page : pages) {
            EXPECT_TRUE(page.ends_with(".md")) << page;
        }
    }
}

TEST(Vocabulary, KnowsItsWordsByTheirSpelling) {
    EXPECT_TRUE(vocabulary::isElement("FileSet"));
    EXPECT_FALSE(vocabulary::isElement("Fileset"));
    EXPECT_TRUE(vocabulary::isAttribute("Condition"));
    EXPECT_FALSE(vocabulary::isAttribute("FileSet"));
    EXPECT_TRUE(vocabulary::isWord("AutoNext"));
    EXPECT_FALSE(vocabulary::isWord(""));
    EXPECT_EQ(vocabulary::AttributeName("Condition").view(), "Condition");
}

}  // namespace
