#include "platform/edit_control.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace {

// Not on a desktop, so that no display is needed.
class WindowsEditControlTest : public testing::Test {
protected:
    ~WindowsEditControlTest() override { DestroyWindow(window_); }

    static HWND make(const wchar_t* name) {
        return CreateWindowExW(0, name, L"", WS_CHILD | ES_MULTILINE | ES_AUTOHSCROLL | ES_AUTOVSCROLL, 0, 0,
                               100, 100, HWND_MESSAGE, nullptr, GetModuleHandleW(nullptr), nullptr);
    }
    std::wstring text() const {
        std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window_)) + 1, L'\0');
        text.resize(
            static_cast<std::size_t>(GetWindowTextW(window_, text.data(), static_cast<int>(text.size()))));
        return text;
    }

    HWND window_ = make(L"EDIT");
};

TEST_F(WindowsEditControlTest, AddsToItsEnd) {
    const auto control = platform::editControlOf(window_);
    ASSERT_NE(control, nullptr);
    EXPECT_TRUE(control->append("one\r\n"));
    SendMessageW(window_, EM_SETSEL, 0, 1);  // whatever the user selects
    EXPECT_TRUE(control->append("tw\xC3\xB6"));
    EXPECT_EQ(text(), L"one\r\ntw\u00F6");
    EXPECT_TRUE(control->clear());
    EXPECT_EQ(text(), L"");
}

TEST_F(WindowsEditControlTest, HoldsMoreThanTheUsualLimit) {
    const auto control = platform::editControlOf(window_);
    ASSERT_NE(control, nullptr);
    std::string block;
    for (int i = 0; i < 100; ++i) {
        block += std::string(98, 'x') + "\r\n";
    }
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(control->append(block));
    }
    EXPECT_EQ(text().size(), 40000U);
}

TEST_F(WindowsEditControlTest, IsNoOtherWindow) {
    const HWND button = make(L"BUTTON");
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(platform::editControlOf(button), nullptr);
    DestroyWindow(button);
}

TEST_F(WindowsEditControlTest, NoticesThatTheWindowHasGone) {
    const auto control = platform::editControlOf(window_);
    ASSERT_NE(control, nullptr);
    DestroyWindow(window_);
    EXPECT_FALSE(control->append("lost"));
    EXPECT_FALSE(control->clear());
}

}  // namespace
