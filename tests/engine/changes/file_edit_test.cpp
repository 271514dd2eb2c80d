#include "engine/changes/file_edit.h"

#include <gmock/gmock.h>

#include <random>

#include "engine/changes/change_fixture.h"
#include "engine/changes/text_lines.h"
#include "fakes/shown_calls.h"
#include "fakes/temporary_directory.h"
#include "platform/file_system.h"

namespace {

using Operation = MemoryFileSystem::Operation;
using Pair = EditScript::Pair;
using testing::ElementsAre;

constexpr char kTarget[] = "/d/target.txt";
constexpr char kScript[] = "/d/changes";
constexpr char kUndo[] = "ADDAFTER\t/d/target.txt\t/d/changes";

class FileEditTest : public ChangeTest {
protected:
    void SetUp() override { writeScript({"1", "b", "2", "new 1", "new 2"}); }
    void writeScript(const std::vector<std::string>& lines) {
        machine_.files.addFile(kScript, textOf(lines));
    }
    void put(const std::string& content) { machine_.files.addFile(kTarget, content); }
    bool modify(std::string_view path = kTarget, std::string_view script = kScript) {
        const RecordedResult result = FileEdit::add(machine_.files, report_, path, script);
        undo_ = result.undo;
        return result.done;
    }
    bool undo(std::string_view fields = kUndo) { return FileEdit::remove(machine_.files, report_, fields); }
    // The target is as it was, and that is reported.
    void expectFailed() {
        const std::string before = machine_.files.content(kTarget);
        EXPECT_FALSE(modify());
        EXPECT_FALSE(undo());
        EXPECT_EQ(machine_.files.content(kTarget), before);
        const ErrorList lines{"FAILED : Modifying /d/target.txt",
                              "FAILED : Undoing modifications to /d/target.txt"};
        EXPECT_EQ(errors_, lines);
        reasons_ = reasons();
        expectLines(lines);
        errors_.clear();
        EXPECT_EQ(machine_.files.openFileCount(), 0);
    }

    FileEdit change_{context_};
    std::string undo_;
    std::vector<std::string> reasons_;  // of the last expectFailed
};

class FileEditElementsTest : public FileEditTest {
protected:
    bool apply(const std::string& groups) {
        describe(groups);
        return change_.apply();
    }
};

TEST_F(FileEditElementsTest, EditsAFileWithItsPathsExpandedAndRecordsIt) {
    put(textOf({"b"}));
    variables_.set("D", "/d");
    EXPECT_TRUE(apply(
        "<ModifyFiles><File Path='[D]//target.txt' Command='AddAfter'>[D]/changes</File></ModifyFiles>"));
    EXPECT_EQ(machine_.files.content(kTarget), textOf({"b", "new 1", "new 2"}));
    EXPECT_EQ(records(), "MODIFYFILE\tADDAFTER\t/d/target.txt\t/d/changes\r\n");
    EXPECT_THAT(shownCalls(ui_),
                ElementsAre("addFileLine(\"Modifying /d/target.txt\", 0)", "addFileLine(null, 1)"));
}

TEST_F(FileEditElementsTest, PassesOverWhatIsIncompleteUnknownOrNotWanted) {
    EXPECT_TRUE(
        apply("<ModifyFiles><File Path='p' Command='AddAfter'></File><File Command='AddAfter'>x</File><File "
              "Path='p'>x</File>"
              "<File Path='p' Command='AddBefore'>x</File><Dir Path='p' Command='AddAfter'>x</Dir>"
              "<File Path='p' Command='AddAfter' Condition='1==2'>x</File></ModifyFiles>"));
    EXPECT_THAT(shownCalls(ui_), ElementsAre("addFileLine(null, 1)"));
    EXPECT_EQ(records(), "");
}

TEST_F(FileEditElementsTest, EndsAGroupWithItsFailureAndGoesOnWithTheNext) {
    put(textOf({"b"}));
    EXPECT_FALSE(
        apply("<ModifyFiles><File Path='p' Command='AddAfter'>/d/changes</File>"
              "<File Path='q' Command='AddAfter'>/d/changes</File></ModifyFiles><ModifyFiles>"
              "<File Path='/d/target.txt' Command='AddAfter'>/d/changes</File></ModifyFiles>"));
    EXPECT_THAT(errors_, ElementsAre("FAILED : Modifying p"));
    EXPECT_THAT(log_.lines(), ElementsAre("ERROR: Modifying files: \"p\""));
    EXPECT_EQ(records(), "MODIFYFILE\tADDAFTER\t/d/target.txt\t/d/changes\r\n");
}

TEST_F(FileEditElementsTest, TakesItsRecordBackAndFailsWhereItCannot) {
    put(textOf({"a", "b", "new 1", "new 2"}));
    EXPECT_TRUE(change_.undo({"MODIFYFILE", kUndo}));
    EXPECT_EQ(machine_.files.content(kTarget), textOf({"a", "b"}));
    EXPECT_FALSE(change_.undo({"MODIFYFILE", "ADDAFTER\t/d/target.txt\t/none"}));
    EXPECT_FALSE(change_.undo({"MODIFYFILE", ""}));
    EXPECT_TRUE(change_.finishUndo());
}

TEST_F(FileEditTest, AddsAfterALineAndTakesItBack) {
    put(textOf({"a", "b", "c", "b"}));
    EXPECT_TRUE(modify());
    EXPECT_EQ(undo_, kUndo);
    EXPECT_EQ(machine_.files.content(kTarget), textOf({"a", "b", "new 1", "new 2", "c", "b"}));
    EXPECT_TRUE(undo(undo_));
    EXPECT_EQ(machine_.files.content(kTarget), textOf({"a", "b", "c", "b"}));
    expectLines({"Modifying /d/target.txt", "Undoing modifications to /d/target.txt"});
    EXPECT_TRUE(errors_.empty());
    EXPECT_EQ(machine_.files.allFiles().size(), 2U);
}

TEST_F(FileEditTest, WorksThroughAllPairs) {
    writeScript({"2", "a", "b", "1", "x", "1", "c", "1", "y"});
    put(textOf({"c", "a", "b", "c", "d"}));
    EXPECT_TRUE(modify());
    EXPECT_EQ(machine_.files.content(kTarget), textOf({"c", "a", "b", "x", "c", "y", "d"}));
    EXPECT_TRUE(undo());
    EXPECT_EQ(machine_.files.content(kTarget), textOf({"c", "a", "b", "c", "d"}));
}

TEST_F(FileEditTest, SucceedsWhereTheSearchedLinesAreMissing) {
    for (const std::string& content : {std::string("a\nc"), std::string("\r\n\r\n"), std::string()}) {
        put(content);
        EXPECT_TRUE(modify());
        EXPECT_EQ(undo_, kUndo);
        EXPECT_TRUE(undo());
        EXPECT_EQ(machine_.files.content(kTarget), content);
    }
    EXPECT_EQ(machine_.files.count(Operation::kWrite), 0);
}

TEST_F(FileEditTest, GivesEachLineAnEnd) {
    put("a\nb");
    EXPECT_TRUE(modify());
    EXPECT_EQ(machine_.files.content(kTarget), textOf({"a", "b", "new 1", "new 2"}));
    EXPECT_TRUE(undo());
    EXPECT_EQ(machine_.files.content(kTarget), textOf({"a", "b"}));
}

TEST_F(FileEditTest, KeepsLongLinesAndAnyBytes) {
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
    EXPECT_EQ(machine_.files.content(kTarget), textOf(lines));
    EXPECT_TRUE(undo());
    lines.resize(others.size() + 1);
    EXPECT_EQ(machine_.files.content(kTarget), textOf(lines));
}

TEST_F(FileEditTest, LeavesWhatTheUserChangedSince) {
    put(textOf({"a", "b", "new 1", "mine", "c"}));
    EXPECT_TRUE(undo());
    EXPECT_EQ(machine_.files.content(kTarget), textOf({"a", "b", "new 1", "mine", "c"}));
    put(textOf({"mine", "b", "new 1", "new 2", "mine"}));
    EXPECT_TRUE(undo());
    EXPECT_EQ(machine_.files.content(kTarget), textOf({"mine", "b", "mine"}));
}

TEST_F(FileEditTest, ChangesNothingByABrokenScript) {
    put(textOf({"a", "b", "c"}));
    writeScript({});
    expectFailed();
    writeScript({"1", "b", "1", "new", "1", "c"});
    expectFailed();
    writeScript({"1", "b", "2", "new"});
    expectFailed();
    writeScript({"x", "b", "1", "new"});
    expectFailed();
    EXPECT_EQ(machine_.files.count(Operation::kWrite), 0);
}

TEST_F(FileEditTest, FailsWithoutEitherFile) {
    put(textOf({"b"}));
    machine_.files.removeFile(kScript);
    expectFailed();
    const std::string reason = "addMessage(\"" + std::string(kScript) + ": there is no such file\")";
    EXPECT_EQ(reasons_, (std::vector<std::string>{reason, reason}));
    SetUp();
    machine_.files.removeFile(kTarget);
    machine_.files.addDirectory(kTarget);
    expectFailed();
}

TEST_F(FileEditTest, FindsNothingToTakeBackInAFileThatHasGone) {
    EXPECT_FALSE(modify());
    machine_.files.removeFile(kScript);
    errors_.clear();
    EXPECT_TRUE(undo());
    EXPECT_TRUE(errors_.empty());
    EXPECT_FALSE(machine_.files.exists(kTarget));
}

TEST_F(FileEditTest, NamesTheScriptOfARecord) {
    EXPECT_EQ(FileEdit::scriptOf({"MODIFYFILE", kUndo}), kScript);
    EXPECT_EQ(FileEdit::scriptOf({"MODIFYFILE", "OTHER\ta\tb"}), "");
    EXPECT_EQ(FileEdit::scriptOf({"MODIFYFILE", "ADDAFTER\ta"}), "");
}

TEST_F(FileEditTest, LeavesTheOldFileAfterAFailedWrite) {
    put(textOf({"b", "new 1", "new 2"}));
    machine_.files.setFreeSpace(3);
    expectFailed();
    machine_.files.clearFaults();
    machine_.files.failFrom(Operation::kReplaceFile, "", 1);
    expectFailed();
    machine_.files.clearFaults();
    machine_.files.failFrom(Operation::kRead, kTarget, 1);
    expectFailed();
    EXPECT_EQ(machine_.files.allFiles().size(), 2U);
}

TEST_F(FileEditTest, RefusesPathsThatTheRecordCannotHold) {
    put(textOf({"b"}));
    const std::string longPath(1000, 'p');
    for (const std::string& path : {std::string(), std::string("/d/a\tb"), longPath + longPath}) {
        EXPECT_FALSE(modify(path, kScript));
        EXPECT_EQ(undo_, "");
        EXPECT_FALSE(modify(kTarget, path));
        EXPECT_EQ(undo_, "");
    }
    EXPECT_FALSE(modify(kTarget, "/d/changes "));
    EXPECT_EQ(machine_.files.content(kTarget), textOf({"b"}));
}

TEST_F(FileEditTest, TakesNothingBackByDamagedRecords) {
    put(textOf({"b", "new 1", "new 2"}));
    for (const char* text :
         {"", "NONE", "\t", "ADDAFTER", "ADDAFTER\t", "ADDAFTER\t/d/target.txt", "ADDAFTER\t/d/target.txt\t",
          "addafter\t/d/target.txt\t/d/changes", "ADDAFTERX\t/d/target.txt\t/d/changes", "\xff\x01"}) {
        EXPECT_FALSE(undo(text)) << text;
    }
    expectLines({});
    EXPECT_TRUE(errors_.empty());
    EXPECT_EQ(machine_.files.content(kTarget), textOf({"b", "new 1", "new 2"}));
}

TEST(FileEditMachineTest, ChangesARealFile) {
    const TemporaryDirectory directory;
    const std::string target = directory.file("t");
    const std::string script = directory.file("d");
    writeTestFile(target, textOf({"a", "b"}));
    writeTestFile(script, textOf({"1", "a", "1", "new"}));
    platform::FileSystem& files = platform::systemFileSystem();
    Report report(nullptr, nullptr);
    const RecordedResult result = FileEdit::add(files, report, target, script);
    EXPECT_TRUE(result.done);
    EXPECT_EQ(readTestFile(target), textOf({"a", "new", "b"}));
    EXPECT_TRUE(FileEdit::remove(files, report, result.undo));
    EXPECT_EQ(readTestFile(target), textOf({"a", "b"}));
    writeTestFile(script, textOf({"1", "a", "1"}));
    EXPECT_FALSE(FileEdit::add(files, report, target, script).done);
    EXPECT_EQ(readTestFile(target), textOf({"a", "b"}));
}

std::size_t pairCount(const TextLines& lines) {
    const auto script = EditScript::parse(lines);
    return script.has_value() ? script->pairs().size() : 0;
}

TEST(EditScriptTest, HoldsPairsOfBlocks) {
    const auto script = EditScript::parse({"2", "a", "", "1", "2", " 1\t", "x", "2", "y", "z"});
    ASSERT_TRUE(script.has_value());
    const std::vector<Pair>& pairs = script->pairs();
    ASSERT_EQ(pairs.size(), 2U);
    EXPECT_EQ(pairs[0].search, (TextLines{"a", ""}));
    EXPECT_EQ(pairs[0].addition, TextLines{"2"});
    EXPECT_EQ(pairs[1].search, TextLines{"x"});
    EXPECT_EQ(pairs[1].addition, (TextLines{"y", "z"}));
}

TEST(EditScriptTest, MayEndWithBlankLines) {
    EXPECT_EQ(pairCount({"1", "a", "1", "b", "", " \r"}), 1U);
    EXPECT_EQ(pairCount({"1\r", "a\r", "1\r", "b\r"}), 1U);
}

TEST(EditScriptTest, IsBrokenWithoutAWholePair) {
    const std::vector<std::string_view> whole{"2", "a", "b", "1", "c", "1", "d", "2", "e", "f"};
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        const TextLines cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_EQ(pairCount(cut), size == 5 ? 1U : size == 10 ? 2U : 0U) << size;
    }
}

TEST(EditScriptTest, IsBrokenByACountThatIsNone) {
    for (const char* count : {"0", "-1", "+1", "x", "1x", "1 1", "", "2", "99999999999999999999999",
                              "18446744073709551615", "4294967297"}) {
        EXPECT_EQ(pairCount({count, "a", "1", "b"}), 0U) << count;
        EXPECT_EQ(pairCount({"1", "a", count, "b"}), 0U) << count;
    }
    EXPECT_EQ(pairCount({"1", "a", "1", "b", "rest"}), 0U);
    EXPECT_EQ(pairCount({"1", "a", "1", "b", "", "1", "c", "1", "d"}), 0U);
    EXPECT_EQ(pairCount({"", ""}), 0U);
}

TEST(EditScriptTest, IsBrokenByALineAboveTheLimit) {
    const std::string longest(EditScript::kLineLimit, 'x');
    const std::string longer = longest + 'x';
    EXPECT_EQ(pairCount({"1", longest, "1", longest}), 1U);
    EXPECT_EQ(pairCount({"1", longer, "1", "b"}), 0U);
    EXPECT_EQ(pairCount({"1", "a", "1", longer}), 0U);
}

// The same edit in a plainer way: a group of lines that moves on by one.
TextLines walk(const std::vector<Pair>& pairs, const TextLines& lines) {
    TextLines out;
    std::size_t position = 0;
    for (const Pair& pair : pairs) {
        for (;; out.push_back(lines[position++])) {
            if (position + pair.search.size() > lines.size()) {
                out.insert(out.end(), lines.begin() + static_cast<std::ptrdiff_t>(position), lines.end());
                return out;
            }
            const auto group = lines.begin() + static_cast<std::ptrdiff_t>(position);
            if (std::equal(pair.search.begin(), pair.search.end(), group)) {
                break;
            }
        }
        out.insert(out.end(), pair.search.begin(), pair.search.end());
        out.insert(out.end(), pair.addition.begin(), pair.addition.end());
        position += pair.search.size();
    }
    out.insert(out.end(), lines.begin() + static_cast<std::ptrdiff_t>(position), lines.end());
    return out;
}

TextLines randomLines(std::mt19937& random, unsigned limit) {
    static constexpr std::string_view kWords[] = {"a", "b", ""};
    TextLines lines(random() % limit);
    for (std::string_view& line : lines) {
        line = kWords[random() % std::size(kWords)];
    }
    return lines;
}

TEST(EditScriptTest, GivesWhatAMovingGroupGivesAndComesBack) {
    for (unsigned seed = 1; seed <= 20000; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        std::vector<Pair> pairs(1 + random() % 3);
        for (Pair& pair : pairs) {
            pair.search = randomLines(random, 4);
            pair.search.emplace_back("a");
            pair.addition = randomLines(random, 3);
            pair.addition.emplace_back("b");
        }
        const TextLines lines = randomLines(random, 20);
        TextLines changed;
        const bool hasChanged = EditScript(pairs).apply(lines, changed);
        ASSERT_EQ(changed, walk(pairs, lines));
        ASSERT_EQ(hasChanged, changed != lines);
        if (hasChanged && changed.size() == lines.size() + [&] {
                std::size_t sum = 0;
                for (const Pair& pair : pairs) {
                    sum += pair.addition.size();
                }
                return sum;
            }()) {
            TextLines reverted;
            EXPECT_TRUE(EditScript(pairs).revert(changed, reverted));
            ASSERT_EQ(reverted, lines);
        }
    }
}

TEST(EditScriptTest, LeavesLinesThatWereChangedSince) {
    const EditScript script({{{"A"}, {"x", "y"}}, {{"B"}, {"z"}}});
    TextLines out;
    EXPECT_TRUE(script.revert({"A", "x", "Y", "B", "z", "C"}, out));
    EXPECT_EQ(out, (TextLines{"A", "x", "Y", "B", "C"}));
    EXPECT_TRUE(script.revert({"A", "B", "z"}, out));
    EXPECT_EQ(out, (TextLines{"A", "B"}));
    EXPECT_FALSE(script.revert({"A", "x"}, out));
    EXPECT_EQ(out, (TextLines{"A", "x"}));
    EXPECT_FALSE(script.revert({"x", "y"}, out));
}

TEST(EditScriptTest, SearchesAlikeLinesInOneWalk) {
    constexpr std::size_t kMany = 300000;
    TextLines lines(kMany, "same");
    TextLines search(kMany / 2, "same");
    search.emplace_back("other");
    const EditScript script({{search, {"x"}}});
    TextLines out;
    EXPECT_FALSE(script.apply(lines, out));
    EXPECT_EQ(out.size(), kMany);
    lines.emplace_back("other");
    EXPECT_TRUE(script.apply(lines, out));
    EXPECT_EQ(out.size(), kMany + 2);
    EXPECT_EQ(out.back(), "x");
}

}  // namespace
