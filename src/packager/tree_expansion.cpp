#include "packager/tree_expansion.h"

#include <algorithm>
#include <unordered_set>

#include "base/failure.h"
#include "base/path_functions.h"
#include "base/text_functions.h"
#include "description/file_sets.h"
#include "description/pxml.h"
#include "description/vocabulary_lookup.h"
#include "packager/image_kind.h"
#include "packager/root_path.h"
#include "platform/file_system.h"

namespace {

constexpr std::string_view kDescriptionAlias = "install.xml";
constexpr std::string_view kBlanks = " \t";
constexpr const char* kLeaveOut = ": rename it, or leave it out with Exclude";

// The line end before the place and the white space between them; a line end alone where something else
// stands on the line.
std::string lineEndAt(std::string_view text, std::size_t place) {
    const std::size_t start = text.substr(0, place).rfind('\n') + 1;
    const bool isWindows = start > 1 && text[start - 2] == '\r';
    const std::string_view before = text.substr(start, place - start);
    const bool isIndentation = before.find_first_not_of(kBlanks) == std::string_view::npos;
    return std::string(isWindows ? "\r\n" : "\n").append(isIndentation ? before : "");
}

bool isTree(const PXML& document, std::int32_t node) {
    return vocabulary::isCalled(document, node, "Tree");
}

}  // namespace

TreeExpansion::TreeExpansion(PackageSources sources, platform::FileSystem& files)
    : sources_(std::move(sources)),
      files_(files),
      descriptionName_(OUtils::lastPathComponent(sources_.description)),
      aliases_(files, sources_.root) {}

std::optional<std::string> TreeExpansion::expand(std::string_view text) {
    PXML document;
    std::vector<PXMLSpan> spans;
    document.parseText(text, &spans);
    const std::vector<std::int32_t> trees = findTrees(document);
    if (trees.empty()) {
        return std::nullopt;
    }
    reserveAliases(document);
    std::string result;
    std::size_t done = 0;
    for (const std::int32_t tree : trees) {
        const PXMLSpan span = spans[static_cast<std::size_t>(tree)];
        if (span.end == PXMLSpan::kNoEnd) {
            fail(sources_.description + ": a Tree has no end");
        }
        result.append(text.substr(done, span.begin - done));
        result.append(linesFor(document, tree, lineEndAt(text, span.begin)));
        done = span.end;
    }
    return result.append(text.substr(done));
}

// In the order of the text. Elements of other kinds may have this name, pages for instance.
std::vector<std::int32_t> TreeExpansion::findTrees(const PXML& document) {
    std::vector<std::int32_t> trees;
    for (std::int32_t set = vocabulary::findElement(document, "FileSet"); set >= 0;
         set = vocabulary::findElement(document, "FileSet", set)) {
        for (const std::int32_t child : document.childrenOf(set)) {
            if (isTree(document, child)) {
                trees.push_back(child);
            }
        }
    }
    std::sort(trees.begin(), trees.end());
    for (std::int32_t node = vocabulary::findElement(document, "Tree"); node >= 0;
         node = vocabulary::findElement(document, "Tree", node)) {
        if (vocabulary::hasAttribute(document, node, "From") &&
            !std::binary_search(trees.begin(), trees.end(), node)) {
            warnings_.push_back(sources_.description + ": a Tree outside of a FileSet stands for nothing");
        }
    }
    return trees;
}

void TreeExpansion::reserveAliases(const PXML& document) {
    aliases_.reserve(std::string(kDescriptionAlias), descriptionName_, std::nullopt);
    for (std::int32_t set = vocabulary::findElement(document, "FileSet"); set >= 0;
         set = vocabulary::findElement(document, "FileSet", set)) {
        for (const std::int32_t child : document.childrenOf(set)) {
            if (vocabulary::isCalled(document, child, "FN") &&
                !document.getText(child).value_or("").empty()) {
                reserveAlias(document, child);
            }
        }
    }
}

// An alias that the author has chosen may be looked up, so nothing else gets it.
void TreeExpansion::reserveAlias(const PXML& document, std::int32_t node) {
    const std::string text(document.getText(node).value_or(""));
    const std::string path = pathBelowRoot(text);
    const std::string place = sources_.root + "/" + path;
    const auto alias = vocabulary::attributeOf(document, node, "Alias");
    const std::int64_t size = files_.fileSize(place);
    const bool mayBeShared = !alias && size >= 0 && path != descriptionName_ && place != sources_.description;
    aliases_.reserve(alias ? std::string(*alias) : defaultAliasOf(text), path,
                     mayBeShared ? std::optional(size) : std::nullopt);
}

std::string TreeExpansion::linesFor(const PXML& document, std::int32_t node, const std::string& lineEnd) {
    TreeRequest tree = readTree(document, node);
    TreeWalk walk(files_, sources_.root, tree.from, tree.filter);
    std::optional<std::vector<TreeItem>> items = walk.run();
    if (!items && !tree.mayBeMissing) {
        fail(walk.placeOf("") + ": no such directory");
    }
    if (!items) {
        return "";
    }
    warnOfUnused(tree, items->empty());
    return treeLines(tree, filesOf(tree, walk, std::move(*items)), lineEnd);
}

std::vector<TreeFile> TreeExpansion::filesOf(const TreeRequest& tree, const TreeWalk& walk,
                                             std::vector<TreeItem> items) {
    std::vector<TreeFile> found;
    std::unordered_set<std::string> lowerPaths;
    for (TreeItem& item : items) {
        checkPath(tree, walk, item);
        if (target() == TargetSystem::kWindows &&
            !lowerPaths.insert(OUtils::toLowerAscii(item.path)).second) {
            fail(walk.placeOf(item.path) + ": on Windows another file of the tree has this name" + kLeaveOut);
        }
        TreeFile& file = found.emplace_back();
        file.item = std::move(item);
        if (!file.item.link) {
            const std::string path = tree.from.empty() ? file.item.path : tree.from + "/" + file.item.path;
            const bool hasOwnContent = isDescription(path, walk.placeOf(file.item.path));
            const std::string alias =
                aliases_.aliasOf(path, hasOwnContent ? std::nullopt : std::optional(file.item.size));
            file.alias = alias == defaultAliasOf(path) ? "" : alias;
        } else {
            checkLink(walk, file.item);
        }
    }
    return found;
}

// What a description can't say, or the target can't hold.
void TreeExpansion::checkPath(const TreeRequest& tree, const TreeWalk& walk, const TreeItem& item) {
    const auto check = [&](std::string_view name, NameUse use) {
        if (const std::string fault = nameFault(name, use, target()); !fault.empty()) {
            fail(walk.placeOf(item.path) + ": the name \"" + std::string(name) + "\" has " + fault +
                 kLeaveOut);
        }
    };
    std::string_view rest = item.path;
    for (std::size_t end = rest.find('/'); end != std::string_view::npos; end = rest.find('/')) {
        check(rest.substr(0, end), NameUse::kDirectory);
        rest.remove_prefix(end + 1);
    }
    check(rest, item.link ? NameUse::kLink : NameUse::kFile);
    if (tree.dest.size() + item.path.size() - rest.size() > FileEntry::kDestLimit) {
        fail(walk.placeOf(item.path) + ": its directory, with the Dest, has more than " +
             std::to_string(FileEntry::kDestLimit) + " bytes" + kLeaveOut);
    }
}

void TreeExpansion::checkLink(const TreeWalk& walk, const TreeItem& item) {
    if (target() == TargetSystem::kWindows) {
        fail(walk.placeOf(item.path) +
             ": this is a link, which a setup for Windows can't make: leave it out with Exclude");
    }
    if (const std::string fault = linkFault(item.path, *item.link); !fault.empty()) {
        fail(walk.placeOf(item.path) + ": the link to \"" + *item.link + "\" " + fault +
             ": leave it out with Exclude");
    }
}

// An FN with such a path means the description, whatever lies there.
bool TreeExpansion::isDescription(const std::string& path, const std::string& place) {
    if (path != descriptionName_ && place != sources_.description) {
        return false;
    }
    std::string real;
    std::string realDescription;
    if (files_.realPath(place, real) != 0 || files_.realPath(sources_.description, realDescription) != 0 ||
        real != realDescription) {
        fail(place + ": a file of this path means the description, which is another file" + kLeaveOut);
    }
    return true;
}

void TreeExpansion::warnOfUnused(const TreeRequest& tree, bool isEmpty) {
    const std::string name =
        sources_.description + ": the Tree of \"" + (tree.from.empty() ? "." : tree.from) + "\"";
    if (isEmpty) {
        warnings_.push_back(name + " stands for no file");
    }
    for (const std::string& pattern : tree.filter.include.unused()) {
        warnings_.push_back(
            std::string(name).append(": nothing matches \"").append(pattern).append("\" of its Include"));
    }
}

TargetSystem TreeExpansion::target() {
    if (!target_) {
        const ImageKind kind = kindOfImage(sources_.image, files_);
        target_ = kind == ImageKind::kPe    ? TargetSystem::kWindows
                  : kind == ImageKind::kElf ? TargetSystem::kLinux
                                            : TargetSystem::kAny;
    }
    return *target_;
}
