#include "ui/gui/images/task_icon_size.h"

#include "base/text_functions.h"

namespace {

void readItem(std::string_view item, ImageSize& size) {
    const std::size_t equals = item.find('=');
    if (equals == std::string_view::npos) {
        return;
    }
    const std::string_view key = OUtils::trimWhiteSpace(item.substr(0, equals));
    const std::string_view value = OUtils::trimWhiteSpace(item.substr(equals + 1));
    if (key == "size" || key == "width") {
        size.width = OUtils::textToInteger(value);
    }
    if (key == "size" || key == "height") {
        size.height = OUtils::textToInteger(value);
    }
}

}  // namespace

ImageSize readTaskIconSize(std::string_view details) {
    ImageSize size;
    while (!details.empty()) {
        const std::string_view item = details.substr(0, details.find(';'));
        readItem(item, size);
        details.remove_prefix(item.size());
        details.remove_prefix(details.empty() ? 0 : 1);
    }
    return size;
}

ImageSize taskIconSize(ImageSize given, ImageSize picture, double fontScale) {
    const ImageSize size{given.width > 0 ? given.width : picture.width,
                         given.height > 0 ? given.height : picture.height};
    return scaledSize(size, fontScale, {});
}
