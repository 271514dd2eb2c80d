#include "description/pxml.h"

#include <memory>

#include "support/p_file_stream.h"

namespace {

constexpr int kShortRead = -3;

int readContent(PStream& stream, std::unique_ptr<char[]>& outText) {
    const std::int64_t size = stream.getSize();
    if (size < 0 || size > INT32_MAX - 2) {
        return -1;
    }
    outText = std::make_unique_for_overwrite<char[]>(static_cast<std::size_t>(size) + 2);
    std::uint32_t done = 0;
    const int status = stream.read(outText.get(), static_cast<std::uint32_t>(size), done);
    if (status != 0) {
        return status;
    }
    if (done != size) {
        return kShortRead;
    }
    outText[done] = '\0';
    return 0;
}

}  // namespace

int PXML::loadFile(const char* fileName, platform::FileSystem& files) {
    if (fileName == nullptr) {
        return -1;
    }
    PFileStream stream(files);
    const int status = stream.openFile(fileName, PFileStream::kGenericRead, PFileStream::kShareRead,
                                       PFileStream::kOpenExisting | PFileStream::kSequential);
    return status != 0 ? status : loadStream(stream);
}

int PXML::loadStream(PStream& stream) {
    if (stream.getOpenCount() == 0 && stream.open() != 0) {
        return 1;
    }
    std::unique_ptr<char[]> text;
    const int status = readContent(stream, text);
    if (status == 0) {
        parseText(text.get());
    }
    stream.close();
    return status;
}
