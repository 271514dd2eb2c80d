#include "packager/tree_request.h"

#include "base/failure.h"
#include "base/path_functions.h"
#include "description/pxml.h"
#include "description/vocabulary_lookup.h"
#include "packager/root_path.h"

namespace {

constexpr vocabulary::AttributeName kHandedOn[] = {"Condition",  "ExpandVarsInFile", "BackupExisting",
                                                   "Executable", "StripExeExt",      "OkIfMissing"};

std::string attributeOrEmpty(const PXML& document, std::int32_t node, vocabulary::AttributeName name) {
    return std::string(vocabulary::attributeOf(document, node, name).value_or(""));
}

std::optional<std::string> conditionOf(const PXML& document, std::int32_t node) {
    const auto condition = vocabulary::attributeOf(document, node, "Condition");
    return condition ? std::optional<std::string>(*condition) : std::nullopt;
}

void checkPlace(const PXML& document, std::int32_t node, const std::string& from) {
    if (!vocabulary::hasAttribute(document, document.getNode(node)->parent, "Name")) {
        fail("the Tree of \"" + from + "\" is in a FileSet without Name, which is left out: give it a Name");
    }
    if (!document.getText(node).value_or("").empty() || !document.childrenOf(node).empty()) {
        fail("the Tree of \"" + from + "\" has a content: write it as an empty element");
    }
    if (vocabulary::hasAttribute(document, node, "Alias")) {
        fail("the Tree of \"" + from + "\" has an Alias: give the file that needs one an FN of its own");
    }
}

}  // namespace

TreeRequest readTree(const PXML& document, std::int32_t node) {
    const std::string from = attributeOrEmpty(document, node, "From");
    if (from.empty()) {
        fail("a Tree needs From, a directory below the root; \".\" is the root itself");
    }
    checkPlace(document, node, from);
    TreeRequest tree;
    tree.from = pathBelowRoot(from);
    tree.dest = OUtils::stripTrailingSeparators(attributeOrEmpty(document, node, "Dest"));
    if (tree.dest.empty()) {
        fail("the Tree of \"" + from + "\" needs Dest, the directory that it is installed to");
    }
    tree.filter = {PathPatterns(attributeOrEmpty(document, node, "Include")),
                   PathPatterns(attributeOrEmpty(document, node, "Exclude"))};
    tree.keepsModes = vocabulary::hasAttribute(document, node, "KeepModes");
    tree.mayBeMissing = vocabulary::hasAttribute(document, node, "OkIfMissing");
    tree.isExecutable = vocabulary::hasAttribute(document, node, "Executable");
    tree.condition = conditionOf(document, node);
    tree.setCondition = conditionOf(document, document.getNode(node)->parent);
    for (const vocabulary::AttributeName name : kHandedOn) {
        if (const auto value = vocabulary::attributeOf(document, node, name)) {
            tree.handedOn.emplace_back(name.view(), *value);
        }
    }
    return tree;
}
