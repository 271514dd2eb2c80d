#include "support/p_multi_console.h"

#include <gtest/gtest.h>

#include <string>

#include "fakes/fake_console.h"

namespace {

// Answers with a status of its own and notes in which order it was asked.
class Member : public PConsole {
public:
    Member(std::string& log, char name, int status) : log_(log), name_(name), status_(status) {}
    int open(std::string_view path, int mode) override {
        log_ += std::string("open") + name_ + std::string(path) + std::to_string(mode) + " ";
        return 0;
    }
    int close() override {
        log_ += std::string("close") + name_ + " ";
        return 0;
    }
    int write(const char* text, std::int32_t length) override {
        log_ += std::string("write") + name_ + std::string(text, static_cast<std::size_t>(length)) + " ";
        return status_;
    }

private:
    std::string& log_;
    char name_;
    int status_;
};

TEST(PMultiConsoleTest, AsksItsMembersInOrder) {
    std::string log;
    Member first(log, '1', 11);
    Member second(log, '2', 22);
    PMultiConsole console;
    console.add(&first);
    console.add(&second);
    EXPECT_EQ(-1, console.open("p", 7));
    EXPECT_EQ(22, console.write("abc", 2));
    EXPECT_EQ(-1, console.close());
    EXPECT_EQ("open1p7 open2p7 write1ab write2ab close1 close2 ", log);
}

TEST(PMultiConsoleTest, PrintsOneLineToAllWithOnePrefix) {
    FakeConsole first;
    FakeConsole second;
    PMultiConsole console;
    console.setOptions(PConsole::kLineNumbers);
    console.add(&first);
    console.add(&second);
    console.print("x");
    EXPECT_EQ("   0:  x\r\n", first.text());
    EXPECT_EQ("   0:  x\r\n", second.text());
    EXPECT_EQ(0, first.getLineNumber());
}

TEST(PMultiConsoleTest, DoesNothingWithoutMembers) {
    PMultiConsole console;
    EXPECT_EQ(-1, console.open("p", 0));
    EXPECT_EQ(0, console.write("x", 1));
    EXPECT_EQ(-1, console.close());
    console.print("x");
    EXPECT_EQ(1, console.getLineNumber());
}

}  // namespace
