#include "engine/changes/text_file.h"

#include "platform/error_text.h"
#include "platform/file_system.h"
#include "support/replacing_file.h"
#include "support/text_mode.h"

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

TextFile::State TextFile::load(OUtils::Links links) {
    content_.clear();
    const platform::PathKind kind = files_.kindOf(path_);
    exists_ = kind != platform::PathKind::kNothing;
    if (!exists_) {
        return State::kMissing;
    }
    return readContent(kind, links) ? State::kLoaded : State::kUnreadable;
}

bool TextFile::readContent(platform::PathKind kind, OUtils::Links links) {
    const bool isReadable = kind == platform::PathKind::kFile ||
                            (kind == platform::PathKind::kLink && links == OUtils::Links::kFollow);
    if (!isReadable) {
        reason_ = "a link, or something else than a file, is in its place";
        return false;
    }
    if (files_.fileSize(path_) > kSizeLimit) {
        reason_ = "it has more than 64 MiB";
        return false;
    }
    const int status = OUtils::readWholeFile(path_, content_, files_, links);
    reason_ = status < 0 ? "it ended early" : platform::errorText(status);
    return status == 0;
}

bool TextFile::store(std::string_view head, const std::vector<std::string_view>& lines) {
    const std::string_view lineEnd = OUtils::textLineEnd();
    std::size_t size = head.size();
    for (const std::string_view line : lines) {
        size += line.size() + lineEnd.size();
    }
    if (size > INT32_MAX) {
        reason_ = "it would have more than 2 GiB";
        return false;
    }
    std::string newContent;
    newContent.reserve(size);
    newContent += head;
    for (const std::string_view line : lines) {
        newContent.append(line).append(lineEnd);
    }
    return putInPlace(newContent);
}

bool TextFile::putInPlace(const std::string& content) {
    ReplacingFile file(files_);
    int status = file.open(path_);
    // What appeared since the file was missed is not the text that was edited.
    if (status < 0 || (status == 0 && file.replacesSomething() != exists_)) {
        reason_ = "something else is in its place now";
        return false;
    }
    status = status != 0 ? status : writeWhole(file.stream(), content);
    status = status != 0 ? status : file.putInPlace();
    reason_ = status < 0 ? "it couldn't be written whole" : platform::errorText(status);
    return status == 0;
}
