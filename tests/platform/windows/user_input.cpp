#include "platform/windows/user_input.h"

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "platform/windows/wide_text.h"

namespace user_input {

namespace {

struct NamedKey {
    std::string_view name;
    WORD code;
    bool isExtended;  // of the block beside the letters, or of the number pad
};

constexpr NamedKey kNamedKeys[] = {
    {"Return", VK_RETURN, false},
    {"KP_Enter", VK_RETURN, true},
    {"Tab", VK_TAB, false},
    {"space", VK_SPACE, false},
    {"Escape", VK_ESCAPE, false},
    {"BackSpace", VK_BACK, false},
    {"Delete", VK_DELETE, true},
    {"Insert", VK_INSERT, true},
    {"Home", VK_HOME, true},
    {"End", VK_END, true},
    {"Page_Up", VK_PRIOR, true},
    {"Prior", VK_PRIOR, true},
    {"Page_Down", VK_NEXT, true},
    {"Next", VK_NEXT, true},
    {"Left", VK_LEFT, true},
    {"Right", VK_RIGHT, true},
    {"Up", VK_UP, true},
    {"Down", VK_DOWN, true},
    {"shift", VK_LSHIFT, false},
    {"Shift_L", VK_LSHIFT, false},
    {"Shift_R", VK_RSHIFT, true},
    {"ctrl", VK_LCONTROL, false},
    {"Control_L", VK_LCONTROL, false},
    {"Control_R", VK_RCONTROL, true},
    {"alt", VK_LMENU, false},
    {"Alt_L", VK_LMENU, false},
    {"Alt_R", VK_RMENU, true},
    {"F1", VK_F1, false},
    {"F4", VK_F4, false},
    {"F10", VK_F10, false},
};

// What VkKeyScan says of a character's keys.
constexpr int kShiftBit = 1;
constexpr int kControlBit = 2;
constexpr int kAltBit = 4;

struct Key {
    WORD code = 0;
    bool isExtended = false;
};

bool send(std::vector<INPUT> inputs) {
    const auto count = static_cast<UINT>(inputs.size());
    return SendInput(count, inputs.data(), sizeof(INPUT)) == count;
}

INPUT keyInput(const Key& key, bool isDown) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key.code;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key.code, MAPVK_VK_TO_VSC));
    input.ki.dwFlags =
        (key.isExtended ? DWORD{KEYEVENTF_EXTENDEDKEY} : 0) | (isDown ? 0 : DWORD{KEYEVENTF_KEYUP});
    return input;
}

INPUT characterInput(wchar_t character, bool isDown) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wScan = character;
    input.ki.dwFlags = DWORD{KEYEVENTF_UNICODE} | (isDown ? 0 : DWORD{KEYEVENTF_KEYUP});
    return input;
}

INPUT mouseInput(DWORD flags, LONG x, LONG y) {
    INPUT input{};
    input.type = INPUT_MOUSE;
    input.mi.dx = x;
    input.mi.dy = y;
    input.mi.dwFlags = flags;
    return input;
}

std::optional<Key> namedKey(std::string_view name) {
    for (const NamedKey& key : kNamedKeys) {
        if (key.name == name) {
            return Key{key.code, key.isExtended};
        }
    }
    return std::nullopt;
}

// Adds the keys that make the character: those that are held, and the last one.
bool addCharacterKeys(std::string_view name, std::vector<Key>& keys) {
    const std::wstring wide = platform::wideOf(name);
    const SHORT scan = wide.size() == 1 ? VkKeyScanW(wide.front()) : SHORT{-1};
    if (scan == -1) {
        return false;
    }
    const int held = HIBYTE(scan);
    if ((held & kShiftBit) != 0) {
        keys.push_back({VK_LSHIFT, false});
    }
    if ((held & kControlBit) != 0) {
        keys.push_back({VK_LCONTROL, false});
    }
    if ((held & kAltBit) != 0) {
        keys.push_back({VK_LMENU, false});
    }
    keys.push_back({LOBYTE(scan), false});
    return true;
}

bool addKeys(std::string_view name, std::vector<Key>& keys) {
    if (const std::optional<Key> key = namedKey(name)) {
        keys.push_back(*key);
        return true;
    }
    return addCharacterKeys(name, keys);
}

// The place in the units of an absolute move: 65,536 are the whole screen, and the system rounds down.
LONG absolute(int pixel, int metric) {
    const long long size = GetSystemMetrics(metric);
    return size <= 0 ? 0 : static_cast<LONG>((pixel * 65536LL + size - 1) / size);
}

INPUT inputAt(int x, int y, DWORD button) {
    return mouseInput(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | button, absolute(x, SM_CXSCREEN),
                      absolute(y, SM_CYSCREEN));
}

}  // namespace

bool pressKey(std::string_view name) {
    std::vector<Key> keys;
    for (std::size_t end = name.find('+'); end != std::string_view::npos; end = name.find('+')) {
        if (!addKeys(name.substr(0, end), keys)) {
            return false;
        }
        name.remove_prefix(end + 1);
    }
    if (!addKeys(name, keys)) {
        return false;
    }
    std::vector<INPUT> inputs;
    for (const Key& key : keys) {
        inputs.push_back(keyInput(key, true));
    }
    while (!keys.empty()) {
        inputs.push_back(keyInput(keys.back(), false));
        keys.pop_back();
    }
    return send(std::move(inputs));
}

bool typeText(std::string_view text) {
    std::vector<INPUT> inputs;
    for (const wchar_t character : platform::wideOf(text)) {
        inputs.push_back(characterInput(character, true));
        inputs.push_back(characterInput(character, false));
    }
    return inputs.empty() || send(std::move(inputs));
}

bool movePointer(int x, int y) {
    return send({inputAt(x, y, 0)});
}

// Under Wine a program that is late with the display's events puts the pointer back to where it was before,
// so the button says where it is as well.
bool clickAt(int x, int y) {
    return send({inputAt(x, y, 0), inputAt(x, y, MOUSEEVENTF_LEFTDOWN), inputAt(x, y, MOUSEEVENTF_LEFTUP)});
}

bool movePointerInto(std::string_view title, int x, int y) {
    HWND const window = FindWindowW(nullptr, platform::wideOf(title).c_str());
    POINT place{x, y};
    return window != nullptr && ClientToScreen(window, &place) != 0 && movePointer(place.x, place.y);
}

bool click() {
    return send({mouseInput(MOUSEEVENTF_LEFTDOWN, 0, 0), mouseInput(MOUSEEVENTF_LEFTUP, 0, 0)});
}

bool isTaken() {
    return HIWORD(GetQueueStatus(QS_INPUT)) == 0;
}

}  // namespace user_input
