#include "packager/image_kind.h"

#include "support/utilities.h"

ImageKind kindOfImage(const std::string& path, platform::FileSystem& files) {
    std::string image;
    const bool isRead = !path.empty() && OUtils::readWholeFile(path, image, files) == 0;
    return isRead ? measureExecutableImage(image).kind : ImageKind::kNone;
}
