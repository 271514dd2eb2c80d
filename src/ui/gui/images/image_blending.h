#pragma once

#include <cstdint>
#include <optional>

#include "ui/gui/images/image.h"

// The colour below a picture, 0x00BBGGRR: the element's own, else the page's, else black. An element's colour
// of -1 is none.
std::uint32_t colourBelow(std::int32_t elementColour, std::optional<std::uint32_t> pageColour);

// The picture without its alpha channel, drawn over a colour, 0x00BBGGRR. Unchanged if it has none.
Image blendOver(const Image& image, std::uint32_t colour);
