#include "engine/uninstall_command.h"

#include "base/fixed_text.h"
#include "description/product_description.h"

namespace {

// The program's buffer holds more than a command may have, so that a cut program is too long.
using ProgramText = FixedText<UninstallCommand::kProgramLimit + 2>;
using NameText = FixedText<1024>;

// Calls one of the product's getters; the text is cut at the capacity.
template <typename Text>
std::optional<std::string> get(const ProductDescription& product,
                               int (ProductDescription::*getter)(char*, int) const) {
    Text text;
    if ((product.*getter)(text.data(), static_cast<int>(Text::capacity())) != 0) {
        return std::nullopt;
    }
    return std::string(text.view());
}

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
    command.arguments = "-uninstall=" + inQuotes(logFile) + " -uninstallApp=" + inQuotes(productName);
    return command;
}

std::optional<UninstallCommand> uninstallCommandOf(const ProductDescription& product, ProgramQuotes quotes,
                                                   DebugLog debugLog) {
    const auto program = get<ProgramText>(product, &ProductDescription::getUninstallCmd);
    if (!program) {
        return fail(debugLog, "ERROR: Could not obtain uninstall cmd! (check <UninstallCmd> tag)");
    }
    const auto logFile = get<PathText>(product, &ProductDescription::getInstallLogFile);
    if (!logFile) {
        return fail(debugLog,
                    "ERROR: Could not obtain insatll log file location! (check <InstallLogFile> tag)");
    }
    const auto name = get<NameText>(product, &ProductDescription::getFullName);
    if (!name) {
        return fail(debugLog, "ERROR: Could not obtain application name!");
    }
    auto command = composeUninstallCommand(*program, *logFile, *name, quotes);
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
    const auto version = get<NameText>(product, &ProductDescription::getVersion);
    if (!version) {
        return fail(
            debugLog,
            "ERROR: Could not obtain application full version description! (check <ProductDesc> tag)");
    }
    const auto website = get<NameText>(product, &ProductDescription::getWebsite);
    if (!website) {
        return fail(debugLog, "ERROR: Could not obtain application web site! (check <ProductDesc> tag)");
    }
    const auto name = get<NameText>(product, &ProductDescription::getFullName);
    return ApplicationEntry{name.value_or(""), *version, *website, command->program, command->arguments};
}
