#include "engine/run_records.h"

#include <array>
#include <cstdio>
#include <deque>
#include <memory>
#include <vector>

#include "base/visible_text.h"
#include "engine/run_records_format.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/named_events.h"
#include "support/utilities.h"

namespace Format = RunRecordsFormat;

namespace {

constexpr char kLockName[] = "tandrel-runs";
constexpr std::uint32_t kLockMilliseconds = 1000;  // others hold it for a moment only

std::string timeText(const platform::LocalTime& time) {
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d", time.year, time.month, time.day,
                  time.hour, time.minute, time.second);
    return text.data();
}

std::string field(std::string_view text) {
    std::string shown = OUtils::visibleText(text.substr(0, Format::kLongestText));
    for (char& c : shown) {
        if (c == '\t' || c == '\n' || c == '\r') {
            c = ' ';
        }
    }
    return shown;
}

std::string lineOf(const RunRecord& record) {
    const RunEndRow& end = rowOf(record.end);
    std::string line = timeText(record.time);
    for (const std::string& text :
         {std::string(record.isUninstallation ? "uninstall" : "install"), std::string(end.name),
          std::to_string(static_cast<int>(end.end)), field(record.product), field(record.why)}) {
        line += Format::kSeparator + text;
    }
    return line + Format::kLineEnd;
}

bool isRecord(std::string_view line) {
    return !line.empty() && line.size() <= Format::kLongestLine && line.front() >= '0' &&
           line.front() <= '9' && line.find(Format::kSeparator) != std::string_view::npos &&
           OUtils::visibleText(line) == line;
}

}  // namespace

bool RunRecords::add(const RunRecord& record) {
    std::string path;
    if (!machine_.environment.stateDirectory(path) || !machine_.files.isDirectory(path)) {
        return false;
    }
    path += '/' + std::string(Format::kFileName);
    // Without the lock a run that ends at the same moment may lose its record.
    std::unique_ptr<platform::NamedLock> lock;
    machine_.events.lock(kLockName, kLockMilliseconds, lock);
    const std::string text =
        std::string(Format::kBanner) + Format::kLineEnd + linesOfOthers(path) + lineOf(record);
    return OUtils::writeWholeFile(path, text, machine_.files, platform::FileRights::kPrivate) == 0;
}

// Those that stay.
std::string RunRecords::linesOfOthers(const std::string& path) {
    const std::int64_t size = machine_.files.fileSize(path);
    std::string text;
    if (size < 0 || size > Format::kSizeLimit ||
        OUtils::readWholeFile(path, text, machine_.files, OUtils::Links::kRefuse) != 0 ||
        !text.starts_with(std::string(Format::kBanner) + Format::kLineEnd)) {
        return {};
    }
    std::deque<std::string_view> lines;
    std::string_view rest = text;
    for (std::size_t end = rest.find(Format::kLineEnd); end != std::string_view::npos;
         end = rest.find(Format::kLineEnd)) {
        if (isRecord(rest.substr(0, end))) {
            lines.push_back(rest.substr(0, end + 1));
        }
        if (lines.size() == Format::kMostRuns) {
            lines.pop_front();
        }
        rest.remove_prefix(end + 1);
    }
    std::string kept;
    for (const std::string_view line : lines) {
        kept += line;
    }
    return kept;
}

void RunRecords::removeIfAlone(platform::FileSystem& files, const std::string& stateDirectory) {
    std::vector<platform::DirectoryEntry> entries;
    if (files.list(stateDirectory, entries) == 0 && entries.size() == 1 &&
        entries.front().name == Format::kFileName) {
        files.removeFile(stateDirectory + '/' + std::string(Format::kFileName));
    }
}
