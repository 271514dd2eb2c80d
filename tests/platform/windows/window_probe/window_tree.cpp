#include "platform/windows/window_probe/window_tree.h"

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/windows/window_probe/accessible_window.h"
#include "platform/windows/window_probe/json_text.h"
#include "platform/windows/window_probe/list_rows.h"
#include "platform/windows/window_probe/window_messages.h"

namespace {

constexpr int kLongestClass = 256;
constexpr int kLongestText = 4096;
constexpr WPARAM kFromOutside = 0xFFFFFFFF;  // what the system gives to WM_GETOBJECT for another program

// Desktop, task bar and tray, of the system or of what stands in for it.
constexpr std::wstring_view kDesktopClasses[] = {
    L"#32769", L"Progman", L"WorkerW", L"Shell_TrayWnd", L"__wine_tray_window", L"__wine_clipboard_manager"};

std::wstring classOf(HWND window) {
    wchar_t name[kLongestClass] = L"";
    GetClassNameW(window, name, kLongestClass);
    return name;
}

bool isOfDesktop(HWND window) {
    return std::find(std::begin(kDesktopClasses), std::end(kDesktopClasses), classOf(window)) !=
           std::end(kDesktopClasses);
}

bool isMark(LONG_PTR style) {
    switch (style & BS_TYPEMASK) {
        case BS_CHECKBOX:
        case BS_AUTOCHECKBOX:
        case BS_3STATE:
        case BS_AUTO3STATE:
        case BS_RADIOBUTTON:
        case BS_AUTORADIOBUTTON:
            return true;
        default:
            return false;
    }
}

// Messages show everything else about the system's own controls; any other window has to be asked.
AccessibleQuestions questionsFor(HWND window, std::wstring_view className, long rows) {
    if (className == WC_LISTVIEWW) {
        return {.rows = rows};
    }
    if (className == WC_EDITW) {
        return {.value = (GetWindowLongPtrW(window, GWL_STYLE) & ES_PASSWORD) != 0};
    }
    if (className == WC_BUTTONW || className == WC_STATICW || className == PROGRESS_CLASSW) {
        return {};
    }
    return {.roleAndState = true, .value = true, .description = true};
}

bool hasFocus(HWND window) {
    GUITHREADINFO information{};
    information.cbSize = sizeof information;
    return GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &information) != 0 &&
           information.hwndFocus == window;
}

std::string rectangleOf(HWND window) {
    RECT rectangle{};
    GetWindowRect(window, &rectangle);
    return json::Object()
        .addNumber("x", rectangle.left)
        .addNumber("y", rectangle.top)
        .addNumber("width", rectangle.right - rectangle.left)
        .addNumber("height", rectangle.bottom - rectangle.top)
        .str();
}

class Tree {
public:
    explicit Tree(AskingThread& asking) : asking_(asking) {}

    std::string describeTop(HWND window) {
        messages_.ask(window, WM_NULL);  // when it hangs, nothing in it is asked
        json::Object object = describe(window);
        object.addFlag("active", GetForegroundWindow() == window);
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        object.addNumber("process", process);
        object.add("children", children(window));
        object.addFlag("hangs", messages_.isSilent(window));
        return object.str();
    }

private:
    json::Object describe(HWND window) {
        const std::wstring className = classOf(window);
        json::Object object;
        object.addNumber("hwnd", reinterpret_cast<LONG_PTR>(window));
        object.addText("class", className);
        object.addNumber("style", GetWindowLongPtrW(window, GWL_STYLE));
        object.addText("text", textOf(window, className));
        object.add("rect", rectangleOf(window));
        object.addFlag("enabled", IsWindowEnabled(window) != 0);
        object.addFlag("focused", hasFocus(window));
        addContent(object, window, className);
        addAccessible(object, window, className);
        return object;
    }

    // All but boxes have given their text to the system, which needs no turn of the program: one that waits
    // for another program takes few turns.
    std::wstring textOf(HWND window, std::wstring_view className) {
        if (className == WC_EDITW) {
            return messages_.text(window);
        }
        wchar_t text[kLongestText] = L"";
        InternalGetWindowText(window, text, kLongestText);
        return text;
    }

    void addContent(json::Object& object, HWND window, std::wstring_view className) {
        if (className == WC_BUTTONW && isMark(GetWindowLongPtrW(window, GWL_STYLE))) {
            object.addFlag("checked", messages_.ask(window, BM_GETCHECK) == LRESULT{BST_CHECKED});
        } else if (className == PROGRESS_CLASSW) {
            addPosition(object, window);
        } else if (className == WC_LISTVIEWW) {
            object.add("rows", rows(window));
        }
    }

    // All of it or nothing: the bar may go away meanwhile.
    void addPosition(json::Object& object, HWND bar) {
        const std::optional<LRESULT> value = messages_.ask(bar, PBM_GETPOS);
        const std::optional<LRESULT> lowest = messages_.ask(bar, PBM_GETRANGE, TRUE);
        const std::optional<LRESULT> highest = messages_.ask(bar, PBM_GETRANGE, FALSE);
        if (value && lowest && highest && *lowest < *highest) {
            object.addNumber("value", *value).addNumber("lowest", *lowest).addNumber("highest", *highest);
        }
    }

    std::string rows(HWND list) {
        std::vector<std::string> described;
        for (const ListRow& row : listRows(list, messages_)) {
            described.push_back(json::Object().addText("text", row.text).addNumber("image", row.image).str());
        }
        return json::list(described);
    }

    // Of a window without an object of its own the system knows no more than it tells here, but for boxes.
    void addAccessible(json::Object& object, HWND window, std::wstring_view className) {
        const LRESULT own =
            messages_.ask(window, WM_GETOBJECT, kFromOutside, static_cast<LPARAM>(OBJID_CLIENT)).value_or(0);
        if (messages_.isSilent(window) || (own == 0 && className != WC_EDITW)) {
            return;
        }
        const LRESULT rows =
            className == WC_LISTVIEWW ? messages_.ask(window, LVM_GETITEMCOUNT).value_or(0) : 0;
        const AccessibleQuestions questions = questionsFor(window, className, static_cast<long>(rows));
        if (const std::optional<std::string> answer = accessibleWindow(window, own, questions, asking_)) {
            object.add("accessible", *answer);
        } else if (IsWindow(window) != 0 && !messages_.ask(window, WM_NULL)) {
            messages_.noteSilent(window);
        }
    }

    std::string children(HWND parent) {
        std::vector<std::string> described;
        for (HWND child = GetWindow(parent, GW_CHILD); child != nullptr;
             child = GetWindow(child, GW_HWNDNEXT)) {
            if (IsWindowVisible(child) != 0) {
                described.push_back(describe(child).add("children", children(child)).str());
            }
        }
        return json::list(described);
    }

    AskingThread& asking_;
    WindowMessages messages_;
};

BOOL CALLBACK noteWindow(HWND window, LPARAM windows) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (IsWindowVisible(window) != 0 && process != GetCurrentProcessId() && !isOfDesktop(window)) {
        reinterpret_cast<std::vector<HWND>*>(windows)->push_back(window);
    }
    return TRUE;
}

}  // namespace

std::string windowTree(AskingThread& asking) {
    std::vector<HWND> windows;
    EnumWindows(&noteWindow, reinterpret_cast<LPARAM>(&windows));
    Tree tree(asking);
    std::vector<std::string> described;
    for (HWND window : windows) {
        described.push_back(tree.describeTop(window));
    }
    return json::list(described);
}
