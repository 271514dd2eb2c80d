#include "engine/action_log_writer.h"

#include <algorithm>
#include <utility>

#include "engine/action_log_format.h"
#include "support/p_file_console.h"

namespace {

bool isLineBreak(char c) {
    return c == '\r' || c == '\n';
}

// A line break would end the record early, and its rest could pass for another one.
std::string recordLine(std::string_view tag, std::initializer_list<std::string_view> fields,
                       std::size_t limit = ActionLogFormat::kLineLimit) {
    std::string line(tag);
    for (const std::string_view field : fields) {
        line += ActionLogFormat::kSeparator;
        line += field;
    }
    line.resize(std::min(line.size(), limit));
    std::replace_if(line.begin(), line.end(), isLineBreak, ' ');
    line += ActionLogFormat::kLineEnd;
    return line;
}

// Whether the undo counts: a text that was added twice has to be taken out twice.
bool isCounted(std::string_view line) {
    using namespace ActionLogFormat;
    for (const auto& [tag, kind] : {std::pair(kEnvironment, kAdd), std::pair(kModifyFile, kAddAfter)}) {
        if (line.starts_with(std::string(tag).append(1, kSeparator).append(kind))) {
            return true;
        }
    }
    return false;
}

}  // namespace

std::vector<std::string> variableBlockLines(const std::vector<LoggedVariable>& variables,
                                            std::size_t lineLimit) {
    std::vector<std::string> lines;
    lines.reserve(variables.size() + 1);
    lines.push_back(recordLine(ActionLogFormat::kVariableCount, {std::to_string(variables.size())}));
    for (const LoggedVariable& variable : variables) {
        lines.push_back(recordLine(ActionLogFormat::kVariable, {variable.name, variable.value}, lineLimit));
    }
    return lines;
}

bool ActionLogWriter::openNew(std::string_view path) {
    const int status = console_.createPrivate(path);
    opened();
    return status == 0;
}

bool ActionLogWriter::openToAppend(std::string_view path) {
    const int status = console_.open(path, PFileStream::kAppend);
    opened();
    return status == 0;
}

void ActionLogWriter::opened() {
    console_.setOptions(0);
    isAfterVariables_ = true;
    copied_.clear();
}

bool ActionLogWriter::isOpen() const {
    return console_.isOpen();
}

bool ActionLogWriter::hasFailed() const {
    return console_.hasFailed();
}

bool ActionLogWriter::close() {
    console_.close();
    return !console_.hasFailed();
}

void ActionLogWriter::writeHeader(std::string_view descriptionPath, std::string_view backupPath) {
    writeLine(recordLine(descriptionPath, {}));
    writeLine(recordLine(backupPath, {}));
}

void ActionLogWriter::writeVariables(const std::vector<LoggedVariable>& variables) {
    for (std::string& line : variableBlockLines(variables, ActionLogFormat::kLineLimit)) {
        writeLine(std::move(line));
    }
    isAfterVariables_ = true;
}

void ActionLogWriter::writeDirectory(int created, std::string_view directory) {
    writeRecord(ActionLogFormat::kDirectory, {std::to_string(created), directory});
}

void ActionLogWriter::writeFile(bool isRestorable, std::string_view path) {
    writeRecord(ActionLogFormat::kFile,
                {isRestorable ? ActionLogFormat::kOver : ActionLogFormat::kCreate, path});
}

void ActionLogWriter::writeRecord(std::string_view tag, std::initializer_list<std::string_view> fields) {
    std::string line = recordLine(tag, fields);
    if (copied_.empty() || isCounted(line) || !copied_.contains(line)) {
        writeRecordLine(std::move(line));
    }
}

void ActionLogWriter::copyRecord(std::string_view line) {
    std::string copy = recordLine(line, {});
    if (copied_.insert(copy).second || isCounted(copy)) {
        writeRecordLine(std::move(copy));
    }
}

void ActionLogWriter::writeRecordLine(std::string line) {
    if (std::exchange(isAfterVariables_, false) &&
        line.find(ActionLogFormat::kVariable) != std::string::npos) {
        writeLine(recordLine(ActionLogFormat::kNoRecord, {}));
    }
    writeLine(std::move(line));
}

void ActionLogWriter::writeLine(std::string line) {
    if (console_.hasFailed()) {
        line.insert(0, ActionLogFormat::kLineEnd);  // a part of the line before may be in the file
    }
    console_.write(line.data(), static_cast<std::int32_t>(line.size()));
}
