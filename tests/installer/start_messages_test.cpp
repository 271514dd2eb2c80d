#include "installer/start_messages.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/memory/memory_console_device.h"

namespace {

class StartMessagesTest : public testing::Test {
protected:
    MemoryConsoleDevice console_;
    std::string boxes_;
    StartMessages messages_{
        console_, [this](std::string_view text, std::string_view caption, platform::MessageIcon icon) {
            boxes_ += std::string(caption) + "|" + std::string(text) + "|" +
                      (icon == platform::MessageIcon::kError ? "error" : "other") + ";";
        }};
};

TEST_F(StartMessagesTest, AreTextsOnTheConsole) {
    messages_.show("a", platform::MessageIcon::kError);
    messages_.note("b");
    messages_.remark("c");
    messages_.print("d");
    EXPECT_EQ(console_.output, "a\nd");
    EXPECT_EQ(console_.pending, "");
    EXPECT_EQ(console_.errors, "b\nc\n");
    EXPECT_EQ(boxes_, "");
}

TEST_F(StartMessagesTest, AreBoxesInAGraphicalRun) {
    messages_.setGraphical(true);
    messages_.show("a", platform::MessageIcon::kWarning);
    messages_.note("b");
    messages_.remark("c");
    messages_.print("d");
    EXPECT_EQ(boxes_, "Tandrel Software installer|a|other;Tandrel Software installer|b|error;");
    EXPECT_EQ(console_.output, "d");
    EXPECT_EQ(console_.errors, "c\n");
}

}  // namespace
