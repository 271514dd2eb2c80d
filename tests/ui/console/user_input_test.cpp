#include "ui/console/user_input.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "description/pxml.h"
#include "platform/memory/memory_console_device.h"
#include "platform/memory/memory_environment.h"

namespace {

struct UserInput : testing::Test {
    MemoryConsoleDevice terminal;
    std::vector<DialogueLoss> losses;
    User user{terminal, false, [this](DialogueLoss loss) { losses.push_back(loss); }};
    char buffer[32] = "";

    int askText(const char* value, const char* fallback, bool echo = true) {
        return user.askText("Name", buffer, sizeof buffer, value, fallback, echo);
    }
    int askYesNo(int preset) { return user.askChoice("Sure?", preset, "yes", "no", false, false); }
    int askOk() { return user.askChoice("Sure?", 0, "OK", "Cancel", true, true); }
    int askList(int preset, const std::vector<bool>& enabled = {true, true, true}) {
        return user.askList("Which?", preset, {"one", "two", "three"}, enabled);
    }
    void interruptAtNextRead() {
        terminal.beforeRead = [this] { user.abort(); };
    }
    void type(std::string_view text) {
        for (const char key : text) {
            terminal.keys.push_back(static_cast<unsigned char>(key));
        }
    }
};

TEST_F(UserInput, IsReady) {
    EXPECT_EQ(user.init(), 1);
}

TEST_F(UserInput, AsksInTheWordsOfTheDescription) {
    PXML description;
    description.parseText(
        "<R><Words><Word Name='AskChoice'>%1 {%2/%3}</Word><Word Name='AskChoiceAgain'>%1? %2?</Word>"
        "<Word Name='AskNumber'>1 bis %1</Word><Word Name='AskNumberAgain'>Zahl!</Word>"
        "<Word Name='ChoiceDisabled'>%1 nicht</Word><Word Name='PressEnter'>weiter</Word></Words></R>");
    const WizardWords words(description);
    user.takeWordsFrom([&words]() -> const WizardWords& { return words; });
    terminal.lines = {"x", "no", "9", "2", "1", ""};
    EXPECT_EQ(askYesNo(0), 1);
    EXPECT_EQ(askList(-1, {true, false, true}), 0);
    user.tell("Done");
    EXPECT_EQ(terminal.output,
              "Sure? {[yes]/no}: yes? no?: "
              "Which?\n  1) one\n  2) two\n  3) three\n1 bis 3: Zahl!\n1 bis 3: 2 nicht\n1 bis 3: "
              "Done\nweiter");
}

TEST_F(UserInput, TurnsPagesByOneKeyAtATerminal) {
    terminal.inputIsTerminal = true;
    terminal.columns = 80;
    type("x\x1B[6e");
    EXPECT_EQ(user.turnPage("more?"), PageTurn::kEnd);
    EXPECT_EQ(terminal.output, "more? (b goes back, e to the end)\n");
    EXPECT_EQ(terminal.output, terminal.writtenUnechoed);
    EXPECT_TRUE(terminal.echo);
    type("b\n\r ");
    EXPECT_EQ(user.turnPage(""), PageTurn::kBack);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(user.turnPage(""), PageTurn::kNext);
    }
}

TEST_F(UserInput, LeavesOutTheKeysWhereTheyWouldBeBroken) {
    terminal.inputIsTerminal = true;
    const auto shownIn = [this](int columns) {
        terminal.columns = columns;
        terminal.output.clear();
        type("\n");
        user.turnPage("\nmore?");
        return terminal.output;
    };
    EXPECT_EQ(shownIn(33), "\nmore?\n");
    EXPECT_EQ(shownIn(34), "\nmore? (b goes back, e to the end)\n");
}

TEST_F(UserInput, TurnsPagesByLinesElsewhere) {
    terminal.lines = {"b"};
    EXPECT_EQ(user.turnPage("more?"), PageTurn::kNext);
    EXPECT_EQ(terminal.output, "more?");
}

TEST_F(UserInput, LosesTheDialogueWhereNoKeyComesAnyMore) {
    terminal.inputIsTerminal = true;
    terminal.columns = 80;
    EXPECT_EQ(user.turnPage("more?"), PageTurn::kEnd);
    EXPECT_EQ(losses, std::vector{DialogueLoss::kInputEnded});
}

TEST_F(UserInput, UnderstandsDirectoriesAsPeopleTypeThem) {
    MemoryEnvironment environment;
    environment.set("HOME", "/home/ann");
    user.understandDirectories(environment);
    terminal.lines = {"~/x", " ~/x\t", "~", ""};
    const auto ask = [this](const char* value) {
        EXPECT_EQ(user.askDirectory("Where", buffer, sizeof buffer, value, ""), 1);
        return std::string(buffer);
    };
    EXPECT_EQ(ask("/opt"), "~/x");  // a script's answer is taken as it stands
    terminal.inputIsTerminal = true;
    terminal.columns = 80;
    EXPECT_EQ(ask("/opt"), "/home/ann\\x");
    EXPECT_EQ(ask("~"), "~");  // what was offered
    EXPECT_EQ(ask("/opt"), "/opt");
}

TEST_F(UserInput, OffersTheValueOfAText) {
    terminal.lines = {"typed"};
    EXPECT_EQ(askText("value", "fallback"), 1);
    EXPECT_EQ(terminal.output, "Name [value]:");
    EXPECT_STREQ(buffer, "typed");
    EXPECT_GT(terminal.flushes, 0);
}

TEST_F(UserInput, OffersTheFallbackOfATextWithoutValue) {
    terminal.lines = {"typed"};
    askText("", "fallback");
    EXPECT_EQ(terminal.output, "Name [fallback]:");
}

TEST_F(UserInput, OffersNothingWhereThereIsNothing) {
    terminal.lines = {"typed"};
    askText("", "");
    EXPECT_EQ(terminal.output, "Name:");
}

TEST_F(UserInput, TakesWhatIsOfferedForAnEmptyText) {
    terminal.lines = {"", "", ""};
    EXPECT_EQ(askText("value", "fallback"), 1);
    EXPECT_STREQ(buffer, "value");
    EXPECT_EQ(askText("", "fallback"), 1);
    EXPECT_STREQ(buffer, "fallback");
    EXPECT_EQ(askText("", ""), 1);
    EXPECT_STREQ(buffer, "");
}

TEST_F(UserInput, CutsWhatIsOfferedToTheBuffer) {
    terminal.lines = {""};
    EXPECT_EQ(user.askText("Name", buffer, 4, "abcdef", "", true), 1);
    EXPECT_STREQ(buffer, "abc");
}

TEST_F(UserInput, CutsALongLineAndDoesNotAnswerTheNextQuestionWithItsRest) {
    terminal.lines = {"abcdef", "abc", "next"};
    EXPECT_EQ(user.askText("Name", buffer, 4, "", "", true), 1);
    EXPECT_STREQ(buffer, "abc");
    EXPECT_EQ(user.askText("Name", buffer, 4, "", "", true), 1);
    EXPECT_STREQ(buffer, "abc");
    EXPECT_EQ(askText("", ""), 1);
    EXPECT_STREQ(buffer, "next");
}

TEST_F(UserInput, GivesNothingForAnInterruptedText) {
    terminal.lines = {"typed"};
    interruptAtNextRead();
    EXPECT_EQ(askText("value", "fallback"), 0);
    EXPECT_STREQ(buffer, "");
    EXPECT_TRUE(losses.empty());
}

TEST_F(UserInput, NoticesAnInterruptDuringTheRead) {
    class LateTerminal : public MemoryConsoleDevice {
    public:
        User* user = nullptr;
        platform::ReadStatus readLine(std::string& out, std::size_t maxBytes) override {
            const platform::ReadStatus result = MemoryConsoleDevice::readLine(out, maxBytes);
            user->abort();
            return result;
        }
    };
    LateTerminal late;
    User lateUser(late, false, [](DialogueLoss) {});
    late.user = &lateUser;
    late.lines = {"typed"};
    EXPECT_EQ(lateUser.askText("Name", buffer, sizeof buffer, "value", "", true), 0);
}

TEST_F(UserInput, ReadsAPasswordWithoutEcho) {
    type("secret\r");
    EXPECT_EQ(askText("value", "", false), 1);
    EXPECT_STREQ(buffer, "secret");
    EXPECT_EQ(terminal.output, "Name [value]:\n");
    EXPECT_EQ(terminal.linesRead, 0);
}

TEST_F(UserInput, SwitchesTheEchoOffBeforeItAsksForAPassword) {
    type("secret\r");
    askText("", "", false);
    EXPECT_EQ(terminal.writtenUnechoed, "Name:\n");
    EXPECT_TRUE(terminal.echo);
    terminal.lines = {"typed"};
    askText("", "", true);
    EXPECT_EQ(terminal.writtenUnechoed, "Name:\n");
}

TEST_F(UserInput, EndsAPasswordAtEachOfTheEndKeys) {
    for (const int key : {3, 10, 13, 26, 27}) {
        terminal.keys = {'a', key, 'b'};
        EXPECT_EQ(askText("", "", false), 1) << key;
        EXPECT_STREQ(buffer, "a") << key;
    }
}

TEST_F(UserInput, TakesKeysOfAPasswordBackButNotBelowNone) {
    type("\b\bab\bc\r");
    EXPECT_EQ(askText("", "", false), 1);
    EXPECT_STREQ(buffer, "ac");
}

TEST_F(UserInput, EndsAPasswordAtItsLimit) {
    type("abcdef");
    EXPECT_EQ(user.askText("Name", buffer, 4, "", "", false), 1);
    EXPECT_EQ(terminal.keysRead, 4);
    EXPECT_STREQ(buffer, "abc");
}

TEST_F(UserInput, TakesWhatIsOfferedForAnEmptyPassword) {
    type("\r");
    EXPECT_EQ(askText("", "fallback", false), 1);
    EXPECT_STREQ(buffer, "fallback");
}

TEST_F(UserInput, GivesNothingForAnInterruptedPassword) {
    type("ab\r");
    terminal.beforeRead = [this] {
        if (terminal.keysRead == 1) {
            user.abort();
        }
    };
    EXPECT_EQ(askText("value", "", false), 0);
    EXPECT_EQ(terminal.output, "Name [value]:\n");
    EXPECT_TRUE(losses.empty());
}

TEST_F(UserInput, TakesAPasswordThatTheEndOfTheInputEnds) {
    type("ab");
    EXPECT_EQ(askText("", "", false), 1);
    EXPECT_STREQ(buffer, "ab");
    EXPECT_TRUE(losses.empty());
}

TEST_F(UserInput, MarksTheDefaultOfAChoice) {
    const auto promptOf = [this](int preset) {
        terminal.output.clear();
        terminal.lines = {"yes"};
        EXPECT_EQ(askYesNo(preset), 0);
        return terminal.output;
    };
    EXPECT_EQ(promptOf(0), "Sure? ([yes] or no): ");
    EXPECT_EQ(promptOf(1), "Sure? (yes or [no]): ");
    EXPECT_EQ(promptOf(-1), "Sure? (yes or no): ");
    EXPECT_EQ(promptOf(2), "Sure? (yes or no): ");
}

TEST_F(UserInput, TakesTheDefaultOfAChoiceForAnEmptyLine) {
    terminal.lines = {"", ""};
    EXPECT_EQ(askYesNo(0), 0);
    EXPECT_EQ(askYesNo(1), 1);
}

TEST_F(UserInput, AsksAgainForAnEmptyLineWithoutDefault) {
    terminal.lines = {"", "no"};
    EXPECT_EQ(user.askChoice("Box", -1, "no", "yes", false, true), 0);
    EXPECT_EQ(terminal.output, "Box (no or yes): Please, answer with no or yes: ");
}

TEST_F(UserInput, ComparesWholeWordsWithoutCase) {
    terminal.lines = {"Y", "YES", "nO"};
    EXPECT_EQ(askYesNo(-1), 0);
    EXPECT_EQ(terminal.output, "Sure? (yes or no): Please, answer with yes or no: ");
    EXPECT_EQ(askYesNo(-1), 1);
    EXPECT_TRUE(terminal.lines.empty());
}

TEST_F(UserInput, TakesNoPrefixWithoutCaseWhateverIsAskedFor) {
    terminal.lines = {"y", "yes"};
    EXPECT_EQ(user.askChoice("Sure?", -1, "yes", "no", false, true), 0);
    EXPECT_TRUE(terminal.lines.empty());
}

TEST_F(UserInput, ComparesExactlyWithCaseAndNoPrefix) {
    terminal.lines = {"Yes", "ye", "yes"};
    EXPECT_EQ(user.askChoice("Sure?", -1, "yes", "no", true, false), 0);
    EXPECT_TRUE(terminal.lines.empty());
}

TEST_F(UserInput, TakesAPrefixWithItsCase) {
    terminal.lines = {"O"};
    EXPECT_EQ(askOk(), 0);
    terminal.lines = {"o", "Canc"};
    EXPECT_EQ(askOk(), 1);
    EXPECT_TRUE(terminal.lines.empty());
    terminal.lines = {"OKAY", "OK"};
    EXPECT_EQ(askOk(), 0);
    EXPECT_TRUE(terminal.lines.empty());
}

TEST_F(UserInput, AsksAgainWhenALineMatchesBothAnswers) {
    terminal.lines = {"re", "ret"};
    EXPECT_EQ(user.askChoice("Then?", -1, "retry", "restart", true, true), 0);
    EXPECT_EQ(terminal.output, "Then? (retry or restart): Please, answer with retry or restart: ");
}

TEST_F(UserInput, GivesNoChoiceWhenInterrupted) {
    interruptAtNextRead();
    terminal.lines = {"yes"};
    EXPECT_EQ(askYesNo(0), -1);
    EXPECT_EQ(askList(0), -1);
    EXPECT_TRUE(losses.empty());
}

TEST_F(UserInput, ListsTheItems) {
    terminal.lines = {"2"};
    EXPECT_EQ(askList(0), 1);
    EXPECT_EQ(terminal.output,
              "Which?\n  1) one\n  2) two\n  3) three\nEnter your choice [1-3, default is 1]: ");
}

TEST_F(UserInput, TakesTheDefaultOfAListForAnEmptyLine) {
    terminal.lines = {""};
    EXPECT_EQ(askList(2), 2);
}

TEST_F(UserInput, RepeatsAListWithoutDefaultForAnEmptyLine) {
    terminal.lines = {"", "1"};
    EXPECT_EQ(askList(-1), 0);
    EXPECT_EQ(terminal.output,
              "Which?\n  1) one\n  2) two\n  3) three\nEnter your choice [1-3]: Enter your choice [1-3]: ");
}

TEST_F(UserInput, HasNoDefaultWhenThatIsDisabledOrOutside) {
    for (const int preset : {1, 3, -2}) {
        terminal.output.clear();
        terminal.lines = {"3"};
        EXPECT_EQ(askList(preset, {true, false, true}), 2);
        EXPECT_EQ(terminal.output, "Which?\n  1) one\n  2) two\n  3) three\nEnter your choice [1-3]: ");
    }
}

TEST_F(UserInput, RefusesWhatIsNoItem) {
    for (const char* line : {"x", "0", "4", "-1", "2x", "99999999999"}) {
        terminal.output.clear();
        terminal.lines = {line, "3"};
        EXPECT_EQ(askList(-1), 2) << line;
        EXPECT_NE(terminal.output.find("[1-3]: Please, answer with a number (1 to 3)\nEnter your choice"),
                  std::string::npos)
            << line;
    }
}

TEST_F(UserInput, RefusesADisabledItem) {
    terminal.lines = {"2", "1"};
    EXPECT_EQ(askList(-1, {true, false, true}), 0);
    EXPECT_NE(terminal.output.find("[1-3]: Choice 2 is disabled, choose something else!\nEnter your choice"),
              std::string::npos);
}

TEST_F(UserInput, GivesNoChoiceFromAListWithoutAnyEnabledItem) {
    terminal.lines = {"1"};
    EXPECT_EQ(askList(0, {false, false, false}), -1);
    EXPECT_EQ(user.askList("Which?", 0, {}, {}), -1);
    EXPECT_EQ(terminal.linesRead, 0);
}

TEST_F(UserInput, ShowsAMessageAndWaits) {
    terminal.lines = {"long answer", "next"};
    user.tell("A message");
    EXPECT_EQ(terminal.output, "A message\nPress Enter to continue...");
    EXPECT_EQ(terminal.linesRead, 1);
    askText("", "");
    EXPECT_STREQ(buffer, "next");
}

TEST_F(UserInput, PausesWithItsTextAlone) {
    terminal.lines = {""};
    user.pause("A pause");
    EXPECT_EQ(terminal.output, "A pause");
    EXPECT_EQ(terminal.linesRead, 1);
}

TEST_F(UserInput, FinishesOnceAndOnlyInAnInstallation) {
    EXPECT_EQ(user.finish(false), 1);
    EXPECT_EQ(terminal.flushes, 1);
    EXPECT_EQ(user.finish(true), 1);
    EXPECT_EQ(terminal.flushes, 1);
    User uninstaller(terminal, true, [](DialogueLoss) {});
    EXPECT_EQ(uninstaller.finish(false), 1);
    EXPECT_EQ(terminal.flushes, 1);
    EXPECT_EQ(terminal.output, "");
}

TEST_F(UserInput, ReportsTheEndOfTheInputAtEachQuestion) {
    EXPECT_EQ(askText("value", "fallback"), 0);
    EXPECT_EQ(askText("value", "fallback", false), 0);
    EXPECT_EQ(askYesNo(-1), -1);
    EXPECT_EQ(askList(-1), -1);
    user.pause("A pause");
    user.tell("A message");
    EXPECT_EQ(losses, std::vector<DialogueLoss>(6, DialogueLoss::kInputEnded));
}

TEST_F(UserInput, ReportsAnOutputThatFailedInsteadOfWaitingForAnAnswer) {
    terminal.lines = {"yes"};
    terminal.keys = {'y'};
    terminal.outputLimit = 3;
    EXPECT_EQ(askYesNo(0), -1);
    EXPECT_EQ(askText("", "", false), 0);
    EXPECT_EQ(losses, std::vector<DialogueLoss>(2, DialogueLoss::kOutputFailed));
    EXPECT_EQ(terminal.linesRead, 0);
    EXPECT_EQ(terminal.keysRead, 0);
}

TEST_F(UserInput, AsksNothingMoreOnceInterrupted) {
    user.abort();
    terminal.lines = {"yes"};
    EXPECT_EQ(askYesNo(0), -1);
    EXPECT_EQ(askText("value", "", true), 0);
    EXPECT_EQ(terminal.linesRead, 0);
    EXPECT_TRUE(losses.empty());
}

TEST_F(UserInput, BoundsAnInputWithoutLineFeeds) {
    class EndlessTerminal : public MemoryConsoleDevice {
    public:
        platform::ReadStatus readLine(std::string& out, std::size_t maxBytes) override {
            out.assign(maxBytes, 'x');
            return platform::ReadStatus::kLine;
        }
    };
    EndlessTerminal endless;
    User endlessUser(endless, false, [](DialogueLoss) {});
    EXPECT_EQ(endlessUser.askText("Name", buffer, 4, "", "", true), 1);
    EXPECT_STREQ(buffer, "xxx");
}

}  // namespace
