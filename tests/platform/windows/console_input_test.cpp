#include "platform/windows/console_input.h"

#include <gtest/gtest.h>

#include <thread>

#include "platform/windows/pipe.h"

namespace {

using platform::ConsoleInput;
using platform::Handle;
using platform::ReadStatus;

class PipeInput : public testing::Test {
protected:
    std::string line(std::size_t maxBytes = 1000) {
        std::string text;
        status_ = input_.readLine(text, maxBytes);
        return text;
    }

    Pipe pipe_;
    ConsoleInput input_{pipe_.reader()};
    ReadStatus status_ = ReadStatus::kLine;
};

TEST_F(PipeInput, TurnsLineEndsIntoLineFeeds) {
    pipe_.put("one\r\ntwo\nth\rree\r\r\n");
    EXPECT_EQ(line(), "one\n");
    EXPECT_EQ(line(), "two\n");
    EXPECT_EQ(line(), "th\rree\r\n");
}

TEST_F(PipeInput, FindsALineEndThatCameInTwoPieces) {
    pipe_.put("one\r");
    std::thread writer([this] {
        while (pipe_.available() > 0) {
            std::this_thread::yield();
        }
        pipe_.put("\ntwo");
        pipe_.closeWriter();
    });
    EXPECT_EQ(line(), "one\n");
    EXPECT_EQ(line(), "two");
    writer.join();
}

TEST_F(PipeInput, CutsLongLinesAndGivesTheRestNext) {
    pipe_.put("abcdefg\r\nh\r\n");
    EXPECT_EQ(line(4), "abcd");
    EXPECT_EQ(line(3), "efg");
    EXPECT_EQ(line(4), "\n");
    EXPECT_EQ(line(4), "h\n");
}

TEST_F(PipeInput, ReadsLinesLongerThanOnePiece) {
    const std::string longLine(100000, 'x');
    pipe_.put(longLine + "\r\n");
    EXPECT_EQ(line(200000), longLine + "\n");
}

TEST_F(PipeInput, GivesTheLastLineWithoutItsEndAndThenEnds) {
    pipe_.put("last\r");
    pipe_.closeWriter();
    EXPECT_EQ(line(), "last\r");
    EXPECT_EQ(status_, ReadStatus::kLine);
    EXPECT_EQ(line(), "");
    EXPECT_EQ(status_, ReadStatus::kEnd);
    line();
    EXPECT_EQ(status_, ReadStatus::kEnd);
}

TEST_F(PipeInput, GivesOneByteForAKey) {
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

TEST_F(PipeInput, WakesABlockedReadWhenInterrupted) {
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

TEST(NoInput, IsAtItsEnd) {
    ConsoleInput input(nullptr);
    std::string text;
    EXPECT_EQ(input.readLine(text, 10), ReadStatus::kEnd);
    EXPECT_FALSE(input.isTerminal());
}

TEST(FileInput, IsReadLikeAPipe) {
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

}  // namespace
