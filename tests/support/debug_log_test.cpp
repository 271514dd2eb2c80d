#include "support/debug_log.h"

#include <gtest/gtest.h>

#include <string>

#include "fakes/fake_console.h"
#include "support/p_console.h"

namespace {

TEST(DebugLogTest, DropsLinesWithoutATarget) {
    const DebugLog log;
    log.print("%d", 1);
    log.line("nothing");
    EXPECT_EQ(log.level(), 0);
}

TEST(DebugLogTest, WritesToItsConsole) {
    FakeConsole console;
    console.setOptions(0);
    const DebugLog log(console, 3);
    log.print("%s-%d", "a", 7);
    log.line("100%s as it is");
    EXPECT_EQ(console.text(), "a-7\r\n100%s as it is\r\n");
    EXPECT_EQ(log.level(), 3);
}

TEST(DebugLogTest, EveryCopyFollowsAChangeOfTheTarget) {
    FakeConsole console;
    console.setOptions(0);
    const DebugLog log;
    const DebugLog copy = log;
    log.setTarget(&console, 2);
    copy.line("first");
    EXPECT_EQ(copy.level(), 2);
    copy.setTarget(nullptr, 0);
    log.line("dropped");
    EXPECT_EQ(console.text(), "first\r\n");
}

TEST(DebugLogTest, CutsALineAtTheLimitOfAMessage) {
    FakeConsole console;
    console.setOptions(0);
    const DebugLog log(console);
    log.line(std::string(PConsole::kMessageLimit + 10, 'x'));
    EXPECT_EQ(console.text(), std::string(PConsole::kMessageLimit, 'x') + "\r\n");
}

}  // namespace
