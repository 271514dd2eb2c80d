#include "engine/unfinished_files.h"

#include <set>
#include <string_view>
#include <vector>

#include "base/path_functions.h"
#include "engine/action_log_format.h"
#include "engine/changes/record_text.h"
#include "engine/changes/same_path.h"
#include "engine/line_reader.h"
#include "engine/removal_journal.h"
#include "platform/file_system.h"
#include "support/p_file_stream.h"
#include "support/replacing_file.h"

namespace {

namespace Format = ActionLogFormat;

std::string directoryOf(std::string_view path) {
    return std::string(path.substr(0, path.size() - OUtils::lastPathComponent(path).size()));
}

// Of a record whose third field is the path of a file; otherwise empty.
std::string directoryIn(const std::vector<std::string_view>& fields) {
    const bool hasPath =
        fields.size() > 2 && (fields[0] == Format::kFile || fields[0] == Format::kIni ||
                              fields[0] == Format::kModifyFile || fields[0] == Format::kShortcut);
    return hasPath ? directoryOf(fields[2]) : std::string();
}

bool isGivenBack(const std::vector<std::string_view>& fields) {
    return fields[0] != Format::kFile || fields[1] == Format::kOver;
}

struct Directories {
    std::set<std::string> ofFiles;
    std::set<std::string> made;
};

Directories directoriesIn(platform::FileSystem& files, const std::string& log, UnfinishedChange change) {
    Directories found;
    std::string last;
    PFileStream file(files);
    if (file.openFile(log, PFileStream::kGenericRead, PFileStream::kShareRead,
                      PFileStream::kOpenExisting | PFileStream::kSequential) != 0) {
        return found;
    }
    LineReader lines(file);
    for (std::string line; lines.readLine(line, Format::kRecordLineBuffer);) {
        const std::vector<std::string_view> fields = RecordText::split(withoutTrailingSpace(line), 4);
        if (fields[0] == Format::kDirectory && fields.size() > 2) {
            found.made.emplace(fields[2]);
            continue;
        }
        last = directoryIn(fields);
        if (change == UnfinishedChange::kAnyUndo && !last.empty() && isGivenBack(fields)) {
            found.ofFiles.insert(last);
        }
    }
    found.ofFiles.insert(last);
    return found;
}

void removeFrom(platform::FileSystem& files, const std::set<std::string>& directories) {
    for (const std::string& directory : directories) {
        if (!directory.empty()) {
            removeAbandonedFiles(files, directory, false);
        }
    }
}

bool isOfFile(const RemovalRecord& record) {
    return record.step == RemovalStep::kArchived ||
           (record.step >= RemovalStep::kRemoveFile && record.step < RemovalStep::kCreateKey);
}

}  // namespace

void removeUnfinishedFiles(platform::FileSystem& files, const std::string& log, UnfinishedChange change) {
    const Directories directories = directoriesIn(files, log, change);
    removeFrom(files, directories.ofFiles);
    for (const std::string& directory : directories.made) {
        removeAbandonedProbe(files, directory);
    }
}

void removeUnfinishedFiles(platform::FileSystem& files, RemovalJournal& journal) {
    std::set<std::string> directories;
    for (const RemovalRecord& record : journal.read().records) {
        if (isOfFile(record)) {
            directories.insert(directoryOf(record.path));
        }
    }
    removeFrom(files, directories);
}
