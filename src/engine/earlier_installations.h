#pragma once

#include <cstdint>
#include <string>
#include <vector>

// An application whose action log was found at a known place.
struct LegacyLogFile {
    std::string applicationName;
    std::string logPath;
};

// Where an earlier installation of the product was found.
enum PreviousInstallationKind : std::int32_t {
    kNoPreviousInstallation = 0,
    kRegisteredInstallation = 1,  // in the system's list of installed applications
    kLoggedInstallation = 2,      // only by its log file
};

// What the session found of earlier installations.
struct EarlierInstallations {
    std::int32_t previousInstallationKind = kNoPreviousInstallation;
    std::int32_t legacyInstallationCount = 0;  // registered applications that the product replaces
    // Between scanLegacyLogFiles and scanExternalLegacy: logs of applications that the product replaces.
    // Afterwards: applications of other installers.
    std::int32_t externalLegacyCount = 0;
    std::int32_t previousUninstallDone = 0;  // their removal was tried; that happens once in a session
    std::vector<LegacyLogFile> legacyLogFiles;
};
