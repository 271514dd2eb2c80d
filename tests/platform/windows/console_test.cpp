#include <gtest/gtest.h>

#include <thread>

#include "platform/windows/console_input.h"
#include "platform/windows/console_output.h"

namespace {

using platform::ConsoleInput;
using platform::ConsoleOutput;
using platform::Handle;
using platform::ReadStatus;

struct Pipe {
    Pipe() {
        HANDLE readEnd = nullptr;
        HANDLE writeEnd = nullptr;
        CreatePipe(&readEnd, &writeEnd, nullptr, 1 << 20);
        reader = std::make_unique<Handle>(readEnd);
        writer = std::make_unique<Handle>(writeEnd);
    }

    void put(std::string_view bytes) const {
        DWORD done = 0;
        ASSERT_NE(WriteFile(writer->get(), bytes.data(), static_cast<DWORD>(bytes.size()), &done, nullptr),
                  0);
        ASSERT_EQ(done, bytes.size());
    }

    // All that was written; ends the writing.
    std::string take() {
        writer.reset();
        std::string all;
        char buffer[4096];
        DWORD done = 0;
        while (ReadFile(reader->get(), buffer, sizeof(buffer), &done, nullptr) != 0 && done > 0) {
            all.append(buffer, done);
        }
        return all;
    }

    std::unique_ptr<Handle> reader;
    std::unique_ptr<Handle> writer;
};

class PipeInput : public testing::Test {
protected:
    std::string line(std::size_t maxBytes = 1000) {
        std::string text;
        status_ = input_.readLine(text, maxBytes);
        return text;
    }

    Pipe pipe_;
    ConsoleInput input_{pipe_.reader->get()};
    ReadStatus status_ = ReadStatus::kLine;
};

TEST_F(PipeInput, turnsLineEndsIntoLineFeeds) {
    pipe_.put("one\r\ntwo\nth\rree\r\r\n");
    EXPECT_EQ(line(), "one\n");
    EXPECT_EQ(line(), "two\n");
    EXPECT_EQ(line(), "th\rree\r\n");
}

TEST_F(PipeInput, findsALineEndThatCameInTwoPieces) {
    pipe_.put("one\r");
    std::thread writer([this] {
        while (true) {
            DWORD available = 1;
            PeekNamedPipe(pipe_.reader->get(), nullptr, 0, nullptr, &available, nullptr);
            if (available == 0) {
                break;
            }
            std::this_thread::yield();
        }
        pipe_.put("\ntwo");
        pipe_.writer.reset();
    });
    EXPECT_EQ(line(), "one\n");
    EXPECT_EQ(line(), "two");
    writer.join();
}

TEST_F(PipeInput, cutsLongLinesAndGivesTheRestNext) {
    pipe_.put("abcdefg\r\nh\r\n");
    EXPECT_EQ(line(4), "abcd");
    EXPECT_EQ(line(3), "efg");
    EXPECT_EQ(line(4), "\n");
    EXPECT_EQ(line(4), "h\n");
}

TEST_F(PipeInput, readsLinesLongerThanOnePiece) {
    const std::string longLine(100000, 'x');
    pipe_.put(longLine + "\r\n");
    EXPECT_EQ(line(200000), longLine + "\n");
}

TEST_F(PipeInput, givesTheLastLineWithoutItsEndAndThenEnds) {
    pipe_.put("last\r");
    pipe_.writer.reset();
    EXPECT_EQ(line(), "last\r");
    EXPECT_EQ(status_, ReadStatus::kLine);
    EXPECT_EQ(line(), "");
    EXPECT_EQ(status_, ReadStatus::kEnd);
    line();
    EXPECT_EQ(status_, ReadStatus::kEnd);
}

TEST_F(PipeInput, givesOneByteForAKey) {
    pipe_.put("a\xC3\r\nrest\n");
    int key = 0;
    EXPECT_EQ(input_.readKey(key), ReadStatus::kLine);
    EXPECT_EQ(key, 'a');
    EXPECT_EQ(input_.readKey(key), ReadStatus::kLine);
    EXPECT_EQ(key, 0xC3);
    EXPECT_EQ(input_.readKey(key), ReadStatus::kLine);
    EXPECT_EQ(key, '\n');
    EXPECT_EQ(line(), "rest\n");
}

TEST_F(PipeInput, wakesABlockedReadWhenInterrupted) {
    std::thread interrupter([this] { input_.interrupt(); });
    line();
    EXPECT_EQ(status_, ReadStatus::kInterrupted);
    interrupter.join();
    pipe_.put("too late\n");
    line();
    EXPECT_EQ(status_, ReadStatus::kInterrupted);
    int key = 0;
    EXPECT_EQ(input_.readKey(key), ReadStatus::kInterrupted);
}

TEST(NoInput, isAtItsEnd) {
    ConsoleInput input(nullptr);
    std::string text;
    EXPECT_EQ(input.readLine(text, 10), ReadStatus::kEnd);
    EXPECT_FALSE(input.isTerminal());
}

TEST(FileInput, isReadLikeAPipe) {
    wchar_t directory[MAX_PATH];
    wchar_t path[MAX_PATH];
    ASSERT_NE(GetTempPathW(MAX_PATH, directory), 0U);
    ASSERT_NE(GetTempFileNameW(directory, L"tst", 0, path), 0U);
    const Handle file(CreateFileW(path, GENERIC_READ | GENERIC_WRITE | DELETE, 0, nullptr, CREATE_ALWAYS,
                                  FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    ASSERT_TRUE(file);
    DWORD done = 0;
    WriteFile(file.get(), "one\r\ntwo", 8, &done, nullptr);
    SetFilePointer(file.get(), 0, nullptr, FILE_BEGIN);
    ConsoleInput input(file.get());
    std::string text;
    EXPECT_EQ(input.readLine(text, 100), ReadStatus::kLine);
    EXPECT_EQ(text, "one\n");
    EXPECT_EQ(input.readLine(text, 100), ReadStatus::kLine);
    EXPECT_EQ(text, "two");
    EXPECT_EQ(input.readLine(text, 100), ReadStatus::kEnd);
}

TEST(PipeOutput, writesLineEndsOfATextFileAndUtf8) {
    Pipe pipe;
    ConsoleOutput output(pipe.writer->get());
    EXPECT_FALSE(output.isTerminal());
    EXPECT_TRUE(output.write("one\nz\xC3\xA9\r\n"));
    EXPECT_TRUE(output.flush());
    EXPECT_EQ(pipe.take(), "one\r\nz\xC3\xA9\r\r\n");
}

TEST(PipeOutput, keepsTextUntilItIsFlushed) {
    Pipe pipe;
    ConsoleOutput output(pipe.writer->get());
    EXPECT_TRUE(output.write("text"));
    DWORD available = 1;
    ASSERT_NE(PeekNamedPipe(pipe.reader->get(), nullptr, 0, nullptr, &available, nullptr), 0);
    EXPECT_EQ(available, 0U);
    EXPECT_TRUE(output.flush());
    EXPECT_EQ(pipe.take(), "text");
}

TEST(PipeOutput, handsOnLargeTextsByItself) {
    Pipe pipe;
    ConsoleOutput output(pipe.writer->get());
    const std::string text(300000, 'x');
    EXPECT_TRUE(output.write(text));
    EXPECT_EQ(pipe.take(), text);
}

TEST(PipeOutput, tellsThatNobodyReadsAnyMore) {
    Pipe pipe;
    ConsoleOutput output(pipe.writer->get());
    pipe.reader.reset();
    EXPECT_TRUE(output.write("text"));
    EXPECT_FALSE(output.flush());
    EXPECT_FALSE(output.write("more"));
    EXPECT_FALSE(output.flush());
}

TEST(NoOutput, hasFailedFromTheStart) {
    ConsoleOutput output(INVALID_HANDLE_VALUE);
    int columns = 0;
    int rows = 0;
    EXPECT_FALSE(output.write("text"));
    EXPECT_FALSE(output.flush());
    EXPECT_FALSE(output.windowSize(columns, rows));
}

}  // namespace
