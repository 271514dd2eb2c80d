#include "engine/ini_tags.h"

#include <cstring>

#include "contracts/system_modifications.h"
#include "engine/action_log_format.h"

int IniTags::apply(InstallerUI* ui) {
    const bool succeeded = applyGroups(context_, "IniFiles", ui, [&](std::int32_t child) {
        return !isComplete(child) || applyChild(child, ui);
    });
    return succeeded ? 0 : 1;
}

bool IniTags::isComplete(std::int32_t node) {
    DescriptionTags& tags = context_.tags;
    return std::strcmp(tags.nameOf(node), "Add") == 0 && tags.hasAttribute(node, "FileName") &&
           tags.hasAttribute(node, "Section") && tags.hasAttribute(node, "Key") &&
           tags.textOf(node) != nullptr;
}

bool IniTags::applyChild(std::int32_t node, InstallerUI* ui) {
    DescriptionTags& tags = context_.tags;
    const std::string file = collapsedPath(tags.expandAttribute(node, "FileName"));
    const std::string section = tags.expandAttribute(node, "Section");
    const std::string key = tags.expandAttribute(node, "Key");
    const std::string value = tags.expand(tags.textOf(node));
    const std::string beforeKey = tags.expandAttribute(node, "BeforeKey");
    std::string undo;
    const bool done = context_.modifications.addIniEntry(
        file.c_str(), section.c_str(), key.c_str(), value.c_str(), undo, ui,
        tags.hasAttribute(node, "IsPath"),
        tags.hasAttribute(node, "BeforeKey") ? beforeKey.c_str() : nullptr);
    if (!done) {
        context_.debugLog.print("ERROR: Updating INI: \"%s\"", file.c_str());
    }
    if (!done && !tags.hasAttribute(node, "IgnoreErrors")) {
        return false;
    }
    context_.log.writeRecord(ActionLogFormat::kIni, {undo});
    return true;
}
