#include "checking/made_directories.h"

#include <algorithm>

#include "base/text_functions.h"
#include "checking/check_context.h"
#include "checking/packed_files.h"
#include "checking/references.h"
#include "checking/removed_paths.h"
#include "checking/shared_directories.h"

namespace {

// The one above; empty for a root.
std::string_view above(std::string_view directory) {
    const std::string_view next = directoryOf(directory);
    return next == directory ? std::string_view() : next;
}

}  // namespace

MadeDirectories::MadeDirectories(const CheckContext& context, const PackedFiles& files,
                                 const PathValues& paths)
    : context_(context), paths_(paths.unchanged()), areAllKnown_(files.areAllKnown()) {
    for (const PackedFile& file : files.all()) {
        add(file.dest);
    }
    for (const std::string_view type : {"Tree", "Add@Shortcuts"}) {
        for (const std::int32_t node : context.nodesOf(type)) {
            add(context.attribute(node, "Dest").value_or(""));
        }
    }
}

// What is above a directory that is known was added with it.
void MadeDirectories::add(std::string_view dest) {
    const std::string path = folded(paths_.resolve(dest));
    for (std::string_view directory = path; !directory.empty(); directory = above(directory)) {
        if (!made_.emplace(directory).second) {
            break;
        }
    }
}

bool MadeDirectories::isMade(std::string_view directory) const {
    return isOwn(paths_.resolve(directory));
}

bool MadeDirectories::isOwn(std::string_view path) const {
    return made_.contains(folded(path)) && !isOfTheMachine(path);
}

bool MadeDirectories::isMissing(std::string_view directory) const {
    const std::string path = paths_.resolve(directory);
    const bool mayBeOfAProgram = !context_.nodesOf("RunProgram").empty();
    if (path.empty() || mayBeOfAProgram || !areAllKnown_ || isOfTheMachine(path) || mayBeMade(folded(path))) {
        return false;
    }
    for (std::string_view parent = above(path); !parent.empty(); parent = above(parent)) {
        if (isOwn(parent)) {
            return true;
        }
    }
    return isDescribed(path);
}

// Whether all references in it are to variables for which the description has values.
bool MadeDirectories::isDescribed(std::string_view directory) const {
    return std::ranges::all_of(bracketReferences(directory), [this](const Reference& reference) {
        return paths_.isDescribed(reference.name);
    });
}

bool MadeDirectories::mayBeMade(const std::string& directory) const {
    return made_.contains(directory) || std::ranges::any_of(made_, [&](const std::string& made) {
               return !isOfTheMachine(made) && matchPaths(made, directory) != PathMatch::kDifferent;
           });
}

// A directory that a variable names is the product's own only if the description says where it is.
bool MadeDirectories::isOfTheMachine(std::string_view directory) const {
    const bool isVariable = directory.starts_with('[') && directory.find(']') == directory.size() - 1;
    return isSharedDirectory(directory, paths_) ||
           (isVariable && !paths_.isDescribed(directory.substr(1, directory.size() - 2)));
}

// A path with a drive can only be one of Windows.
std::string MadeDirectories::folded(std::string_view path) const {
    const bool hasDrive = path.size() > 1 && path[1] == ':';
    return context_.targets().linux && !hasDrive ? std::string(path) : OUtils::toLowerAscii(path);
}
