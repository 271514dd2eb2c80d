#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace platform {
class FileSystem;
}

// The lines of a text without their ends; a last line without an end counts. A carriage return before a line
// feed belongs to the end where the system's text files have such ends, else to the line. The views look into
// `content`.
std::vector<std::string_view> splitTextLines(std::string_view content);

// A text file that is read, edited and written back as a whole. A link in the place of the file is left
// alone: replaced, it would part the user's two names of one text, and followed, it could lead anywhere.
class TextFile {
public:
    static constexpr std::int64_t kSizeLimit = 64 * 1024 * 1024;  // bytes

    enum class State {
        kLoaded,
        kMissing,     // nothing of that name; the content is empty
        kUnreadable,  // a link or no plain file at all, too large, or the system refuses
    };

    // The file system is borrowed.
    TextFile(platform::FileSystem& files, std::string path) : files_(files), path_(std::move(path)) {}

    State load();
    const std::string& content() const { return content_; }

    // After a load that found the file or found it missing: the file becomes `head` and these lines, each
    // with the system's line end. It is written under another name and then takes the file's place and
    // rights: after a failure the file is as it was, and nothing else is left.
    bool store(std::string_view head, const std::vector<std::string_view>& lines);

private:
    platform::FileSystem& files_;
    std::string path_;
    bool exists_ = false;
    std::string content_;
};
