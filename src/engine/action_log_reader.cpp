#include "engine/action_log_reader.h"

#include "base/errors.h"
#include "base/text_functions.h"
#include "engine/action_log_format.h"
#include "engine/line_reader.h"
#include "support/debug_log.h"
#include "support/p_stream.h"

namespace {

using ActionLogFormat::kSeparator;
using ActionLogFormat::kVariable;
using ActionLogFormat::kVariableCount;
using ActionLogFormat::kVariableLineBuffer;

struct Variable {
    std::string name;
    std::string value;
};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// White space, a sign and at least one digit.
bool startsWithNumber(std::string_view text) {
    text = OUtils::trimWhiteSpace(text);
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
        text.remove_prefix(1);
    }
    return !text.empty() && isDigit(text.front());
}

std::int32_t readCount(LineReader& lines) {
    std::string line;
    while (lines.readLine(line, kVariableLineBuffer)) {
        if (line.find(kVariableCount) == std::string::npos) {
            continue;
        }
        const std::string_view rest =
            std::string_view(line).substr(std::min(kVariableCount.size(), line.size()));
        if (!line.starts_with(kVariableCount) || !startsWithNumber(rest)) {
            throw InstallerError("ERROR: Error parsing the number of variables in log file!");
        }
        return OUtils::textToInteger(rest);
    }
    throw InstallerError("ERROR: No variable number found in the provided log file!");
}

bool parseVariable(std::string_view line, Variable& out) {
    if (!line.starts_with(kVariable) || line.size() == kVariable.size() ||
        line[kVariable.size()] != kSeparator) {
        return false;
    }
    const std::string_view name = nextLogField(line);
    const std::string_view value = nextLogField(name);
    out.name = firstLogField(name);
    out.value = firstLogField(value);
    return !out.name.empty() && !out.value.empty();
}

}  // namespace

std::optional<std::string> ActionLogReader::readDescriptionPath() {
    if (file_ == nullptr) {
        return std::nullopt;
    }
    LineReader lines(*file_);
    std::string line;
    if (!lines.rewind() || !lines.readLine(line, ActionLogFormat::kFirstLineBuffer)) {
        return std::nullopt;
    }
    return std::string(withoutTrailingSpace(line));
}

std::optional<std::string> ActionLogReader::readArchivePath() {
    if (file_ == nullptr) {
        return std::nullopt;
    }
    LineReader lines(*file_);
    std::string line;
    if (!lines.rewind() || !lines.readLine(line, ActionLogFormat::kRecordLineBuffer) ||
        !lines.readLine(line, ActionLogFormat::kBackupLineBuffer)) {
        return std::nullopt;
    }
    return std::string(withoutTrailingSpace(line));
}

bool ActionLogReader::readVariables(const VariableSink& sink) {
    if (file_ == nullptr) {
        throw InstallerError("ERROR: Invalid file handle for reading values from log!");
    }
    LineReader lines(*file_);
    if (!lines.rewind()) {
        throw InstallerError("ERROR: The file handle for reading values from log could not be reset!");
    }
    const std::int32_t count = readCount(lines);
    bool isComplete = true;
    std::string line;
    Variable variable;
    for (std::int32_t i = 0; i < count; ++i) {
        if (!lines.readLine(line, kVariableLineBuffer)) {
            throw InstallerError("ERROR: Encountered EOF before expected number of variables (%d)!", count);
        }
        const std::string stripped(withoutTrailingSpace(line));
        if (parseVariable(stripped, variable)) {
            sink(variable.name, variable.value);
        } else {
            isComplete = false;
            debugLog_.line("ERROR: Format error in variable format in log file (Read buff: " + stripped +
                           ")");
        }
    }
    return isComplete;
}

std::optional<std::string> ActionLogReader::findVariable(std::string_view name) {
    std::optional<std::string> found;
    try {
        ActionLogReader(file_, DebugLog())
            .readVariables([&](const std::string& key, const std::string& value) {
                if (OUtils::equalsIgnoreCase(std::string_view(key), name)) {
                    found = value;
                }
            });
    } catch (const InstallerError&) {
        // What was read before the fault counts.
    }
    return found;
}
