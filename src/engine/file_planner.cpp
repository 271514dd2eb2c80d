#include "engine/file_planner.h"

#include "base/fixed_text.h"
#include "base/path_functions.h"
#include "description/expressions.h"
#include "description/file_sets.h"
#include "support/debug_log.h"

namespace {

constexpr std::size_t kPathLimit = PathText::capacity() - 1;

std::string cleaned(std::string path) {
    path.resize(std::min(path.size(), kPathLimit));
    OUtils::collapseSeparators(path.data());
    path.resize(std::char_traits<char>::length(path.c_str()));
    return path;
}

}  // namespace

void FilePlanner::forget() {
    conditions_.clear();
    directories_.clear();
}

bool FilePlanner::isSelected(const FileEntry& file) {
    if (file.dest.empty() || !holds(file.condition.c_str())) {
        return false;
    }
    const FileSet& owner = fileSets_.getFileSets()[static_cast<std::size_t>(file.fileSet)];
    return holds(owner.condition.c_str());
}

bool FilePlanner::holds(const char* condition) {
    if (condition[0] == '\0') {
        return true;
    }
    const auto [known, isNew] = conditions_.try_emplace(condition, true);
    if (isNew) {
        known->second = expressions_.evaluateCondition(condition) != 0;
    }
    return known->second;
}

bool FilePlanner::findDirectory(const FileEntry& file, std::string& outDirectory) {
    auto known = directories_.find(file.dest);
    if (known == directories_.end()) {
        known = directories_.emplace(file.dest, expand(file.dest)).first;
    }
    outDirectory = known->second.path;
    if (!known->second.expanded) {
        debugLog_.print("ERROR: Expanding full destination of a file: %s (alias: %s)", file.dest.c_str(),
                        file.alias.c_str());
    }
    return known->second.expanded;
}

FilePlanner::Directory FilePlanner::expand(const std::string& destination) {
    PathText text;
    Directory directory;
    directory.expanded = expressions_.expandVariables(destination.c_str(), text.data(),
                                                      static_cast<int>(PathText::capacity()), false) != 0;
    directory.path = cleaned(std::string(text.view()) + '\\');
    return directory;
}

std::string FilePlanner::pathIn(const std::string& directory, const FileEntry& file) {
    return cleaned(directory + '\\' + file.fileName);
}
