#include "description/pxml.h"

#include <string>

#include "support/p_file_stream.h"

namespace {

constexpr int kShortRead = -3;

int readContent(PStream& stream, std::string& outText) {
    const std::int64_t size = stream.getSize();
    if (size < 0 || size > INT32_MAX) {
        return -1;
    }
    outText.resize(static_cast<std::size_t>(size));
    std::uint32_t done = 0;
    const int status = stream.read(outText.data(), static_cast<std::uint32_t>(size), done);
    if (status != 0) {
        return status;
    }
    return done == size ? 0 : kShortRead;
}

}  // namespace

int PXML::loadFile(std::string_view fileName, platform::FileSystem& files) {
    PFileStream stream(files);
    const int status = stream.openFile(fileName, PFileStream::kGenericRead, PFileStream::kShareRead,
                                       PFileStream::kOpenExisting | PFileStream::kSequential);
    return status != 0 ? status : loadStream(stream);
}

int PXML::loadStream(PStream& stream) {
    if (stream.getOpenCount() == 0 && stream.open() != 0) {
        return 1;
    }
    std::string text;
    const int status = readContent(stream, text);
    if (status == 0) {
        parseText(text);
    }
    stream.close();
    return status;
}
