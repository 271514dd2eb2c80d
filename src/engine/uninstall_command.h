#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "contracts/system_operations.h"
#include "support/debug_log.h"

class ProductDescription;

// The command that uninstalls a product: its uninstaller, and the arguments that name the action log and the
// product.
struct UninstallCommand {
    // Bytes of the program, its quotes included.
    static constexpr std::size_t kProgramLimit = 4094;

    std::string program;
    std::string arguments;
};

// Whether the program is put in double quotes. A shortcut keeps it apart from its arguments and needs none.
enum class ProgramQuotes { kNone, kDouble };

// None when the program is too long, or when the program or the log's path holds a double quote, which
// would end the quoted text early: such a command would start something else. The product's name loses its
// double quotes instead, because nothing is looked up by it.
std::optional<UninstallCommand> composeUninstallCommand(std::string_view program, std::string_view logFile,
                                                        std::string_view productName, ProgramQuotes quotes);

// The text as the value of an option, in double quotes; those that it holds are left out.
std::string quotedOption(std::string_view text);

// The command of the product as its description gives it at this moment. None, with a line in the log, when
// a text is missing or the command can't be composed.
std::optional<UninstallCommand> uninstallCommandOf(const ProductDescription& product, ProgramQuotes quotes,
                                                   DebugLog debugLog);

// What the list of installed applications shows of the product. None, with a line in the log, when a text is
// missing.
std::optional<ApplicationEntry> applicationEntryOf(const ProductDescription& product, DebugLog debugLog);
