#include "engine/environment_tags.h"

#include <optional>
#include <string_view>

#include "contracts/system_modifications.h"
#include "engine/action_log_format.h"

namespace {

std::optional<EnvironmentMode> modeOf(std::string_view name) {
    if (name == "Replace") {
        return EnvironmentMode::kReplace;
    }
    if (name == "Append") {
        return EnvironmentMode::kAppend;
    }
    if (name == "Insert") {
        return EnvironmentMode::kInsert;
    }
    return std::nullopt;
}

}  // namespace

int EnvironmentTags::apply(InstallerUI* ui) {
    written_ = false;
    const bool succeeded =
        applyGroups(context_, "Environment", ui, [&](std::int32_t child) { return applyChild(child, ui); });
    if (!succeeded || !written_) {
        return succeeded ? 0 : 1;
    }
    return context_.modifications.broadcastEnvironmentChange() ? 0 : 1;
}

bool EnvironmentTags::applyChild(std::int32_t node, InstallerUI* ui) {
    DescriptionTags& tags = context_.tags;
    const std::optional<EnvironmentMode> mode = modeOf(tags.nameOf(node));
    const char* text = tags.textOf(node);
    if (!mode || !tags.hasAttribute(node, "VarName") || text == nullptr) {
        return true;
    }
    const std::string name = tags.expandAttribute(node, "VarName");
    const std::string value = tags.expand(text);
    std::string undo;
    if (!context_.modifications.addEnvironmentEntry(name.c_str(), value.c_str(), *mode, undo, ui,
                                                    tags.hasAttribute(node, "IsPath"))) {
        context_.debugLog.print("ERROR: Updating ENV: %s=\"%s\"", name.c_str(), value.c_str());
        return false;
    }
    context_.log.writeRecord(ActionLogFormat::kEnvironment, {undo});
    written_ = true;
    return true;
}
