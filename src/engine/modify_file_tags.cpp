#include "engine/modify_file_tags.h"

#include <cstring>

#include "contracts/system_modifications.h"
#include "engine/action_log_format.h"

int ModifyFileTags::apply(InstallerUI* ui) {
    const bool succeeded =
        applyGroups(context_, "ModifyFiles", ui, [&](std::int32_t child) { return applyChild(child, ui); });
    return succeeded ? 0 : 1;
}

bool ModifyFileTags::applyChild(std::int32_t node, InstallerUI* ui) {
    DescriptionTags& tags = context_.tags;
    const char* command = tags.attribute(node, "Command");
    const bool isKnown = std::strcmp(tags.nameOf(node), "File") == 0 && command != nullptr &&
                         std::strcmp(command, "AddAfter") == 0;
    if (!isKnown || !tags.hasAttribute(node, "Path") || tags.textOf(node) == nullptr) {
        return true;
    }
    const std::string path = collapsedPath(tags.expandAttribute(node, "Path"));
    const std::string description = tags.expand(tags.textOf(node));
    std::string undo;
    if (!context_.modifications.modifyFile(path.c_str(), description.c_str(), undo, ui)) {
        context_.debugLog.print("ERROR: Modifying files: \"%s\"", path.c_str());
        return false;
    }
    context_.log.writeRecord(ActionLogFormat::kModifyFile, {undo});
    return true;
}
