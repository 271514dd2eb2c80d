#include "engine/changes/change_table.h"

#include "engine/action_log_format.h"
#include "engine/changes/directory_change.h"
#include "engine/changes/environment_change.h"
#include "engine/changes/file_edit.h"
#include "engine/changes/firewall_change.h"
#include "engine/changes/ini_change.h"
#include "engine/changes/registry_change.h"
#include "engine/changes/shortcut_change.h"
#include "engine/engine_parts.h"

namespace {

namespace Format = ActionLogFormat;

// For the kinds that need nothing but the context.
template <typename Kind>
std::unique_ptr<Change> make(ChangeJob& job) {
    return std::make_unique<Kind>(job.context);
}

// For the kinds that also need texts of the product.
template <typename Kind>
std::unique_ptr<Change> makeOfProduct(ChangeJob& job) {
    return std::make_unique<Kind>(job.context, job.parts.model.product);
}

std::unique_ptr<Change> makeIniChange(ChangeJob& job) {
    return std::make_unique<IniChange>(job.context, &job.replaced.removed);
}

std::unique_ptr<Change> makeFileChange(ChangeJob& job) {
    return std::make_unique<FileChange>(job.context, job.parts, job.replaced);
}

std::unique_ptr<Change> makeDirectoryChange(ChangeJob& job) {
    return std::make_unique<DirectoryChange>(job.context, &job.kept);
}

using Tags = std::array<std::string_view, 2>;

constexpr ChangeKind kKinds[] = {
    {Tags{Format::kFile}, "FileSet", {}, UndoPass::kMain, UndoEnd::kBeforeCleaning, makeFileChange},
    {Tags{Format::kDirectory}, "", {}, UndoPass::kMain, UndoEnd::kAfterCleaning, makeDirectoryChange},
    {Tags{Format::kEnvironment}, "Environment", WordKey("StatusEnvironment"), UndoPass::kMain,
     UndoEnd::kAfterProgress, make<EnvironmentChange>},
    {Tags{Format::kIni}, "IniFiles", WordKey("StatusIniFiles"), UndoPass::kMain, UndoEnd::kBeforeCleaning,
     makeIniChange},
    {Tags{Format::kModifyFile}, "ModifyFiles", WordKey("StatusModifyFiles"), UndoPass::kFirst,
     UndoEnd::kBeforeCleaning, make<FileEdit>},
    {Tags{Format::kShortcut}, "Shortcuts", WordKey("StatusShortcuts"), UndoPass::kMain,
     UndoEnd::kBeforeCleaning, makeOfProduct<ShortcutChange>},
    {Tags{Format::kFirewall}, "Firewall", WordKey("StatusFirewall"), UndoPass::kMain,
     UndoEnd::kBeforeCleaning, make<FirewallChange>},
    {Tags{Format::kRegistryKey, Format::kRegistryValue},
     "Registry",
     {},
     UndoPass::kMain,
     UndoEnd::kBeforeCleaning,
     make<RegistryChange>},
};

}  // namespace

ChangeJob::ChangeJob(const EngineParts& engineParts, ActionLogWriter& log, Report& report)
    : parts(engineParts),
      tags(engineParts.model.description, engineParts.model.expressions),
      replaced(engineParts.machine.files),
      kept(engineParts.machine.files),
      context{engineParts.machine, engineParts.system, tags, log, report, engineParts.debugLog} {}

std::string_view ChangeKind::tagOf(std::string_view line) const {
    for (const std::string_view tag : tags) {
        if (!tag.empty() && line.starts_with(tag)) {
            return tag;
        }
    }
    return {};
}

std::span<const ChangeKind> changeKinds() {
    return kKinds;
}
