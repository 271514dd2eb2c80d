#include "support/p_edit_console.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class PEditConsoleTest : public testing::Test {
protected:
    class Control : public platform::EditControl {
    public:
        explicit Control(PEditConsoleTest& owner) : owner_(owner) {}
        bool append(std::string_view text) override {
            owner_.text_ += owner_.isThere_ ? text : "";
            return owner_.isThere_;
        }
        bool clear() override {
            owner_.text_.clear();
            return owner_.isThere_;
        }

    private:
        PEditConsoleTest& owner_;
    };

    PEditConsoleTest() { console_.setOptions(0); }

    std::string text_;
    bool isThere_ = true;
    int window_ = 0;  // whose address is its handle
    int otherWindow_ = 0;
    PEditConsole console_{[this](void* window) -> std::unique_ptr<platform::EditControl> {
        return window == &window_ ? std::make_unique<Control>(*this) : nullptr;
    }};
};

TEST_F(PEditConsoleTest, IsSilentWithoutADestination) {
    console_.print("lost");
    EXPECT_EQ(console_.write("x", 1), 0);
    EXPECT_EQ(console_.clear(), -1);
    EXPECT_EQ(text_, "");
}

TEST_F(PEditConsoleTest, WritesLinesToTheControlAndClearsIt) {
    EXPECT_EQ(console_.setDestination(&window_), 0);
    console_.print("one %d", 1);
    console_.printRaw("two");
    EXPECT_EQ(console_.write("three", 0), 0);
    EXPECT_EQ(text_, "one 1\r\ntwo");
    EXPECT_EQ(console_.clear(), 0);
    EXPECT_EQ(text_, "");
}

TEST_F(PEditConsoleTest, RefusesAWindowThatIsNoEditControl) {
    console_.setDestination(&window_);
    EXPECT_EQ(console_.setDestination(&otherWindow_), -1);
    console_.print("lost");
    EXPECT_EQ(console_.setDestination(nullptr), -1);
    EXPECT_EQ(text_, "");
}

TEST_F(PEditConsoleTest, LetsGoOfTheControl) {
    console_.setDestination(&window_);
    EXPECT_EQ(console_.close(), -1);
    console_.print("lost");
    EXPECT_EQ(text_, "");
}

TEST_F(PEditConsoleTest, ReportsAWindowThatHasGone) {
    console_.setDestination(&window_);
    isThere_ = false;
    EXPECT_EQ(console_.write("x", 1), -1);
    EXPECT_EQ(console_.clear(), -1);
}

TEST_F(PEditConsoleTest, OpensNoFile) {
    EXPECT_EQ(console_.open("/log", 0), -1);
}

}  // namespace
