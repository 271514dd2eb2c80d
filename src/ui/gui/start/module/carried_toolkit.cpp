#include "ui/gui/start/carried_toolkit.h"

#include <zlib.h>

#include <cstddef>
#include <cstdint>

#include "platform/memory_library.h"

// The module, compressed by gzip, as read-only data of the program. Most runs don't read it.
__asm__(
    ".pushsection .rodata.window_module, \"a\", @progbits\n"
    ".globl tandrelWindowModule, tandrelWindowModuleEnd\n"
    ".hidden tandrelWindowModule, tandrelWindowModuleEnd\n"
    "tandrelWindowModule: .incbin \"" TANDREL_WINDOW_MODULE
    "\"\n"
    "tandrelWindowModuleEnd:\n"
    ".popsection\n");

extern "C" {
extern const unsigned char tandrelWindowModule[];
extern const unsigned char tandrelWindowModuleEnd[];
}

namespace {

constexpr int kGzip = 16 + MAX_WBITS;
// The format ends with the length of what it holds, little-endian.
constexpr std::size_t kLengthBytes = 4;

std::size_t carriedLength() {
    return static_cast<std::size_t>(tandrelWindowModuleEnd - tandrelWindowModule);
}

std::size_t expandedLength() {
    std::size_t length = 0;
    for (std::size_t i = 1; i <= kLengthBytes; ++i) {
        length = length << 8U | tandrelWindowModule[carriedLength() - i];
    }
    return length;
}

// Empty when it is damaged; the format has a checksum.
std::string expandedModule() {
    std::string module(expandedLength(), '\0');
    z_stream stream{};
    if (inflateInit2(&stream, kGzip) != Z_OK) {
        return {};
    }
    stream.next_in = const_cast<unsigned char*>(tandrelWindowModule);
    stream.avail_in = static_cast<uInt>(carriedLength());
    stream.next_out = reinterpret_cast<unsigned char*>(module.data());
    stream.avail_out = static_cast<uInt>(module.size());
    const bool isWhole = inflate(&stream, Z_FINISH) == Z_STREAM_END && stream.avail_out == 0;
    inflateEnd(&stream);
    return isWhole ? module : std::string();
}

}  // namespace

Toolkit* carriedToolkit(std::string& outReason) {
    void* const function = platform::loadMemoryLibrary(expandedModule(), "tandrelToolkit", outReason);
    if (function == nullptr) {
        return nullptr;
    }
    Toolkit* const toolkit = reinterpret_cast<decltype(&tandrelToolkit)>(function)(kToolkitVersion);
    if (toolkit == nullptr) {
        outReason = "the module of the window is of another version";
    }
    return toolkit;
}
