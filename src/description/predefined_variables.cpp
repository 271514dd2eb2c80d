#include "description/predefined_variables.h"

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "description/vocabulary.h"
#include "platform/environment.h"
#include "platform/file_system.h"

struct PredefinedVariables::Entry {
    vocabulary::WordName name;
    // Nothing when the value can't be had.
    std::optional<std::string> (PredefinedVariables::*get)();
};

PredefinedVariables::PredefinedVariables(const std::int32_t& isGraphical, platform::Environment& environment,
                                         platform::FileSystem& files, DebugLog debugLog)
    : isGraphical_(isGraphical), environment_(environment), files_(files), debugLog_(debugLog) {}

const PredefinedVariables::Entry PredefinedVariables::kEntries[] = {
    {"GUI_INSTALL", &PredefinedVariables::guiInstall},
    {"INSTALLER_DIR", &PredefinedVariables::installerDirectory},
    {"INSTALLER_FILE_NAME", &PredefinedVariables::installerFileName},
    {"TEMP_DIR", &PredefinedVariables::temporaryDirectory},
    {"WX_PORT", &PredefinedVariables::systemName},
    {"OPERATING_SYSTEM", &PredefinedVariables::systemName},
};

const PredefinedVariables::Entry* PredefinedVariables::find(std::string_view name) {
    for (const Entry& entry : kEntries) {
        if (OUtils::equalsIgnoreCase(name, entry.name.view())) {
            return &entry;
        }
    }
    return nullptr;
}

bool PredefinedVariables::isPredefined(std::string_view name) {
    return find(name) != nullptr;
}

std::optional<std::string> PredefinedVariables::get(std::string_view name) {
    const Entry* entry = find(name);
    return entry == nullptr ? std::nullopt : (this->*entry->get)();
}

std::optional<std::string> PredefinedVariables::guiInstall() {
    return isGraphical_ != 0 ? "1" : "0";
}

std::optional<std::string> PredefinedVariables::installerDirectory() {
    std::string path;
    environment_.programPath(path);
    const std::size_t separator = path.find_last_of("/\\");
    return separator == std::string::npos ? "" : path.substr(0, separator == 0 ? 1 : separator);
}

std::optional<std::string> PredefinedVariables::installerFileName() {
    std::string path;
    environment_.programPath(path);
    return std::string(OUtils::lastPathComponent(path));
}

std::optional<std::string> PredefinedVariables::temporaryDirectory() {
    std::string path;
    if (files_.temporaryDirectory(path)) {
        return path;
    }
    debugLog_.line("WARNING: Failed to obtain temp directory for variable usage!");
    return std::nullopt;
}

// Descriptions were written for one system and test this; every system keeps to it.
std::optional<std::string> PredefinedVariables::systemName() {
    return "win";
}
