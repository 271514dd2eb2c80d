#include "description/file_sets.h"

#include <algorithm>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "description/expressions.h"
#include "description/pxml.h"

namespace {

std::string cut(std::string_view text, std::size_t limit) {
    return std::string(text.substr(0, limit));
}

std::string cutAttribute(const PXML& description, std::int32_t node, const char* name, std::size_t limit) {
    const char* value = description.getAttribute(node, name);
    return value == nullptr ? std::string() : cut(value, limit);
}

std::string withoutSeparators(std::string_view text) {
    std::string flat;
    flat.reserve(text.size());
    std::copy_if(text.begin(), text.end(), std::back_inserter(flat),
                 [](char c) { return !OUtils::isSeparator(c); });
    return flat;
}

}  // namespace

void FileSets::readFileSets(const SizeOfAlias& sizeOfAlias) {
    installTypes_.clear();
    fileSets_.clear();
    files_.clear();
    readInstallTypes();
    for (std::int32_t node = description_.findByName("FileSet"); node >= 0;
         node = description_.findByName("FileSet", node)) {
        readFileSet(node, sizeOfAlias);
    }
}

void FileSets::readInstallTypes() {
    for (std::int32_t node = description_.findByName("InstallType"); node >= 0;
         node = description_.findByName("InstallType", node)) {
        InstallType type;
        type.name.assign(description_.getAttribute(node, "Name"));
        type.description.assign(description_.getText(description_.findRelative(node, "Desc")));
        const char* editFileSets = description_.getAttribute(node, "EditFileSets");
        if (editFileSets != nullptr) {
            type.editFileSets = OUtils::textToInteger(editFileSets);
            type.isDefault = OUtils::textToInteger(description_.getAttribute(node, "Default"));
        }
        installTypes_.push_back(type);
    }
}

void FileSets::readFileSet(std::int32_t node, const SizeOfAlias& sizeOfAlias) {
    const char* name = description_.getAttribute(node, "Name");
    if (name == nullptr) {
        return;
    }
    FileSet fileSet;
    fileSet.name.assign(name);
    fileSet.description.assign(description_.getAttribute(node, "Desc"));
    fileSet.condition.assign(description_.getAttribute(node, "Condition"));
    fileSets_.push_back(fileSet);
    std::vector<std::int32_t> children;
    description_.listChildren(node, children);
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
        readFile(*child, sizeOfAlias);
    }
}

void FileSets::readFile(std::int32_t node, const SizeOfAlias& sizeOfAlias) {
    const char* text = description_.getText(node);
    if (!OUtils::equalsIgnoreCase(description_.getName(node), "FN") || text == nullptr || *text == '\0') {
        return;
    }
    const auto has = [&](const char* attribute) {
        return description_.getAttribute(node, attribute) != nullptr;
    };
    FileEntry entry;
    entry.fileSet = static_cast<std::int32_t>(fileSets_.size()) - 1;
    entry.dest = cutAttribute(description_, node, "Dest", FileEntry::kDestLimit);
    const char* alias = description_.getAttribute(node, "Alias");
    entry.alias = cut(alias != nullptr ? std::string(alias) : withoutSeparators(text), FileEntry::kNameLimit);
    entry.fileName = cut(OUtils::lastPathComponent(text), FileEntry::kNameLimit);
    entry.condition = cutAttribute(description_, node, "Condition", FileEntry::kConditionLimit);
    entry.size = sizeOfAlias ? sizeOfAlias(entry.alias) : 0;
    entry.expandVars = has("ExpandVarsInFile");
    entry.executable = has("Executable");
    entry.okIfMissing = has("OkIfMissing");
    entry.backupExisting = has("BackupExisting");
    entry.stripExeExt = entry.executable && has("StripExeExt") &&
                        expressions_.evaluateCondition(description_.getAttribute(node, "StripExeExt")) != 0;
    files_.push_back(std::move(entry));
}

// The first set with an alias decides, and within it the last file.
void FileSets::indexAliases() {
    if (indexedNodes_ == description_.getNodeCount()) {
        return;
    }
    indexedNodes_ = description_.getNodeCount();
    nodesByAlias_.clear();
    for (std::int32_t set = description_.findByName("FileSet"); set >= 0;
         set = description_.findByName("FileSet", set)) {
        std::vector<std::int32_t> children;
        description_.listChildren(set, children);
        for (auto child = children.rbegin(); child != children.rend(); ++child) {
            if (const char* alias = description_.getAttribute(*child, "Alias")) {
                nodesByAlias_.try_emplace(alias, *child);
            }
        }
    }
}

int FileSets::getFilePathByAlias(const char* alias, char* buffer, int size) {
    if (alias == nullptr) {
        return -1;
    }
    indexAliases();
    const auto found = nodesByAlias_.find(alias);
    const std::int32_t node = found == nodesByAlias_.end() ? -1 : found->second;
    const char* dest = description_.getAttribute(node, "Dest");
    const char* text = description_.getText(node);
    if (dest == nullptr || text == nullptr || *text == '\0') {
        return -1;
    }
    char path[OUtils::kPathCapacity];
    expressions_.expandVariables(dest, path, sizeof path, false);
    OUtils::joinPath(path, std::string(OUtils::lastPathComponent(text)).c_str(), sizeof path);
    OUtils::setSeparators(path);
    OUtils::copyText(buffer, path, size);
    return -1;
}
