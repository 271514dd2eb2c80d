#include "checking/cleanup_check.h"

#include <algorithm>
#include <set>
#include <string>
#include <string_view>

#include "base/text_functions.h"
#include "checking/check_context.h"
#include "checking/declared_variables.h"
#include "checking/packed_files.h"
#include "checking/path_values.h"
#include "checking/quoted_text.h"
#include "checking/references.h"
#include "checking/shared_directories.h"
#include "description/vocabulary_lookup.h"

namespace {

bool fitsEveryName(std::string_view pattern) {
    const bool isStars = !pattern.empty() && pattern.find_first_not_of('*') == std::string_view::npos;
    return isStars || pattern == "*.*";
}

bool isWithin(std::string_view directory, std::string_view path) {
    return path.starts_with(directory) &&
           (path.size() == directory.size() || path[directory.size()] == '/' || directory.ends_with('/'));
}

// A path that steps back may end anywhere.
bool stepsBack(std::string_view path) {
    return path == ".." || path.starts_with("../") || path.ends_with("/..") ||
           path.find("/../") != std::string_view::npos;
}

class CleanUpCheck {
public:
    CleanUpCheck(const CheckContext& context, const DeclaredVariables& variables, const PackedFiles& files,
                 const PathValues& paths)
        : context_(context), variables_(variables), paths_(paths) {
        for (const PackedFile& file : files.all()) {
            if (file.isInstalled()) {
                directories_.insert(paths.resolve(file.dest));
            }
        }
        readExclusions();
    }

    void run() {
        for (const std::int32_t node : context_.nodesOf(grammar::kPattern)) {
            checkPattern(node);
            checkVariables(node);
            checkDirectory(node);
        }
    }

private:
    std::string_view destOf(std::int32_t node) const { return context_.attribute(node, "Dest").value_or(""); }

    // The names of variables are case-sensitive here.
    void readExclusions() {
        for (const std::int32_t node : context_.nodesOf(grammar::kExcludedVariable)) {
            const auto words = context_.attribute(node, "ExcludeFrom");
            bool isExcluded = !words;
            vocabulary::forEachWord(words.value_or(""), [&](std::string_view word) {
                isExcluded = isExcluded || OUtils::equalsIgnoreCase(word, "all") ||
                             OUtils::equalsIgnoreCase(word, "log");
            });
            if (isExcluded) {
                excluded_.insert(std::string(context_.text(node)));
            }
        }
    }

    void checkPattern(std::int32_t node) {
        const std::string_view pattern = context_.text(node);
        if (pattern.find_first_of("/\\") != std::string_view::npos) {
            context_.addAtText(
                "cleanup-pattern", node,
                "the pattern " + inQuotes(pattern) + " has a separator, so nothing is deleted");
        } else if (fitsEveryName(pattern) && holdsTheProduct(node)) {
            context_.addAtText(
                "cleanup-everything", node,
                "this deletes all files in " + inQuotes(destOf(node)) + " and below, those of users, too");
        }
    }

    // The directory that the user chose, or one that all files are below.
    bool holdsTheProduct(std::int32_t node) const {
        const std::string directory = paths_.resolve(destOf(node));
        const std::vector<Reference> references = bracketReferences(directory);
        const bool isReference = references.size() == 1 && references[0].name.size() + 2 == directory.size();
        const DeclaredVariable* const variable = isReference ? variables_.find(references[0].name) : nullptr;
        if (variable != nullptr && variable->isAsked) {
            return true;
        }
        return !directory.empty() && !directories_.empty() &&
               std::ranges::all_of(directories_,
                                   [&](const std::string& path) { return isWithin(directory, path); });
    }

    // A clean-up relies on the variables of the action log.
    void checkVariables(std::int32_t node) {
        for (const Reference& reference : bracketReferences(destOf(node))) {
            const DeclaredVariable* const variable = variables_.find(reference.name);
            if (variable != nullptr && excluded_.contains(variable->name)) {
                context_.addAtAttribute("cleanup-excluded", node, "Dest",
                                        "nothing is deleted here, because the action log doesn't have " +
                                            inQuotes(variable->name));
            }
        }
    }

    void checkDirectory(std::int32_t node) {
        const std::string directory = paths_.resolve(destOf(node));
        if (stepsBack(directory)) {
            context_.addAtAttribute("cleanup-outside", node, "Dest",
                                    inQuotes(destOf(node)) + " steps back, so nothing is deleted");
        } else if (isOfTheMachine(directory) && !directories_.contains(directory) &&
                   !isSharedDirectory(directory, paths_)) {
            context_.addAtAttribute(
                "cleanup-outside", node, "Dest",
                inQuotes(destOf(node)) + " is a directory of the machine, in which nothing is installed");
        }
    }

    // A reference to an environment variable, and nothing else.
    bool isOfTheMachine(std::string_view directory) const {
        const std::vector<Reference> references = bracketReferences(directory);
        return references.size() == 1 && references[0].name.size() + 2 == directory.size() &&
               !paths_.environmentOf(references[0].name).empty();
    }

    const CheckContext& context_;
    const DeclaredVariables& variables_;
    const PathValues& paths_;
    std::set<std::string> directories_;  // of installed files
    std::set<std::string> excluded_;
};

}  // namespace

void checkCleanUps(const CheckContext& context, const DeclaredVariables& variables, const PackedFiles& files,
                   const PathValues& paths) {
    CleanUpCheck(context, variables, files, paths).run();
}
