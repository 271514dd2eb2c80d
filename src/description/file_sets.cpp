#include "description/file_sets.h"

#include <algorithm>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "description/expressions.h"
#include "description/pxml.h"
#include "description/vocabulary_lookup.h"

using vocabulary::attributeOf;
using vocabulary::findElement;
using vocabulary::hasAttribute;

namespace {

constexpr std::size_t kPathLimit = 1559;

std::string cut(std::string_view text, std::size_t limit) {
    return std::string(text.substr(0, limit));
}

// Empty for a missing attribute.
std::string_view attributeOrEmpty(const PXML& description, std::int32_t node,
                                  vocabulary::AttributeName name) {
    return attributeOf(description, node, name).value_or(std::string_view());
}

std::int32_t numberOf(const PXML& description, std::int32_t node, vocabulary::AttributeName name) {
    return OUtils::textToInteger(attributeOrEmpty(description, node, name));
}

std::string withoutSeparators(std::string_view text) {
    std::string flat;
    flat.reserve(text.size());
    std::copy_if(text.begin(), text.end(), std::back_inserter(flat),
                 [](char c) { return !OUtils::isSeparator(c); });
    return flat;
}

// As joining paths does everywhere: one separator, none after an empty path, and a path that is full stays.
void appendComponent(std::string& path, std::string_view name) {
    path = OUtils::joinedPath(std::move(path), name, kPathLimit);
}

}  // namespace

void FileSets::readFileSets(const SizeOfAlias& sizeOfAlias) {
    installTypes_.clear();
    fileSets_.clear();
    files_.clear();
    readInstallTypes();
    for (std::int32_t node = findElement(description_, "FileSet"); node >= 0;
         node = findElement(description_, "FileSet", node)) {
        readFileSet(node, sizeOfAlias);
    }
}

void FileSets::readInstallTypes() {
    for (std::int32_t node = findElement(description_, "InstallType"); node >= 0;
         node = findElement(description_, "InstallType", node)) {
        InstallType type;
        type.name.assign(attributeOrEmpty(description_, node, "Name"));
        const std::int32_t text = vocabulary::findChild(description_, node, "Desc");
        type.description.assign(description_.getText(text).value_or(std::string_view()));
        if (hasAttribute(description_, node, "EditFileSets")) {
            type.editFileSets = numberOf(description_, node, "EditFileSets");
            type.isDefault = numberOf(description_, node, "Default");
        }
        installTypes_.push_back(type);
    }
}

void FileSets::readFileSet(std::int32_t node, const SizeOfAlias& sizeOfAlias) {
    const std::optional<std::string_view> name = attributeOf(description_, node, "Name");
    if (!name) {
        return;
    }
    FileSet fileSet;
    fileSet.name.assign(*name);
    fileSet.description.assign(attributeOrEmpty(description_, node, "Desc"));
    fileSet.condition.assign(attributeOrEmpty(description_, node, "Condition"));
    fileSets_.push_back(fileSet);
    const std::vector<std::int32_t> children = description_.childrenOf(node);
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
        readFile(*child, sizeOfAlias);
    }
}

void FileSets::readFile(std::int32_t node, const SizeOfAlias& sizeOfAlias) {
    const std::string_view text = description_.getText(node).value_or(std::string_view());
    if (!vocabulary::isCalled(description_, node, "FN") || text.empty()) {
        return;
    }
    const auto has = [&](vocabulary::AttributeName name) { return hasAttribute(description_, node, name); };
    const std::optional<std::string_view> alias = attributeOf(description_, node, "Alias");
    FileEntry entry;
    entry.fileSet = static_cast<std::int32_t>(fileSets_.size()) - 1;
    entry.dest = cut(attributeOrEmpty(description_, node, "Dest"), FileEntry::kDestLimit);
    entry.alias = cut(alias ? std::string(*alias) : withoutSeparators(text), FileEntry::kNameLimit);
    entry.fileName = cut(OUtils::lastPathComponent(text), FileEntry::kNameLimit);
    entry.condition = cut(attributeOrEmpty(description_, node, "Condition"), FileEntry::kConditionLimit);
    entry.size = sizeOfAlias ? sizeOfAlias(entry.alias) : 0;
    entry.expandVars = has("ExpandVarsInFile");
    entry.executable = has("Executable");
    entry.okIfMissing = has("OkIfMissing");
    entry.backupExisting = has("BackupExisting");
    entry.stripExeExt = entry.executable && has("StripExeExt") &&
                        expressions_.holds(attributeOf(description_, node, "StripExeExt"));
    files_.push_back(std::move(entry));
}

// The first set with an alias decides, and within it the last file.
void FileSets::indexAliases() {
    if (indexedNodes_ == description_.getNodeCount()) {
        return;
    }
    indexedNodes_ = description_.getNodeCount();
    nodesByAlias_.clear();
    for (std::int32_t set = findElement(description_, "FileSet"); set >= 0;
         set = findElement(description_, "FileSet", set)) {
        const std::vector<std::int32_t> children = description_.childrenOf(set);
        for (auto child = children.rbegin(); child != children.rend(); ++child) {
            if (const std::optional<std::string_view> alias = attributeOf(description_, *child, "Alias")) {
                nodesByAlias_.try_emplace(*alias, *child);
            }
        }
    }
}

std::optional<std::string> FileSets::pathOfAlias(std::string_view alias) {
    indexAliases();
    const auto found = nodesByAlias_.find(alias);
    const std::int32_t node = found == nodesByAlias_.end() ? -1 : found->second;
    const std::optional<std::string_view> dest = attributeOf(description_, node, "Dest");
    const std::string_view text = description_.getText(node).value_or(std::string_view());
    if (!dest || text.empty()) {
        return std::nullopt;
    }
    std::string path = expressions_.expand(*dest, kPathLimit + 1).value_or("");
    appendComponent(path, OUtils::lastPathComponent(text));
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}
