#include "engine/changes/record_lookers.h"

#include "engine/action_log_format.h"
#include "engine/changes/file_looks.h"
#include "engine/changes/settings_looks.h"
#include "engine/changes/text_looks.h"

namespace {

namespace Format = ActionLogFormat;

constexpr LookerKind kKinds[] = {
    {Format::kFile, "file", makeFileLooker},
    {Format::kDirectory, "directory", makeDirectoryLooker},
    {Format::kEnvironment, "environment", makeEnvironmentLooker},
    {Format::kIni, "ini", makeIniLooker},
    {Format::kModifyFile, "edit", makeEditLooker},
    {Format::kShortcut, "shortcut", makeShortcutLooker},
    {Format::kFirewall, "firewall", makeFirewallLooker},
    {Format::kRegistryKey, "registry key", makeRegistryKeyLooker},
    {Format::kRegistryValue, "registry value", makeRegistryValueLooker},
};

}  // namespace

std::span<const LookerKind> lookerKinds() {
    return kKinds;
}
