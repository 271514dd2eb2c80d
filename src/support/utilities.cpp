#include "support/utilities.h"

#include <algorithm>
#include <memory>

#include "base/path_functions.h"

namespace OUtils {

namespace {

constexpr std::uint32_t kCopyBlock = 256 * 1024;
constexpr std::size_t kLargestPart = 1024 * 1024 * 1024;

int openForReading(std::string_view path, platform::FileSystem& files,
                   std::unique_ptr<platform::File>& outFile) {
    platform::OpenOptions options;
    options.sequential = true;
    // A program that is being written to, or a log that is open, can still be read.
    options.share = platform::kShareRead | platform::kShareWrite | platform::kShareDelete;
    return files.open(path, options, outFile);
}

int openForWriting(std::string_view path, platform::FileSystem& files,
                   std::unique_ptr<platform::File>& outFile) {
    platform::OpenOptions options;
    options.access = platform::kWrite;
    options.share = platform::kShareNone;
    options.disposition = platform::Disposition::kCreateAlways;
    return files.open(path, options, outFile);
}

int writeAll(platform::File& file, const void* data, std::uint32_t size) {
    std::uint32_t written = 0;
    const int status = file.write(data, size, written);
    return status == 0 && written != size ? -1 : status;
}

int copyContent(platform::File& source, platform::File& target) {
    const auto block = std::make_unique_for_overwrite<unsigned char[]>(kCopyBlock);
    for (;;) {
        std::uint32_t done = 0;
        int status = source.read(block.get(), kCopyBlock, done);
        if (status == 0 && done == 0) {
            return 0;
        }
        if (status == 0) {
            status = writeAll(target, block.get(), done);
        }
        if (status != 0) {
            return status;
        }
    }
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
int readInto(std::string_view path, platform::FileSystem& files, MakeRoom makeRoom) {
    std::unique_ptr<platform::File> file;
    if (const int status = openForReading(path, files, file); status != 0) {
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

bool copyFile(std::string_view from, std::string_view to, platform::FileSystem& files) {
    std::unique_ptr<platform::File> source;
    std::unique_ptr<platform::File> target;
    // Opening the target would empty the source.
    if (isSamePath(from, to)) {
        return false;
    }
    if (openForReading(from, files, source) != 0 || openForWriting(to, files, target) != 0) {
        return false;
    }
    const int copied = copyContent(*source, *target);
    const int closed = target->close();
    if (copied != 0 || closed != 0) {
        files.removeFile(to);
        return false;
    }
    return true;
}

int removeFile(std::string_view path, platform::FileSystem& files) {
    return files.removeFile(path);
}

int readWholeFile(std::string_view path, SharedBuffer& outContent, platform::FileSystem& files) {
    outContent.release();
    SharedBuffer content;
    const int status = readInto(path, files, [&content](std::int64_t size) {
        content = SharedBuffer(static_cast<std::int32_t>(size));
        return content.data();
    });
    if (status == 0) {
        outContent = std::move(content);
    }
    return status;
}

int readWholeFile(std::string_view path, std::string& outContent, platform::FileSystem& files) {
    outContent.clear();
    const int status = readInto(path, files, [&outContent](std::int64_t size) {
        outContent.resize(static_cast<std::size_t>(size));
        return reinterpret_cast<unsigned char*>(outContent.data());
    });
    if (status != 0) {
        outContent.clear();
    }
    return status;
}

int writeWholeFile(std::string_view path, std::string_view content, platform::FileSystem& files) {
    if (content.size() > INT32_MAX) {
        return -1;
    }
    std::unique_ptr<platform::File> file;
    int status = openForWriting(path, files, file);
    if (status != 0) {
        return status;
    }
    status = writeAll(*file, content.data(), static_cast<std::uint32_t>(content.size()));
    const int closed = file->close();
    return status != 0 ? status : closed;
}

}  // namespace OUtils
