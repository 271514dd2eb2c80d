#include "ui/automated_input.h"

#include <gtest/gtest.h>

#include <string>

#include "fakes/fake_console_device.h"
#include "fakes/temporary_directory.h"

namespace {

struct AutomatedInput : testing::Test {
    TemporaryDirectory directory;
    FakeConsoleDevice terminal;

    int initWith(const std::string& path) { return Automated(terminal, path.c_str(), false).init(); }
};

TEST_F(AutomatedInput, NeedsNoFile) {
    EXPECT_EQ(Automated(terminal, "", false).init(), 1);
    EXPECT_EQ(Automated(terminal, nullptr, true).init(), 1);
    EXPECT_EQ(terminal.output, "");
}

TEST_F(AutomatedInput, AcceptsAFileWithDefaultValues) {
    writeTestFile(directory.file("a.xml"), "<Root><Inner><DefValues></DefValues></Inner></Root>");
    EXPECT_EQ(initWith(directory.file("a.xml")), 1);
    EXPECT_EQ(terminal.output, "");
}

TEST_F(AutomatedInput, RefusesAMissingFile) {
    const std::string path = directory.file("missing.xml");
    EXPECT_EQ(initWith(path), 0);
    EXPECT_EQ(terminal.output, "The file \"" + path + "\" does not exist! Please specify existing file!\n");
    EXPECT_GT(terminal.flushes, 0);
}

TEST_F(AutomatedInput, RefusesAFileWithoutDefaultValues) {
    for (const char* content :
         {"<Root><Values></Values></Root>", "", "not XML", "<Root><defvalues/></Root>"}) {
        terminal.output.clear();
        const std::string path = directory.file("b.xml");
        writeTestFile(path, content);
        EXPECT_EQ(initWith(path), 0) << content;
        EXPECT_EQ(terminal.output, "The file \"" + path +
                                       "\" is not a propper XML installation config file. The installation "
                                       "can not continue!\n");
    }
}

constexpr std::string_view kAnswersTag = "<DefValues>";
constexpr std::string_view kAnswers =
    "<DefValues>\n <Value Name=\"A\" DataType=\"value\">two</Value>\n</DefValues>\n";

TEST_F(AutomatedInput, AcceptsACutFileOnceItsSectionIsOpened) {
    const std::string path = directory.file("cut.xml");
    for (std::size_t length = 0; length <= kAnswers.size(); ++length) {
        terminal.output.clear();
        writeTestFile(path, kAnswers.substr(0, length));
        const bool isOpened = length >= kAnswersTag.size();
        EXPECT_EQ(initWith(path), isOpened ? 1 : 0) << length;
        EXPECT_EQ(terminal.output.empty(), isOpened) << length;
    }
}

TEST_F(AutomatedInput, TakesOrRefusesAFileWithAnyByteWrong) {
    const std::string path = directory.file("wrong.xml");
    const std::string refusal = "The file \"" + path +
                                "\" is not a propper XML installation config file. The installation can not "
                                "continue!\n";
    for (std::size_t place = 0; place < kAnswers.size(); ++place) {
        for (const char wrong : {'<', '>', '"', '/', '\0', '\xFF', 'x'}) {
            terminal.output.clear();
            std::string answers(kAnswers);
            answers[place] = wrong;
            writeTestFile(path, answers);
            const int result = initWith(path);
            EXPECT_EQ(terminal.output, result == 1 ? "" : refusal) << place << wrong;
            // The name may end with "/>" as well.
            const bool endsName = place == kAnswersTag.size() - 1 && wrong == '/';
            const bool isInTag = place < kAnswersTag.size() && answers != kAnswers && !endsName;
            EXPECT_EQ(result, isInTag ? 0 : 1) << place << wrong;
        }
    }
}

TEST_F(AutomatedInput, AnswersATextWithItsValueAndNeverTheFallback) {
    Automated input(terminal, "", false);
    char buffer[8] = "before";
    EXPECT_EQ(input.askText("Question", buffer, sizeof buffer, "value", "fallback", true), 1);
    EXPECT_STREQ(buffer, "value");
    EXPECT_EQ(input.askText("Question", buffer, sizeof buffer, "", "fallback", true), 1);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(terminal.output, "");
}

TEST_F(AutomatedInput, CutsATextToTheBuffer) {
    Automated input(terminal, "", false);
    char buffer[4] = "";
    input.askText("Question", buffer, sizeof buffer, "abcdef", "", false);
    EXPECT_STREQ(buffer, "abc");
    buffer[0] = 'x';
    EXPECT_EQ(input.askText("Question", buffer, 0, "abcdef", "", false), 1);
    EXPECT_STREQ(buffer, "xbc");
}

TEST_F(AutomatedInput, AnswersChoicesWithTheDefaultAsItIs) {
    Automated input(terminal, "", false);
    for (const int preset : {-1, 0, 1, 7}) {
        EXPECT_EQ(input.askChoice("Question", preset, "no", "yes", false, true), preset);
        EXPECT_EQ(input.askList("Question", preset, {"a", "b"}, {true, false}), preset);
    }
    EXPECT_EQ(terminal.output, "");
}

TEST_F(AutomatedInput, PrintsMessagesAndSkipsPauses) {
    Automated input(terminal, "", false);
    input.tell("A message");
    input.pause("A pause");
    EXPECT_EQ(terminal.output, "A message");
    EXPECT_EQ(terminal.flushes, 1);
    EXPECT_EQ(terminal.linesRead, 0);
}

TEST_F(AutomatedInput, TellsHowTheRunEnded) {
    const auto endOf = [this](bool uninstall, bool failed) {
        terminal.output.clear();
        EXPECT_EQ(Automated(terminal, "", uninstall).finish(failed), 1);
        return terminal.output;
    };
    EXPECT_EQ(endOf(false, false), "Automatic installation was successful!\n");
    EXPECT_EQ(endOf(true, false), "Automatic uninstallation was successful!\n");
    EXPECT_EQ(endOf(false, true), "The automatic installer has encountered an ERROR!\n");
    EXPECT_EQ(endOf(true, true), "The automatic uninstaller has encountered an ERROR!\n");
}

TEST_F(AutomatedInput, IsNotEndedByAnAbort) {
    Automated input(terminal, "", false);
    input.abort();
    EXPECT_EQ(input.askChoice("Question", 1, "no", "yes", false, true), 1);
}

}  // namespace
