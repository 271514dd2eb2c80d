#include "engine/product_state.h"

#include <gtest/gtest.h>

#include "engine/product_state_format.h"
#include "platform/memory/memory_environment.h"
#include "platform/memory/memory_file_system.h"
#include "platform/path_identity.h"

namespace {

using Operation = MemoryFileSystem::Operation;

constexpr char kLog[] = "/app/install.log";

Md5Digest digestOf(std::string_view content) {
    return md5Of(content.data(), content.size());
}

TEST(FileDigestTest, IsThatOfTheWholeFile) {
    MemoryFileSystem files;
    const std::string large(1'000'000, 'x');
    files.addFile("/large", large);
    files.addFile("/empty", "");
    EXPECT_EQ(digestOfFile(files, "/large"), digestOf(large));
    EXPECT_EQ(digestOfFile(files, "/empty"), digestOf(""));
    EXPECT_EQ(digestOfFile(files, "/missing"), std::nullopt);
    files.failAt(Operation::kRead, "/large", 2);
    EXPECT_EQ(digestOfFile(files, "/large"), std::nullopt);
}

class ProductStateTest : public testing::Test {
protected:
    WrittenSums sumsOf(std::string_view path, std::string_view content) {
        WrittenSums sums;
        sums.add(path, digestOf(content));
        return sums;
    }
    // The only file of the state directory.
    std::string stateFile() {
        const std::vector<std::string> all = files_.allFiles();
        return all.size() == 1 ? all[0] : "";
    }
    std::string text() { return files_.content(stateFile()); }
    bool isKnown() { return !state_.load(kLog).isEmpty(); }

    MemoryFileSystem files_;
    MemoryEnvironment environment_;
    ProductState state_{files_, environment_};
};

TEST_F(ProductStateTest, GivesBackWhatWasKept) {
    ASSERT_TRUE(state_.save(kLog, sumsOf("/app/a.txt", "content")));
    const WrittenSums sums = state_.load(kLog);
    EXPECT_TRUE(sums.holds("/app/a.txt", digestOf("content")));
    EXPECT_FALSE(sums.holds("/app/a.txt", digestOf("other")));
    EXPECT_FALSE(sums.holds("/app/b.txt", digestOf("content")));
}

TEST_F(ProductStateTest, FindsAPathInItsOtherSpellings) {
    ASSERT_TRUE(state_.save("/app\\install.log", sumsOf("/app\\sub//a.txt", "content")));
    EXPECT_TRUE(state_.load(kLog).holds("/app/sub/a.txt", digestOf("content")));
}

TEST_F(ProductStateTest, KnowsSeveralContentsOfOneFile) {
    WrittenSums sums = sumsOf("/app/a", "first");
    sums.add("/app/a", digestOf("second"));
    sums.add("/app/a", digestOf("second"));
    ASSERT_TRUE(state_.save(kLog, sums));
    const WrittenSums read = state_.load(kLog);
    EXPECT_TRUE(read.holds("/app/a", digestOf("first")));
    EXPECT_TRUE(read.holds("/app/a", digestOf("second")));
    EXPECT_NE(text().find("END 2\n"), std::string::npos);
}

TEST_F(ProductStateTest, AddsWhatOthersKnowOfOtherFilesOnly) {
    WrittenSums sums = sumsOf("/app/a", "new");
    WrittenSums others = sumsOf("/app\\a", "old");
    others.add("/app/b", digestOf("b"));
    sums.addMissing(others);
    EXPECT_TRUE(sums.holds("/app/b", digestOf("b")));
    EXPECT_TRUE(sums.holds("/app/a", digestOf("new")));
    EXPECT_FALSE(sums.holds("/app/a", digestOf("old")));
}

TEST_F(ProductStateTest, KeepsProductsApart) {
    ASSERT_TRUE(state_.save(kLog, sumsOf("/app/a", "1")));
    ASSERT_TRUE(state_.save("/other/install.log", sumsOf("/other/a", "2")));
    EXPECT_FALSE(state_.load(kLog).knows("/other/a"));
    ASSERT_TRUE(state_.remove("/other/install.log"));
    EXPECT_TRUE(state_.load(kLog).knows("/app/a"));
}

TEST_F(ProductStateTest, ReplacesWhatWasKept) {
    ASSERT_TRUE(state_.save(kLog, sumsOf("/app/a", "1")));
    ASSERT_TRUE(state_.save(kLog, sumsOf("/app/b", "2")));
    EXPECT_FALSE(state_.load(kLog).knows("/app/a"));
    EXPECT_TRUE(state_.load(kLog).knows("/app/b"));
    EXPECT_EQ(files_.allFiles().size(), 1U);
}

TEST_F(ProductStateTest, IsForThisUserAlone) {
    ASSERT_TRUE(state_.save(kLog, sumsOf("/app/a", "1")));
    EXPECT_TRUE(files_.isPrivate(stateFile()));
}

TEST_F(ProductStateTest, LeavesNothingWhenItIsRemoved) {
    ASSERT_TRUE(state_.save(kLog, sumsOf("/app/a", "1")));
    ASSERT_TRUE(state_.save(kLog, sumsOf("/app/a", "2")));  // the second time the directory is there
    EXPECT_TRUE(state_.remove(kLog));
    EXPECT_TRUE(files_.allFiles().empty());
    EXPECT_FALSE(files_.hasDirectory("/var"));
    EXPECT_TRUE(state_.remove(kLog));
}

TEST_F(ProductStateTest, LeavesADirectoryThatWasThereBefore) {
    files_.addDirectory("/var/state");
    ASSERT_TRUE(state_.save(kLog, sumsOf("/app/a", "1")));
    EXPECT_TRUE(state_.remove(kLog));
    EXPECT_TRUE(files_.hasDirectory("/var/state"));
}

TEST_F(ProductStateTest, RemembersAnUninstallationThatDidNotEnd) {
    EXPECT_FALSE(state_.beginUndo(kLog));
    EXPECT_FALSE(files_.hasDirectory("/var/state"));
    ASSERT_TRUE(state_.save(kLog, sumsOf("/app/a", "1")));
    EXPECT_FALSE(state_.beginUndo(kLog));
    EXPECT_TRUE(state_.beginUndo(kLog));
    EXPECT_FALSE(state_.beginUndo("/other/install.log"));
    EXPECT_EQ(state_.endUndo(kLog), 0);
    EXPECT_EQ(state_.endUndo("/other/install.log"), 0);
    EXPECT_FALSE(state_.beginUndo(kLog));
    files_.failAt(MemoryFileSystem::Operation::kRemoveFile, state_.markOf(kLog), 1);
    EXPECT_NE(state_.endUndo(kLog), 0);
    EXPECT_EQ(state_.endUndo(kLog), 0);
    EXPECT_EQ(files_.allFiles().size(), 1U);
    EXPECT_FALSE(state_.beginUndo(""));
}

TEST_F(ProductStateTest, TheLastProductTakesTheDirectoryAlong) {
    ASSERT_TRUE(state_.save(kLog, sumsOf("/app/a", "1")));
    ASSERT_TRUE(state_.save("/other/install.log", sumsOf("/other/a", "2")));
    ASSERT_TRUE(state_.remove(kLog));
    EXPECT_TRUE(state_.load("/other/install.log").holds("/other/a", digestOf("2")));
    ASSERT_TRUE(state_.remove("/other/install.log"));
    EXPECT_FALSE(files_.hasDirectory("/var"));
}

TEST_F(ProductStateTest, TakesLevelsThatSomethingElseMade) {
    files_.addDirectory("/var/state");
    state_.leaveLevels(2);  // nobody is there
    ASSERT_TRUE(state_.save(kLog, sumsOf("/app/a", "1")));
    state_.leaveLevels(1);
    EXPECT_TRUE(isKnown());
    ASSERT_TRUE(state_.remove(kLog));
    EXPECT_FALSE(files_.hasDirectory("/var/state"));
    EXPECT_TRUE(files_.hasDirectory("/var"));
}

TEST_F(ProductStateTest, KnowsTheLevelsThatWereMadeForAProduct) {
    EXPECT_EQ(state_.levels(kLog), 0);
    ASSERT_TRUE(state_.save(kLog, sumsOf("/app/a", "1")));
    EXPECT_EQ(state_.levels(kLog), 2);
    EXPECT_EQ(state_.levels(""), 0);
}

TEST_F(ProductStateTest, GivesNoLevelsToAFileOfAnotherForm) {
    files_.addFile("/var/state/written-1.md5", "something else");
    state_.leaveLevels(1);
    EXPECT_EQ(files_.content("/var/state/written-1.md5"), "something else");
}

TEST_F(ProductStateTest, LeavesADirectoryThatHoldsOtherThings) {
    ASSERT_TRUE(state_.save(kLog, sumsOf("/app/a", "1")));
    files_.addFile("/var/state/registry.db", "");
    EXPECT_TRUE(state_.remove(kLog));
    EXPECT_TRUE(files_.hasFile("/var/state/registry.db"));
}

TEST_F(ProductStateTest, BelievesNothingOfAFileThatIsCut) {
    ASSERT_TRUE(state_.save(kLog, sumsOf("/app/a", "1")));
    const std::string whole = text();
    const std::string path = stateFile();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        files_.addFile(path, whole.substr(0, length));
        EXPECT_FALSE(isKnown()) << length;
    }
    files_.addFile(path, whole);
    EXPECT_TRUE(isKnown());
    files_.addFile(path, whole + "more");
    EXPECT_FALSE(isKnown());
}

TEST_F(ProductStateTest, BelievesNothingOfAFileWithALineOfAnotherForm) {
    ASSERT_TRUE(state_.save(kLog, sumsOf("/app/a", "1")));
    const std::string whole = text();
    const std::string path = stateFile();
    const std::string hex = "0123456789abcdef0123456789abcdef";
    for (const std::string& line :
         {std::string("garbage"), std::string(), hex, hex + " ", hex + "x/a", "g" + hex.substr(1) + " /a",
          std::string("END"), std::string("END -1"), std::string("END 99999999999999999999999")}) {
        std::string spoilt = whole;
        spoilt.insert(spoilt.find("END"), line + "\n");
        files_.addFile(path, spoilt);
        EXPECT_FALSE(isKnown()) << line;
    }
}

TEST_F(ProductStateTest, BelievesNothingOfAFileOfAnotherLog) {
    ASSERT_TRUE(state_.save(kLog, sumsOf("/app/a", "1")));
    std::string spoilt = text();
    const std::string own = platform::pathIdentity(kLog);
    ASSERT_NE(spoilt.find(own), std::string::npos);
    spoilt.replace(spoilt.find(own), own.size(), platform::pathIdentity("/opt/install.log"));
    files_.addFile(stateFile(), spoilt);
    EXPECT_FALSE(isKnown());
}

TEST_F(ProductStateTest, LeavesPathsWithLineBreaksOut) {
    WrittenSums sums = sumsOf("/app/a\nEND 0", "1");
    sums.add("/app/b", digestOf("2"));
    ASSERT_TRUE(state_.save(kLog, sums));
    const WrittenSums read = state_.load(kLog);
    EXPECT_TRUE(read.knows("/app/b"));
    EXPECT_EQ(read.digests().size(), 1U);
}

TEST_F(ProductStateTest, KeepsNothingWithoutALogOrAPlace) {
    EXPECT_FALSE(state_.save("", sumsOf("/app/a", "1")));
    environment_.state.clear();
    EXPECT_FALSE(state_.save(kLog, sumsOf("/app/a", "1")));
    EXPECT_TRUE(state_.load(kLog).isEmpty());
    EXPECT_TRUE(state_.remove(kLog));
    EXPECT_TRUE(files_.allFiles().empty());
}

TEST_F(ProductStateTest, KeepsWhatWasThereAfterAFailure) {
    ASSERT_TRUE(state_.save(kLog, sumsOf("/app/a", "1")));
    for (const Operation operation :
         {Operation::kOpen, Operation::kWrite, Operation::kClose, Operation::kReplaceFile}) {
        files_.failFrom(operation, "", 1);
        EXPECT_FALSE(state_.save(kLog, sumsOf("/app/b", "2")));
        files_.clearFaults();
        EXPECT_TRUE(state_.load(kLog).knows("/app/a"));
        EXPECT_EQ(files_.allFiles().size(), 1U);
    }
}

TEST_F(ProductStateTest, LeavesNoDirectoryAfterAFailure) {
    files_.failFrom(Operation::kWrite, "", 1);
    EXPECT_FALSE(state_.save(kLog, sumsOf("/app/a", "1")));
    EXPECT_FALSE(files_.hasDirectory("/var"));
}

}  // namespace
