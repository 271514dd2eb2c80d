#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cstdlib>
#include <thread>

#include "platform/posix/posix_console.h"
#include "platform/posix/terminal_mode.h"

namespace {

using platform::PosixConsole;
using platform::ReadStatus;

// Input and output through pipes, as in a script.
class PipedConsoleTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(pipe2(input_, O_CLOEXEC), 0);
        ASSERT_EQ(pipe2(output_, O_CLOEXEC), 0);
        console_ = std::make_unique<PosixConsole>(input_[0], output_[1], output_[1]);
    }
    void TearDown() override {
        for (int* end : {&input_[0], &input_[1], &output_[0], &output_[1]}) {
            closeEnd(*end);
        }
    }

    static void closeEnd(int& end) {
        if (end >= 0) {
            close(end);
        }
        end = -1;
    }

    void type(const std::string& text) {
        ASSERT_EQ(write(input_[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    // What has reached the output; empty when nothing has.
    std::string printed() {
        pollfd ready{output_[0], POLLIN, 0};
        char text[65536];
        const ssize_t size = poll(&ready, 1, 0) > 0 ? read(output_[0], text, sizeof text) : 0;
        return std::string(text, static_cast<std::size_t>(size));
    }

    std::string line(ReadStatus expected, std::size_t maxBytes = 1000) {
        std::string text = "stale";
        EXPECT_EQ(console_->readLine(text, maxBytes), expected);
        return text;
    }

    int input_[2] = {-1, -1};
    int output_[2] = {-1, -1};
    std::unique_ptr<PosixConsole> console_;
};

TEST_F(PipedConsoleTest, OutputWaitsForTheFlush) {
    EXPECT_TRUE(console_->write("one "));
    EXPECT_TRUE(console_->write("two\n"));
    EXPECT_EQ(printed(), "");
    EXPECT_TRUE(console_->flush());
    EXPECT_EQ(printed(), "one two\n");
}

TEST_F(PipedConsoleTest, PassesOnlyTheProgramsOwnCommandsOn) {
    EXPECT_TRUE(console_->write("a\x1B[2J\n"));
    EXPECT_TRUE(console_->writeControl("\r"));
    EXPECT_TRUE(console_->flush());
    EXPECT_EQ(printed(), "a?[2J\n\r");
    EXPECT_TRUE(console_->writeError("b\x1B\n"));
    EXPECT_EQ(printed(), "b?\n");
}

TEST_F(PipedConsoleTest, ShowsTheQuestionBeforeItWaitsForTheAnswer) {
    type("answer\ny");
    console_->write("question");
    EXPECT_EQ(line(ReadStatus::kLine), "answer\n");
    EXPECT_EQ(printed(), "question");
    console_->write("key");
    int key = 0;
    EXPECT_EQ(console_->readKey(key), ReadStatus::kLine);
    EXPECT_EQ(printed(), "key");
}

TEST_F(PipedConsoleTest, NoticesAnOutputThatFailsWhenAReadFlushesIt) {
    closeEnd(output_[0]);
    type("answer\n");
    EXPECT_TRUE(console_->write("question"));
    line(ReadStatus::kLine);
    EXPECT_FALSE(console_->flush());
}

TEST_F(PipedConsoleTest, DoesNotBufferErrors) {
    EXPECT_TRUE(console_->writeError("bad\n"));
    EXPECT_EQ(printed(), "bad\n");
}

TEST_F(PipedConsoleTest, NoticesAReaderThatLeftAndSurvives) {
    closeEnd(output_[0]);
    EXPECT_TRUE(console_->write("text"));
    EXPECT_FALSE(console_->flush());
    EXPECT_FALSE(console_->write("more"));
    EXPECT_FALSE(console_->flush());
    EXPECT_FALSE(console_->writeError("bad"));
}

TEST_F(PipedConsoleTest, NoticesAFullDisk) {
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    PosixConsole console(input_[0], full, full);
    EXPECT_TRUE(console.write("text"));
    EXPECT_FALSE(console.flush());
    close(full);
}

TEST_F(PipedConsoleTest, WritesEverythingToAnOutputThatDoesNotBlock) {
    ASSERT_EQ(fcntl(output_[1], F_SETFL, O_NONBLOCK), 0);
    const std::string text(300000, 'x');
    std::size_t received = 0;
    std::thread reader([&] {
        char buffer[4096];
        while (received < text.size()) {
            const ssize_t size = read(output_[0], buffer, sizeof buffer);
            if (size <= 0) {
                break;
            }
            received += static_cast<std::size_t>(size);
        }
    });
    EXPECT_TRUE(console_->write(text));
    EXPECT_TRUE(console_->flush());
    reader.join();
    EXPECT_EQ(received, text.size());
}

TEST_F(PipedConsoleTest, ReadsLineByLine) {
    type("first\nsecond\n\nlast");
    closeEnd(input_[1]);
    EXPECT_EQ(line(ReadStatus::kLine), "first\n");
    EXPECT_EQ(line(ReadStatus::kLine), "second\n");
    EXPECT_EQ(line(ReadStatus::kLine), "\n");
    EXPECT_EQ(line(ReadStatus::kLine), "last");
    EXPECT_EQ(line(ReadStatus::kEnd), "");
    EXPECT_EQ(line(ReadStatus::kEnd), "");
}

TEST_F(PipedConsoleTest, GivesALongLineInPieces) {
    type("abcdefg\nnext\n");
    EXPECT_EQ(line(ReadStatus::kLine, 3), "abc");
    EXPECT_EQ(line(ReadStatus::kLine, 4), "defg");
    EXPECT_EQ(line(ReadStatus::kLine, 4), "\n");
    EXPECT_EQ(line(ReadStatus::kLine, 5), "next\n");
}

TEST_F(PipedConsoleTest, ALineLongerThanOneReadIsWhole) {
    const std::string text = std::string(20000, 'x') + "\n";
    type(text);
    EXPECT_EQ(line(ReadStatus::kLine, 100000), text);
}

TEST_F(PipedConsoleTest, AnInputThatIsNotOpenIsAtItsEnd) {
    // High enough not to be reused at once.
    const int closed = fcntl(input_[0], F_DUPFD_CLOEXEC, 500);
    ASSERT_GE(closed, 500);
    close(closed);
    PosixConsole console(closed, output_[1], output_[1]);
    std::string text;
    int key = 99;
    EXPECT_EQ(console.readLine(text, 10), ReadStatus::kEnd);
    EXPECT_EQ(console.readKey(key), ReadStatus::kEnd);
    EXPECT_EQ(key, 0);
}

TEST_F(PipedConsoleTest, KeysOfAPipeAreItsBytes) {
    type("a\x7f\x04\nrest\n");
    for (const int expected : {0x61, 0x7f, 4, 10}) {
        int key = 0;
        EXPECT_EQ(console_->readKey(key), ReadStatus::kLine);
        EXPECT_EQ(key, expected);
    }
    EXPECT_EQ(line(ReadStatus::kLine), "rest\n");
}

TEST_F(PipedConsoleTest, InterruptWakesAWaitingRead) {
    std::thread interrupter([&] { console_->interruptInput(); });
    EXPECT_EQ(line(ReadStatus::kInterrupted), "");
    interrupter.join();
}

TEST_F(PipedConsoleTest, ReadsNothingAfterAnInterrupt) {
    type("first\nsecond\n");
    EXPECT_EQ(line(ReadStatus::kLine), "first\n");
    console_->interruptInput();
    console_->interruptInput();
    int key = 99;
    EXPECT_EQ(line(ReadStatus::kInterrupted), "");
    EXPECT_EQ(console_->readKey(key), ReadStatus::kInterrupted);
    EXPECT_EQ(key, 0);
    EXPECT_EQ(line(ReadStatus::kInterrupted), "");
}

TEST_F(PipedConsoleTest, IsNotATerminalOnAPipe) {
    int columns = 5;
    int rows = 5;
    EXPECT_FALSE(console_->isInputTerminal());
    EXPECT_FALSE(console_->isOutputTerminal());
    EXPECT_FALSE(console_->windowSize(columns, rows));
    EXPECT_EQ(columns, 0);
    EXPECT_EQ(rows, 0);
}

// A person at a terminal.
class TerminalConsoleTest : public testing::Test {
protected:
    void SetUp() override {
        person_ = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
        ASSERT_GE(person_, 0);
        ASSERT_EQ(grantpt(person_), 0);
        ASSERT_EQ(unlockpt(person_), 0);
        program_ = open(ptsname(person_), O_RDWR | O_NOCTTY | O_CLOEXEC);
        ASSERT_GE(program_, 0);
        ASSERT_EQ(tcgetattr(program_, &settings_), 0);
        console_ = std::make_unique<PosixConsole>(program_, program_, program_);
    }
    void TearDown() override {
        close(program_);
        close(person_);
    }

    void type(const std::string& text) {
        ASSERT_EQ(write(person_, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

    bool hasEcho() {
        termios now{};
        EXPECT_EQ(tcgetattr(program_, &now), 0);
        return (now.c_lflag & ECHO) != 0 && (now.c_lflag & ICANON) != 0;
    }

    // What the person sees so far; waits for the first of it.
    std::string seen() {
        char text[1000];
        const ssize_t size = read(person_, text, sizeof text);
        return std::string(text, size > 0 ? static_cast<std::size_t>(size) : 0);
    }

    // Reads one key on a thread of its own, and acts once the terminal is ready for keys.
    template <typename Action>
    ReadStatus readKeyDuring(int& outKey, Action action) {
        ReadStatus status = ReadStatus::kEnd;
        std::thread reader([&] { status = console_->readKey(outKey); });
        while (hasEcho()) {
            std::this_thread::yield();
        }
        action();
        reader.join();
        return status;
    }

    int person_ = -1;
    int program_ = -1;
    termios settings_{};
    std::unique_ptr<PosixConsole> console_;
};

TEST_F(TerminalConsoleTest, GivesTheSizeOfTheWindow) {
    const winsize size{24, 132, 0, 0};
    ASSERT_EQ(ioctl(person_, TIOCSWINSZ, &size), 0);
    int columns = 0;
    int rows = 0;
    EXPECT_TRUE(console_->isInputTerminal());
    EXPECT_TRUE(console_->isOutputTerminal());
    EXPECT_TRUE(console_->windowSize(columns, rows));
    EXPECT_EQ(columns, 132);
    EXPECT_EQ(rows, 24);
}

TEST_F(TerminalConsoleTest, HasNoWindowWithoutCells) {
    int columns = 0;
    int rows = 0;
    EXPECT_FALSE(console_->windowSize(columns, rows));
}

TEST_F(TerminalConsoleTest, KeysComeWithoutEchoAndTheSettingsComeBack) {
    int key = 0;
    EXPECT_EQ(readKeyDuring(key, [&] { type("s"); }), ReadStatus::kLine);
    EXPECT_EQ(key, 's');
    EXPECT_TRUE(hasEcho());
    ASSERT_TRUE(console_->writeError("end"));
    EXPECT_EQ(seen(), "end");
}

TEST_F(TerminalConsoleTest, BackspaceIs8AndEnterALineFeed) {
    int key = 0;
    EXPECT_EQ(readKeyDuring(key, [&] { type(std::string(1, static_cast<char>(settings_.c_cc[VERASE]))); }),
              ReadStatus::kLine);
    EXPECT_EQ(key, 8);
    EXPECT_EQ(readKeyDuring(key, [&] { type("\r"); }), ReadStatus::kLine);
    EXPECT_EQ(key, '\n');
}

TEST_F(TerminalConsoleTest, TheEndKeyEndsTheInput) {
    int key = 0;
    EXPECT_EQ(readKeyDuring(key, [&] { type(std::string(1, static_cast<char>(settings_.c_cc[VEOF]))); }),
              ReadStatus::kEnd);
}

TEST_F(TerminalConsoleTest, APastedTextIsNotEchoedBetweenKeys) {
    int key = 0;
    EXPECT_EQ(readKeyDuring(key, [&] { type("se\n"); }), ReadStatus::kLine);
    EXPECT_EQ(key, 's');
    EXPECT_EQ(console_->readKey(key), ReadStatus::kLine);
    EXPECT_EQ(key, 'e');
    EXPECT_EQ(console_->readKey(key), ReadStatus::kLine);
    EXPECT_EQ(key, '\n');
    ASSERT_TRUE(console_->writeError("end"));
    EXPECT_EQ(seen(), "end");
}

TEST_F(TerminalConsoleTest, NothingIsEchoedFromTheFirstKeyToTheLast) {
    console_->beginKeys();
    EXPECT_FALSE(hasEcho());
    int key = 0;
    type("s");
    EXPECT_EQ(console_->readKey(key), ReadStatus::kLine);
    EXPECT_FALSE(hasEcho());
    type("e");
    EXPECT_EQ(console_->readKey(key), ReadStatus::kLine);
    EXPECT_EQ(key, 'e');
    console_->endKeys();
    EXPECT_TRUE(hasEcho());
    ASSERT_TRUE(console_->writeError("end"));
    EXPECT_EQ(seen(), "end");
}

TEST_F(TerminalConsoleTest, TreatsTheKeyThatSuspendsAsAnyOtherKey) {
    int key = 0;
    EXPECT_EQ(readKeyDuring(key, [&] { type("\x1A"); }), ReadStatus::kLine);
    EXPECT_EQ(key, 26);
}

TEST_F(TerminalConsoleTest, AnInterruptedKeyGivesTheSettingsBack) {
    int key = 0;
    EXPECT_EQ(readKeyDuring(key, [&] { console_->interruptInput(); }), ReadStatus::kInterrupted);
    EXPECT_TRUE(hasEcho());
}

TEST_F(TerminalConsoleTest, SignalKeysStaySignals) {
    const platform::RawTerminalMode raw(program_);
    termios now{};
    ASSERT_EQ(tcgetattr(program_, &now), 0);
    EXPECT_NE(now.c_lflag & ISIG, 0U);
    EXPECT_FALSE(hasEcho());
}

TEST_F(TerminalConsoleTest, AProcessAboutToEndCanGiveTheSettingsBack) {
    const platform::RawTerminalMode raw(program_);
    ASSERT_FALSE(hasEcho());
    platform::restoreTerminalMode();
    EXPECT_TRUE(hasEcho());
}

TEST_F(TerminalConsoleTest, AStoppedProcessHasGivenTheSettingsBack) {
    bool echoWhileStopped = false;
    {
        const platform::RawTerminalMode raw(program_);
        platform::stopWithTerminalRestored([&] { echoWhileStopped = hasEcho(); });
        EXPECT_TRUE(echoWhileStopped);
        platform::retakeTerminalMode();
        EXPECT_FALSE(hasEcho());
    }
    EXPECT_TRUE(hasEcho());
    platform::retakeTerminalMode();
    EXPECT_TRUE(hasEcho());
}

// A line edited on a thread of its own, at a terminal that can move its cursor.
class EditedLineTest : public TerminalConsoleTest {
protected:
    void SetUp() override {
        setenv("TERM", "xterm", 1);
        TerminalConsoleTest::SetUp();
    }

    // Types as soon as the editor has the terminal; the line, or "?" where none came.
    std::string editing(const std::string& keys,
                        platform::LineCompletion completion = platform::LineCompletion::kNone,
                        std::size_t maxBytes = 1000) {
        std::string line = "stale";
        std::optional<ReadStatus> status;
        std::thread reader([&] { status = console_->editLine("Name: ", completion, line, maxBytes); });
        while (hasEcho()) {
            std::this_thread::yield();
        }
        type(keys);
        reader.join();
        EXPECT_TRUE(hasEcho());
        return status == ReadStatus::kLine ? line : "?";
    }
};

constexpr const char* kLeft = "\x1B[D";
constexpr const char* kUp = "\x1B[A";

TEST_F(EditedLineTest, CursorKeysChangeTheLineAndNeverEndUpInIt) {
    EXPECT_EQ(editing(std::string("ac") + kLeft + "b\n"), "abc");
    EXPECT_NE(seen().find("Name: "), std::string::npos);
}

TEST_F(EditedLineTest, TakesCharactersOfAnyLanguage) {
    EXPECT_EQ(editing(std::string("gr\xC3\xB6\xC3\x9F") + kLeft + kLeft + "\x7F" + "\n"),
              "g\xC3\xB6\xC3\x9F");
    EXPECT_EQ(editing("\xE6\x97\xA5\n"), "\xE6\x97\xA5");
}

TEST_F(EditedLineTest, RemembersTheLinesBefore) {
    EXPECT_EQ(editing("first\n"), "first");
    EXPECT_EQ(editing("second\n"), "second");
    EXPECT_EQ(editing(std::string(kUp) + kUp + "!\n"), "first!");
}

TEST_F(EditedLineTest, CutsALineThatIsTooLong) {
    EXPECT_EQ(editing("abcdef\n", platform::LineCompletion::kNone, 3), "abc");
}

TEST_F(EditedLineTest, ATabCompletesADirectoryWhereOneIsAskedFor) {
    EXPECT_EQ(editing("/us\t\n", platform::LineCompletion::kDirectories), "/usr/");
    EXPECT_EQ(editing("a\tb\n"), "a\tb");
}

TEST_F(EditedLineTest, TheEndKeyEndsTheInput) {
    std::string line;
    EXPECT_EQ(editing("\x04"), "?");
}

TEST_F(EditedLineTest, AnInterruptGivesTheSettingsBack) {
    std::string line;
    std::optional<ReadStatus> status;
    std::thread reader(
        [&] { status = console_->editLine("Name: ", platform::LineCompletion::kNone, line, 100); });
    while (hasEcho()) {
        std::this_thread::yield();
    }
    console_->interruptInput();
    reader.join();
    EXPECT_EQ(status, ReadStatus::kInterrupted);
    EXPECT_EQ(line, "");
    EXPECT_TRUE(hasEcho());
}

TEST_F(EditedLineTest, IsNotForTerminalsThatCannotMoveTheirCursor) {
    std::string line;
    setenv("TERM", "dumb", 1);
    EXPECT_EQ(console_->editLine("Name: ", platform::LineCompletion::kNone, line, 100), std::nullopt);
    unsetenv("TERM");
    EXPECT_EQ(console_->editLine("Name: ", platform::LineCompletion::kNone, line, 100), std::nullopt);
}

TEST_F(EditedLineTest, NeedsTheStartOfALine) {
    std::string line;
    console_->write("something: ");
    EXPECT_EQ(console_->editLine("Name: ", platform::LineCompletion::kNone, line, 100), std::nullopt);
}

TEST_F(PipedConsoleTest, HasNothingToEditALineWith) {
    std::string line;
    EXPECT_EQ(console_->editLine("Name: ", platform::LineCompletion::kNone, line, 100), std::nullopt);
    EXPECT_EQ(printed(), "");
}

}  // namespace
