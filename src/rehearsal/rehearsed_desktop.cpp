#include "rehearsal/rehearsed_desktop.h"

#include "base/path_functions.h"
#include "rehearsal/entry_text.h"
#include "support/utilities.h"

namespace {

// No file of a product begins so.
constexpr std::string_view kMark("\0shortcut\0", 10);

std::string_view directoryOf(std::string_view path) {
    return path.substr(0, path.size() - OUtils::lastPathComponent(path).size());
}

std::string part(std::string_view word, const std::string& text) {
    return text.empty() ? std::string() : ", " + std::string(word) + " " + quotedText(text);
}

}  // namespace

std::string RehearsedDesktop::linkText(std::string_view content) const {
    return content.starts_with(kMark) ? std::string(content.substr(kMark.size())) : std::string();
}

int RehearsedDesktop::createLink(std::string_view linkPath, const platform::LinkDescription& link) {
    return write(linkPath, "program " + quotedText(link.target) + part("arguments", link.arguments) +
                               part("in", link.workDirectory) + part("icon", link.iconPath) +
                               part("description", link.description));
}

int RehearsedDesktop::createUrlLink(std::string_view linkPath, std::string_view url) {
    return write(linkPath, "address " + quotedText(url));
}

int RehearsedDesktop::createSymlink(std::string_view linkPath, std::string_view target) {
    if (!hasSymlinks_) {
        return MemoryFileSystem::kAccessDenied;
    }
    if (!files_.isDirectory(directoryOf(linkPath))) {
        return MemoryFileSystem::kNotFound;
    }
    files_.addLink(linkPath, OUtils::withSeparators(std::string(target), '/'));
    return 0;
}

bool RehearsedDesktop::openDocument(std::string_view path) {
    actions_.push_back("open " + std::string(path));
    return true;
}

int RehearsedDesktop::write(std::string_view linkPath, const std::string& text) {
    return OUtils::writeWholeFile(linkPath, std::string(kMark) + text, files_);
}
