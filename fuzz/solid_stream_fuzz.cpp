#include <algorithm>
#include <cstdint>
#include <string_view>

#include "fuzz_target.h"
#include "package/solid_decompressor.h"
#include "solid_stream_memory.h"

// A solid stream: the output has the size that is reported, and damage gives a documented code.
bool accepts(std::string_view input) {
    if (asksForTooMuchMemory(input)) {
        return false;
    }
    const auto* data = reinterpret_cast<const unsigned char*>(input.data());
    const bool isKnown =
        input.size() >= SolidFormat::kHeaderSize && createSolidDecompressor(data, DebugLog()) != nullptr;
    ZlibSolidDecompressor decompressor{DebugLog()};
    SolidBlock out;
    const int result =
        static_cast<int>(decompressor.decompress(data, static_cast<std::int64_t>(input.size()), out));
    require(result == 0 || result == -11 || (result <= -21 && result >= -29));
    require((result == 0) == (out.data != nullptr) && out.size >= 0);
    // Every byte of the output must be there.
    static volatile unsigned char sink;
    std::for_each_n(out.data.get(), out.size, [](unsigned char byte) { sink = byte; });
    return isKnown && result == 0;
}
