#include "engine/shortcut_tags.h"

#include <array>
#include <cstring>
#include <utility>

#include "engine/action_log_format.h"

namespace {

constexpr std::array<std::pair<const char*, ShortcutType>, 4> kTypes = {{
    {"Symlink", ShortcutType::kSymlink},
    {"File", ShortcutType::kFile},
    {"URL", ShortcutType::kUrl},
    {"Uninstall", ShortcutType::kUninstall},
}};

bool readType(const char* word, ShortcutType& outType) {
    for (const auto& [name, type] : kTypes) {
        if (word != nullptr && std::strcmp(word, name) == 0) {
            outType = type;
            return true;
        }
    }
    return false;
}

}  // namespace

int ShortcutTags::apply(InstallerUI* ui) {
    directories_.forget();
    const bool succeeded = applyGroups(context_, "Shortcuts", ui, [&](std::int32_t child) {
        return std::strcmp(context_.tags.nameOf(child), "Add") != 0 || applyChild(child, ui);
    });
    return succeeded ? 0 : 1;
}

bool ShortcutTags::applyChild(std::int32_t node, InstallerUI* ui) {
    ShortcutRequest shortcut;
    std::string directory;
    return !readRequest(node, shortcut, directory) ||
           (prepareDirectory(directory) && makeShortcut(shortcut, ui));
}

// False when the child lacks something that it needs, and is skipped.
bool ShortcutTags::readRequest(std::int32_t node, ShortcutRequest& outShortcut, std::string& outDirectory) {
    DescriptionTags& tags = context_.tags;
    if (!readType(tags.attribute(node, "Type"), outShortcut.type) || !tags.hasAttribute(node, "Dest") ||
        tags.textOf(node) == nullptr ||
        (outShortcut.type != ShortcutType::kUninstall && !tags.hasAttribute(node, "Target"))) {
        return false;
    }
    outDirectory = normalizedPath(tags.expandAttribute(node, "Dest") + '\\');
    outShortcut.linkPath = outDirectory + tags.expand(tags.textOf(node));
    outShortcut.target = tags.expandAttribute(node, "Target");
    if (outShortcut.type != ShortcutType::kUrl) {
        outShortcut.target = normalizedPath(outShortcut.target);
    }
    outShortcut.description = tags.hasAttribute(node, "Description")
                                  ? tags.expandAttribute(node, "Description")
                                  : kDefaultDescription;
    outShortcut.arguments = tags.expandAttribute(node, "Arguments");
    outShortcut.startPath = normalizedPath(tags.expandAttribute(node, "StartPath"));
    outShortcut.iconPath = normalizedPath(tags.expandAttribute(node, "IconPath"));
    return true;
}

bool ShortcutTags::prepareDirectory(const std::string& directory) {
    int created = 0;
    const bool done = directories_.createDirectories(directory, created) == 0;
    if (created > 0) {
        context_.log.writeDirectory(created, directory);
    }
    if (!done) {
        context_.debugLog.print("ERROR: Creating directory: \"%s\"", directory.c_str());
    }
    return done;
}

bool ShortcutTags::makeShortcut(const ShortcutRequest& shortcut, InstallerUI* ui) {
    std::string undo;
    if (!context_.modifications.addShortcut(shortcut, undo, ui)) {
        context_.debugLog.print("ERROR: Creating shortcut: \"%s\" to \"%s\" and args\"%s\"",
                                shortcut.linkPath.c_str(), shortcut.target.c_str(),
                                shortcut.arguments.c_str());
        return false;
    }
    context_.log.writeRecord(ActionLogFormat::kShortcut, {undo});
    return true;
}
