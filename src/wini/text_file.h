#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace platform {
class FileSystem;
}

// The lines of a text without their ends; a last line that has no end counts. A carriage return in front of
// a line feed belongs to the end where the system's text files have such ends, else to the line. The views
// look into `content`.
std::vector<std::string_view> splitTextLines(std::string_view content);

// A text file that is read, edited and written back as a whole. Links are followed: it is the file behind
// them that changes.
class TextFile {
public:
    static constexpr std::int64_t kSizeLimit = 64 * 1024 * 1024;  // bytes

    enum class State {
        kLoaded,
        kMissing,     // nothing of that name; the content is empty
        kUnreadable,  // no plain file, too large, or the system refuses
    };

    // The file system is borrowed.
    TextFile(platform::FileSystem& files, std::string path) : files_(files), path_(std::move(path)) {}

    State load();
    const std::string& content() const { return content_; }

    // Behind load, which found the file or that there is none: the file becomes `head` and these lines, each
    // with the system's line end. Written aside and put in the file's place, with its rights: after a failure
    // the file is as it was, and nothing else stays behind.
    bool store(std::string_view head, const std::vector<std::string_view>& lines);

private:
    bool writeAside(const std::string& newContent, std::string& outAside);
    bool putInPlace(const std::string& aside);

    platform::FileSystem& files_;
    std::string path_;  // once loaded, that of the file behind the links
    bool exists_ = false;
    std::string content_;
};
