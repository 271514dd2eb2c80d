#pragma once

#include <cstdint>
#include <vector>

// Pictures of 2 by 2 points go through encoder and decoder of libpng and libjpeg. Each result is width x
// height x 3 bytes, or empty after a failure.
constexpr int kPictureSize = 2;
std::vector<std::uint8_t> throughPng(const std::vector<std::uint8_t>& rgb);
std::vector<std::uint8_t> throughJpeg(const std::vector<std::uint8_t>& rgb);
