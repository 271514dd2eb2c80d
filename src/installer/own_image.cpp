#include "installer/own_image.h"

#include "platform/file_system.h"
#include "support/utilities.h"

namespace {

constexpr char kDirectoryPrefix[] = "ormeluninst-";
constexpr char kName[] = "\\ormelformer.dll";  // a program, despite its name

std::string rootOf(const platform::Volume& volume) {
    const bool endsWithSeparator = volume.name.ends_with('\\') || volume.name.ends_with('/');
    return volume.name.substr(0, volume.name.size() - (endsWithSeparator ? 1 : 0));
}

}  // namespace

// The directory for temporary files may be on another volume, the root never is.
bool OwnImage::stepAside(const std::string& image) {
    std::string temporary;
    platform::Volume volume;
    const bool hasTemporary = files_.temporaryDirectory(temporary);
    const bool hasVolume = files_.findVolume(path_, volume) == 0;
    for (const std::string& parent : {hasTemporary ? temporary : "", hasVolume ? rootOf(volume) : ""}) {
        std::string directory;
        if (parent.empty() || files_.createPrivateDirectory(parent, kDirectoryPrefix, directory) != 0) {
            continue;
        }
        if (moveTo(directory, image)) {
            return true;
        }
        files_.removeDirectory(directory);
    }
    return false;
}

bool OwnImage::moveTo(const std::string& directory, const std::string& image) {
    const std::string place = directory + kName;
    if (files_.moveFile(path_, place) != 0) {
        return false;
    }
    if (!OUtils::copyFile(image, path_, files_)) {
        files_.removeFile(path_);
        files_.moveFile(place, path_);
        return false;
    }
    files_.removeAtRestart(place);
    files_.removeAtRestart(directory);
    return true;
}
