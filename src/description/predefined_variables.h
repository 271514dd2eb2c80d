#pragma once

#include <cstdint>
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

    static bool isPredefined(const char* name);
    static std::vector<std::string_view> names();
    // -2 with the value in `buffer` (which may be null), cut to `size` bytes and terminated. -1 when there is
    // no such name (`buffer` stays), or no temporary directory (`buffer` is emptied, and that is logged).
    int read(const char* name, char* buffer, int size);

private:
    struct Entry;
    static const Entry kEntries[];
    static const Entry* find(const char* name);

    bool guiInstall(std::string& outValue);
    bool installerDirectory(std::string& outValue);
    bool installerFileName(std::string& outValue);
    bool temporaryDirectory(std::string& outValue);
    bool systemName(std::string& outValue);

    const std::int32_t& isGraphical_;
    EnvironmentAccess& environment_;
    DebugLog debugLog_;
};
