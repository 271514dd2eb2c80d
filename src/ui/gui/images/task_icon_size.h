#pragma once

#include <string_view>

#include "ui/gui/images/image_scaling.h"

// The size that the `Details` of a task list give its icons: items key=value separated by `;`, with the keys
// "size" for both sides, "width" and "height"; a later item wins. Other items don't count. A side that isn't
// given, or not as a number, is 0.
ImageSize readTaskIconSize(std::string_view details);

// The size of the icons on the screen: the given one by `fontScale`, with the picture's own for a side that
// is 0 or below. Within the limits of a picture.
ImageSize taskIconSize(ImageSize given, ImageSize picture, double fontScale);
