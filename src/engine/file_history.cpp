#include "engine/file_history.h"

#include "platform/path_identity.h"

void FileHistory::addEarlier(std::string_view line, std::string_view path, Kind kind) {
    earlier_.push_back({std::string(line), platform::pathIdentity(path)});
    Kind& known = kinds_[earlier_.back().identity];
    known = known == Kind::kReplaced ? known : kind;
}

FileHistory::Kind FileHistory::kindOf(std::string_view path) const {
    if (kinds_.empty()) {
        return Kind::kUnknown;
    }
    const auto found = kinds_.find(platform::pathIdentity(path));
    return found == kinds_.end() ? Kind::kUnknown : found->second;
}

void FileHistory::noteRecord(std::string_view path) {
    if (!kinds_.empty()) {
        recorded_.insert(platform::pathIdentity(path));
    }
}

std::vector<std::string_view> FileHistory::remainingRecords() const {
    std::vector<std::string_view> lines;
    for (const Record& record : earlier_) {
        if (!recorded_.contains(record.identity)) {
            lines.emplace_back(record.line);
        }
    }
    return lines;
}

WrittenSums FileHistory::sums() const {
    WrittenSums all = sums_;
    all.addMissing(earlierSums_);
    return all;
}
