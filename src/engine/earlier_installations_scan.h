#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/earlier_installations.h"
#include "support/debug_log.h"

class Expressions;
class PXML;
class ProductDescription;
class SystemOperations;
namespace platform {
class FileSystem;
}

// Looks for earlier versions of the product and for what it replaces.
class EarlierInstallationsScan {
public:
    struct Parts {
        const PXML& description;
        const ProductDescription& product;
        Expressions& expressions;
        SystemOperations& system;
        platform::FileSystem& files;
    };

    EarlierInstallationsScan(Parts parts, EarlierInstallations& found, DebugLog debugLog);

    // What the system's list of installed applications knows: the product's own name, and each
    // LegacyApplication. A session that starts from an action log takes the product away itself and has no
    // earlier installation. Nothing happens once the removal was tried.
    void scanForEarlierInstallations(bool isActionLogSession);
    // What only log files show, at their known places. Needs the variables. Nothing happens in a session
    // that starts from an action log.
    void scanLegacyLogFiles(bool isActionLogSession);
    // Counts the applications of other installers.
    void scanExternalLegacy();

private:
    void scanOwnLog();
    void scanLegacyLog(std::int32_t node);
    std::int32_t countExternal(std::int32_t node);
    std::vector<std::int32_t> childrenOf(const char* path, const char* name) const;
    bool isPresent(const char* path);

    Parts parts_;
    EarlierInstallations& found_;
    DebugLog debugLog_;
};
