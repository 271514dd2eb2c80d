#include "wini/file_modifications.h"

#include <gtest/gtest.h>

#include "engine/action_log_format.h"
#include "fakes/memory_file_system.h"
#include "fakes/recording_ui.h"
#include "fakes/temporary_directory.h"
#include "platform/file_system.h"
#include "engine/changes/text_lines.h"

namespace {

using Operation = MemoryFileSystem::Operation;

constexpr char kTarget[] = "/d/target.txt";
constexpr char kDescription[] = "/d/changes";
constexpr char kUndo[] = "ADDAFTER\t/d/target.txt\t/d/changes";

class FileModificationsTest : public testing::Test {
protected:
    void SetUp() override { describe({"1", "b", "2", "new 1", "new 2"}); }
    void describe(const std::vector<std::string>& lines) { files_.addFile(kDescription, textOf(lines)); }
    void put(const std::string& content) { files_.addFile(kTarget, content); }
    bool modify() {
        undo_ = "left over";
        return modifications_.modifyFile(kTarget, kDescription, undo_, &ui_);
    }
    bool undo(const std::string& text = kUndo) {
        return modifications_.undoFileModification(text.c_str(), &ui_);
    }
    void expectLines(const std::vector<std::string>& lines) {
        std::vector<std::string> calls;
        for (const std::string& line : lines) {
            calls.push_back("addFileLine(\"" + line + "\", 0)");
        }
        EXPECT_EQ(ui_.take(), calls);
    }
    // The target is as it was, and that is told.
    void expectFailed() {
        const std::string before = files_.content(kTarget);
        EXPECT_FALSE(modify());
        EXPECT_FALSE(undo());
        EXPECT_EQ(files_.content(kTarget), before);
        const ErrorList lines{"FAILED : Modifying /d/target.txt",
                              "FAILED : Undoing modifications to /d/target.txt"};
        EXPECT_EQ(errors_, lines);
        expectLines(lines);
        errors_.clear();
        EXPECT_EQ(files_.openFileCount(), 0);
    }

    MemoryFileSystem files_;
    ErrorList errors_;
    RecordingUI ui_;
    FileModifications modifications_{files_, errors_};
    std::string undo_;
};

TEST_F(FileModificationsTest, AddsBehindALineAndTakesItBack) {
    put(textOf({"a", "b", "c", "b"}));
    EXPECT_TRUE(modify());
    EXPECT_EQ(undo_, kUndo);
    EXPECT_EQ(files_.content(kTarget), textOf({"a", "b", "new 1", "new 2", "c", "b"}));
    EXPECT_TRUE(undo(undo_));
    EXPECT_EQ(files_.content(kTarget), textOf({"a", "b", "c", "b"}));
    expectLines({"Modifying /d/target.txt", "Undoing modifications to /d/target.txt"});
    EXPECT_TRUE(errors_.empty());
    EXPECT_EQ(files_.allFiles().size(), 2U);
}

TEST_F(FileModificationsTest, WorksThroughAllPairs) {
    describe({"2", "a", "b", "1", "x", "1", "c", "1", "y"});
    put(textOf({"c", "a", "b", "c", "d"}));
    EXPECT_TRUE(modify());
    EXPECT_EQ(files_.content(kTarget), textOf({"c", "a", "b", "x", "c", "y", "d"}));
    EXPECT_TRUE(undo());
    EXPECT_EQ(files_.content(kTarget), textOf({"c", "a", "b", "c", "d"}));
}

TEST_F(FileModificationsTest, SucceedsWhereTheSearchedLinesAreMissing) {
    for (const std::string& content : {std::string("a\nc"), std::string("\r\n\r\n"), std::string()}) {
        put(content);
        EXPECT_TRUE(modify());
        EXPECT_EQ(undo_, kUndo);
        EXPECT_TRUE(undo());
        EXPECT_EQ(files_.content(kTarget), content);
    }
    EXPECT_EQ(files_.count(Operation::kWrite), 0);
}

TEST_F(FileModificationsTest, GivesEachLineAnEnd) {
    put("a\nb");
    EXPECT_TRUE(modify());
    EXPECT_EQ(files_.content(kTarget), textOf({"a", "b", "new 1", "new 2"}));
    EXPECT_TRUE(undo());
    EXPECT_EQ(files_.content(kTarget), textOf({"a", "b"}));
}

TEST_F(FileModificationsTest, KeepsLongLinesAndAnyBytes) {
    const std::vector<std::string> others{std::string(1023, 'x'),
                                          std::string(1024, 'y'),
                                          std::string(70000, 'z'),
                                          std::string("n\0ul\x1a", 5),
                                          "\xff\xfe",
                                          ""};
    std::vector<std::string> lines = others;
    lines.push_back("b");
    put(textOf(lines));
    EXPECT_TRUE(modify());
    lines.insert(lines.end(), {"new 1", "new 2"});
    EXPECT_EQ(files_.content(kTarget), textOf(lines));
    EXPECT_TRUE(undo());
    lines.resize(others.size() + 1);
    EXPECT_EQ(files_.content(kTarget), textOf(lines));
}

TEST_F(FileModificationsTest, LeavesWhatTheUserChangedSince) {
    put(textOf({"a", "b", "new 1", "mine", "c"}));
    EXPECT_TRUE(undo());
    EXPECT_EQ(files_.content(kTarget), textOf({"a", "b", "new 1", "mine", "c"}));
    put(textOf({"mine", "b", "new 1", "new 2", "mine"}));
    EXPECT_TRUE(undo());
    EXPECT_EQ(files_.content(kTarget), textOf({"mine", "b", "mine"}));
}

TEST_F(FileModificationsTest, ChangesNothingByABrokenDescription) {
    put(textOf({"a", "b", "c"}));
    describe({});
    expectFailed();
    describe({"1", "b", "1", "new", "1", "c"});
    expectFailed();
    describe({"1", "b", "2", "new"});
    expectFailed();
    describe({"x", "b", "1", "new"});
    expectFailed();
    EXPECT_EQ(files_.count(Operation::kWrite), 0);
}

TEST_F(FileModificationsTest, FailsWithoutEitherFile) {
    put(textOf({"b"}));
    files_.removeFile(kDescription);
    expectFailed();
    SetUp();
    files_.removeFile(kTarget);
    expectFailed();
    files_.addDirectory(kTarget);
    expectFailed();
}

TEST_F(FileModificationsTest, LeavesTheOldFileAfterAFailedWrite) {
    put(textOf({"b", "new 1", "new 2"}));
    files_.setFreeSpace(3);
    expectFailed();
    files_.clearFaults();
    files_.failFrom(Operation::kReplaceFile, "", 1);
    expectFailed();
    files_.clearFaults();
    files_.failFrom(Operation::kRead, kTarget, 1);
    expectFailed();
    EXPECT_EQ(files_.allFiles().size(), 2U);
}

TEST_F(FileModificationsTest, RefusesPathsThatTheRecordCannotHold) {
    put(textOf({"b"}));
    const std::string longPath(1000, 'p');
    for (const std::string& path : {std::string(), std::string("/d/a\tb"), longPath + longPath}) {
        EXPECT_FALSE(modifications_.modifyFile(path.c_str(), kDescription, undo_, nullptr));
        EXPECT_EQ(undo_, "");
        EXPECT_FALSE(modifications_.modifyFile(kTarget, path.c_str(), undo_, nullptr));
        EXPECT_EQ(undo_, "");
    }
    EXPECT_FALSE(modifications_.modifyFile(nullptr, kDescription, undo_, nullptr));
    EXPECT_FALSE(modifications_.modifyFile(kTarget, nullptr, undo_, nullptr));
    EXPECT_FALSE(modifications_.modifyFile(kTarget, "/d/changes ", undo_, nullptr));
    EXPECT_EQ(files_.content(kTarget), textOf({"b"}));
}

TEST_F(FileModificationsTest, BearsDamagedUndoTexts) {
    put(textOf({"b", "new 1", "new 2"}));
    for (const char* text :
         {"", "NONE", "\t", "ADDAFTER", "ADDAFTER\t", "ADDAFTER\t/d/target.txt", "ADDAFTER\t/d/target.txt\t",
          "addafter\t/d/target.txt\t/d/changes", "ADDAFTERX\t/d/target.txt\t/d/changes", "\xff\x01"}) {
        EXPECT_FALSE(undo(text)) << text;
    }
    EXPECT_FALSE(modifications_.undoFileModification(nullptr, nullptr));
    expectLines({});
    EXPECT_TRUE(errors_.empty());
    EXPECT_EQ(files_.content(kTarget), textOf({"b", "new 1", "new 2"}));
}

TEST(FileModificationsMachineTest, ChangesARealFile) {
    const TemporaryDirectory directory;
    const std::string target = directory.file("t");
    const std::string description = directory.file("d");
    writeTestFile(target, textOf({"a", "b"}));
    writeTestFile(description, textOf({"1", "a", "1", "new"}));
    ErrorList errors;
    FileModifications modifications(platform::systemFileSystem(), errors);
    std::string undo;
    EXPECT_TRUE(modifications.modifyFile(target.c_str(), description.c_str(), undo, nullptr));
    EXPECT_EQ(readTestFile(target), textOf({"a", "new", "b"}));
    EXPECT_TRUE(modifications.undoFileModification(undo.c_str(), nullptr));
    EXPECT_EQ(readTestFile(target), textOf({"a", "b"}));
    writeTestFile(description, textOf({"1", "a", "1"}));
    EXPECT_FALSE(modifications.modifyFile(target.c_str(), description.c_str(), undo, nullptr));
    EXPECT_EQ(readTestFile(target), textOf({"a", "b"}));
}

}  // namespace
