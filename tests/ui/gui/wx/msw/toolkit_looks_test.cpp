#include <gtest/gtest.h>
#include <windows.h>

#include <array>

#include "platform/windows/wide_text.h"
#include "ui/gui/wx/window_fixture.h"

namespace {

constexpr Place kListPlace{20, 20, 200, 100};
constexpr int kMostDots = 200 * 100 / 2;

bool isBright(const Dot& dot) {
    return dot.red > 220 && dot.green > 220;
}

bool isDark(const Dot& dot) {
    return dot.red < 100 && dot.green < 100;
}

// The colours of pages, boxes and their letters, for the life of the object. The system tells all windows.
class DesktopColours {
public:
    DesktopColours(COLORREF paper, COLORREF letters) { set({paper, paper, letters}); }
    ~DesktopColours() { set(former_); }
    DesktopColours(const DesktopColours&) = delete;
    DesktopColours& operator=(const DesktopColours&) = delete;

private:
    static constexpr std::array<int, 3> kParts = {COLOR_BTNFACE, COLOR_WINDOW, COLOR_WINDOWTEXT};

    static void set(const std::array<COLORREF, 3>& colours) {
        SetSysColors(static_cast<int>(kParts.size()), kParts.data(), colours.data());
    }

    std::array<COLORREF, 3> former_ = {GetSysColor(COLOR_BTNFACE), GetSysColor(COLOR_WINDOW),
                                       GetSysColor(COLOR_WINDOWTEXT)};
};

class ToolkitLooks : public WindowTest {
protected:
    // As the system does when a setting of the desktop changes.
    void tellFrame(UINT message, WPARAM first, LPARAM second) {
        HWND frame = FindWindowW(nullptr, platform::wideOf(kTitle).c_str());
        ASSERT_NE(frame, nullptr);
        SendMessageW(frame, message, first, second);
        toolkit->processEvents();
    }
};

}  // namespace

TEST_F(ToolkitLooks, RowsOfTasksFollowTheColoursOfTheDesktop) {
    inFrame([&] {
        const ControlId list = add(ControlKind::kTaskList, {}, kListPlace);
        toolkit->addTask(list, {"WWWW", -1, -1, false});
        toolkit->show(list, true);
        waitUntil([&] { return pixelsOf(list).count(isDark) > 20; }, "dark letters");
        EXPECT_GT(pixelsOf(list).count(isBright), kMostDots);
        const DesktopColours inverse(RGB(0, 0, 0), RGB(255, 255, 255));
        waitUntil([&] { return pixelsOf(list).count(isDark) > kMostDots; }, "a dark list");
        EXPECT_GT(pixelsOf(list).count(isBright), 20);
    });
}

TEST_F(ToolkitLooks, AThemedDocumentKeepsItsColoursWhenTheDesktopChangesItsOwn) {
    inFrame(
        [&] {
            const ControlId document = add(ControlKind::kRichText, "words", kListPlace);
            toolkit->setColours(document, {0x104080, 0xF0F8FF, -1, -1});
            toolkit->show(document, true);
            const auto isPaper = [](const Dot& dot) { return dot == Dot{0xFF, 0xF8, 0xF0}; };
            const auto isItsOwn = [&] { return pixelsOf(document).count(isPaper) > kMostDots; };
            waitUntil(isItsOwn, "a document in its colours");
            const DesktopColours inverse(RGB(0, 0, 0), RGB(255, 255, 255));
            toolkit->processEvents();
            EXPECT_TRUE(isItsOwn());
        },
        true);
}

TEST_F(ToolkitLooks, APageStaysAsItIsWhenSettingsOfTheDesktopChange) {
    inFrame([&] {
        const Extent page = toolkit->clientSize();
        const Extent words = toolkit->measureText("Install the manual");
        const ControlId box = add(ControlKind::kTextBox, "words", {20, 20, 200, 0});
        toolkit->show(box, true);
        const Place place = toolkit->place(box);
        for (const wchar_t* const area : {L"ImmersiveColorSet", L"WindowMetrics", L"intl"}) {
            tellFrame(WM_SETTINGCHANGE, 0, reinterpret_cast<LPARAM>(area));
        }
        tellFrame(WM_SETTINGCHANGE, SPI_SETNONCLIENTMETRICS, 0);
        tellFrame(WM_THEMECHANGED, 0, 0);
        EXPECT_EQ(toolkit->clientSize(), page);
        EXPECT_EQ(toolkit->measureText("Install the manual"), words);
        EXPECT_EQ(toolkit->place(box), place);
        EXPECT_EQ(textOf(box), "words");
    });
}

// The program asks for one density for all screens, so the system scales its window on another one and tells
// it nothing. What comes all the same must not tear the page.
TEST_F(ToolkitLooks, APageStaysWholeWhenItsWindowIsToldOfAnotherDensity) {
    inFrame([&] {
        const ControlId box = add(ControlKind::kTextBox, "words", {20, 20, 200, 0});
        toolkit->show(box, true);
        const Place place = toolkit->place(box);
        const Extent page = toolkit->clientSize();
        RECT proposed{10, 10, 10 + page.width * 3 / 2, 10 + page.height * 3 / 2};
        tellFrame(WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&proposed));
        EXPECT_EQ(toolkit->clientSize(), page);
        EXPECT_EQ(toolkit->place(box), place);
        focus(box);
        type("x");
        waitUntil([&] { return textOf(box).find('x') != std::string::npos; }, "a letter in the box");
    });
}
