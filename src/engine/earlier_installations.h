#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/description_tags.h"
#include "engine/engine_parts.h"
#include "engine/product_removal.h"

enum class ControlVariable : std::int32_t;

// An application whose action log was found at a known place.
struct LegacyLogFile {
    std::string applicationName;
    std::string logPath;
};

// Where an earlier installation of the product was found. The numbers are those of the description's
// variable.
enum PreviousInstallationKind : std::int32_t {
    kNoPreviousInstallation = 0,
    kRegisteredInstallation = 1,  // in the system's list of installed applications
    kLoggedInstallation = 2,      // only by its log file
};

// Looks for earlier versions of the product and for what it replaces, and puts what it finds into the
// variables that play these roles. A session that starts from an action log takes the product away itself and
// has no earlier installation.
class EarlierInstallations {
public:
    explicit EarlierInstallations(const EngineParts& parts);

    // The names that the description gives of products which this one replaces.
    std::vector<std::string> formerNames();

    // What the system's list of installed applications knows: the product's own name, and each
    // LegacyApplication. The variables of an earlier installation become those of this session. For the time
    // before the default values are loaded, so that they build on it.
    void findRegistered(bool isActionLogSession);

    // What only log files show, at their known places, and the applications of other installers. For the time
    // after the default values are loaded: the places are written with variables, and a default can't hide
    // what was found.
    void findOthers(bool isActionLogSession);

    // How products are removed, and entries from the list of installed applications: true when nothing of it
    // is left.
    struct Removers {
        std::function<bool(const ProductRemoval::Request& request)> product;
        std::function<bool(const std::string& applicationName)> entry;
    };
    // What `remove` would take away now, in its order; nothing when it wouldn't do anything.
    std::vector<ProductRemoval::Request> wanted();
    // Takes away what was found, unless the variable of the role ShouldUninstall is 0 or missing: registered
    // applications that the product replaces, the earlier version, and what only log files show. The earlier
    // version is to be backed up where it is registered. The entries go of the applications that the product
    // replaces; its own is left to its registration. False when any of it failed; the variable of the role
    // UninstallError is emptied then. Throws what the removers throw, and InstallerError without a name of
    // the product. Once for this object: later calls do nothing and give the same result.
    bool remove(const Removers& removers);

    PreviousInstallationKind kind() const { return kind_; }
    bool wasRemovalTried() const { return removalTried_; }
    // Registered applications that the product replaces.
    std::int32_t legacyCount() const { return legacyCount_; }
    const std::vector<LegacyLogFile>& legacyLogFiles() const { return legacyLogFiles_; }

private:
    void scanRegistered();
    void importVariables();
    void importVariables(const std::string& name, const std::optional<std::string>& path,
                         const std::string& content);
    void scanLogFiles();
    void scanOwnLog();
    void scanLegacyLog(std::int32_t node);
    void scanExternal();

    bool isWanted();
    std::vector<std::string> registeredLegacyNames();
    std::vector<LegacyLogFile> loggedProducts();
    bool removeRegistered(const Removers& removers);
    bool removeLogged(const Removers& removers);
    std::vector<std::int32_t> childrenOf(std::string_view path, vocabulary::ElementName name) const;
    bool isPresent(const std::string& path);
    void setControl(ControlVariable role, std::string_view value);

    EngineParts parts_;
    DescriptionTags tags_;
    PreviousInstallationKind kind_ = kNoPreviousInstallation;
    std::int32_t legacyCount_ = 0;
    std::int32_t legacyLogCount_ = 0;  // logs of applications that the product replaces
    bool removalTried_ = false;
    bool isRemoved_ = true;  // nothing is left that had to be removed
    std::vector<LegacyLogFile> legacyLogFiles_;
};
