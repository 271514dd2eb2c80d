#include "checking/removed_paths.h"

#include <algorithm>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "base/wildcard.h"
#include "checking/check_context.h"
#include "checking/path_values.h"

namespace {

// Actions that run before a product is there, or while it comes.
constexpr std::string_view kInstallingContainers[] = {"AdditionalInstall", "PostInstall"};

bool runsAtInstallation(const CheckContext& context, std::int32_t node) {
    return std::ranges::any_of(kInstallingContainers, [&](std::string_view container) {
        return context.enclosing(node, container) >= 0;
    });
}

}  // namespace

RemovedPaths::RemovedPaths(const CheckContext& context, const PathValues& paths) {
    addPatterns(context, paths);
    addActions(context, paths);
}

bool RemovedPaths::mayContain(std::string_view path) const {
    return hasProgram_ ||
           std::ranges::any_of(patterns_, [&](const Pattern& pattern) { return mayCover(pattern, path); }) ||
           std::ranges::any_of(files_, [&](const std::string& file) {
               return matchPaths(file, path) != PathMatch::kDifferent;
           });
}

void RemovedPaths::addPatterns(const CheckContext& context, const PathValues& paths) {
    for (const std::int32_t node : context.nodesOf(grammar::kPattern)) {
        patterns_.push_back(
            {paths.resolve(context.attribute(node, "Dest").value_or("")), context.text(node)});
    }
}

void RemovedPaths::addActions(const CheckContext& context, const PathValues& paths) {
    for (const std::int32_t node : context.nodesOf("RemoveFile")) {
        files_.push_back(paths.resolve(context.text(node)));
    }
    for (const std::int32_t node : context.nodesOf("RunProgram")) {
        hasProgram_ = hasProgram_ || !runsAtInstallation(context, node);
    }
}

// A pattern applies to all directories below its own.
bool RemovedPaths::mayCover(const Pattern& pattern, std::string_view path) {
    const std::string_view name = OUtils::lastPathComponent(path);
    if (!hasReference(name) && !matchesWildcard(pattern.names, name)) {
        return false;
    }
    const std::string_view directory = directoryOf(path);
    const bool isBelow =
        directory.starts_with(pattern.directory) &&
        (directory.size() == pattern.directory.size() || directory[pattern.directory.size()] == '/');
    return isBelow || matchPaths(pattern.directory, directory) != PathMatch::kDifferent;
}

std::string_view directoryOf(std::string_view path) {
    const std::size_t separator = path.rfind('/');
    return separator == std::string_view::npos ? std::string_view()
                                               : path.substr(0, std::max<std::size_t>(separator, 1));
}

bool isMeantToBeUninstalled(const CheckContext& context) {
    return context.firstOf("UninstallDialogs") >= 0 || context.firstOf("UninstallCmd") >= 0;
}
