#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/debug_log.h"

class EnvironmentAccess;

// The variables that always exist and can't be written: GUI_INSTALL, INSTALLER_DIR, INSTALLER_FILE_NAME,
// TEMP_DIR, WX_PORT, OPERATING_SYSTEM. Names ignore ASCII case.
class PredefinedVariables {
public:
    // `isGraphical` is the session's flag, non-zero with the graphical front end.
    PredefinedVariables(const std::int32_t& isGraphical, EnvironmentAccess& environment, DebugLog debugLog);

    static bool isPredefined(std::string_view name);
    static std::vector<std::string_view> names();
    // Nothing when there is no such name, or no temporary directory, which is logged.
    std::optional<std::string> get(std::string_view name);

private:
    struct Entry;
    static const Entry kEntries[];
    static const Entry* find(std::string_view name);

    std::optional<std::string> guiInstall();
    std::optional<std::string> installerDirectory();
    std::optional<std::string> installerFileName();
    std::optional<std::string> temporaryDirectory();
    std::optional<std::string> systemName();

    const std::int32_t& isGraphical_;
    EnvironmentAccess& environment_;
    DebugLog debugLog_;
};
