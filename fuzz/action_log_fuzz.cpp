// Reads anything as an action log: the description's path, the variables, a look-up, the records with what
// was there before them, looks at what they made, and a rewrite, which must leave a log that reads back.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "base/errors.h"
#include "engine/action_log_format.h"
#include "engine/action_log_reader.h"
#include "engine/action_log_rewriter.h"
#include "engine/record_reader.h"
#include "engine/record_survey.h"
#include "fuzz_target.h"
#include "platform/memory/memory_platform.h"
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

// Each record once, in order, and from a line BEFORE only its field.
void readRecords(PMemStream& stream, std::string_view log) {
    RecordReader records(stream, 0);
    std::size_t at = 0;
    while (records.next()) {
        require(records.line().find('\n') == std::string_view::npos);
        require(records.line().size() < ActionLogFormat::kRecordLineBuffer);
        require(records.former().empty() || records.former().front() != ActionLogFormat::kSeparator);
        at = log.find(records.line(), at);
        require(at != std::string_view::npos);
        at += records.line().size();
    }
    require(!records.hasFailed());
    require(!records.isTorn() || !log.ends_with('\n'));
}

// Looks at an empty machine twice, and changes nothing on it.
void survey(const std::string& log) {
    MemoryPlatform machine;
    machine.files.addFile("/app/install.log", log);
    const auto before = machine.files.everything();
    RecordSurvey survey(machine.bundle());
    if (survey.read("/app/install.log", "/app/install.log")) {
        return;
    }
    const std::size_t found = survey.look().size();
    require(survey.look().size() == found);
    require(survey.madeDirectories().size() <= found);
    require(machine.files.everything() == before);
    require(machine.registry.operations.empty());
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

// What a rewrite was writing when it was killed goes; the log, and what others put beside it, stay.
void removeAbandoned(const std::string& log) {
    const std::string others = log.starts_with('x') ? "not that of this log" : "x, not that of this log";
    MemoryFileSystem files;
    files.addFile("/app/install.log", log);
    files.addFile("/app/templog1.log", others);
    files.addFile("/app/templog.log", log.substr(0, log.size() / 2));
    ActionLogRewriter(files).removeAbandoned("/app/install.log");
    require(files.content("/app/install.log") == log);
    require(files.content("/app/templog1.log") == others);
}

}  // namespace

bool accepts(std::string_view input) {
    PConsole silent;
    PMemStream stream(input.data(), static_cast<std::int64_t>(input.size()));
    const auto path = ActionLogReader(&stream, silent).readDescriptionPath();
    require(path.value_or("").size() < ActionLogFormat::kFirstLineBuffer);
    const auto archive = ActionLogReader(&stream, silent).readArchivePath();
    require(archive.value_or("").size() < ActionLogFormat::kBackupLineBuffer);
    const bool isWhole = readVariables(stream, silent);
    ActionLogReader(&stream, silent).findVariable("STDROOT");
    readRecords(stream, input);
    survey(std::string(input));
    removeAbandoned(std::string(input));
    const bool isRewritten = rewrite(std::string(input), silent);
    return isWhole && isRewritten && !path.value_or("").empty();
}
