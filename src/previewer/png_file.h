#pragma once

#include <string>

#include "ui/gui/images/image.h"

// The picture as a PNG file of red, green and blue, without its alpha channel. The same picture gives the
// same bytes. Empty for an empty picture, or when there is no memory for it.
std::string pngFileOf(const Image& image);
