#include "platform/windows/background_reader.h"

#include <gtest/gtest.h>

#include <thread>

#include "platform/windows/pipe.h"

namespace {

using platform::BackgroundReader;
using platform::ReadStatus;

TEST(BackgroundReader, GivesWhatComesAndThenTheEnd) {
    Pipe pipe;
    BackgroundReader reader(pipe.reader());
    std::string bytes;
    pipe.put("one");
    EXPECT_EQ(reader.read(bytes), ReadStatus::kLine);
    EXPECT_EQ(bytes, "one");
    pipe.put("two");
    EXPECT_EQ(reader.read(bytes), ReadStatus::kLine);
    EXPECT_EQ(bytes, "two");
    pipe.closeWriter();
    EXPECT_EQ(reader.read(bytes), ReadStatus::kEnd);
    EXPECT_EQ(bytes, "");
    EXPECT_EQ(reader.read(bytes), ReadStatus::kEnd);
}

TEST(BackgroundReader, ReadsNothingThatNobodyAskedFor) {
    Pipe pipe;
    BackgroundReader reader(pipe.reader());
    std::string bytes;
    pipe.put("one");
    EXPECT_EQ(reader.read(bytes), ReadStatus::kLine);
    pipe.put("two");
    EXPECT_EQ(pipe.take(), "two");
}

TEST(BackgroundReader, LeavesAWaitingReadWhenInterrupted) {
    Pipe pipe;
    BackgroundReader reader(pipe.reader());
    std::thread interrupter([&reader] { reader.interrupt(); });
    std::string bytes;
    EXPECT_EQ(reader.read(bytes), ReadStatus::kInterrupted);
    interrupter.join();
    EXPECT_EQ(reader.read(bytes), ReadStatus::kInterrupted);
}

TEST(BackgroundReader, CanBeDestroyedWithoutHavingRead) {
    Pipe pipe;
    const BackgroundReader reader(pipe.reader());
}

}  // namespace
