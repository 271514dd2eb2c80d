#include "engine/unfinished_files.h"

#include <set>
#include <string_view>
#include <vector>

#include "base/path_functions.h"
#include "engine/action_log_format.h"
#include "engine/changes/record_text.h"
#include "engine/line_reader.h"
#include "platform/file_system.h"
#include "support/p_file_stream.h"
#include "support/replacing_file.h"

namespace {

namespace Format = ActionLogFormat;

// Of a record whose third field is the path of a file; otherwise empty.
std::string directoryIn(const std::vector<std::string_view>& fields) {
    const bool hasPath =
        fields.size() > 2 && (fields[0] == Format::kFile || fields[0] == Format::kIni ||
                              fields[0] == Format::kModifyFile || fields[0] == Format::kShortcut);
    if (!hasPath) {
        return {};
    }
    const std::string_view name = OUtils::lastPathComponent(fields[2]);
    return std::string(fields[2].substr(0, fields[2].size() - name.size()));
}

bool isGivenBack(const std::vector<std::string_view>& fields) {
    return fields[0] != Format::kFile || fields[1] == Format::kOver;
}

std::set<std::string> directoriesIn(platform::FileSystem& files, const std::string& log,
                                    UnfinishedChange change) {
    std::set<std::string> found;
    std::string last;
    PFileStream file(files);
    if (file.openFile(log, PFileStream::kGenericRead, PFileStream::kShareRead,
                      PFileStream::kOpenExisting | PFileStream::kSequential) != 0) {
        return found;
    }
    LineReader lines(file);
    for (std::string line; lines.readLine(line, Format::kRecordLineBuffer);) {
        const std::vector<std::string_view> fields = RecordText::split(withoutTrailingSpace(line), 4);
        last = directoryIn(fields);
        if (change == UnfinishedChange::kAnyUndo && !last.empty() && isGivenBack(fields)) {
            found.insert(last);
        }
    }
    found.insert(last);
    return found;
}

}  // namespace

void removeUnfinishedFiles(platform::FileSystem& files, const std::string& log, UnfinishedChange change) {
    for (const std::string& directory : directoriesIn(files, log, change)) {
        if (!directory.empty()) {
            removeAbandonedFiles(files, directory, false);
        }
    }
}
