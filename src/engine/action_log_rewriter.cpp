#include "engine/action_log_rewriter.h"

#include "base/errors.h"
#include "engine/action_log_format.h"
#include "engine/line_reader.h"
#include "platform/error_text.h"
#include "platform/file_system.h"
#include "support/p_file_stream.h"
#include "support/p_mem_stream.h"
#include "support/replacing_file.h"
#include "support/utilities.h"

namespace {

using ActionLogFormat::kVariableLineBuffer;

constexpr std::string_view kTemporaryStem = "templog";
constexpr std::string_view kTemporaryExtension = ".log";
constexpr int kMostNames = 100;
constexpr const char* kWriting = "Writing temp file for new log";

// Collects what is written into larger pieces, and notices what doesn't reach the file.
class Output {
public:
    explicit Output(PFileStream& file) : file_(file) {}

    void write(std::string_view text) {
        pending_ += text;
        if (pending_.size() >= kPieceSize) {
            flush();
        }
    }
    bool flush() {
        std::uint32_t done = 0;
        const auto size = static_cast<std::uint32_t>(pending_.size());
        if (status_ == 0 && size > 0) {
            status_ = file_.write(pending_.data(), size, done);
            status_ = status_ == 0 && done != size ? -1 : status_;
        }
        pending_.clear();
        return status_ == 0;
    }
    int status() const { return status_; }

private:
    static constexpr std::size_t kPieceSize = 65536;

    PFileStream& file_;
    std::string pending_;
    int status_ = 0;
};

[[noreturn]] void fail(const char* work, const std::string& path, int status) {
    const std::string reason = status > 0 ? platform::errorText(status) : "";
    throw InstallerError("ERROR: %s (%s)", work, path.c_str()).because(reason.c_str());
}

// The first name without a number.
std::string pathBeside(const std::string& path, int number) {
    const std::size_t separator = path.find_last_of("/\\");
    std::string beside = path.substr(0, separator == std::string::npos ? 0 : separator + 1);
    beside += kTemporaryStem;
    beside += number == 0 ? "" : std::to_string(number);
    return beside.append(kTemporaryExtension);
}

bool holds(const std::string& line, std::string_view text) {
    return line.find(text) != std::string::npos;
}

// Copies up to the line that holds the count of the variables, which isn't copied. False without one.
bool copyHead(LineReader& lines, Output& out) {
    for (std::string line; lines.readLine(line, kVariableLineBuffer);) {
        if (holds(line, ActionLogFormat::kVariableCount)) {
            return true;
        }
        out.write(line);
    }
    return false;
}

std::string firstLineOf(platform::FileSystem& files, const std::string& path) {
    PFileStream file(files);
    std::string line;
    if (file.openFile(path, PFileStream::kGenericRead, PFileStream::kShareRead,
                      PFileStream::kOpenExisting | PFileStream::kRefuseLinks) == 0) {
        LineReader(file).readLine(line, kVariableLineBuffer);
    }
    return line;
}

// Skips the block; `outLine` is the first line after it. False when there is none.
bool skipBlock(LineReader& lines, std::string& outLine) {
    while (lines.readLine(outLine, kVariableLineBuffer)) {
        if (!holds(outLine, ActionLogFormat::kVariable)) {
            return true;
        }
    }
    return false;
}

}  // namespace

void ActionLogRewriter::copyLog(const std::string& content, PFileStream& to,
                                const std::vector<LoggedVariable>& variables) {
    PMemStream from(content);
    LineReader lines(from);
    Output out(to);
    std::string line;
    if (!copyHead(lines, out) || !skipBlock(lines, line)) {
        throw InstallerError("ERROR: No variables in action file");
    }
    for (const std::string& record : variableBlockLines(variables, ActionLogFormat::kRewrittenLineLimit)) {
        out.write(record);
    }
    out.write(line);
    out.write(std::string_view(content).substr(static_cast<std::size_t>(lines.position())));
    if (!out.flush()) {
        fail(kWriting, to.getName(), out.status());
    }
}

// What is to take the log's place has its rights, and is complete.
void ActionLogRewriter::takeRights(const std::string& logPath, PFileStream& to) {
    const int status = to.takeRightsOf(logPath);
    const int closed = to.close();
    if (closed != 0 || status != 0) {
        fail(kWriting, to.getName(), status != 0 ? status : closed);
    }
}

void ActionLogRewriter::rewriteActionLog(const std::string& logPath,
                                         const std::vector<LoggedVariable>& variables) {
    std::string content;
    int status = OUtils::readWholeFile(logPath, content, files_, OUtils::Links::kRefuse);
    if (status != 0) {
        fail("Opening action file", logPath, status);
    }
    PFileStream to(files_);
    // A taken name is somebody else's, or that of a run that was killed.
    const auto nameBeside = [&](int number) { return pathBeside(logPath, number); };
    status = createUnderFreeName(to, files_, nameBeside, kMostNames, true);
    const std::string temporary = to.getName();
    if (status != 0) {
        fail("Creating temp file for new log", temporary, status);
    }
    try {
        copyLog(content, to, variables);
        takeRights(logPath, to);
    } catch (const InstallerError&) {
        to.close();
        files_.removeFile(temporary);
        throw;
    }
    status = files_.replaceFile(temporary, logPath);
    if (status != 0) {
        files_.removeFile(temporary);
        fail(kWriting, logPath, status);
    }
}

void ActionLogRewriter::removeAbandoned(const std::string& logPath) {
    const std::string head = firstLineOf(files_, logPath);
    for (int number = 0; number < kMostNames; ++number) {
        const std::string path = pathBeside(logPath, number);
        if (!files_.exists(path)) {
            break;
        }
        // It may have been killed in the middle of the first line.
        if (!head.empty() && files_.kindOf(path) == platform::PathKind::kFile &&
            head.starts_with(firstLineOf(files_, path))) {
            files_.removeFile(path);
        }
    }
}
