#include "engine/earlier_log.h"

#include <algorithm>

#include "engine/action_log_format.h"
#include "engine/line_reader.h"
#include "engine/log_head.h"
#include "platform/file_system.h"
#include "support/p_file_stream.h"

namespace {

namespace Format = ActionLogFormat;
using State = EarlierLog::State;

// Lines that only have a meaning where they stand.
bool isNoRecord(std::string_view text) {
    return text.empty() || text == Format::kNoRecord || firstLogField(text) == Format::kFormer;
}

// What no writer of records leaves behind: a part of a line, or bytes that are no text.
bool isWhole(std::string_view line) {
    const std::string_view text = withoutTrailingSpace(line);
    return line.ends_with('\n') && text.size() <= Format::kLineLimit &&
           std::ranges::none_of(
               text, [](char c) { return static_cast<unsigned char>(c) < ' ' && c != Format::kSeparator; });
}

bool isVariable(std::string_view line) {
    return line.starts_with(Format::kVariableCount) || line.starts_with(Format::kVariable);
}

// Line 2; a head that is damaged may lack it.
std::string readArchivePath(PFileStream& log) {
    LineReader lines(log);
    std::string line;
    const bool isThere = lines.rewind() && lines.readLine(line, Format::kRecordLineBuffer) &&
                         lines.readLine(line, Format::kBackupLineBuffer) && isWhole(line) &&
                         line.find(Format::kSeparator) == std::string::npos;
    return isThere ? std::string(withoutTrailingSpace(line)) : std::string();
}

void readRecords(PFileStream& log, EarlierLog& out) {
    const LogHead head = readLogHead(log);
    bool isGood = head.isSound;
    LineReader lines(log);
    isGood = lines.moveTo(head.recordsStart) && isGood;
    bool isPiece = false;  // of a line that is too long
    for (std::string line; lines.readLine(line, Format::kRecordLineBuffer);) {
        const std::string_view text = withoutTrailingSpace(line);
        const bool isRecord = !isPiece && isWhole(line);
        isPiece = !line.ends_with('\n');
        isGood = isRecord && isGood;
        if (isRecord && !isNoRecord(text) && !isVariable(text)) {
            out.records.emplace_back(text);
        }
    }
    out.state = isGood && !lines.hasFailed() ? State::kWhole : State::kDamaged;
}

}  // namespace

EarlierLog EarlierLog::read(platform::FileSystem& files, std::string_view path) {
    EarlierLog log;
    const platform::PathKind kind = path.empty() ? platform::PathKind::kNothing : files.kindOf(path);
    if (kind == platform::PathKind::kNothing) {
        return log;
    }
    log.state = State::kUnreadable;
    log.status = -1;
    if (kind != platform::PathKind::kFile || files.fileSize(path) > kSizeLimit) {
        return log;
    }
    PFileStream file(files);
    log.status = file.openFile(path, PFileStream::kGenericRead, PFileStream::kShareRead,
                               PFileStream::kOpenExisting | PFileStream::kSequential);
    if (log.status == 0) {
        log.archivePath = readArchivePath(file);
        readRecords(file, log);
    }
    return log;
}
