#include "engine/configuration_export.h"

#include <string>
#include <string_view>

#include "description/pxml.h"
#include "description/variable_exclusions.h"
#include "description/variable_store.h"
#include "platform/error_text.h"
#include "platform/file_system.h"
#include "support/p_mem_stream.h"
#include "support/text_mode.h"
#include "support/utilities.h"

namespace {

constexpr char kRoot[] = "DefValues";
constexpr std::size_t kReadableBytes = 1023;
constexpr std::string_view kWhiteSpace = " \t\r\n";

// A text is expanded and trimmed when it is read, and has no way to say that it is meant as it stands.
bool isRepeatableAsText(std::string_view value) {
    return value.size() <= kReadableBytes && value.find('$') == std::string_view::npos &&
           (value.empty() || (kWhiteSpace.find(value.front()) == std::string_view::npos &&
                              kWhiteSpace.find(value.back()) == std::string_view::npos));
}

}  // namespace

bool ConfigurationExport::write(const std::string& path) {
    if (!mayReplace(path)) {
        return false;
    }
    PXML document;
    fill(document);
    return save(document, path);
}

void ConfigurationExport::fill(PXML& document) {
    const std::int32_t root = document.addPath(-1, kRoot, std::nullopt, false);
    for (std::int32_t i = 0; i < variables_.getCount(); ++i) {
        const InstallVariable& variable = variables_.at(i);
        if (exclusions_.isVariableExported(variable.name, kExcludeFromConfig) &&
            !variables_.isFromItsOrigin(i)) {
            add(document, root, variable);
        }
    }
}

void ConfigurationExport::add(PXML& document, std::int32_t root, const InstallVariable& variable) {
    const bool isText = isRepeatableAsText(variable.value);
    const std::int32_t node = document.addPath(root, "Value", isText ? variable.value : "", true);
    document.setAttribute(node, "Name", variable.name);
    document.setAttribute(node, "DataType", isText ? "value" : "envvar");
    if (!isText) {
        document.setAttribute(node, "Default", variable.value);
    }
}

// The name is common, and the user may keep a file of another program there.
bool ConfigurationExport::mayReplace(const std::string& path) {
    if (!files_.exists(path)) {
        return true;
    }
    PXML present;
    const bool isOurs = present.loadFile(path, files_) == 0 && present.findChild(-1, kRoot) >= 0;
    if (!isOurs) {
        debugLog_.line("ERROR: " + path + " is no configuration file of an installer and stays as it is");
        reason_ = "something else than a configuration file of an installer is there, and stays as it is";
    }
    return isOurs;
}

bool ConfigurationExport::save(const PXML& document, const std::string& path) {
    PMemStream text;
    int status = -1;
    if (document.saveStream(text, OUtils::textLineEnd()) == 0 && text.seek(0) == 0) {
        std::string content(static_cast<std::size_t>(text.getSize()), '\0');
        std::uint32_t done = 0;
        if (text.read(content.data(), static_cast<std::uint32_t>(content.size()), done) == 0 &&
            done == content.size()) {
            status = OUtils::writeWholeFile(path, content, files_, platform::FileRights::kPrivate);
        }
    }
    reason_ = status > 0 ? platform::errorText(status) : "it can't be written whole";
    return status == 0;
}
