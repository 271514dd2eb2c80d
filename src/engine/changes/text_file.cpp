#include "engine/changes/text_file.h"

#include "platform/file_system.h"
#include "support/replacing_file.h"
#include "support/text_mode.h"
#include "support/utilities.h"

namespace {

// What the user edits as well is brought to the disk before it takes the place of what is there.
int writeWhole(PFileStream& stream, const std::string& content) {
    const int status = stream.writeText(content);
    return status != 0 ? status : stream.flush();
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
    const platform::PathKind kind = files_.kindOf(path_);
    exists_ = kind != platform::PathKind::kNothing;
    if (!exists_) {
        return State::kMissing;
    }
    if (kind != platform::PathKind::kFile || files_.fileSize(path_) > kSizeLimit ||
        OUtils::readWholeFile(path_, content_, files_, OUtils::Links::kRefuse) != 0) {
        return State::kUnreadable;
    }
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
    ReplacingFile file(files_);
    // What appeared since the file was missed is not the text that was edited.
    return file.open(path_) == 0 && file.replacesSomething() == exists_ &&
           writeWhole(file.stream(), newContent) == 0 && file.putInPlace() == 0;
}
