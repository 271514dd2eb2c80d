#include "packager/setup_identity.h"

#include "description/pxml.h"
#include "description/vocabulary_lookup.h"

namespace {

std::string textOf(const PXML& description, vocabulary::ElementPath path) {
    return std::string(description.getText(description.findPath(path)).value_or(""));
}

}  // namespace

std::optional<SetupIdentity> setupIdentityOf(const PXML& description) {
    SetupIdentity identity;
    identity.publisher = textOf(description, "TandrelGroupInstallation/ProductDesc/Publisher");
    identity.copyright = textOf(description, "TandrelGroupInstallation/ProductDesc/Copyright");
    identity.icon = textOf(description, "TandrelGroupInstallation/ProductDesc/Icon");
    if (identity.publisher.empty() && identity.copyright.empty() && identity.icon.empty()) {
        return std::nullopt;
    }
    identity.fullName = textOf(description, "TandrelGroupInstallation/ProductDesc/Fullname");
    identity.title = textOf(description, "TandrelGroupInstallation/ProductDesc/Title");
    if (identity.title.empty()) {
        identity.title = identity.fullName;
    }
    identity.version = textOf(description, "TandrelGroupInstallation/ProductDesc/MajorVersion") + "." +
                       textOf(description, "TandrelGroupInstallation/ProductDesc/MinorVersion") + "." +
                       textOf(description, "TandrelGroupInstallation/ProductDesc/MinestVersion");
    return identity;
}
