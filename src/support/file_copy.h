#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "support/p_stream.h"

namespace platform {
class FileSystem;
}

// Copies from the present position to the end. `Source` has the `read` of a PStream and of a platform::File.
// 0, or the status of the step that failed; the target then has a part.
template <typename Source>
int copyContent(Source& from, PStream& to) {
    constexpr std::uint32_t kBlockSize = 256 * 1024;
    const auto block = std::make_unique_for_overwrite<char[]>(kBlockSize);
    for (;;) {
        std::uint32_t done = 0;
        int status = from.read(block.get(), kBlockSize, done);
        if (status == 0 && done == 0) {
            return 0;
        }
        if (status == 0) {
            status = to.writeText({block.get(), done});
        }
        if (status != 0) {
            return status;
        }
    }
}

// The content of `from`, which may be `to` itself and is no link, with the rights of `rightsOf`, for a file
// at `to`, in one step. 0, the system's error number, or -1 when something else than a file is in the place.
// What is there stays after a failure.
int copyWithRights(platform::FileSystem& files, const std::string& from, const std::string& rightsOf,
                   const std::string& to);
