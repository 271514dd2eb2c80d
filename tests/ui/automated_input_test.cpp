#include "ui/automated_input.h"

#include <gtest/gtest.h>

#include <string>

#include "description/answers_file.h"
#include "description/pxml.h"
#include "platform/memory/memory_console_device.h"
#include "platform/memory/memory_file_system.h"

namespace {

struct AutomatedInput : testing::Test {
    MemoryConsoleDevice terminal;
    MemoryFileSystem files;
    AnswersFile answers{files};
    Automated input{terminal, answers, "", false};

    int initWith(const std::string& path) { return Automated(terminal, answers, path, false).init(); }
    // Of a file that is read for the first time.
    int initWithContent(const std::string& path, std::string_view content) {
        files.addFile(path, content);
        AnswersFile file(files);
        return Automated(terminal, file, path, false).init();
    }
};

TEST_F(AutomatedInput, NeedsNoFile) {
    EXPECT_EQ(input.init(), 1);
    EXPECT_EQ(Automated(terminal, answers, "", true).init(), 1);
    EXPECT_EQ(terminal.output, "");
}

TEST_F(AutomatedInput, AcceptsAFileWithDefaultValues) {
    EXPECT_EQ(initWithContent("/a.xml", "<Root><Inner><DefValues></DefValues></Inner></Root>"), 1);
    EXPECT_EQ(terminal.output, "");
}

TEST_F(AutomatedInput, RefusesAMissingFile) {
    const std::string path = "/missing.xml";
    EXPECT_EQ(initWith(path), 0);
    EXPECT_EQ(terminal.output, "The file \"" + path + "\" does not exist! Please specify existing file!\n");
    EXPECT_GT(terminal.flushes, 0);
}

TEST_F(AutomatedInput, RefusesAFileWithoutDefaultValues) {
    for (const char* content :
         {"<Root><Values></Values></Root>", "", "not XML", "<Root><defvalues/></Root>"}) {
        terminal.output.clear();
        const std::string path = "/b.xml";
        EXPECT_EQ(initWithContent(path, content), 0) << content;
        EXPECT_EQ(terminal.output, "The file \"" + path +
                                       "\" is not a propper XML installation config file. The installation "
                                       "can not continue!\n");
    }
}

TEST_F(AutomatedInput, LeavesTheDocumentToTheSession) {
    files.addFile("/a.xml", "<Root><DefValues></DefValues></Root>");
    ASSERT_EQ(initWith("/a.xml"), 1);
    files.addFile("/a.xml", "");
    EXPECT_EQ(answers.load("/a.xml"), 0);
    EXPECT_TRUE(answers.hasValues());
}

constexpr std::string_view kAnswersTag = "<DefValues>";
constexpr std::string_view kAnswers =
    "<DefValues>\n <Value Name=\"A\" DataType=\"value\">two</Value>\n</DefValues>\n";

TEST_F(AutomatedInput, AcceptsACutFileOnceItsSectionIsOpened) {
    const std::string path = "/cut.xml";
    for (std::size_t length = 0; length <= kAnswers.size(); ++length) {
        terminal.output.clear();
        const bool isOpened = length >= kAnswersTag.size();
        EXPECT_EQ(initWithContent(path, kAnswers.substr(0, length)), isOpened ? 1 : 0) << length;
        EXPECT_EQ(terminal.output.empty(), isOpened) << length;
    }
}

TEST_F(AutomatedInput, TakesOrRefusesAFileWithAnyByteWrong) {
    const std::string path = "/wrong.xml";
    const std::string refusal = "The file \"" + path +
                                "\" is not a propper XML installation config file. The installation can not "
                                "continue!\n";
    for (std::size_t place = 0; place < kAnswers.size(); ++place) {
        for (const char wrong : {'<', '>', '"', '/', '\0', '\xFF', 'x'}) {
            terminal.output.clear();
            std::string content(kAnswers);
            content[place] = wrong;
            const int result = initWithContent(path, content);
            EXPECT_EQ(terminal.output, result == 1 ? "" : refusal) << place << wrong;
            // The name may end with "/>" as well.
            const bool endsName = place == kAnswersTag.size() - 1 && wrong == '/';
            const bool isInTag = place < kAnswersTag.size() && content != kAnswers && !endsName;
            EXPECT_EQ(result, isInTag ? 0 : 1) << place << wrong;
        }
    }
}

TEST_F(AutomatedInput, AnswersATextWithItsValueAndNeverTheFallback) {
    char buffer[8] = "before";
    EXPECT_EQ(input.askText("Question", buffer, sizeof buffer, "value", "fallback", true), 1);
    EXPECT_STREQ(buffer, "value");
    EXPECT_EQ(input.askText("Question", buffer, sizeof buffer, "", "fallback", true), 1);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(terminal.output, "");
}

TEST_F(AutomatedInput, CutsATextToTheBuffer) {
    char buffer[4] = "";
    input.askText("Question", buffer, sizeof buffer, "abcdef", "", false);
    EXPECT_STREQ(buffer, "abc");
    buffer[0] = 'x';
    EXPECT_EQ(input.askText("Question", buffer, 0, "abcdef", "", false), 1);
    EXPECT_STREQ(buffer, "xbc");
}

TEST_F(AutomatedInput, AnswersChoicesWithTheDefaultAsItIs) {
    for (const int preset : {-1, 0, 1, 7}) {
        EXPECT_EQ(input.askChoice("Question", preset, "no", "yes", false, true), preset);
        EXPECT_EQ(input.askList("Question", preset, {"a", "b"}, {true, false}), preset);
    }
    EXPECT_EQ(terminal.output, "");
}

TEST_F(AutomatedInput, PrintsMessagesAndSkipsPauses) {
    input.tell("A message");
    input.pause("A pause");
    EXPECT_EQ(terminal.output, "A message");
    EXPECT_EQ(terminal.flushes, 1);
    EXPECT_EQ(terminal.linesRead, 0);
}

TEST_F(AutomatedInput, SaysItInTheWordsOfTheDescription) {
    PXML description;
    description.parseText(
        "<R><Words><Word Name=\"AutomaticDone\">Fertig!</Word><Word Name=\"UninstallAutomaticFailed\">Oh!"
        "</Word></Words></R>");
    const WizardWords words(description);
    input.takeWordsFrom([&words]() -> const WizardWords& { return words; });
    input.finish(false);
    EXPECT_EQ(terminal.output, "Fertig!\n");
    Automated removal(terminal, answers, "", true);
    removal.takeWordsFrom([&words]() -> const WizardWords& { return words; });
    removal.finish(true);
    EXPECT_EQ(terminal.output, "Fertig!\nOh!\n");
}

TEST_F(AutomatedInput, SaysHowTheRunEnded) {
    const auto endOf = [this](bool uninstall, bool failed) {
        terminal.output.clear();
        EXPECT_EQ(Automated(terminal, answers, "", uninstall).finish(failed), 1);
        return terminal.output;
    };
    EXPECT_EQ(endOf(false, false), "Automatic installation was successful!\n");
    EXPECT_EQ(endOf(true, false), "Automatic uninstallation was successful!\n");
    EXPECT_EQ(endOf(false, true), "The automatic installer has encountered an ERROR!\n");
    EXPECT_EQ(endOf(true, true), "The automatic uninstaller has encountered an ERROR!\n");
}

TEST_F(AutomatedInput, IsNotEndedByAnAbort) {
    input.abort();
    EXPECT_EQ(input.askChoice("Question", 1, "no", "yes", false, true), 1);
}

}  // namespace
