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
    if (status == 0 && console_.cutToLastLine() != 0) {
        console_.close();
        return false;
    }
    headEnd_ = console_.position();
    return status == 0;
}

void ActionLogWriter::opened() {
    console_.setOptions(0);
    headEnd_ = console_.position();
    isBroken_ = false;
    copied_.clear();
}

bool ActionLogWriter::isOpen() const {
    return console_.isOpen();
}

bool ActionLogWriter::flush() {
    return console_.flush() == 0;
}

bool ActionLogWriter::hasFailed() const {
    return console_.hasFailed();
}

int ActionLogWriter::failure() const {
    return console_.failure();
}

bool ActionLogWriter::close() {
    console_.close();
    return !console_.hasFailed();
}

void ActionLogWriter::writeHeader(std::string_view descriptionPath, std::string_view backupPath) {
    writeLines(recordLine(descriptionPath, {}));
    writeLines(recordLine(backupPath, {}));
}

void ActionLogWriter::writeVariables(const std::vector<LoggedVariable>& variables) {
    for (const std::string& line : variableBlockLines(variables, ActionLogFormat::kLineLimit)) {
        writeLines(line);
    }
    headEnd_ = console_.position();
}

bool ActionLogWriter::writeDirectory(int created, std::string_view directory) {
    return writeRecord(ActionLogFormat::kDirectory, {std::to_string(created), directory});
}

bool ActionLogWriter::writeFile(bool isRestorable, std::string_view path, std::string_view former) {
    return writeRecord(ActionLogFormat::kFile,
                       {isRestorable ? ActionLogFormat::kOver : ActionLogFormat::kCreate, path}, former);
}

bool ActionLogWriter::writeRecord(std::string_view tag, std::initializer_list<std::string_view> fields,
                                  std::string_view former) {
    const std::string line = recordLine(tag, fields);
    const bool isThere = !copied_.empty() && !isCounted(line) && copied_.contains(line);
    return isThere || writeRecordLines(former, line);
}

void ActionLogWriter::copyRecord(std::string_view line) {
    const std::string copy = recordLine(line, {});
    if (copied_.insert(copy).second || isCounted(copy)) {
        writeRecordLines("", copy);
    }
}

std::int64_t ActionLogWriter::position() {
    return console_.position();
}

void ActionLogWriter::withdrawFrom(std::int64_t position) {
    if (position >= 0 && position < console_.position()) {
        isBroken_ = console_.cutAt(position) != 0 || isBroken_;
    }
}

// In one write: a run that is killed leaves both or none.
bool ActionLogWriter::writeRecordLines(std::string_view former, const std::string& line) {
    std::string lines;
    if (!former.empty()) {
        lines = recordLine(ActionLogFormat::kFormer, {former});
    } else if (console_.position() <= headEnd_ &&
               line.find(ActionLogFormat::kVariable) != std::string::npos) {
        lines = recordLine(ActionLogFormat::kNoRecord, {});
    }
    return writeLines(lines + line);
}

bool ActionLogWriter::writeLines(const std::string& lines) {
    if (!console_.isOpen()) {
        return true;
    }
    const std::int64_t start = console_.position();
    if (!isBroken_ && console_.write(lines.data(), static_cast<std::int32_t>(lines.size())) == 0) {
        return true;
    }
    isBroken_ = isBroken_ || console_.cutAt(start) != 0;
    return false;
}
