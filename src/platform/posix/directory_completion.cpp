#include "platform/posix/directory_completion.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "base/utf8_character.h"
#include "base/visible_text.h"

namespace platform {

namespace {

constexpr std::size_t kMostNames = 100;

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};

std::string readablePath(std::string_view typed) {
    const char* const home = std::getenv("HOME");
    if (typed.starts_with("~/") && home != nullptr) {
        return home + std::string(typed.substr(1));
    }
    return typed.empty() ? "." : std::string(typed);
}

bool isDirectory(DIR* directory, const dirent& entry) {
    if (entry.d_type == DT_DIR) {
        return true;
    }
    struct stat status {};
    return (entry.d_type == DT_LNK || entry.d_type == DT_UNKNOWN) &&
           fstatat(dirfd(directory), entry.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
}

std::vector<std::string> namesIn(const std::string& path, std::string_view prefix) {
    const std::unique_ptr<DIR, CloseDirectory> directory(opendir(path.data()));
    std::vector<std::string> names;
    while (const dirent* const entry = directory == nullptr ? nullptr : readdir(directory.get())) {
        const std::string_view name = entry->d_name;
        const bool isMeant = name.starts_with(prefix) && name != "." && name != ".." &&
                             (name.front() != '.' || !prefix.empty());
        if (isMeant && OUtils::visibleText(name) == name && isDirectory(directory.get(), *entry)) {
            names.emplace_back(name);
        }
    }
    std::ranges::sort(names);
    return names;
}

// Whole characters that all names share. The names are sorted, so the first and the last tell.
std::string commonStart(const std::vector<std::string>& names) {
    const std::string_view first = names.front();
    const std::string_view last = names.back();
    std::size_t length = 0;
    for (;;) {
        const std::size_t next = OUtils::utf8CharacterLength(first.substr(length));
        if (next == 0 || first.substr(length, next) != last.substr(length, next)) {
            return std::string(first.substr(0, length));
        }
        length += next;
    }
}

}  // namespace

DirectoryCompletion completeDirectory(std::string_view typed) {
    if (typed == "~") {
        return {"/", {}};
    }
    const std::size_t parent = typed.rfind('/') + 1;  // 0 without one
    const std::string_view prefix = typed.substr(parent);
    DirectoryCompletion completion;
    completion.names = namesIn(readablePath(typed.substr(0, parent)), prefix);
    if (!completion.names.empty()) {
        const std::string start = commonStart(completion.names);
        completion.added = start.substr(std::min(prefix.size(), start.size()));
    }
    if (completion.names.size() == 1) {
        completion.added += '/';
    }
    if (completion.names.size() > kMostNames) {
        completion.names.resize(kMostNames);
    }
    return completion;
}

}  // namespace platform
