#include "ui/gui/images/image_placing.h"

#include "description/dialog_model.h"

namespace {

int align(int start, int room, int length, std::int32_t alignment, std::int32_t farSide) {
    if (alignment == kAlignCenter) {
        return start + (room - length) / 2;
    }
    // The last row and column of the rectangle stay free.
    return alignment == farSide ? start + room - length - 1 : start;
}

}  // namespace

ImagePosition placeImage(const ImageFrame& frame, ImageSize picture, std::int32_t horizontalAlign,
                         std::int32_t verticalAlign) {
    if (picture.width >= frame.width || picture.height >= frame.height) {
        return {frame.x, frame.y};
    }
    return {align(frame.x, frame.width, picture.width, horizontalAlign, kAlignRight),
            align(frame.y, frame.height, picture.height, verticalAlign, kAlignBottom)};
}
