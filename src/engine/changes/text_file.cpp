#include "engine/changes/text_file.h"

#include <memory>

#include "platform/file_system.h"
#include "support/text_mode.h"
#include "support/utilities.h"

namespace {

constexpr int kLastAside = 100;

// On the same volume as the file, so that it can take its place in one step.
std::string asideOf(const std::string& path, int number) {
    std::size_t directory = path.find_last_of("/\\") + 1;
    if (directory == 0 && path.size() > 1 && path[1] == ':') {
        directory = 2;
    }
    return path.substr(0, directory) + ".tandrel-edit-" + std::to_string(number) + ".tmp";
}

int writeAndClose(platform::File& file, const std::string& content) {
    std::uint32_t done = 0;
    int status =
        content.empty() ? 0 : file.write(content.data(), static_cast<std::uint32_t>(content.size()), done);
    if (status == 0) {
        status = file.flush();
    }
    const int closed = file.close();
    return status != 0 ? status : closed;
}

}  // namespace

std::vector<std::string_view> splitTextLines(std::string_view content) {
    const bool endsWithReturn = OUtils::textLineEnd() == std::string_view("\r\n");
    std::vector<std::string_view> lines;
    while (!content.empty()) {
        const std::size_t end = content.find('\n');
        std::string_view line = content.substr(0, end);
        content.remove_prefix(end == std::string_view::npos ? content.size() : end + 1);
        if (endsWithReturn && end != std::string_view::npos && line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        lines.push_back(line);
    }
    return lines;
}

TextFile::State TextFile::load() {
    content_.clear();
    exists_ = files_.exists(path_);
    if (!exists_) {
        return State::kMissing;
    }
    std::string target;
    if (files_.resolveFile(path_, target) != 0 || files_.fileSize(target) > kSizeLimit ||
        OUtils::readWholeFile(target, content_, files_) != 0) {
        return State::kUnreadable;
    }
    path_ = target;
    return State::kLoaded;
}

bool TextFile::store(std::string_view head, const std::vector<std::string_view>& lines) {
    const std::string_view lineEnd = OUtils::textLineEnd();
    std::size_t size = head.size();
    for (const std::string_view line : lines) {
        size += line.size() + lineEnd.size();
    }
    if (size > INT32_MAX) {
        return false;
    }
    std::string newContent;
    newContent.reserve(size);
    newContent += head;
    for (const std::string_view line : lines) {
        newContent.append(line).append(lineEnd);
    }
    std::string aside;
    if (!writeAside(newContent, aside)) {
        return false;
    }
    if (!putInPlace(aside)) {
        files_.removeFile(aside);
        return false;
    }
    return true;
}

// What takes the place of a file stays private until it has that file's rights.
bool TextFile::writeAside(const std::string& newContent, std::string& outAside) {
    platform::OpenOptions options;
    options.access = platform::kWrite;
    options.share = platform::kShareNone;
    options.disposition = exists_ ? platform::Disposition::kCreatePrivate : platform::Disposition::kCreateNew;
    std::unique_ptr<platform::File> file;
    for (int number = 1; file == nullptr && number <= kLastAside; ++number) {
        outAside = asideOf(path_, number);
        if (files_.open(outAside, options, file) != 0 && !files_.exists(outAside)) {
            return false;
        }
    }
    if (file == nullptr) {
        return false;
    }
    if (writeAndClose(*file, newContent) != 0) {
        files_.removeFile(outAside);
        return false;
    }
    return true;
}

bool TextFile::putInPlace(const std::string& aside) {
    if (!exists_) {
        return files_.moveFile(aside, path_) == 0;
    }
    return files_.copyRights(path_, aside) == 0 && files_.replaceFile(aside, path_) == 0;
}
