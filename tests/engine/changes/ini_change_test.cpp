#include "engine/changes/ini_change.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>

#include "engine/action_log_format.h"
#include "engine/changes/change_fixture.h"
#include "engine/changes/removed_files.h"
#include "engine/changes/text_lines.h"
#include "fakes/shown_calls.h"
#include "fakes/temporary_directory.h"

namespace {

using IniText::Lines;
using Operation = MemoryFileSystem::Operation;
using testing::ElementsAre;

constexpr char kFile[] = "/d/a.ini";

std::string get(const Lines& lines, std::string_view section, std::string_view key) {
    return std::string(IniText::valueOf(lines, section, key).value_or("(none)"));
}

TEST(IniReadingTest, FindsNamesInAnyCase) {
    const Lines lines{"[Other]", "Root=x", "[Paths]", "Root=y", "rOOt=z"};
    EXPECT_EQ(get(lines, "PATHS", "root"), "y");
    EXPECT_EQ(get(lines, "other", "ROOT"), "x");
    EXPECT_EQ(get(lines, "Paths", "None"), "(none)");
    EXPECT_EQ(get(lines, "None", "Root"), "(none)");
}

TEST(IniReadingTest, CutsBlanksAndQuotes) {
    const Lines lines{"  [ S ]  ", "\t a b = x y \r", "q=\" x \"", "p='y'", "n=\"x'", "e=", "d=\"\"", "o=\""};
    EXPECT_EQ(get(lines, "S", "a b"), "x y");
    EXPECT_EQ(get(lines, "S", "q"), " x ");
    EXPECT_EQ(get(lines, "S", "p"), "y");
    EXPECT_EQ(get(lines, "S", "n"), "\"x'");
    EXPECT_EQ(get(lines, "S", "e"), "");
    EXPECT_EQ(get(lines, "S", "d"), "");
    EXPECT_EQ(get(lines, "S", "o"), "\"");
}

TEST(IniReadingTest, PassesOverCommentsAndLinesWithoutASign) {
    const Lines lines{"k=outside", "[S]", ";k=comment", "k", "", "k=1=2", "[", "]", "x=1"};
    EXPECT_EQ(get(lines, "S", "k"), "1=2");
    EXPECT_EQ(get(lines, "S", ";k"), "(none)");
    EXPECT_EQ(get(lines, "S", "x"), "1");
    EXPECT_EQ(get(lines, "", "k"), "(none)");
}

TEST(IniReadingTest, CountsTheFirstOfTheSectionsAndKeysOfOneName) {
    const Lines lines{"[s]", "a=1", "A=2", "b=3", "[S]", "c=4"};
    const std::vector<IniText::Entry> entries = IniText::entriesOf(lines, "S");
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].key, "a");
    EXPECT_EQ(entries[0].value, "1");
    EXPECT_EQ(entries[1].key, "b");
    EXPECT_EQ(get(lines, "S", "c"), "(none)");
}

struct EditCase {
    const char* name;
    IniText::Edit edit;
    std::vector<std::string> lines;
    std::vector<std::string> edited;
    std::vector<std::string> lost;
};

// Each step of the walk, and where two of them meet.
const EditCase kCases[] = {
    {"AnEmptyFileGetsSectionAndKey", {"S", "k", "v", std::nullopt}, {}, {"[S]", "k=v"}, {}},
    {"AMissingSectionGoesToTheEnd",
     {"S", "k", "v", std::nullopt},
     {"[A]", "a=1", ""},
     {"[A]", "a=1", "", "[S]", "k=v"},
     {}},
    {"AKeyInTheLastSectionIsAppended",
     {"S", "k", "v", std::nullopt},
     {"[S]", "a=1", "", "; end"},
     {"[S]", "a=1", "", "; end", "k=v"},
     {}},
    {"AKeyGoesAfterTheLastKeyOfItsSection",
     {"S", "k", "v", std::nullopt},
     {"[S]", "a=1", "b=2", "", "; of B", "[B]", "c=3"},
     {"[S]", "a=1", "b=2", "k=v", "", "; of B", "[B]", "c=3"},
     {}},
    {"AKeyOfAnEmptySectionGoesAfterTheHeader",
     {"S", "k", "v", std::nullopt},
     {"; top", "", "[S]", "", "[B]", "c=3"},
     {"; top", "", "[S]", "k=v", "", "[B]", "c=3"},
     {}},
    {"AKeyGoesInFrontOfAnother",
     {"S", "k", "v", "b"},
     {"[S]", "a=1", "b=2", "c=3", "[B]"},
     {"[S]", "a=1", "k=v", "b=2", "c=3", "[B]"},
     {}},
    {"AKeyGoesInFrontOfAnotherInTheLastSection",
     {"S", "k", "v", "b"},
     {"[S]", "a=1", "b=2", "c=3"},
     {"[S]", "a=1", "k=v", "b=2", "c=3"},
     {}},
    {"AMissingBeforeKeyMeansTheSectionsEnd",
     {"S", "k", "v", "x"},
     {"[S]", "a=1", "", "[B]", "x=2"},
     {"[S]", "a=1", "k=v", "", "[B]", "x=2"},
     {}},
    {"ABeforeKeyOfAnotherSectionDoesNotCount",
     {"S", "k", "v", "x"},
     {"[B]", "x=2", "[S]", "a=1"},
     {"[B]", "x=2", "[S]", "a=1", "k=v"},
     {}},
    {"AValueIsReplacedInItsPlace",
     {"S", "k", "v", std::nullopt},
     {"[S]", "a=1", "k= old ", "b=2", "k=second"},
     {"[S]", "a=1", "k=v", "b=2", "k=second"},
     {" old "}},
    {"AValueMovesInFrontOfALaterKey",
     {"S", "k", "v", "b"},
     {"[S]", "k=old", "a=1", "b=2", "[B]"},
     {"[S]", "a=1", "k=v", "b=2", "[B]"},
     {"old"}},
    {"AValueMovesInFrontOfAnEarlierKey",
     {"S", "k", "v", "b"},
     {"[S]", "b=2", "a=1", "k=old", "[B]"},
     {"[S]", "k=v", "b=2", "a=1", "[B]"},
     {"old"}},
    {"AValueMovesToTheSectionsEndWithoutTheBeforeKey",
     {"S", "k", "v", "x"},
     {"[S]", "k=old", "a=1", "", "[B]"},
     {"[S]", "a=1", "k=v", "", "[B]"},
     {"old"}},
    {"AllOfAKeyGoWhenItMoves",
     {"S", "k", "v", "b"},
     {"[S]", "k=1", "k=2", "b=2"},
     {"[S]", "k=v", "b=2"},
     {"1", "2"}},
    {"AKeyInFrontOfItselfIsAddedOnceMore",
     {"S", "k", "v", "k"},
     {"[S]", "k=old", "[B]"},
     {"[S]", "k=v", "k=old", "[B]"},
     {}},
    {"TheFirstHeaderAfterTheSectionEndsTheWalk",
     {"S", "k", "v", std::nullopt},
     {"[S]", "[S]", "k=old"},
     {"[S]", "k=v", "[S]", "k=old"},
     {}},
    {"NamesMatchInTheirCase",
     {"S", "k", "v", std::nullopt},
     {"[s]", "k=1", "[S]", "K=2"},
     {"[s]", "k=1", "[S]", "K=2", "k=v"},
     {}},
    {"BlanksBelongToNames",
     {"S", "k", "v", std::nullopt},
     {"[S]", "k =1", " k=2"},
     {"[S]", "k =1", " k=2", "k=v"},
     {}},
    {"AKeyBeforeAnySectionIsNotMatched",
     {"S", "k", "v", std::nullopt},
     {"k=1", "[S]"},
     {"k=1", "[S]", "k=v"},
     {}},
    {"HeadersNeedBothBrackets",
     {"S", "k", "v", std::nullopt},
     {"[S]", "a=1", "[B", "k=old"},
     {"[S]", "a=1", "[B", "k=v"},
     {"old"}},
    {"ASectionsNameEndsAtTheLastBracket",
     {"a]b", "k", "v", std::nullopt},
     {"[a]b] x", "k=old"},
     {"[a]b] x", "k=v"},
     {"old"}},
    {"CommentsAreNoKeys", {"S", ";k", "v", std::nullopt}, {"[S]", ";k=1"}, {"[S]", ";k=1", ";k=v"}, {}},
    {"AReturnThatIsPartOfALineStays",
     {"S", "k", "v", std::nullopt},
     {"[S]\r", "k=old\r", "a=1\r"},
     {"[S]\r", "k=v\r", "a=1\r"},
     {"old\r"}},
    {"TheFirstLineOfAKeyIsDeleted",
     {"S", "k", std::nullopt, std::nullopt},
     {"[A]", "k=0", "[S]", "k=1", "k=2"},
     {"[A]", "k=0", "[S]", "k=2"},
     {"1"}},
    {"ADeletionLooksThroughAllSectionsOfTheName",
     {"S", "k", std::nullopt, std::nullopt},
     {"[S]", "a=1", "[B]", "k=0", "[S]", "k=1"},
     {"[S]", "a=1", "[B]", "k=0", "[S]"},
     {"1"}},
    {"OnlyTheLineWithTheValueIsDeleted",
     {"S", "k", std::nullopt, std::nullopt, "v"},
     {"[S]", "k=mine", "k =v", "k=v\r", "k=v"},
     {"[S]", "k=mine", "k =v", "k=v"},
     {"v\r"}},
    {"ALineWithAnotherValueIsNotDeleted",
     {"S", "k", std::nullopt, std::nullopt, "v"},
     {"[S]", "k=vv", "k= v"},
     {"[S]", "k=vv", "k= v"},
     {}},
    {"AMissingKeyIsNotDeleted", {"S", "k", std::nullopt, std::nullopt}, {"[S]", "a=1"}, {"[S]", "a=1"}, {}},
    {"ASectionIsDeletedWithItsKeys",
     {"S", std::nullopt, std::nullopt, std::nullopt},
     {"[A]", "a=1", "[S]", "b=2", "; stays", "word", "c=3", "[B]", "d=4", "[S]", "e=5"},
     {"[A]", "a=1", "; stays", "word", "[B]", "d=4"},
     {}},
};

class IniEditingTest : public testing::TestWithParam<EditCase> {};

TEST_P(IniEditingTest, EditsAsAsked) {
    const EditCase& test = GetParam();
    const std::vector<std::string_view> lines(test.lines.begin(), test.lines.end());
    IniText::Editor editor(test.edit);
    editor.run(lines);
    EXPECT_EQ(std::vector<std::string>(editor.lines().begin(), editor.lines().end()), test.edited);
    EXPECT_EQ(std::vector<std::string>(editor.lostValues().begin(), editor.lostValues().end()), test.lost);
}

INSTANTIATE_TEST_SUITE_P(Steps, IniEditingTest, testing::ValuesIn(kCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(IniEditingSizeTest, WalksOverManyLinesOnce) {
    std::vector<std::string_view> lines(2000000, "a=1");
    lines[0] = "[S]";
    IniText::Editor deletion({"S", {}, {}, {}});
    deletion.run(lines);
    EXPECT_TRUE(deletion.lines().empty());
    IniText::Editor move({"S", "a", "v", "x"});
    move.run(lines);
    EXPECT_EQ(move.lines().size(), 2U);
    EXPECT_EQ(move.lostValues().size(), 1999999U);
}

class IniChangeTest : public ChangeTest {
protected:
    void put(const std::vector<std::string>& lines) { machine_.files.addFile(kFile, textOf(lines)); }
    void expectFile(const std::vector<std::string>& lines) {
        EXPECT_EQ(machine_.files.content(kFile), textOf(lines));
    }
    bool add(std::string_view key, std::string_view value, bool isPath = false,
             std::string_view beforeKey = "") {
        return addTo("S", key, value, isPath, beforeKey);
    }
    bool addTo(std::string_view section, std::string_view key, std::optional<std::string_view> value,
               bool isPath = false, std::string_view beforeKey = "") {
        const RecordedResult result =
            IniChange::add(machine_.files, report_, {kFile, section, key, value, isPath, beforeKey});
        undo_ = result.undo;
        return result.done;
    }
    bool remove(std::string_view undo) { return IniChange::remove(machine_.files, report_, undo); }
    bool edit(std::string_view file, const IniText::Edit& change) {
        return IniChange::editFile(machine_.files, file, change);
    }
    // Nothing is written, there is nothing to undo, and the failure is reported.
    void expectRefused(std::string_view section, std::string_view key, std::optional<std::string_view> value,
                       const std::string& line, bool isPath = false, std::string_view beforeKey = "") {
        const std::string before = machine_.files.content(kFile);
        const int replaced = machine_.files.count(Operation::kReplaceFile);
        EXPECT_FALSE(addTo(section, key, value, isPath, beforeKey));
        EXPECT_EQ(undo_, "");
        EXPECT_EQ(machine_.files.content(kFile), before);
        EXPECT_EQ(machine_.files.count(Operation::kReplaceFile), replaced);
        EXPECT_EQ(errors_, ErrorList{line});
        expectLines({line});
        errors_.clear();
    }

    IniChange change_{context_};
    std::string undo_;
};

class IniElementsTest : public IniChangeTest {
protected:
    IniElementsTest() {
        machine_.files.addDirectory("/d");
        machine_.files.addDirectory("/f");  // no file, so that a change of it fails
    }
    // A second group follows.
    bool apply(const std::string& children) {
        describe("<IniFiles>" + children +
                 "</IniFiles><IniFiles><Add FileName='/d/last.ini' Section='s' Key='k'>v"
                 "</Add></IniFiles>");
        return change_.apply();
    }
    void expectSecondGroup() { EXPECT_EQ(machine_.files.content("/d/last.ini"), textOf({"[s]", "k=v"})); }

    const std::string last_ = "INI\tCREATE\t/d/last.ini\ts\tk\tv\r\n";
};

TEST_F(IniElementsTest, WritesAnEntryWithItsTextsExpandedAndRecordsIt) {
    variables_.set("D", "/d");
    put({"[/ds]", "a=1", "/db=2"});
    EXPECT_TRUE(
        apply("<Add FileName='[D]//a.ini' Section='[D]s' Key='[D]k' IsPath='' BeforeKey='[D]b'>[D]v</Add>"));
    expectFile({"[/ds]", "a=1", "/dk=/dv", "/db=2"});
    expectSecondGroup();
    EXPECT_EQ(records(), "INI\tCREATE\t/d/a.ini\t/ds\t/dk\t/dv\r\n" + last_);
    EXPECT_THAT(shownCalls(ui_),
                ElementsAre("addFileLine(\"Create [/ds]//dk in /d/a.ini\", 0)", "addFileLine(null, 1)",
                            "addFileLine(\"Create [s]/k in /d/last.ini\", 0)", "addFileLine(null, 1)"));
}

TEST_F(IniElementsTest, WritesPathsAsTheSystemDoesAndKeepsEverythingElse) {
    variables_.set("DIR", "\\opt\\demo");
    variables_.set("RE", "\\d+");
    describe(
        "<FN Dest='[DIR]'>f</FN><IniFiles><Add FileName='/d/a.ini' Section='s' Key='k'>[DIR]/x [RE] a\\nb"
        "</Add></IniFiles>");
    EXPECT_TRUE(change_.apply());
    const std::string value = writtenPath("\\opt\\demo") + "/x \\d+ a\\nb";
    expectFile({"[s]", "k=" + value});
    EXPECT_EQ(records(), "INI\tCREATE\t/d/a.ini\ts\tk\t" + value + "\r\n");
}

TEST_F(IniElementsTest, LooksForAPathByThePresenceOfItsAttribute) {
    put({"[S]", "p=/d/"});
    EXPECT_TRUE(apply("<Add FileName='/d/a.ini' Section='S' Key='k' IsPath='0'>/d</Add>"));
    expectFile({"[S]", "p=/d/"});
    EXPECT_EQ(records(), "INI\tNONE\r\n" + last_);
}

TEST_F(IniElementsTest, PassesOverWhatIsIncompleteUnknownOrNotWanted) {
    EXPECT_TRUE(
        apply("<Add FileName='/d/f' Section='s' Key='k'></Add><Add FileName='/d/f' Section='s' Key='k'/>"
              "<Add Section='s' Key='k'>v</Add><Add FileName='/d/f' Key='k'>v</Add>"
              "<Add FileName='/d/f' Section='s'>v</Add>"
              "<Put FileName='/d/f' Section='s' Key='k'>v</Put>"
              "<Add FileName='/d/f' Section='s' Key='k' Condition='1==2'>v</Add>"));
    EXPECT_EQ(records(), last_);
    EXPECT_EQ(machine_.files.allFiles(), std::vector<std::string>{"/d/last.ini"});
}

TEST_F(IniElementsTest, EndsAGroupWithItsFailureAndGoesOnWithTheNext) {
    EXPECT_FALSE(
        apply("<Add FileName='/f' Section='s' Key='k'>v</Add>"
              "<Add FileName='/d/g' Section='s' Key='k'>v</Add>"));
    EXPECT_FALSE(machine_.files.hasFile("/d/g"));
    expectSecondGroup();
    EXPECT_EQ(records(), last_);
    EXPECT_THAT(log_.lines(), ElementsAre("ERROR: Updating INI: \"/f\""));
}

TEST_F(IniElementsTest, RecordsAFailureThatIsIgnoredAndGoesOn) {
    EXPECT_TRUE(
        apply("<Add FileName='/f' Section='s' Key='k' IgnoreErrors='0'>v</Add>"
              "<Add FileName='/d/g' Section='s' Key='k'>v</Add>"));
    EXPECT_EQ(machine_.files.content("/d/g"), textOf({"[s]", "k=v"}));
    expectSecondGroup();
    EXPECT_THAT(log_.lines(), ElementsAre("ERROR: Updating INI: \"/f\""));
    EXPECT_EQ(records(), "INI\t\r\nINI\tCREATE\t/d/g\ts\tk\tv\r\n" + last_);
}

TEST_F(IniElementsTest, TakesItsRecordsBackAndFailsWhatItCannot) {
    put({"[S]", "k=new"});
    EXPECT_TRUE(change_.undo({"INI", "REPLACE\t/d/a.ini\tS\tk\told"}));
    expectFile({"[S]", "k=old"});
    EXPECT_FALSE(change_.undo({"INI", "CREATE\t/f\tS\tk\tv"}));
    EXPECT_EQ(errors_, ErrorList{"FAILED to remove [S]/k in /f"});
    EXPECT_THAT(reasons(),
                ElementsAre("addMessage(\"/f: a link, or something else than a file, is in its place\")"));
    machine_.files.setReadOnly("/d");
    EXPECT_FALSE(change_.undo({"INI", "REPLACE\t/d/a.ini\tS\tother\told"}));
    EXPECT_FALSE(change_.undo({"INI", "REPLACE\t/d/gone.ini\tS\tk\told"}));
    EXPECT_TRUE(change_.undo({"INI", "NONE"}));
    EXPECT_TRUE(change_.undo({"INI", "REPLACE\t/d/a.ini\tS"}));
    EXPECT_TRUE(change_.finishUndo());
}

TEST_F(IniElementsTest, ReportsAnEarlierValueWhoseDirectoryHasGoneAndFailsNothing) {
    EXPECT_TRUE(change_.undo({"INI", "REPLACE\t/none/a.ini\tS\tk\told"}));
    EXPECT_EQ(errors_, ErrorList{"FAILED to restore [S]/k in /none/a.ini"});
    EXPECT_TRUE(machine_.files.allFiles().empty());
}

TEST_F(IniElementsTest, RestoresNothingIntoAFileThatWentWithTheProduct) {
    RemovedFiles removed;
    removed.add("\\d\\a.ini");
    IniChange change(context_, &removed);
    EXPECT_TRUE(change.undo({"INI", "REPLACE\t/d/a.ini\tS\tk\told"}));
    EXPECT_TRUE(machine_.files.allFiles().empty());
    expectLines({});
    put({"[S]", "x=1"});  // somebody has made one of that name
    EXPECT_TRUE(change.undo({"INI", "REPLACE\t/d/a.ini\tS\tx\t2"}));
    expectFile({"[S]", "x=2"});
}

TEST_F(IniElementsTest, RepeatsAWalkWithoutAFailure) {
    put({"[S]", "old=new", "k=v"});
    for (int walk = 0; walk < 2; ++walk) {
        IniChange change(context_);
        EXPECT_TRUE(change.undo({"INI", "REPLACE\t/d/a.ini\tS\told\tformer"}));
        EXPECT_TRUE(change.undo({"INI", "CREATE\t/d/a.ini\tS\tk\tv"}));
        EXPECT_TRUE(change.undo({"INI", "CREATE\t/d/none.ini\tS\tk\tv"}));
        expectFile({"[S]", "old=former"});
    }
    EXPECT_TRUE(errors_.empty());
}

TEST_F(IniElementsTest, BringsBackWhatWasThereBeforeTheFirstOfTwoInstallations) {
    put({"[S]", "k=former"});
    for (const char* value : {"1", "2"}) {
        EXPECT_TRUE(add("k", value));
        EXPECT_TRUE(add("n", value));
    }
    for (const char* fields : {"REPLACE\t/d/a.ini\tS\tk\tformer", "CREATE\t/d/a.ini\tS\tn\t1",
                               "REPLACE\t/d//a.ini\tS\tk\t1", "REPLACE\t\\d\\a.ini\tS\tn\t1"}) {
        EXPECT_TRUE(change_.undo({"INI", fields})) << fields;
    }
    expectFile({"[S]", "k=former"});
}

TEST_F(IniChangeTest, CreatesAKeyAndRemovesItAgain) {
    put({"[S]", "a=1", "", "[B]", "b=2"});
    EXPECT_TRUE(add("k", "v w"));
    EXPECT_EQ(undo_, "CREATE\t/d/a.ini\tS\tk\tv w");
    expectFile({"[S]", "a=1", "k=v w", "", "[B]", "b=2"});
    EXPECT_TRUE(remove(undo_));
    expectFile({"[S]", "a=1", "", "[B]", "b=2"});
    expectLines({"Create [S]/k in /d/a.ini", "Remove [S]/k in /d/a.ini"});
    EXPECT_TRUE(errors_.empty());
}

TEST_F(IniChangeTest, ReplacesAValueAndRestoresIt) {
    put({"[S]", "k=old=1", "a=1"});
    EXPECT_TRUE(add("k", "new"));
    EXPECT_EQ(undo_, "REPLACE\t/d/a.ini\tS\tk\told=1");
    expectFile({"[S]", "k=new", "a=1"});
    EXPECT_TRUE(remove(undo_));
    expectFile({"[S]", "k=old=1", "a=1"});
    expectLines({"Replace [S]/k in /d/a.ini", "Restore [S]/k in /d/a.ini"});
}

TEST_F(IniChangeTest, MakesAMissingFileAndLeavesItsSection) {
    machine_.files.addDirectory("/d");
    EXPECT_TRUE(add("k", "v"));
    expectFile({"[S]", "k=v"});
    EXPECT_TRUE(remove(undo_));
    expectFile({"[S]"});
}

TEST_F(IniChangeTest, TakesAnEmptyValueForAnAbsentOne) {
    put({"[S]", "k="});
    EXPECT_TRUE(add("k", "v"));
    EXPECT_EQ(undo_, "CREATE\t/d/a.ini\tS\tk\tv");
    expectFile({"[S]", "k=v"});
    EXPECT_TRUE(add("e", ""));
    EXPECT_EQ(undo_, "CREATE\t/d/a.ini\tS\te\t");
    EXPECT_TRUE(remove("CREATE\t/d/a.ini\tS\te"));
    expectFile({"[S]", "k=v"});
}

TEST_F(IniChangeTest, PutsANewKeyInFrontOfAnother) {
    put({"[S]", "a=1", "b=2", "[B]"});
    EXPECT_TRUE(add("k", "v", false, "b"));
    expectFile({"[S]", "a=1", "k=v", "b=2", "[B]"});
    EXPECT_TRUE(remove(undo_));
    EXPECT_TRUE(add("k", "v", false, "none"));
    expectFile({"[S]", "a=1", "b=2", "k=v", "[B]"});
    EXPECT_TRUE(remove(undo_));
    EXPECT_TRUE(add("k", "v", false, ""));
    expectFile({"[S]", "a=1", "b=2", "k=v", "[B]"});
}

TEST_F(IniChangeTest, DoesNotMatchAKeyBeforeAnySection) {
    put({"k=outside", "[S]"});
    EXPECT_TRUE(add("k", "v"));
    EXPECT_EQ(undo_.substr(0, 6), "CREATE");
    expectFile({"k=outside", "[S]", "k=v"});
    expectLines({"Create [S]/k in /d/a.ini"});
    expectRefused("", "k", "v", "FAILED to create []/k in /d/a.ini");
}

TEST_F(IniChangeTest, RecordsAnEarlierValueWithoutItsBlanksAndQuotes) {
    put({"[S]", "k= 'old' ", "a=1"});
    EXPECT_TRUE(add("k", "v"));
    EXPECT_EQ(undo_, "REPLACE\t/d/a.ini\tS\tk\told");
}

TEST_F(IniChangeTest, TakesAnotherSpellingForAnotherKeyAndLeavesItAsItWas) {
    const std::vector<std::vector<std::string>> files = {
        {"[S]", "k = old"},          {"[S]", "K=old"},
        {"[S]", " k=old", "a=1"},    {"[s]", "k=old"},
        {"[ S ]", "K = old", "[B]"}, {"[S ]", "k=old", "[S]", "a=1"},
    };
    for (const auto& lines : files) {
        SCOPED_TRACE(lines[0] + lines[1]);
        put(lines);
        EXPECT_TRUE(add("k", "v"));
        EXPECT_EQ(undo_, "CREATE\t/d/a.ini\tS\tk\tv");
        expectLines({"Create [S]/k in /d/a.ini"});
        EXPECT_TRUE(remove(undo_));
        expectLines({"Remove [S]/k in /d/a.ini"});
        std::vector<std::string> expected = lines;
        if (lines[0] != "[S]" && lines.back() != "a=1") {
            expected.push_back("[S]");  // a section stays
        }
        expectFile(expected);
    }
}

TEST_F(IniChangeTest, TakesItsOwnLineAwayAmongOthersOfTheKey) {
    put({"[S]", "k=mine"});
    EXPECT_TRUE(add("k", "v", false, "k"));
    expectFile({"[S]", "k=v", "k=mine"});
    EXPECT_EQ(undo_, "CREATE\t/d/a.ini\tS\tk\tv");
    put({"[S]", "k=mine", "k=v", "k=other"});
    EXPECT_TRUE(remove(undo_));
    expectFile({"[S]", "k=mine", "k=other"});
}

TEST_F(IniChangeTest, TakesALineAwayWhoseValueHasChangedSince) {
    put({"[S]", "a=1", "k=changed"});
    EXPECT_TRUE(remove("CREATE\t/d/a.ini\tS\tk\tv"));
    expectFile({"[S]", "a=1"});
}

TEST_F(IniChangeTest, KeepsTheQuotesThatAValueNeeds) {
    put({"[S]", "k=\" old \""});
    EXPECT_TRUE(add("k", "v"));
    EXPECT_EQ(undo_, "REPLACE\t/d/a.ini\tS\tk\t\" old \"");
    EXPECT_TRUE(remove(undo_));
    expectFile({"[S]", "k=\" old \""});
}

TEST_F(IniChangeTest, RemembersTheValueThatGivesWayThoughAReaderFindsAnother) {
    put({"[S]", "K=first", "k=second"});
    EXPECT_TRUE(add("k", "v"));
    EXPECT_EQ(undo_, "REPLACE\t/d/a.ini\tS\tk\tsecond");
    EXPECT_TRUE(remove(undo_));
    expectFile({"[S]", "K=first", "k=second"});
    put({"[s]", "a=1", "[S]", "k=hidden"});
    EXPECT_TRUE(add("k", "v"));
    EXPECT_EQ(undo_, "REPLACE\t/d/a.ini\tS\tk\thidden");
}

TEST_F(IniChangeTest, RefusesToMoveAKeyWithSeveralValues) {
    put({"[S]", "k=1", "k=2", "b=3"});
    expectRefused("S", "k", "v", "FAILED to replace [S]/k in /d/a.ini", false, "b");
    EXPECT_TRUE(add("k", "v"));
    expectFile({"[S]", "k=v", "k=2", "b=3"});
}

TEST_F(IniChangeTest, LeavesAValueBeyondTheBufferAlone) {
    put({"[S]", "k=" + std::string(511, 'x')});
    EXPECT_TRUE(add("k", "v"));
    EXPECT_TRUE(remove(undo_));
    expectFile({"[S]", "k=" + std::string(511, 'x')});
    ui_.take();
    for (const std::size_t size : {512U, 2048U, 40000U}) {
        put({"[S]", "k=" + std::string(size, 'x')});
        expectRefused("S", "k", "v", "FAILED to replace [S]/k in /d/a.ini");
    }
}

TEST_F(IniChangeTest, LeavesAValueAloneThatTheRecordWouldChange) {
    for (const std::string& value : {std::string("a\tb"), std::string("\"a \" x\"") + '\t' + "y"}) {
        put({"[S]", "k=" + value});
        expectRefused("S", "k", "v", "FAILED to replace [S]/k in /d/a.ini");
    }
    const std::string section(600, 's');
    put({"[" + section + "]", "k=" + std::string(500, 'x')});
    expectRefused(section, "k", "v", "FAILED to replace [" + section + "]/k in /d/a.ini");
}

TEST_F(IniChangeTest, RefusesWhatItCouldNotFindAgain) {
    put({"[S]", "a=1"});
    for (const char* key : {"", "a=b", ";k", "[k", "a\tb", "a\nb", "k "}) {
        expectRefused("S", key, "v", std::string("FAILED to create [S]/") + key + " in /d/a.ini");
    }
    for (const char* section : {"a\tb", "a\nb"}) {
        expectRefused(section, "k", "v", std::string("FAILED to create [") + section + "]/k in /d/a.ini");
    }
    expectRefused("S", "k", "v\n[T]\nx=1", "FAILED to create [S]/k in /d/a.ini");
    expectRefused("S", "k", std::nullopt, "FAILED to create [S]/k in /d/a.ini");
    const std::string key(1023, 'k');
    expectRefused("S", key, "v", "FAILED to create [S]/" + key + " in /d/a.ini");
    EXPECT_FALSE(IniChange::add(machine_.files, report_, {"", "S", "k", "v"}).done);
}

TEST_F(IniChangeTest, LetsTheRecordCutTheValueOfANewKey) {
    put({"[S]"});
    const std::string value(1023, 'v');
    EXPECT_TRUE(add("k", value));
    EXPECT_TRUE(remove(undo_.substr(0, ActionLogFormat::kLineLimit - 4)));
    expectFile({"[S]"});
}

TEST_F(IniChangeTest, ReportsWhatCannotBeReadOrWritten) {
    put({"[S]", "k=old"});
    machine_.files.failAt(Operation::kRead, "", 1);
    expectRefused("S", "k", "v", "FAILED to create [S]/k in /d/a.ini");
    machine_.files.failAt(Operation::kWrite, "", 1);
    EXPECT_FALSE(add("k", "v"));
    EXPECT_EQ(undo_, "REPLACE\t/d/a.ini\tS\tk\told");
    machine_.files.setReadOnly("/d");
    EXPECT_FALSE(add("n", "v"));
    EXPECT_FALSE(remove("REPLACE\t/d/a.ini\tS\tk\tolder"));
    EXPECT_FALSE(remove("CREATE\t/d/a.ini\tS\tk\told"));
    const ErrorList lines{"FAILED to replace [S]/k in /d/a.ini", "FAILED to create [S]/n in /d/a.ini",
                          "FAILED to restore [S]/k in /d/a.ini", "FAILED to remove [S]/k in /d/a.ini"};
    EXPECT_EQ(errors_, lines);
    expectLines(lines);
    expectFile({"[S]", "k=old"});
    EXPECT_EQ(machine_.files.allFiles().size(), 1U);
}

TEST_F(IniChangeTest, LeavesDirectoriesAndWideTextAlone) {
    machine_.files.addDirectory(kFile);
    expectRefused("S", "k", "v", "FAILED to create [S]/k in /d/a.ini");
    const std::string wide("\xff\xfe[\0S\0]\0\n\0", 10);
    machine_.files.addFile("/d/wide.ini", wide);
    EXPECT_FALSE(edit("/d/wide.ini", {"S", "k", "v", {}}));
    EXPECT_FALSE(IniChange::add(machine_.files, report_, {"/d/wide.ini", "S", "k", "v"}).done);
    EXPECT_EQ(machine_.files.content("/d/wide.ini"), wide);
}

TEST_F(IniChangeTest, KeepsTheMarkBeforeTheFirstLine) {
    machine_.files.addFile(kFile, "\xef\xbb\xbf" + textOf({"[S]", "k=old"}));
    EXPECT_TRUE(add("k", "v"));
    EXPECT_EQ(machine_.files.content(kFile), "\xef\xbb\xbf" + textOf({"[S]", "k=v"}));
}

TEST_F(IniChangeTest, WritesNothingWhereNothingChanges) {
    put({"[S]", "k=v"});
    EXPECT_TRUE(add("k", "v"));
    EXPECT_TRUE(remove("CREATE\t/d/a.ini\tS\tnone\tv"));
    EXPECT_TRUE(remove("CREATE\t/d/a.ini\tT\tk\tv"));
    EXPECT_EQ(machine_.files.count(Operation::kWrite), 0);
    machine_.files.addFile("/d/b.ini", "[S]\nk=v");
    EXPECT_TRUE(edit("/d/b.ini", {"S", "none", {}, {}}));
    EXPECT_EQ(machine_.files.content("/d/b.ini"), "[S]\nk=v");
}

TEST_F(IniChangeTest, MakesNoFileToTakeALineAway) {
    machine_.files.addDirectory("/d");
    EXPECT_TRUE(remove("CREATE\t/d/a.ini\tS\tk\tv"));
    EXPECT_TRUE(edit(kFile, {"S", "k", {}, {}}));
    EXPECT_TRUE(machine_.files.allFiles().empty());
    expectLines({"Remove [S]/k in /d/a.ini"});
}

TEST_F(IniChangeTest, WritesAnEarlierValueIntoANewFileWhereTheOldOneHasGone) {
    machine_.files.addDirectory("/d");
    EXPECT_TRUE(remove("REPLACE\t/d/a.ini\tS\tk\told"));
    expectFile({"[S]", "k=old"});
    expectLines({"Restore [S]/k in /d/a.ini"});
}

TEST_F(IniChangeTest, FindsADirectoryAmongTheValuesOfTheSection) {
    machine_.files.addDirectory("/opt/demo");
    machine_.files.addDirectory("/opt/other");
    put({"[s]", "x=1", "p = \"/OPT/demo/\"", "[B]", "q=/opt/other"});
    EXPECT_TRUE(add("k", "/opt/demo", true));
    EXPECT_EQ(undo_, "NONE");
    EXPECT_FALSE(remove(undo_));
    expectLines({});
    EXPECT_TRUE(add("k", "/opt/other", true));
    EXPECT_EQ(undo_.substr(0, 6), "CREATE");
    put({"[S]", "p=/opt/demo"});
    EXPECT_TRUE(add("k", "/opt/demo", false));
    expectFile({"[S]", "p=/opt/demo", "k=/opt/demo"});
    EXPECT_EQ(machine_.files.allFiles(), std::vector<std::string>{kFile});
}

TEST_F(IniChangeTest, RefusesToCompareSectionsBeyondTheBuffers) {
    machine_.files.addDirectory("/opt/demo");
    std::vector<std::string> lines{"[S]"};
    for (int i = 0; i < 204; ++i) {
        lines.push_back("key" + std::to_string(100000 + i) + "=x");  // ten bytes of the list each
    }
    lines.push_back("a23456=x");
    put(lines);
    EXPECT_TRUE(add("a23456", "/opt/demo", true));
    lines.back() = "a234567=x";
    put(lines);
    ui_.take();
    expectRefused("S", "k", "/opt/demo", "FAILED to create [S]/k in /d/a.ini", true);
    put({"[S]", "a=" + std::string(512, 'x')});
    expectRefused("S", "k", "/opt/demo", "FAILED to create [S]/k in /d/a.ini", true);
    EXPECT_TRUE(add("k", "/opt/demo", false));
}

TEST_F(IniChangeTest, TakesNothingBackByDamagedRecords) {
    put({"[S]", "k=v"});
    for (const char* text :
         {"", "NONE", "\t", "CREATE", "CREATE\t", "CREATE\t/d/a.ini", "CREATE\t/d/a.ini\tS", "REPLACE",
          "REPLACE\t/d/a.ini\tS\tk", "REPLACE\t/d/a.ini\tS\tk\t", "create\t/d/a.ini\tS\tk\tv",
          "\tCREATE\t/d/a.ini\tS\tk", "\xff\x01"}) {
        EXPECT_FALSE(remove(text)) << text;
    }
    EXPECT_TRUE(remove("CREATE\t/none\t\xff\t\x01\x02"));
    expectFile({"[S]", "k=v"});
    EXPECT_TRUE(errors_.empty());
    EXPECT_FALSE(remove("REPLACE\t/d\tS\tk\tv"));
    EXPECT_FALSE(remove("CREATE\t/d\tS\tk\tv"));
}

TEST_F(IniChangeTest, WritesByMode) {
    using Mode = IniChange::Mode;
    put({"[S]", "a=1", "[B]"});
    const auto write = [&](Mode mode, std::optional<std::string_view> key,
                           std::optional<std::string_view> value) {
        return IniChange::write(machine_.files, kFile, {"S", key, value, {}}, mode);
    };
    EXPECT_TRUE(write(Mode::kWriteValue, "k", "v"));
    expectFile({"[S]", "a=1", "k=v", "[B]"});
    EXPECT_TRUE(write(Mode::kDeleteKey, "a", "ignored"));
    expectFile({"[S]", "k=v", "[B]"});
    EXPECT_TRUE(write(Mode::kNone, "k", "x"));
    expectFile({"[S]", "k=v", "[B]"});
    EXPECT_TRUE(write(Mode::kDeleteSection, "k", "x"));
    expectFile({"[B]"});
    EXPECT_FALSE(write(Mode::kDeleteKey, std::nullopt, std::nullopt));
    EXPECT_FALSE(write(Mode::kWriteValue, "k", std::nullopt));
    EXPECT_FALSE(edit(kFile, {"", "k", "v", {}}));
    expectFile({"[B]"});
}

// Files at random, and changes that are taken back in the reverse order.
class RandomIniChangeTest : public IniChangeTest {
protected:
    int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
    std::string pick(const std::vector<std::string>& words) {
        return words[static_cast<std::size_t>(below(static_cast<int>(words.size())))];
    }

    std::mt19937 random_;
};

TEST_F(RandomIniChangeTest, ComesBackByteForByte) {
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE(seed);
        random_.seed(seed);
        std::vector<std::string> lines;
        for (int section = 0; section < 3; ++section) {
            lines.push_back("[S" + std::to_string(section) + "]");
            for (int key = 0; key < 4; ++key) {
                lines.push_back(pick({"", "; remark = 1", "word",
                                      "k" + std::to_string(key) + "=v " + pick({"1", "=", "\xc3\xa9"})}));
            }
        }
        put(lines);
        std::vector<std::string> undos;
        for (int change = 0; change < 6; ++change) {
            const std::string section = "S" + std::to_string(below(3));
            const std::string key = pick({"k0", "k1", "k2", "n1", "n2"});
            const bool isNew = key[0] == 'n' && undos.empty();
            ASSERT_TRUE(
                addTo(section, key, pick({"x", "y z"}), false, isNew ? pick({"k1", "k3", "none"}) : ""));
            undos.push_back(undo_);
        }
        std::ranges::for_each(undos.rbegin(), undos.rend(),
                              [&](const std::string& undo) { EXPECT_TRUE(remove(undo)); });
        expectFile(lines);
    }
}

TEST_F(RandomIniChangeTest, LosesNoLineOfOthers) {
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE(seed);
        random_.seed(seed);
        std::vector<std::string> lines;
        for (int line = below(12); line > 0; --line) {
            lines.push_back(pick(
                {"[S]", "[s]", "[S", "[T]x", "k=1", "K=2", " k =3", "b=4", ";k=5", "word", "", "=", "\r"}));
        }
        put(lines);
        if (addTo(pick({"S", "T"}), "k", "new", false, pick({"b", "", "none"}))) {
            EXPECT_TRUE(remove(undo_));
        }
        std::vector<std::string> others;
        std::ranges::copy_if(lines, std::back_inserter(others),
                             [](const std::string& line) { return !line.starts_with("k="); });
        const std::string content = machine_.files.content(kFile);
        std::size_t position = 0;
        for (const std::string& other : others) {
            const std::string whole = textOf({other});
            const std::size_t found = content.find(whole, position);
            ASSERT_NE(found, std::string::npos) << content;
            position = found + whole.size();
        }
    }
}

TEST(IniChangeMachineTest, ChangesARealFile) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("a.ini");
    const std::string before = textOf({"[S]", "k=old", "", "[B]", "p=" + directory.path() + "/"});
    writeTestFile(path, before);
    platform::FileSystem& files = platform::systemFileSystem();
    Report report(nullptr, nullptr);
    const RecordedResult first = IniChange::add(files, report, {path, "S", "k", "new"});
    EXPECT_TRUE(first.done);
    const RecordedResult second = IniChange::add(files, report, {path, "S", "n", "v", false, "k"});
    EXPECT_TRUE(second.done);
    EXPECT_EQ(readTestFile(path), textOf({"[S]", "n=v", "k=new", "", "[B]", "p=" + directory.path() + "/"}));
    EXPECT_TRUE(IniChange::remove(files, report, second.undo));
    EXPECT_TRUE(IniChange::remove(files, report, first.undo));
    EXPECT_EQ(readTestFile(path), before);
    const RecordedResult present = IniChange::add(files, report, {path, "B", "n", directory.path(), true});
    EXPECT_TRUE(present.done);
    EXPECT_EQ(present.undo, "NONE");
    EXPECT_EQ(readTestFile(path), before);
}

TEST(IniUndoTest, LeavesALineThatHasTheFormerValueAsItIs) {
    MemoryFileSystem files;
    RecordingUI ui;
    ErrorList errors;
    Report report(&ui, &errors);
    const std::string content = textOf({"[s]", "k= \"old value\" "});
    files.addFile("/d/a.ini", content);
    EXPECT_TRUE(IniChange::remove(files, report, "REPLACE\t/d/a.ini\ts\tk\told value"));
    EXPECT_EQ(files.content("/d/a.ini"), content);
    EXPECT_TRUE(IniChange::remove(files, report, "REPLACE\t/d/a.ini\ts\tk\tother"));
    EXPECT_EQ(files.content("/d/a.ini"), textOf({"[s]", "k=other"}));
}

}  // namespace
