#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "support/debug_log.h"

namespace platform {
class Environment;
class FileSystem;
}  // namespace platform

// The variables that always exist and can't be written: GUI_INSTALL, INSTALLER_DIR, INSTALLER_FILE_NAME,
// TEMP_DIR, WX_PORT, OPERATING_SYSTEM. Names ignore ASCII case.
class PredefinedVariables {
public:
    // All outlive this object. `isGraphical` is the session's flag, non-zero with the graphical front end.
    PredefinedVariables(const std::int32_t& isGraphical, platform::Environment& environment,
                        platform::FileSystem& files, DebugLog debugLog);

    static bool isPredefined(std::string_view name);
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
    platform::Environment& environment_;
    platform::FileSystem& files_;
    DebugLog debugLog_;
};
