#include "description/product_description.h"

#include <algorithm>

#include "description/expressions.h"
#include "description/pxml.h"
#include "description/vocabulary_lookup.h"

namespace {

using vocabulary::ElementPath;

// Descriptions have no level "Desc"; the look-up passes over it.
constexpr ElementPath kFullName = "TandrelGroupInstallation/Desc/ProductDesc/Fullname";
constexpr ElementPath kTitle = "TandrelGroupInstallation/Desc/ProductDesc/Title";
constexpr ElementPath kMajorVersion = "TandrelGroupInstallation/Desc/ProductDesc/MajorVersion";
constexpr ElementPath kMinorVersion = "TandrelGroupInstallation/Desc/ProductDesc/MinorVersion";
constexpr ElementPath kMinestVersion = "TandrelGroupInstallation/Desc/ProductDesc/MinestVersion";
constexpr ElementPath kWebsite = "TandrelGroupInstallation/Desc/ProductDesc/Website";
constexpr ElementPath kSupportEmail = "TandrelGroupInstallation/Desc/ProductDesc/Supportemail";
constexpr ElementPath kInstallHelpUrl = "TandrelGroupInstallation/Desc/ProductDesc/InstallHelpURL";
constexpr ElementPath kPublisher = "TandrelGroupInstallation/Desc/ProductDesc/Publisher";
constexpr ElementPath kBanner = "TandrelGroupInstallation/Desc/ProductDesc/Banner";
constexpr ElementPath kUninstallBanner = "TandrelGroupInstallation/Desc/ProductDesc/UninstallBanner";
constexpr ElementPath kUninstall = "TandrelGroupInstallation/Installation/Uninstall";
constexpr ElementPath kInstallLogFile = "TandrelGroupInstallation/Installation/Uninstall/InstallLogFile";
constexpr ElementPath kInstallBackupFile =
    "TandrelGroupInstallation/Installation/Uninstall/InstallBackupFile";
constexpr ElementPath kUninstallCmd = "TandrelGroupInstallation/Installation/Uninstall/UninstallCmd";
constexpr ElementPath kUninstallXmlFile = "TandrelGroupInstallation/Installation/Uninstall/UninstallXmlFile";

constexpr ElementPath kVersion[] = {kMajorVersion, kMinorVersion, kMinestVersion};

}  // namespace

bool ProductDescription::exists() const {
    return vocabulary::findElement(description_, "ProductDesc") >= 0;
}

std::optional<std::string> ProductDescription::plain(std::string_view path) const {
    const std::optional<std::string_view> text = description_.getText(description_.findPath(path));
    return text ? std::optional<std::string>(*text) : std::nullopt;
}

std::optional<std::string> ProductDescription::expanded(std::string_view path, std::size_t limit) const {
    const std::optional<std::string> text = plain(path);
    return text ? expressions_.expand(*text, limit + 1) : std::nullopt;
}

std::optional<std::string> ProductDescription::fullName() const {
    return plain(kFullName);
}

std::optional<std::string> ProductDescription::majorVersion() const {
    return plain(kMajorVersion);
}

std::optional<std::string> ProductDescription::publisher() const {
    return plain(kPublisher);
}

std::optional<std::string> ProductDescription::banner() const {
    return plain(kBanner);
}

std::optional<std::string> ProductDescription::uninstallBanner() const {
    return plain(kUninstallBanner);
}

std::optional<std::string> ProductDescription::website() const {
    return plain(kWebsite);
}

std::optional<std::string> ProductDescription::supportEmail() const {
    return plain(kSupportEmail);
}

std::optional<std::string> ProductDescription::installHelpUrl() const {
    return plain(kInstallHelpUrl);
}

std::optional<std::string> ProductDescription::version() const {
    const auto isMissing = [this](ElementPath path) { return !plain(path); };
    return std::any_of(std::begin(kVersion), std::end(kVersion), isMissing) ? std::nullopt
                                                                            : std::optional(versionSoFar());
}

std::string ProductDescription::versionSoFar() const {
    std::string text;
    for (const ElementPath path : kVersion) {
        text += path == kMajorVersion ? "" : ".";
        const std::optional<std::string> number = plain(path);
        if (!number) {
            break;
        }
        text += *number;
    }
    return text;
}

std::optional<std::string> ProductDescription::title() const {
    std::optional<std::string> title = plain(kTitle);
    if (title && !title->empty()) {
        return title;
    }
    title = fullName();
    if (const std::optional<std::string> number = version(); title && number) {
        *title += " - ver. " + *number;
    }
    return title;
}

std::optional<std::string> ProductDescription::installLogFile() const {
    return expanded(kInstallLogFile);
}

std::optional<std::string> ProductDescription::installBackupFile() const {
    return expanded(kInstallBackupFile);
}

std::optional<std::string> ProductDescription::uninstallCommand() const {
    return expanded(kUninstallCmd, kCommandLimit);
}

std::optional<std::string> ProductDescription::uninstallXmlFile() const {
    return expanded(kUninstallXmlFile);
}

bool ProductDescription::givesPath(std::string_view element) const {
    return plain(std::string(kUninstall) + '/' + std::string(element)).has_value();
}
