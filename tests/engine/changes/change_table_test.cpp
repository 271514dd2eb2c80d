#include "engine/changes/change_table.h"

#include <set>

#include "engine/action_log_format.h"
#include "engine/engine_fixture.h"

namespace {

namespace Format = ActionLogFormat;

using Tags = std::vector<std::string_view>;

// Every tag of the format that is the record of a change.
constexpr std::string_view kChangeTags[] = {Format::kDirectory, Format::kFile,        Format::kEnvironment,
                                            Format::kIni,       Format::kModifyFile,  Format::kShortcut,
                                            Format::kFirewall,  Format::kRegistryKey, Format::kRegistryValue};

Tags tagsOf(const ChangeKind& kind) {
    Tags tags(kind.tags.begin(), kind.tags.end());
    std::erase(tags, std::string_view());
    return tags;
}

class ChangeTableTest : public EngineTest {
protected:
    PFileConsole logFile_{files_};
    ActionLogWriter writer_{logFile_};
    ChangeJob job_{parts_, writer_, report_};
};

TEST_F(ChangeTableTest, HasExactlyOneRowForEachTagOfAChange) {
    std::multiset<std::string_view> inTable;
    for (const ChangeKind& kind : changeKinds()) {
        for (const std::string_view tag : tagsOf(kind)) {
            inTable.insert(tag);
        }
    }
    EXPECT_EQ(inTable, std::multiset<std::string_view>(std::begin(kChangeTags), std::end(kChangeTags)));
}

TEST_F(ChangeTableTest, FindsTheRowOfALineByTheTagAtItsBeginning) {
    for (const std::string_view tag : kChangeTags) {
        Tags found;
        for (const ChangeKind& kind : changeKinds()) {
            const std::string_view match = kind.tagOf(std::string(tag) + "\tfields");
            if (!match.empty()) {
                found.push_back(match);
            }
        }
        EXPECT_EQ(found, Tags{tag});
    }
    for (const char* line : {"", "VAR\tx", "NUMVARS\t1", " FILE\tCREATE\tx", "file\tx"}) {
        for (const ChangeKind& kind : changeKinds()) {
            EXPECT_EQ(kind.tagOf(line), "") << line;
        }
    }
}

TEST_F(ChangeTableTest, MakesAChangeOfEachKindThatDoesNothingForAnEmptyDescription) {
    describe("");
    for (const ChangeKind& kind : changeKinds()) {
        const std::unique_ptr<Change> change = kind.make(job_);
        ASSERT_NE(change, nullptr);
        EXPECT_TRUE(change->apply()) << kind.tags[0];
        EXPECT_TRUE(change->finishUndo()) << kind.tags[0];
    }
    EXPECT_TRUE(errors_.empty());
    EXPECT_EQ(machine_.shell.broadcasts, 0);
}

TEST_F(ChangeTableTest, NamesEachElementAndStatusOnce) {
    std::set<std::string_view> elements;
    std::set<std::string_view> texts;
    for (const ChangeKind& kind : changeKinds()) {
        EXPECT_TRUE(kind.element.empty() || elements.insert(kind.element).second) << kind.element;
        EXPECT_TRUE(!kind.status || texts.insert(kind.status->text()).second) << kind.element;
    }
}

TEST_F(ChangeTableTest, TakesBackEditsFirstAndDirectoriesAfterTheCleaning) {
    for (const ChangeKind& kind : changeKinds()) {
        EXPECT_EQ(kind.pass == UndoPass::kFirst, kind.tags[0] == Format::kModifyFile) << kind.tags[0];
        EXPECT_EQ(kind.end == UndoEnd::kAfterCleaning, kind.tags[0] == Format::kDirectory) << kind.tags[0];
        EXPECT_EQ(kind.end == UndoEnd::kAfterProgress, kind.tags[0] == Format::kEnvironment) << kind.tags[0];
    }
}

}  // namespace
