#pragma once

#include <string>
#include <utility>

namespace platform {
class FileSystem;
}

// The file of the running program, where the system doesn't let it be removed as long as the program runs.
class OwnImage {
public:
    // `files` is borrowed.
    OwnImage(platform::FileSystem& files, std::string path) : files_(files), path_(std::move(path)) {}

    // Moves the file into a private directory on its volume, which the system removes with it at its next
    // start, and puts a copy of `image` in its place, which nothing holds. False when that isn't possible;
    // everything is as it was then.
    bool stepAside(const std::string& image);

private:
    bool moveTo(const std::string& directory, const std::string& image);

    platform::FileSystem& files_;
    const std::string path_;
};
