#include "engine/action_log_writer.h"

#include <algorithm>

#include "engine/action_log_format.h"
#include "support/p_file_console.h"

namespace {

bool isLineBreak(char c) {
    return c == '\r' || c == '\n';
}

}  // namespace

int ActionLogWriter::openNew(const char* path) {
    const int status = console_.openPrivate(path);
    console_.setOptions(0);
    return status;
}

int ActionLogWriter::openToAppend(const char* path) {
    const int status = console_.open(path, PFileStream::kAppend);
    console_.setOptions(0);
    return status;
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
    writeRecord(descriptionPath, {});
    writeRecord(backupPath, {});
}

void ActionLogWriter::writeVariables(const std::vector<LoggedVariable>& variables) {
    writeRecord(ActionLogFormat::kVariableCount, {std::to_string(variables.size())});
    for (const LoggedVariable& variable : variables) {
        writeRecord(ActionLogFormat::kVariable, {variable.name, variable.value});
    }
}

void ActionLogWriter::writeDirectory(int created, std::string_view directory) {
    writeRecord(ActionLogFormat::kDirectory, {std::to_string(created), directory});
}

void ActionLogWriter::writeFile(bool isRestorable, std::string_view path) {
    writeRecord(ActionLogFormat::kFile,
                {isRestorable ? ActionLogFormat::kOver : ActionLogFormat::kCreate, path});
}

void ActionLogWriter::writeRecord(std::string_view tag, std::initializer_list<std::string_view> fields) {
    line_.clear();
    appendField(tag);
    for (const std::string_view field : fields) {
        line_ += ActionLogFormat::kSeparator;
        appendField(field);
    }
    writeLine();
}

// A line break would end the record early, and its rest could pass for another one.
void ActionLogWriter::appendField(std::string_view field) {
    const std::size_t start = line_.size();
    line_ += field;
    std::replace_if(line_.begin() + static_cast<std::ptrdiff_t>(start), line_.end(), isLineBreak, ' ');
}

void ActionLogWriter::writeLine() {
    line_.resize(std::min(line_.size(), ActionLogFormat::kLineLimit));
    line_ += ActionLogFormat::kLineEnd;
    if (console_.hasFailed()) {
        line_.insert(0, ActionLogFormat::kLineEnd);  // a part of the line before may stand in the file
    }
    console_.write(line_.data(), static_cast<std::int32_t>(line_.size()));
}
