#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "base/fixed_text.h"
#include "support/debug_log.h"

class PXML;

// The roles that variables play in the engine, in their fixed order.
enum class ControlVariable : std::int32_t {
    kPreviousInstallation,
    kLegacyInstallation,
    kShouldUninstall,
    kCustomizeSettings,
    kProgressDetails,
    kInstallError,
    kUninstallError,
    kDlgCondition,
    kExternalLegacyInstallation,
};
inline constexpr std::int32_t kControlVariableCount = 9;

// Which variables of the description play those roles.
class ControlVariables {
public:
    // The tag that names the variable in the description.
    static std::string_view tagOf(ControlVariable role);

    // Reads the names from the element InstallerControlVariables. False when there is none, which the caller
    // reports. Tags that are missing or empty are logged and leave their role without a variable.
    bool read(const PXML& description, DebugLog debugLog);

    // The variable's name, at most 199 bytes; empty when no variable plays the role, and then nothing that
    // would touch it happens. Valid as long as this object.
    std::string_view nameOf(ControlVariable role) const;

private:
    std::array<FixedText<200>, kControlVariableCount> names_;
};
