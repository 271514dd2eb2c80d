#include "engine/additional_actions.h"

#include <gmock/gmock.h>

#include "base/errors.h"
#include "engine/action_log_writer.h"
#include "engine/changes/change_table.h"
#include "engine_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AdditionalActionsTest : public EngineTest {
protected:
    AdditionalActionsTest() { writer_.openNew("/tmp/log"); }

    // Runs a container of its own with these children and gives the log after its first line.
    std::vector<std::string> run(const std::string& children) {
        const std::string container = "Actions" + std::to_string(++containers_);
        describe("<" + container + ">" + children + "</" + container + ">");
        actions_.run(container);
        std::vector<std::string> lines = log_.lines();
        EXPECT_EQ(lines.at(0), "Running Files for installation tag: <" + container + ">");
        lines.erase(lines.begin());
        log_.clear();
        return lines;
    }
    // The command lines of the programs that were started.
    std::vector<std::string> started() const {
        std::vector<std::string> lines;
        for (const MemoryProcesses::Started& program : machine_.processes.started) {
            lines.push_back(program.commandLine);
        }
        return lines;
    }

    int containers_ = 0;
    PFileConsole logFile_{files_};
    ActionLogWriter writer_{logFile_};
    ChangeJob job_{parts_, writer_, report_};
    AdditionalActions actions_{job_.context, parts_};
};

TEST_F(AdditionalActionsTest, RunsEveryContainerOfTheNameInOrderUnderItsOwnCondition) {
    describe(
        "<Post><RunProgram>one</RunProgram></Post><A><Post Condition='1==2'><RunProgram>two</RunProgram>"
        "</Post><Post Condition='1==1'><RunProgram>three</RunProgram></Post></A>"
        "<Other><RunProgram>four</RunProgram></Other>");
    actions_.run("Post");
    EXPECT_THAT(started(), ElementsAre("\"one\"", "\"three\""));
    EXPECT_THAT(ui_.calls, ElementsAre("addFileLine(null, 1)", "addFileLine(null, 1)"));
}

TEST_F(AdditionalActionsTest, RunsWhatHasNoConditionAnEmptyOneOrABrokenOne) {
    run("<RunProgram>a</RunProgram><RunProgram Condition=''>b</RunProgram><RunProgram Condition='('>c"
        "</RunProgram><RunProgram Condition='1==2'>d</RunProgram>");
    EXPECT_EQ(started().size(), 3U);
}

TEST_F(AdditionalActionsTest, SkipsUnknownTagsAndMissingTexts) {
    EXPECT_THAT(run("<Explode>x</Explode><runprogram>x</runprogram><RunProgram></RunProgram>"), IsEmpty());
    EXPECT_THAT(started(), IsEmpty());
}

TEST_F(AdditionalActionsTest, OpensDocumentsWithTheShell) {
    variables_.set("D", "C:/apps");
    EXPECT_THAT(run("<OpenDocument Wait='1'>[D]//notes.html</OpenDocument>"),
                ElementsAre("Document was opened : \"C:\\apps\\notes.html\""));
    EXPECT_THAT(machine_.shell.opened, ElementsAre("C:\\apps\\notes.html"));
    machine_.shell.opens = false;
    EXPECT_THAT(run("<OpenDocument>d</OpenDocument>"), ElementsAre("ERROR: Document was NOT opened : \"d\""));
    EXPECT_THAT(started(), IsEmpty());
}

TEST_F(AdditionalActionsTest, NeverCorrectsAUrl) {
    EXPECT_THAT(run("<OpenURL>http://x//y</OpenURL>"), ElementsAre("URL was opened : \"http://x//y\""));
    EXPECT_THAT(machine_.shell.opened, ElementsAre("http://x//y"));
}

TEST_F(AdditionalActionsTest, RunsProgramsWithEverythingTheyAskFor) {
    variables_.set("D", "C:/apps");
    machine_.processes.waitsBeforeEnd = 2;
    EXPECT_THAT(
        run("<RunProgram Arguments='/q [D]' Wait='1' AsRoot='1' Asynchronous='1' ProgressUpdate='1' "
            "ErrorOutput='1==2' WorkDir='[D]//w'>[D]/setup.exe</RunProgram>"),
        ElementsAre("Program was started : \"C:\\apps\\setup.exe /q " + writtenPath("C:/apps") + "\""));
    EXPECT_THAT(started(), ElementsAre("\"C:\\apps\\setup.exe\" /q " + writtenPath("C:/apps")));
    EXPECT_EQ(machine_.processes.started[0].workDirectory, "C:\\apps\\w");
}

TEST_F(AdditionalActionsTest, StartsAProgramWithoutWaitingForItsEnd) {
    machine_.processes.exitCodes = {3};
    EXPECT_THAT(run("<RunProgram Wait='1==2' ErrorOutput='1' ProgressUpdate='0'>p</RunProgram>"),
                ElementsAre("Program was started : \"p \""));
    EXPECT_EQ(machine_.processes.started[0].workDirectory, "");
}

TEST_F(AdditionalActionsTest, LogsTheCodeOfAProgramThatWasStartedAndEnded) {
    for (const char* how : {"Wait='1'", "Asynchronous='1'"}) {
        machine_.processes.exitCodes = {3, -1};
        for (const char* code : {"3", "-1"}) {
            EXPECT_THAT(run("<RunProgram " + std::string(how) + " Arguments='a'>p</RunProgram>"),
                        ElementsAre("ERROR: \"p\" a ended with the code " + std::string(code),
                                    "Program was started : \"p a\""));
        }
    }
}

TEST_F(AdditionalActionsTest, LogsThatAProgramWasNotStarted) {
    machine_.processes.startError = 2;
    for (const char* how : {"", "Wait='1'", "Asynchronous='1'"}) {
        EXPECT_EQ(run("<RunProgram " + std::string(how) + " Arguments='a'>p</RunProgram>").back(),
                  "ERROR: Program was NOT started : \"p a\"");
    }
}

TEST_F(AdditionalActionsTest, FailsWhenTheRegistryCouldNotBeWritten) {
    machine_.registry.setReadOnly("k");
    describe(
        "<Post><Registry><AddValue Place='HKEY_USERS' Path='k' Value='v'>x</AddValue></Registry>"
        "<RunProgram>p</RunProgram></Post><Other><RunProgram>none</RunProgram></Other>");
    EXPECT_FALSE(actions_.run("Post"));
    EXPECT_THAT(started(), ElementsAre("\"p\""));
    machine_.processes.startError = 2;
    EXPECT_TRUE(actions_.run("Other"));
}

TEST_F(AdditionalActionsTest, PassesTheTextOnByteForByteWithBothDetails) {
    variables_.set("D", "C:/apps");
    run("<RunProgram Details='NoExpansion;;NoPathCorrection' Arguments='[D]'>[D]//a b</RunProgram>"
        "<RunProgram Details='NoExpansion'>[D]//a</RunProgram>"
        "<RunProgram Details='NoPathCorrection'>[D]//a</RunProgram>");
    EXPECT_THAT(started(), ElementsAre("\"[D]//a b\" [D]", "\"[D]\\a\"", "\"C:/apps//a\""));
}

TEST_F(AdditionalActionsTest, WarnsAboutUnknownDetails) {
    EXPECT_THAT(run("<RunProgram Details='Quick'>p</RunProgram>"),
                ElementsAre("[WARNING] Unrecognized details flag (Quick) for tag RunProgram",
                            "Program was started : \"p \""));
}

TEST_F(AdditionalActionsTest, ShowsTheLogLineBeforeTheAction) {
    variables_.set("D", "disk");
    run("<RunProgram Log='Runs on [D]'>p</RunProgram><Explode Log='Unknown'/><RunProgram "
        "Log=''>q</RunProgram>");
    EXPECT_THAT(ui_.calls, ElementsAre("addFileLine(\"Runs on disk\", 1)", "addFileLine(\"Unknown\", 1)",
                                       "addFileLine(null, 1)"));
}

TEST_F(AdditionalActionsTest, RunsOnAnEmptyTextWhenAVariableIsMissing) {
    run("<RemoveFile>[NONE]/x</RemoveFile>");
    EXPECT_FALSE(files_.didOperation("removeFile /x"));
}

TEST_F(AdditionalActionsTest, CopiesFiles) {
    files_.addFile("/a", "content");
    EXPECT_THAT(run("<CopyFile Dest='/tmp//b'>/a</CopyFile>"), ElementsAre("Additional copy : \"/tmp/b\""));
    EXPECT_EQ(files_.content("/tmp/b"), "content");
    EXPECT_THAT(run("<CopyFile Dest='/tmp/c'>/none</CopyFile>"),
                ElementsAre("ERROR: Additional copy FAILED : \"/tmp/c\""));
    EXPECT_THAT(run("<CopyFile>/a</CopyFile>"), ElementsAre("ERROR: Copy file without Dest attribute!"));
}

TEST_F(AdditionalActionsTest, ChangesTheRegistry) {
    run("<Registry><AddValue Place='HKEY_USERS' Path='p' Value='v'>x</AddValue></Registry>");
    const auto* value = machine_.registry.value(platform::RegistryRoot::kUsers, "p", "v");
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(files_.content("/tmp/log"), "REGKEY\t1\tHKEY_USERS\tp\r\nREGVAL\tHKEY_USERS\tp\tv\r\n");
}

TEST_F(AdditionalActionsTest, RemovesFiles) {
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

TEST_F(AdditionalActionsTest, RemovesDirectories) {
    files_.addDirectory("/d/e");
    EXPECT_THAT(run("<RemoveDir>/d/e/</RemoveDir>"), ElementsAre("Additionally removed dir : \"\\d\\e\\\""));
    EXPECT_FALSE(files_.hasDirectory("/d"));
    EXPECT_THAT(run("<RemoveDir>/d/e</RemoveDir>"),
                ElementsAre("WARNING: Tried to remove a directory that doesn't exist \"\\d\\e\"."));
    files_.addFile("/d/file", "");
    EXPECT_THAT(run("<RemoveDir>/d</RemoveDir>"),
                ElementsAre("ERROR: Remove dir could not remove directories \"\\d\"!"));
}

TEST_F(AdditionalActionsTest, CreatesFilesFromTheCabinet) {
    pack({{"tool", "tool.exe", "for [WHO]"}});
    variables_.set("WHO", "me");
    EXPECT_THAT(run("<CreateFile Dest='/tmp//'>tool</CreateFile>"),
                ElementsAre("Created a file from alias(tool) : \"/tmp/\" (0444)"));
    EXPECT_EQ(files_.content("/tmp/tool.exe"), "for [WHO]");
    run("<CreateFile Dest='/tmp' StripExeExt='1' ExpandVarsInFile='1'>tool</CreateFile>");
    EXPECT_EQ(files_.content("/tmp/tool"), "for me");
    EXPECT_THAT(run("<CreateFile>tool</CreateFile>"),
                ElementsAre("ERROR: Create file without Dest attribute (alias: \"tool\")!"));
}

TEST_F(AdditionalActionsTest, LogsTheFileModeInTheBaseThatItIsWrittenIn) {
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

TEST_F(AdditionalActionsTest, WarnsAboutAFileModeThatIsNoNumber) {
    pack({{"a", "a", ""}});
    EXPECT_EQ(run("<CreateFile Dest='/tmp' FileMod='75x'>a</CreateFile>").front(),
              "WARNING: Failed to parse file modification - provided string: 75x");
}

TEST_F(AdditionalActionsTest, ThrowsWhenAFileCannotBeCreated) {
    describe("<Post><CreateFile Dest='/tmp'>none</CreateFile><RunProgram>p</RunProgram></Post>");
    EXPECT_THROW(actions_.run("Post"), InstallerError);
    EXPECT_THAT(started(), IsEmpty());
}

TEST_F(AdditionalActionsTest, TakesATooLongPathForNone) {
    const std::string path(1600, 'p');
    run("<RunProgram>" + path + "</RunProgram>");
    EXPECT_THAT(started(), ElementsAre("\"\""));
}

TEST_F(AdditionalActionsTest, NeedsNoFrontEnd) {
    describe("<Post><RunProgram Log='l'>p</RunProgram></Post>");
    Report silent(nullptr, nullptr);
    ChangeJob job(parts_, writer_, silent);
    AdditionalActions(job.context, parts_).run("Post");
    EXPECT_THAT(started(), ElementsAre("\"p\""));
}

TEST_F(AdditionalActionsTest, HandsPathsToProgramsAndTheScreenAsTheSystemWritesThem) {
    variables_.set("DIR", "\\opt\\demo");
    variables_.set("RE", "\\d");
    run("<RunProgram WorkDir='[DIR]' Arguments='--dir=[DIR] [RE] \\n' Log='Run in [DIR]'>p</RunProgram>");
    const std::string shown = writtenPath("\\opt\\demo");
    EXPECT_THAT(started(), ElementsAre("\"p\" --dir=" + shown + " \\d \\n"));
    EXPECT_EQ(ui_.calls.front(), "addFileLine(\"Run in " + shown + "\", 1)");
    run("<RunProgram Details='NoExpansion' Arguments='[DIR]\\n'>p</RunProgram>");
    EXPECT_EQ(started().back(), "\"p\" [DIR]\\n");
}

}  // namespace
