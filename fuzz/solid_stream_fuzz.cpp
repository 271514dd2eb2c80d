#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "package/solid_decompressor.h"

// A solid stream: the output has the size that is reported, and damage gives a documented code.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Chunks of many megabytes would only end the run at the fuzzer's own limit.
    for (std::size_t i = 20; i + 16 <= size && i < 20 + 16 * 256; i += 16) {
        if (SolidChunk::decode(data + i).uncompressedSize > 0x4000000) {
            return 0;
        }
    }
    if (size >= SolidFormat::kHeaderSize) {
        createSolidDecompressor(data, DebugLog());
    }
    ZlibSolidDecompressor decompressor{DebugLog()};
    SolidBlock out;
    const int result = static_cast<int>(decompressor.decompress(data, static_cast<std::int64_t>(size), out));
    const bool isDocumented = result == 0 || result == -11 || (result <= -21 && result >= -29);
    if (!isDocumented || (result == 0) != (out.data != nullptr) || out.size < 0) {
        std::abort();
    }
    // Every byte of the output must be there.
    unsigned char sum = 0;
    for (std::int32_t i = 0; i < out.size; ++i) {
        sum = static_cast<unsigned char>(sum ^ out.data[static_cast<std::size_t>(i)]);
    }
    static volatile unsigned char sink;
    sink = sum;
    return 0;
}
