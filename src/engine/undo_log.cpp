#include "engine/undo_log.h"

#include <optional>

#include "engine/action_log_format.h"
#include "platform/file_system.h"
#include "support/p_file_stream.h"
#include "support/utilities.h"

namespace {

constexpr std::string_view kLineEnd = "\r\n";

struct LogText {
    std::string content;
    std::size_t archiveStart = 0;
    std::size_t restStart = 0;
};

// The whole lines of a log; nothing without the first two. `outStatus` is that of the reading.
std::optional<LogText> readLog(platform::FileSystem& files, const std::string& path, int& outStatus) {
    LogText log;
    outStatus = OUtils::readWholeFile(path, log.content, files, OUtils::Links::kRefuse);
    if (outStatus != 0) {
        return std::nullopt;
    }
    log.content.resize(log.content.find_last_of('\n') + 1);  // to 0 when there is no line end
    log.archiveStart = log.content.find('\n') + 1;
    log.restStart = log.archiveStart == 0 ? 0 : log.content.find('\n', log.archiveStart) + 1;
    return log.restStart == 0 ? std::nullopt : std::optional(std::move(log));
}

std::string lineWith(const std::string& path, std::string_view present) {
    return path.empty() ? std::string(present) : path + std::string(kLineEnd);
}

int writeDurably(platform::FileSystem& files, const std::string& path, std::string_view content) {
    PFileStream file(files);
    int status = file.createNew(path, true);
    status = status != 0 ? status : file.writeText(content);
    status = status != 0 ? status : file.flush();
    const int closed = file.close();
    return status != 0 ? status : closed;
}

}  // namespace

int writeUndoLog(platform::FileSystem& files, const std::string& from, const UndoLogPlaces& places,
                 const std::string& to) {
    int status = 0;
    const std::optional<LogText> log = readLog(files, from, status);
    if (!log) {
        return status != 0 ? status : -1;
    }
    const std::string_view text = log->content;
    const std::string copy =
        lineWith(places.description, text.substr(0, log->archiveStart)) +
        lineWith(places.archive, text.substr(log->archiveStart, log->restStart - log->archiveStart)) +
        std::string(text.substr(log->restStart));
    const std::string beside = to + ".new";
    if (files.exists(beside)) {
        files.removeFile(beside);
    }
    status = writeDurably(files, beside, copy);
    return status != 0 ? status : files.replaceFile(beside, to);
}

bool haveSameRecords(platform::FileSystem& files, const std::string& one, const std::string& other) {
    int status = 0;
    const std::optional<LogText> first = readLog(files, one, status);
    const std::optional<LogText> second = readLog(files, other, status);
    return first && second &&
           std::string_view(first->content).substr(first->restStart) ==
               std::string_view(second->content).substr(second->restStart);
}
