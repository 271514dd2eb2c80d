#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

namespace platform {

// The process `id`, the one that started it, the one that started that, as far up as they still run. The
// system keeps a parent's number after the parent has ended and gives it to others: a process that is younger
// than its supposed child is none of the line.
std::vector<std::uint32_t> processLine(DWORD id);

}  // namespace platform
