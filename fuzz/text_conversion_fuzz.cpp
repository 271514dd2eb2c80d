// The conversions of text between UTF-8 and UTF-16, both ways, and those that make a text fit for a person or
// the system.

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/path_functions.h"
#include "base/utf8_character.h"
#include "base/visible_text.h"
#include "base/wide_text_converter.h"
#include "fuzz_target.h"
#include "platform/linux_path.h"
#include "platform/memory/memory_manner.h"
#include "platform/path_identity.h"
#include "platform/written_path.h"
#include "text/utf8_check.h"

namespace {

template <typename Text>
std::string asciiIn(const Text& text) {
    std::string ascii;
    for (const auto unit : text) {
        if (static_cast<char32_t>(unit) < 0x80) {
            ascii += static_cast<char>(unit);
        }
    }
    return ascii;
}

std::string asciiIn(std::string_view text) {
    return asciiIn(std::basic_string<char8_t>(text.begin(), text.end()));
}

// Any bytes come back, and no ASCII character is made or lost on the way.
void checkBytes(std::string_view bytes) {
    const std::u16string wide = OUtils::utf8ToWide(bytes);
    require(OUtils::wideToUtf8(wide) == bytes);
    require(asciiIn(wide) == asciiIn(bytes));
    const std::string text(bytes.substr(0, bytes.find('\0')));
    OUtils::WideTextConverter there(text.c_str());
    OUtils::WideTextConverter back(there.wide());
    require(back.utf8() == text && there.utf8() == text.c_str() && back.wide() == there.wide());
}

// The two units of a code point that stands for a raw byte. Several of them may come back as the character
// that the bytes are.
bool standsForByte(char16_t high, char16_t low) {
    return high == 0xDBC0 && low >= 0xDC80 && low <= 0xDCFF;
}

void checkUnits(std::string_view bytes) {
    std::u16string wide;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        wide += static_cast<char16_t>(static_cast<std::uint8_t>(bytes[i]) |
                                      static_cast<std::uint8_t>(bytes[i + 1]) << 8);
    }
    const std::string utf8 = OUtils::wideToUtf8(wide);
    const bool holdsBytes = std::adjacent_find(wide.begin(), wide.end(), standsForByte) != wide.end();
    require(holdsBytes || OUtils::utf8ToWide(utf8) == wide);
    require(asciiIn(utf8) == asciiIn(wide));
}

void checkVisibleText(std::string_view bytes) {
    const std::string visible = OUtils::visibleText(bytes);
    require(!findInvalidUtf8(visible));
    require(OUtils::visibleText(visible) == visible);
    for (std::size_t i = 0; i < visible.size(); ++i) {
        const auto c = static_cast<unsigned char>(visible[i]);
        const bool isLineEnd = c == '\n' || (c == '\r' && i + 1 < visible.size() && visible[i + 1] == '\n');
        require((c >= ' ' && c != 0x7F) || c == '\t' || isLineEnd);
        require(c != 0xC2 || static_cast<unsigned char>(visible[i + 1]) >= 0xA0);
    }
}

void checkPaths(std::string_view path) {
    const std::string native = platform::linuxPath(path);
    require(native.find('\\') == std::string::npos);
    require(platform::writtenPath(path) == native);
    // What is left of a drive may look like another one.
    const std::string identity = platform::pathIdentity(path);
    const bool hasDrive = identity.size() > 1 && identity[1] == ':';
    require(hasDrive || platform::pathIdentity(identity) == identity);
    require(platform::pathIdentity(OUtils::withSeparators(std::string(path))) == identity);
}

// On a machine in memory the functions answer in its manner.
void checkManner(std::string_view path) {
    const MemoryManner manner(MemoryManner::System::kWindows);
    const platform::MannerInUse inUse(manner);
    require(platform::writtenPath(path) == path);
    const std::string identity = platform::pathIdentity(path);
    require(identity == manner.pathIdentity(path) && manner.pathIdentity(identity) == identity);
}

}  // namespace

// Accepted when it is a valid text.
bool accepts(std::string_view input) {
    checkBytes(input);
    checkUnits(input);
    checkVisibleText(input);
    checkPaths(input);
    checkManner(input);
    std::string_view rest = input;
    while (const std::size_t length = OUtils::utf8CharacterLength(rest)) {
        rest.remove_prefix(length);
    }
    require(rest.empty() == !findInvalidUtf8(input));
    return !input.empty() && rest.empty();
}
