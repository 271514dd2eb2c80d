#include "description/product_description.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "base/text_functions.h"
#include "description/expressions.h"
#include "description/pxml.h"

namespace {

// Descriptions have no level "Desc"; the look-up passes over it.
constexpr char kFullName[] = "TandrelGroupInstallation/Desc/ProductDesc/Fullname";
constexpr char kTitle[] = "TandrelGroupInstallation/Desc/ProductDesc/Title";
constexpr char kMajorVersion[] = "TandrelGroupInstallation/Desc/ProductDesc/MajorVersion";
constexpr char kMinorVersion[] = "TandrelGroupInstallation/Desc/ProductDesc/MinorVersion";
constexpr char kMinestVersion[] = "TandrelGroupInstallation/Desc/ProductDesc/MinestVersion";
constexpr char kWebsite[] = "TandrelGroupInstallation/Desc/ProductDesc/Website";
constexpr char kSupportEmail[] = "TandrelGroupInstallation/Desc/ProductDesc/Supportemail";
constexpr char kInstallHelpUrl[] = "TandrelGroupInstallation/Desc/ProductDesc/InstallHelpURL";
constexpr char kUninstall[] = "TandrelGroupInstallation/Installation/Uninstall";
constexpr char kInstallLogFile[] = "TandrelGroupInstallation/Installation/Uninstall/InstallLogFile";
constexpr char kInstallBackupFile[] = "TandrelGroupInstallation/Installation/Uninstall/InstallBackupFile";
constexpr char kUninstallCmd[] = "TandrelGroupInstallation/Installation/Uninstall/UninstallCmd";
constexpr char kUninstallXmlFile[] = "TandrelGroupInstallation/Installation/Uninstall/UninstallXmlFile";

constexpr const char* kVersion[] = {kMajorVersion, kMinorVersion, kMinestVersion};

void append(char* buffer, int size, const char* text) {
    const auto length = static_cast<int>(strnlen(buffer, static_cast<std::size_t>(size)));
    OUtils::copyText(buffer + length, text, size - length);
}

}  // namespace

bool ProductDescription::exists() const {
    return description_.findByName("ProductDesc") >= 0;
}

std::optional<std::string> ProductDescription::plain(std::string_view path) const {
    const char* text = description_.getText(description_.findPath(path));
    return text == nullptr ? std::nullopt : std::optional<std::string>(text);
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
    const auto isMissing = [this](const char* path) { return !plain(path); };
    return std::any_of(std::begin(kVersion), std::end(kVersion), isMissing) ? std::nullopt
                                                                            : std::optional(versionSoFar());
}

std::string ProductDescription::versionSoFar() const {
    std::string text;
    for (const char* path : kVersion) {
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
    const std::string path = std::string(kUninstall) + '/' + std::string(element);
    return description_.getText(description_.findPath(path)) != nullptr;
}

int ProductDescription::readProductDescription() const {
    return description_.findByName("ProductDesc") < 0 ? -1 : 0;
}

int ProductDescription::getPlain(const char* path, char* buffer, int size) const {
    const char* text = description_.getText(description_.findPath(path));
    OUtils::copyText(buffer, text, size);
    return text == nullptr || buffer == nullptr ? -1 : 0;
}

int ProductDescription::getExpanded(const char* path, char* buffer, int size) const {
    OUtils::copyText(buffer, "", size);
    const char* text = description_.getText(description_.findPath(path));
    if (text == nullptr || buffer == nullptr) {
        return -1;
    }
    return expressions_.expandVariables(text, buffer, size, false) == 0 ? 1 : 0;
}

int ProductDescription::getFullName(char* buffer, int size) const {
    return getPlain(kFullName, buffer, size);
}

int ProductDescription::getMajorVersion(char* buffer, int size) const {
    return getPlain(kMajorVersion, buffer, size);
}

int ProductDescription::getWebsite(char* buffer, int size) const {
    return getPlain(kWebsite, buffer, size);
}

int ProductDescription::getSupportEmail(char* buffer, int size) const {
    return getPlain(kSupportEmail, buffer, size);
}

int ProductDescription::getInstallHelpUrl(char* buffer, int size) const {
    return getPlain(kInstallHelpUrl, buffer, size);
}

int ProductDescription::getVersion(char* buffer, int size) const {
    if (buffer == nullptr || size < 1) {
        return -1;
    }
    buffer[0] = '\0';
    const char* separator = "";
    for (const char* path : {kMajorVersion, kMinorVersion, kMinestVersion}) {
        append(buffer, size, separator);
        const char* number = description_.getText(description_.findPath(path));
        if (number == nullptr) {
            return -1;
        }
        append(buffer, size, number);
        separator = ".";
    }
    return 0;
}

int ProductDescription::getTitle(char* buffer, int size) const {
    if (buffer == nullptr || size < 1) {
        return -1;
    }
    if (getPlain(kTitle, buffer, size) == 0 && buffer[0] != '\0') {
        return 0;
    }
    if (getFullName(buffer, size) != 0) {
        OUtils::copyText(buffer, "Unknown title", size);
        return -1;
    }
    char version[1024];
    if (getVersion(version, sizeof version) == 0) {
        append(buffer, size, " - ver. ");
        append(buffer, size, version);
    }
    return 0;
}

int ProductDescription::getInstallLogFile(char* buffer, int size) const {
    return getExpanded(kInstallLogFile, buffer, size);
}

int ProductDescription::getInstallBackupFile(char* buffer, int size) const {
    return getExpanded(kInstallBackupFile, buffer, size);
}

int ProductDescription::getUninstallCmd(char* buffer, int size) const {
    return getExpanded(kUninstallCmd, buffer, size);
}

int ProductDescription::getUninstallXmlFile(char* buffer, int size) const {
    return getExpanded(kUninstallXmlFile, buffer, size);
}
