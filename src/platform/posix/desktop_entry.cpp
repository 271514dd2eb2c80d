#include "platform/posix/desktop_entry.h"

#include "base/path_functions.h"
#include "base/text_functions.h"

namespace platform {

namespace {

constexpr std::string_view kHeader = "[Desktop Entry]\nVersion=1.5\n";

// Line breaks would end the value, and blanks at its front would be dropped.
std::string valueOf(std::string_view text) {
    std::string value;
    for (const char c : text) {
        switch (c) {
            case '\\':
                value += "\\\\";
                break;
            case '\n':
                value += "\\n";
                break;
            case '\r':
                value += "\\r";
                break;
            case '\t':
                value += "\\t";
                break;
            case ' ':
                value += value.empty() ? "\\s" : " ";
                break;
            default:
                value += c;
        }
    }
    return value;
}

void addKey(std::string& entry, std::string_view key, std::string_view text) {
    if (!text.empty()) {
        entry.append(key).append("=").append(valueOf(text)).append("\n");
    }
}

// One word of a command: "%" begins a field code, and what means something to a shell is quoted, where four
// characters still have to be escaped.
std::string wordOf(std::string_view argument) {
    constexpr std::string_view kReserved = " \t\n\r\"'\\><~|&;$*?#()`";
    constexpr std::string_view kEscapedInQuotes = "\"`$\\";
    const bool quoted = argument.empty() || argument.find_first_of(kReserved) != std::string_view::npos;
    std::string word = quoted ? "\"" : "";
    for (const char c : argument) {
        if (kEscapedInQuotes.find(c) != std::string_view::npos) {
            word += '\\';
        }
        word.append(c == '%' ? 2 : 1, c);
    }
    return quoted ? word + '"' : word;
}

std::string commandOf(const std::vector<std::string>& words) {
    std::string command;
    for (const std::string& word : words) {
        command += (command.empty() ? "" : " ") + wordOf(word);
    }
    return command;
}

}  // namespace

std::string desktopEntryOf(const ApplicationEntry& entry) {
    std::string text = std::string(kHeader) + "Type=Application\n";
    addKey(text, "Name", entry.name);
    addKey(text, "Comment", entry.comment);
    addKey(text, "Exec", commandOf(entry.command));
    addKey(text, "Path", entry.workDirectory);
    addKey(text, "Icon", entry.icon);
    return text;
}

std::string desktopLinkOf(std::string_view name, std::string_view url) {
    std::string text = std::string(kHeader) + "Type=Link\n";
    addKey(text, "Name", name);
    addKey(text, "URL", url);
    return text;
}

std::string desktopEntryName(std::string_view linkPath) {
    const std::string_view base = OUtils::lastPathComponent(linkPath);
    for (const std::string_view ending : {".desktop", ".lnk", ".url"}) {
        if (base.size() > ending.size() &&
            OUtils::equalsIgnoreCase(base.substr(base.size() - ending.size()), ending)) {
            return std::string(base.substr(0, base.size() - ending.size()));
        }
    }
    return std::string(base);
}

}  // namespace platform
