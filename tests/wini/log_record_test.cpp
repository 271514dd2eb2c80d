#include "wini/log_record.h"

#include <gtest/gtest.h>

#include <string>

#include "engine/action_log_format.h"

namespace {

TEST(LogRecordTest, HoldsWhatComesBackAsItWas) {
    EXPECT_TRUE(logRecordHolds("TAG\t", ""));
    EXPECT_TRUE(logRecordHolds("TAG\t", " C:\\a b;c=d\xc3\xa9"));
}

TEST(LogRecordTest, DoesNotHoldWhatWouldBeSplitOrTrimmed) {
    for (const char* text : {"a\tb", "a\nb", "a\rb", "\ta", "a ", " "}) {
        EXPECT_FALSE(logRecordHolds("TAG\t", text)) << text;
    }
}

TEST(LogRecordTest, HoldsWhatFillsTheLineAndNoMore) {
    const std::string front = "TAG\t";
    const std::string text(ActionLogFormat::kLineLimit - front.size(), 'x');
    EXPECT_TRUE(logRecordHolds(front, text));
    EXPECT_FALSE(logRecordHolds(front, text + "x"));
}

}  // namespace
