#pragma once

#include <cstdint>
#include <string_view>

// Bob Jenkins's hashlittle (lookup3) of the bytes, the same on every machine. Not meant to withstand someone
// who looks for collisions.
std::uint32_t hashLittle(std::string_view bytes, std::uint32_t initialValue);
