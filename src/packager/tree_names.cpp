#include "packager/tree_names.h"

#include <algorithm>
#include <array>

#include "base/fixed_text.h"
#include "base/text_functions.h"
#include "base/utf8_character.h"
#include "description/file_sets.h"

namespace {

bool isControl(char c) {
    return (static_cast<unsigned char>(c) < 0x20) || c == 0x7F;
}

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = OUtils::utf8CharacterLength(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

// Windows takes such a name for a device, whatever extension it has.
bool isDevice(std::string_view name) {
    constexpr std::array<std::string_view, 4> kWords = {"con", "prn", "aux", "nul"};
    const std::string stem =
        OUtils::toLowerAscii(OUtils::trimWhiteSpace(name.substr(0, std::min(name.find('.'), name.size()))));
    const bool isNumbered = stem.size() == 4 && (stem.starts_with("com") || stem.starts_with("lpt")) &&
                            stem[3] >= '0' && stem[3] <= '9';
    return isNumbered || std::find(kWords.begin(), kWords.end(), stem) != kWords.end();
}

std::string windowsFault(std::string_view name) {
    if (name.find_first_of("<>\"|?*") != std::string_view::npos) {
        return "a character that Windows doesn't allow";
    }
    if (name.ends_with('.')) {
        return "a dot at its end, which Windows doesn't keep";
    }
    return isDevice(name) ? "the meaning of a device on Windows" : "";
}

}  // namespace

std::string nameFault(std::string_view name, NameUse use, TargetSystem target) {
    if (std::any_of(name.begin(), name.end(), isControl)) {
        return "a control character";
    }
    if (!isUtf8(name) || name.find("\xEF\xBF\xBD") != std::string_view::npos) {
        return "bytes that are no UTF-8";
    }
    if (name.find_first_of(":\\") != std::string_view::npos) {
        return "a colon or backslash, which leads elsewhere in a path";
    }
    if (name != OUtils::trimWhiteSpace(name)) {
        return "white space at its start or end, which a description doesn't keep";
    }
    if (use != NameUse::kFile && name.find('[') != std::string_view::npos) {
        return "a [, which begins a reference to a variable";
    }
    if (name.size() > FileEntry::kNameLimit) {
        return std::to_string(name.size()) + " bytes, at most " + std::to_string(FileEntry::kNameLimit) +
               " are possible";
    }
    return target == TargetSystem::kWindows ? windowsFault(name) : "";
}

std::string linkFault(std::string_view path, std::string_view text) {
    if (text.empty() || text.front() == '/') {
        return "isn't relative";
    }
    const auto depth = static_cast<std::size_t>(std::count(path.begin(), path.end(), '/'));
    std::size_t upwards = 0;
    bool isBelow = false;  // a part before was a name, which may be that of a link
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find('/', start), text.size());
        const std::string_view part = text.substr(start, end - start);
        start = end + 1;
        if (part.empty() || part == ".") {
            continue;
        }
        if (part != "..") {
            isBelow = true;
            if (const std::string fault = nameFault(part, NameUse::kLink, TargetSystem::kLinux);
                !fault.empty()) {
                return "leads to a name with " + fault;
            }
        } else if (isBelow || ++upwards > depth) {
            return "leads out of the tree, or may do so";
        }
    }
    return "";
}
