// Reads anything as an action log: the description's path, the variables, a look-up, and a rewrite, which
// must leave a log that reads back.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "base/errors.h"
#include "engine/action_log_format.h"
#include "engine/action_log_reader.h"
#include "engine/action_log_rewriter.h"
#include "fakes/memory_file_system.h"
#include "fuzz_target.h"
#include "support/p_console.h"
#include "support/p_mem_stream.h"

namespace {

// False for a fault of the log.
bool readVariables(PMemStream& stream, PConsole& silent) {
    try {
        return ActionLogReader(&stream, silent)
            .readVariables([](const std::string& name, const std::string& value) {
                require(!name.empty() && !value.empty());
                require(name.find(ActionLogFormat::kSeparator) == std::string::npos);
                require(value.size() < ActionLogFormat::kVariableLineBuffer);
            });
    } catch (const InstallerError&) {
        return false;
    }
}

// False for a log that is rejected.
bool rewrite(const std::string& log, PConsole& silent) {
    MemoryFileSystem files;
    files.addFile("/app/install.log", log);
    try {
        ActionLogRewriter(files).rewriteActionLog("/app/install.log", {{"NAME", "value"}});
    } catch (const InstallerError&) {
        require(files.content("/app/install.log") == log);
        return false;
    }
    const std::string after = files.content("/app/install.log");
    PMemStream stream(after.data(), static_cast<std::int64_t>(after.size()));
    require(ActionLogReader(&stream, silent).findVariable("name") == "value");
    return true;
}

}  // namespace

bool accepts(std::string_view input) {
    PConsole silent;
    PMemStream stream(input.data(), static_cast<std::int64_t>(input.size()));
    const auto path = ActionLogReader(&stream, silent).readDescriptionPath();
    require(path.value_or("").size() < ActionLogFormat::kFirstLineBuffer);
    const bool isWhole = readVariables(stream, silent);
    ActionLogReader(&stream, silent).findVariable("STDROOT");
    const bool isRewritten = rewrite(std::string(input), silent);
    return isWhole && isRewritten && !path.value_or("").empty();
}
