#pragma once

#include "contracts/system_modifications.h"
#include "engine/directory_creator.h"
#include "engine/tag_context.h"

// The groups `Shortcuts`: links to programs, pages and the uninstaller.
class ShortcutTags {
public:
    static constexpr const char* kDefaultDescription = "Tandrel Group installer shortcut";

    ShortcutTags(TagContext context, platform::FileSystem& files) : context_(context), directories_(files) {}

    // 0, or 1 when a shortcut or its directory couldn't be made.
    int apply(InstallerUI* ui);

private:
    bool applyChild(std::int32_t node, InstallerUI* ui);
    bool readRequest(std::int32_t node, ShortcutRequest& outShortcut, std::string& outDirectory);
    bool prepareDirectory(const std::string& directory);
    bool makeShortcut(const ShortcutRequest& shortcut, InstallerUI* ui);

    TagContext context_;
    DirectoryCreator directories_;
};
