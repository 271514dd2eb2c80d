#include "engine/file_planner.h"

#include "base/fixed_text.h"
#include "description/expressions.h"
#include "description/file_sets.h"
#include "engine/description_tags.h"

namespace {

constexpr std::size_t kPathLimit = PathText::capacity() - 1;

std::string cleaned(std::string path) {
    path.resize(std::min(path.size(), kPathLimit));
    return collapsedPath(std::move(path));
}

}  // namespace

bool FilePlanner::isSelected(const FileEntry& file) {
    if (file.dest.empty() || !holds(file.condition)) {
        return false;
    }
    const FileSet& owner = fileSets_.getFileSets()[static_cast<std::size_t>(file.fileSet)];
    return holds(owner.condition.view());
}

bool FilePlanner::holds(std::string_view condition) {
    const auto [known, isNew] = conditions_.try_emplace(std::string(condition), true);
    if (isNew) {
        known->second = expressions_.holds(condition);
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
        debugLog_.line("ERROR: Expanding full destination of a file: " + file.dest +
                       " (alias: " + file.alias + ")");
    }
    return known->second.expanded;
}

FilePlanner::Directory FilePlanner::expand(const std::string& destination) {
    const std::optional<std::string> text = expressions_.expand(destination, PathText::capacity());
    return {cleaned(text.value_or("") + '\\'), text.has_value()};
}

std::string FilePlanner::pathIn(const std::string& directory, const FileEntry& file) {
    return cleaned(directory + '\\' + file.fileName);
}
