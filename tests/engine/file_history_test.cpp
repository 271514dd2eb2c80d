#include "engine/file_history.h"

#include <gmock/gmock.h>

namespace {

using Kind = FileHistory::Kind;
using testing::ElementsAre;

Md5Digest digestOf(std::string_view content) {
    return md5Of(content.data(), content.size());
}

TEST(FileHistoryTest, KnowsWhatEarlierInstallationsDidToAFile) {
    FileHistory history;
    history.addEarlier("1", "/app/a", Kind::kCreated);
    history.addEarlier("2", "/app/b", Kind::kReplaced);
    history.addEarlier("3", "/app/b", Kind::kCreated);
    EXPECT_EQ(history.kindOf("/app\\a"), Kind::kCreated);
    EXPECT_EQ(history.kindOf("/app/b"), Kind::kReplaced);
    EXPECT_EQ(history.kindOf("/app/c"), Kind::kUnknown);
}

TEST(FileHistoryTest, KeepsTheRecordsThatTheNewInstallationDoesNotRepeat) {
    FileHistory history;
    history.addEarlier("1", "/app/a", Kind::kCreated);
    history.addEarlier("2", "/app/b", Kind::kReplaced);
    history.addEarlier("3", "/app/c", Kind::kReplaced);
    history.noteRecord("/app\\b");
    EXPECT_THAT(history.remainingRecords(), ElementsAre("1", "3"));
}

TEST(FileHistoryTest, CallsAContentForeignOnlyWhenItKnowsTheFile) {
    FileHistory history;
    WrittenSums sums;
    sums.add("/app/a", digestOf("ours"));
    history.setEarlierSums(sums);
    EXPECT_TRUE(history.isForeign("/app/a", digestOf("the user's")));
    EXPECT_FALSE(history.isForeign("/app/a", digestOf("ours")));
    EXPECT_FALSE(history.isForeign("/app/b", digestOf("the user's")));
}

TEST(FileHistoryTest, KeepsTheEarlierSumsOfFilesThatItDoesNotWrite) {
    FileHistory history;
    WrittenSums sums;
    sums.add("/app/a", digestOf("old a"));
    sums.add("/app/b", digestOf("old b"));
    EXPECT_FALSE(history.knowsContents());
    history.setEarlierSums(sums);
    EXPECT_TRUE(history.knowsContents());
    history.noteContent("/app/a", digestOf("new a"));
    EXPECT_TRUE(history.hasContent("/app/a"));
    EXPECT_FALSE(history.hasContent("/app/b"));
    const WrittenSums all = history.sums();
    EXPECT_TRUE(all.holds("/app/a", digestOf("new a")));
    EXPECT_FALSE(all.holds("/app/a", digestOf("old a")));
    EXPECT_TRUE(all.holds("/app/b", digestOf("old b")));
}

}  // namespace
