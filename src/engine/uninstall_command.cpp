#include "engine/uninstall_command.h"

#include "description/product_description.h"
#include "platform/written_path.h"

namespace {

// The description gives longer commands than one may be, so that a cut program is too long.
static_assert(ProductDescription::kCommandLimit > UninstallCommand::kProgramLimit);

// The bytes of a name, a version and an address in the list of applications; what is longer is cut.
constexpr std::size_t kNameLimit = 1023;

std::nullopt_t fail(const DebugLog& debugLog, std::string_view message) {
    debugLog.line(message);
    return std::nullopt;
}

bool holdsQuote(std::string_view text) {
    return text.find('"') != std::string_view::npos;
}

std::string inQuotes(std::string_view text) {
    return '"' + std::string(text) + '"';
}

}  // namespace

std::optional<UninstallCommand> composeUninstallCommand(std::string_view program, std::string_view logFile,
                                                        std::string_view productName, ProgramQuotes quotes) {
    if (holdsQuote(program) || holdsQuote(logFile)) {
        return std::nullopt;
    }
    UninstallCommand command;
    command.program = quotes == ProgramQuotes::kDouble ? inQuotes(program) : std::string(program);
    if (command.program.size() > UninstallCommand::kProgramLimit) {
        return std::nullopt;
    }
    command.arguments = "-uninstall=" + inQuotes(logFile) + " -uninstallApp=" + quotedOption(productName);
    return command;
}

std::string quotedOption(std::string_view text) {
    std::string value(text);
    std::erase(value, '"');
    return inQuotes(value);
}

std::optional<UninstallCommand> uninstallCommandOf(const ProductDescription& product, ProgramQuotes quotes,
                                                   DebugLog debugLog) {
    const auto program = product.uninstallCommand();
    if (!program) {
        return fail(debugLog, "ERROR: Could not obtain uninstall cmd! (check <UninstallCmd> tag)");
    }
    const auto logFile = product.installLogFile();
    if (!logFile) {
        return fail(debugLog,
                    "ERROR: Could not obtain insatll log file location! (check <InstallLogFile> tag)");
    }
    const auto name = product.fullName();
    if (!name) {
        return fail(debugLog, "ERROR: Could not obtain application name!");
    }
    auto command = composeUninstallCommand(platform::writtenPath(*program), platform::writtenPath(*logFile),
                                           name->substr(0, kNameLimit), quotes);
    if (!command) {
        return fail(debugLog, "ERROR: The uninstall command is too long or holds a double quote!");
    }
    return command;
}

std::optional<ApplicationEntry> applicationEntryOf(const ProductDescription& product, DebugLog debugLog) {
    const auto command = uninstallCommandOf(product, ProgramQuotes::kDouble, debugLog);
    if (!command) {
        return std::nullopt;
    }
    const auto version = product.version();
    if (!version) {
        return fail(
            debugLog,
            "ERROR: Could not obtain application full version description! (check <ProductDesc> tag)");
    }
    const auto website = product.website();
    if (!website) {
        return fail(debugLog, "ERROR: Could not obtain application web site! (check <ProductDesc> tag)");
    }
    const std::string name = product.fullName().value_or("");
    return ApplicationEntry{name.substr(0, kNameLimit),
                            version->substr(0, kNameLimit),
                            website->substr(0, kNameLimit),
                            command->program,
                            command->arguments,
                            product.publisher().value_or("").substr(0, kNameLimit)};
}
