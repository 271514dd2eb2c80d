#include "engine/changes/record_lookers.h"

#include <gtest/gtest.h>

#include <set>

#include "engine/changes/change_table.h"

namespace {

TEST(RecordLookersTest, HasExactlyOneRowForEachTagOfAChange) {
    std::multiset<std::string_view> changes;
    for (const ChangeKind& kind : changeKinds()) {
        changes.insert(kind.tags.begin(), kind.tags.end());
    }
    changes.erase("");
    std::multiset<std::string_view> looks;
    for (const LookerKind& kind : lookerKinds()) {
        looks.insert(kind.tag);
    }
    EXPECT_EQ(looks, changes);
}

TEST(RecordLookersTest, HasAWordOfItsOwnForEachKind) {
    std::set<std::string_view> words;
    for (const LookerKind& kind : lookerKinds()) {
        EXPECT_FALSE(kind.word.empty());
        EXPECT_TRUE(words.insert(kind.word).second) << kind.word;
    }
}

}  // namespace
