#include "support/utilities.h"

#include <algorithm>
#include <memory>

#include "base/path_functions.h"
#include "platform/error_text.h"
#include "support/file_copy.h"
#include "support/replacing_file.h"

namespace OUtils {

namespace {

constexpr std::size_t kLargestPart = 1024 * 1024 * 1024;

int openForReading(std::string_view path, platform::FileSystem& files,
                   std::unique_ptr<platform::File>& outFile, Links links = Links::kFollow) {
    platform::OpenOptions options;
    options.followLinks = links == Links::kFollow;
    options.sequential = true;
    // A program that is being written to, or a log that is open, can still be read.
    options.share = platform::kShareRead | platform::kShareWrite | platform::kShareDelete;
    return files.open(path, options, outFile);
}

int readAll(platform::File& file, unsigned char* data, std::int64_t size) {
    while (size > 0) {
        std::uint32_t done = 0;
        const auto part = static_cast<std::uint32_t>(std::min<std::int64_t>(size, kLargestPart));
        const int status = file.read(data, part, done);
        if (status != 0 || done == 0) {
            return status != 0 ? status : -1;
        }
        data += done;
        size -= done;
    }
    return 0;
}

bool isSamePath(std::string_view a, std::string_view b) {
    return withSeparators(std::string(a)) == withSeparators(std::string(b));
}

// Opens the file, lets `makeRoom` give the memory for its size, and fills that.
template <typename MakeRoom>
int readInto(std::string_view path, platform::FileSystem& files, Links links, MakeRoom makeRoom) {
    std::unique_ptr<platform::File> file;
    if (const int status = openForReading(path, files, file, links); status != 0) {
        return status;
    }
    const std::int64_t size = file->size();
    if (size < 0 || size > INT32_MAX) {
        return -1;
    }
    return readAll(*file, makeRoom(size), size);
}

}  // namespace

bool pathExists(std::string_view path, platform::FileSystem& files) {
    return files.exists(path);
}

std::optional<std::string> getTempDirectory(platform::FileSystem& files) {
    std::string path;
    const bool found = files.temporaryDirectory(path) && !path.empty();
    return found ? std::optional<std::string>(path) : std::nullopt;
}

std::optional<std::string> getProgramPath(platform::Environment& environment) {
    std::string path;
    return environment.programPath(path) ? std::optional<std::string>(path) : std::nullopt;
}

bool copyFile(std::string_view from, std::string_view to, platform::FileSystem& files,
              platform::FileRights rights) {
    if (isSamePath(from, to)) {
        return false;
    }
    std::unique_ptr<platform::File> source;
    ReplacingFile target(files);
    return openForReading(from, files, source) == 0 && target.open(to, rights) == 0 &&
           copyContent(*source, target.stream()) == 0 && target.putInPlace() == 0;
}

int removeFile(std::string_view path, platform::FileSystem& files) {
    return files.removeFile(path);
}

std::string readingErrorText(int status) {
    return status < 0 ? "the file is too large, or ended early" : platform::errorText(status);
}

std::string writingErrorText(int status) {
    return status < 0 ? "it is too large, or no file can be in its place" : platform::errorText(status);
}

int readWholeFile(std::string_view path, SharedBuffer& outContent, platform::FileSystem& files) {
    outContent.release();
    SharedBuffer content;
    const int status = readInto(path, files, Links::kFollow, [&content](std::int64_t size) {
        content = SharedBuffer(static_cast<std::int32_t>(size));
        return content.data();
    });
    if (status == 0) {
        outContent = std::move(content);
    }
    return status;
}

int readWholeFile(std::string_view path, std::string& outContent, platform::FileSystem& files, Links links) {
    outContent.clear();
    const int status = readInto(path, files, links, [&outContent](std::int64_t size) {
        outContent.resize(static_cast<std::size_t>(size));
        return reinterpret_cast<unsigned char*>(outContent.data());
    });
    if (status != 0) {
        outContent.clear();
    }
    return status;
}

int writeWholeFile(std::string_view path, std::string_view content, platform::FileSystem& files,
                   platform::FileRights rights) {
    if (content.size() > INT32_MAX) {
        return -1;
    }
    ReplacingFile file(files);
    int status = file.open(path, rights);
    if (status == 0) {
        status = file.stream().writeText(content);
    }
    return status != 0 ? status : file.putInPlace();
}

}  // namespace OUtils
