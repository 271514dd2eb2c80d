#pragma once

#include <cstdint>
#include <functional>

// How far work on a number of bytes is: `done` of `total`, never less than at the call before. Called often
// enough for a display, on the thread that works. An empty one asks for nothing.
using ByteProgress = std::function<void(std::int64_t done, std::int64_t total)>;
