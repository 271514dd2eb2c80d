#include "engine/additional_actions.h"

#include <gmock/gmock.h>

#include "base/errors.h"
#include "engine/alias_extractor.h"
#include "engine/file_contents.h"
#include "tags_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AdditionalActionsTest : public TagsTest {
protected:
    // Runs a container of its own with these children and gives the log behind its first line.
    std::vector<std::string> run(const std::string& children) {
        const std::string container = "Actions" + std::to_string(++containers_);
        describe("<" + container + ">" + children + "</" + container + ">");
        EXPECT_EQ(actions_.runAdditionalActions(&ui_, container.c_str()), 0);
        std::vector<std::string> lines = log_.lines();
        EXPECT_EQ(lines.at(0), "Running Files for installation tag: <" + container + ">");
        lines.erase(lines.begin());
        log_.clear();
        return lines;
    }

    int containers_ = 0;
    FileContents contents_{cabinet_, expressions_, console_};
    AliasExtractor extractor_{cabinet_, contents_, files_};
    AdditionalActions actions_{{context_, product_, extractor_, system_, files_}};
};

TEST_F(AdditionalActionsTest, RefuseAContainerWithoutAName) {
    EXPECT_EQ(actions_.runAdditionalActions(&ui_, nullptr), -1);
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(AdditionalActionsTest, RunEveryContainerOfTheNameInOrderUnderItsOwnCondition) {
    describe(
        "<Post><RunProgram>one</RunProgram></Post><A><Post Condition='1==2'><RunProgram>two</RunProgram>"
        "</Post><Post Condition='1==1'><RunProgram>three</RunProgram></Post></A>"
        "<Other><RunProgram>four</RunProgram></Other>");
    EXPECT_EQ(actions_.runAdditionalActions(&ui_, "Post"), 0);
    EXPECT_THAT(changes_.calls, ElementsAre("runAssociatedProgram(one, null, 0, null, 0)",
                                            "runAssociatedProgram(three, null, 0, null, 0)"));
    EXPECT_THAT(ui_.calls, ElementsAre("addFileLine(null, 1)", "addFileLine(null, 1)"));
}

TEST_F(AdditionalActionsTest, RunWhatHasNoConditionAnEmptyOneOrABrokenOne) {
    run("<RunProgram>a</RunProgram><RunProgram Condition=''>b</RunProgram><RunProgram Condition='('>c"
        "</RunProgram><RunProgram Condition='1==2'>d</RunProgram>");
    EXPECT_EQ(changes_.calls.size(), 3U);
}

TEST_F(AdditionalActionsTest, PassOverUnknownTagsAndMissingTexts) {
    EXPECT_THAT(run("<Explode>x</Explode><runprogram>x</runprogram><RunProgram></RunProgram>"), IsEmpty());
    EXPECT_THAT(changes_.calls, IsEmpty());
}

TEST_F(AdditionalActionsTest, OpenDocumentsWithTheShell) {
    variables_.setVariable("D", "C:/apps");
    EXPECT_THAT(run("<OpenDocument Wait='1'>[D]//notes.html</OpenDocument>"),
                ElementsAre("Document was opened : \"C:\\apps\\notes.html\""));
    EXPECT_THAT(changes_.calls,
                ElementsAre("runAssociatedProgram(C:\\apps\\notes.html, null, 3, null, 100)"));
    changes_.failing = {"runAssociatedProgram"};
    EXPECT_THAT(run("<OpenDocument>d</OpenDocument>"), ElementsAre("ERROR: Document was NOT opened : \"d\""));
}

TEST_F(AdditionalActionsTest, NeverCorrectAUrl) {
    EXPECT_THAT(run("<OpenURL>http://x//y</OpenURL>"), ElementsAre("URL was opened : \"http://x//y\""));
    EXPECT_THAT(changes_.calls, ElementsAre("runAssociatedProgram(http://x//y, null, 1, null, 100)"));
}

TEST_F(AdditionalActionsTest, RunProgramsWithEverythingTheyAskFor) {
    variables_.setVariable("D", "C:/apps");
    EXPECT_THAT(run("<RunProgram Arguments='/q [D]' Wait='1' AsRoot='1' Asynchronous='1' ProgressUpdate='25' "
                    "ErrorOutput='1==2' WorkDir='[D]//w'>[D]/setup.exe</RunProgram>"),
                ElementsAre("Program was started : \"C:\\apps\\setup.exe /q C:/apps\""));
    EXPECT_THAT(changes_.calls,
                ElementsAre("runAssociatedProgram(C:\\apps\\setup.exe, /q C:/apps, 62, C:\\apps\\w, 250)"));
}

TEST_F(AdditionalActionsTest, TakeMissingFlagsForFalse) {
    run("<RunProgram Wait='1==2' ErrorOutput='1' ProgressUpdate='0'>p</RunProgram>");
    EXPECT_THAT(changes_.calls, ElementsAre("runAssociatedProgram(p, null, 0, null, 0)"));
}

TEST_F(AdditionalActionsTest, TellAProgramThatEndedWithAnErrorAsNotStarted) {
    changes_.failing = {"runAssociatedProgram"};
    EXPECT_THAT(run("<RunProgram Wait='1' Arguments='a'>p</RunProgram>"),
                ElementsAre("ERROR: Program was NOT started : \"p a\""));
}

TEST_F(AdditionalActionsTest, PassTheTextOnByteForByteWithBothDetails) {
    variables_.setVariable("D", "C:/apps");
    run("<RunProgram Details='NoExpansion;;NoPathCorrection' Arguments='[D]'>[D]//a b</RunProgram>"
        "<RunProgram Details='NoExpansion'>[D]//a</RunProgram>"
        "<RunProgram Details='NoPathCorrection'>[D]//a</RunProgram>");
    EXPECT_THAT(changes_.calls, ElementsAre("runAssociatedProgram([D]//a b, [D], 0, null, 0)",
                                            "runAssociatedProgram([D]\\a, null, 0, null, 0)",
                                            "runAssociatedProgram(C:/apps//a, null, 0, null, 0)"));
}

TEST_F(AdditionalActionsTest, WarnAboutUnknownDetails) {
    EXPECT_THAT(run("<RunProgram Details='Quick'>p</RunProgram>"),
                ElementsAre("[WARNING] Unrecognized details flag (Quick) for tag RunProgram",
                            "Program was started : \"p \""));
}

TEST_F(AdditionalActionsTest, ShowTheirLogLineAheadOfTheAction) {
    variables_.setVariable("D", "disk");
    run("<RunProgram Log='Runs on [D]'>p</RunProgram><Explode Log='Unknown'/><RunProgram "
        "Log=''>q</RunProgram>");
    EXPECT_THAT(ui_.calls, ElementsAre("addFileLine(\"Runs on disk\", 1)", "addFileLine(\"Unknown\", 1)",
                                       "addFileLine(null, 1)"));
}

TEST_F(AdditionalActionsTest, RunOnAnEmptyTextWhenAVariableIsMissing) {
    run("<RemoveFile>[NONE]/x</RemoveFile>");
    EXPECT_FALSE(files_.didOperation("removeFile /x"));
}

TEST_F(AdditionalActionsTest, CopyFiles) {
    files_.addFile("/a", "content");
    EXPECT_THAT(run("<CopyFile Dest='/tmp//b'>/a</CopyFile>"), ElementsAre("Additional copy : \"/tmp/b\""));
    EXPECT_EQ(files_.content("/tmp/b"), "content");
    EXPECT_THAT(run("<CopyFile Dest='/tmp/c'>/none</CopyFile>"),
                ElementsAre("ERROR: Additional copy FAILED : \"/tmp/c\""));
    EXPECT_THAT(run("<CopyFile>/a</CopyFile>"), ElementsAre("ERROR: Copy file without Dest attribute!"));
}

TEST_F(AdditionalActionsTest, ChangeTheRegistry) {
    run("<Registry><AddValue Place='HKEY_USERS' Path='p' Value='v'>x</AddValue></Registry>");
    EXPECT_THAT(changes_.calls, ElementsAre("writeRegistryValue(HKEY_USERS, p, null, v, x)"));
    EXPECT_EQ(records(), "REGVAL\tHKEY_USERS\tp\tv\r\n");
}

TEST_F(AdditionalActionsTest, RemoveFiles) {
    files_.addFile("/tmp/a", "");
    EXPECT_THAT(run("<RemoveFile>/tmp/a</RemoveFile>"),
                ElementsAre("Additionally removed file : \"\\tmp\\a\""));
    EXPECT_FALSE(files_.hasFile("/tmp/a"));
    EXPECT_THAT(run("<RemoveFile>/tmp/a</RemoveFile>"),
                ElementsAre("WARNING: Tried to remove a file that doesn't exist \"\\tmp\\a\"."));
    files_.addFile("/tmp/b", "");
    files_.failAt(MemoryFileSystem::Operation::kRemoveFile, "/tmp/b", 1);
    EXPECT_THAT(run("<RemoveFile>/tmp/b</RemoveFile>"),
                ElementsAre("ERROR: Remove file could not remove file \"\\tmp\\b\"!"));
}

TEST_F(AdditionalActionsTest, RemoveDirectories) {
    files_.addDirectory("/d/e");
    EXPECT_THAT(run("<RemoveDir>/d/e/</RemoveDir>"), ElementsAre("Additionally removed dir : \"\\d\\e\\\""));
    EXPECT_FALSE(files_.hasDirectory("/d"));
    EXPECT_THAT(run("<RemoveDir>/d/e</RemoveDir>"),
                ElementsAre("WARNING: Tried to remove a directory that doesn't exist \"\\d\\e\"."));
    files_.addFile("/d/file", "");
    EXPECT_THAT(run("<RemoveDir>/d</RemoveDir>"),
                ElementsAre("ERROR: Remove dir could not remove directories \"\\d\"!"));
}

TEST_F(AdditionalActionsTest, CreateFilesFromTheCabinet) {
    pack({{"tool", "tool.exe", "for [WHO]"}});
    variables_.setVariable("WHO", "me");
    EXPECT_THAT(run("<CreateFile Dest='/tmp//'>tool</CreateFile>"),
                ElementsAre("Created a file from alias(tool) : \"/tmp/\" (0444)"));
    EXPECT_EQ(files_.content("/tmp/tool.exe"), "for [WHO]");
    run("<CreateFile Dest='/tmp' StripExeExt='1' ExpandVarsInFile='1'>tool</CreateFile>");
    EXPECT_EQ(files_.content("/tmp/tool"), "for me");
    EXPECT_THAT(run("<CreateFile>tool</CreateFile>"),
                ElementsAre("ERROR: Create file without Dest attribute (alias: \"tool\")!"));
}

TEST_F(AdditionalActionsTest, ReportTheFileModeInTheBaseThatItIsWrittenIn) {
    pack({{"a", "a", ""}});
    const auto modeOf = [this](const std::string& text) {
        return run("<CreateFile Dest='/tmp' FileMod='" + text + "'>a</CreateFile>").back();
    };
    const std::string head = "Created a file from alias(a) : \"/tmp\" ";
    EXPECT_EQ(modeOf("0755"), head + "(0755)");
    EXPECT_EQ(modeOf("755"), head + "(01363)");
    EXPECT_EQ(modeOf("0x1ff"), head + "(0777)");
    EXPECT_EQ(modeOf("75x"), head + "(0444)");
}

TEST_F(AdditionalActionsTest, WarnAboutAFileModeThatIsNoNumber) {
    pack({{"a", "a", ""}});
    EXPECT_EQ(run("<CreateFile Dest='/tmp' FileMod='75x'>a</CreateFile>").front(),
              "WARNING: Failed to parse file modification - provided string: 75x");
}

TEST_F(AdditionalActionsTest, LeaveTheWalkWhenAFileCannotBeCreated) {
    describe("<Post><CreateFile Dest='/tmp'>none</CreateFile><RunProgram>p</RunProgram></Post>");
    EXPECT_THROW(actions_.runAdditionalActions(&ui_, "Post"), InstallerError);
    EXPECT_THAT(changes_.calls, IsEmpty());
}

TEST_F(AdditionalActionsTest, TakeATooLongPathForNone) {
    const std::string path(1600, 'p');
    run("<RunProgram>" + path + "</RunProgram>");
    EXPECT_THAT(changes_.calls, ElementsAre("runAssociatedProgram(, null, 0, null, 0)"));
}

TEST_F(AdditionalActionsTest, NeedNoFrontEnd) {
    describe("<Post><RunProgram Log='l'>p</RunProgram></Post>");
    EXPECT_EQ(actions_.runAdditionalActions(nullptr, "Post"), 0);
}

}  // namespace
