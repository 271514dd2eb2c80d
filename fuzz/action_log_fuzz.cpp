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
#include "support/p_console.h"
#include "support/p_mem_stream.h"

namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void readVariables(PMemStream& stream, PConsole& silent) {
    try {
        ActionLogReader(&stream, silent).readVariables([](const std::string& name, const std::string& value) {
            require(!name.empty() && !value.empty());
            require(name.find(ActionLogFormat::kSeparator) == std::string::npos);
            require(value.size() < ActionLogFormat::kVariableLineBuffer);
        });
    } catch (const InstallerError&) {
        // A fault of the log.
    }
}

void rewrite(const std::string& log, PConsole& silent) {
    MemoryFileSystem files;
    files.addFile("/app/install.log", log);
    try {
        ActionLogRewriter(files).rewriteActionLog("/app/install.log", {{"NAME", "value"}});
    } catch (const InstallerError&) {
        require(files.content("/app/install.log") == log);
        return;
    }
    const std::string after = files.content("/app/install.log");
    PMemStream stream(after.data(), static_cast<std::int64_t>(after.size()));
    require(ActionLogReader(&stream, silent).findVariable("name") == "value");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    PConsole silent;
    PMemStream stream(data, static_cast<std::int64_t>(size));
    const auto path = ActionLogReader(&stream, silent).readDescriptionPath();
    require(path.value_or("").size() < ActionLogFormat::kFirstLineBuffer);
    readVariables(stream, silent);
    ActionLogReader(&stream, silent).findVariable("STDROOT");
    rewrite(std::string(reinterpret_cast<const char*>(data), size), silent);
    return 0;
}
