#include "ui/gui/page_pictures.h"

#include <algorithm>
#include <utility>

#include "base/fixed_text.h"
#include "base/shared_buffer.h"
#include "contracts/install_exchange_info.h"
#include "platform/file_system.h"
#include "support/utilities.h"

namespace {

constexpr int kLargestFactor = 3;
constexpr char kIcon[] = "AppIcon";
constexpr std::int64_t kMostIconBytes = std::int64_t{16} << 20;

std::string formName(std::string_view resource, int factor) {
    std::string name(resource);
    if (factor > 1) {
        name += "@" + std::to_string(factor) + "x";
    }
    return name;
}

ImageSize sizeOf(const Image& image, int factor) {
    return image.isEmpty()
               ? ImageSize{}
               : ImageSize{std::max(1, image.width() / factor), std::max(1, image.height() / factor)};
}

int pixels(int length, double density) {
    return std::clamp(static_cast<int>(length * density), 1, kMaxImageSide);
}

}  // namespace

PagePictures::PagePictures(InstallExchangeInfo& engine, platform::FileSystem& files,
                           SlideChoice::RandomNumbers random, DebugLog debugLog)
    : engine_(engine), files_(files), debugLog_(debugLog), loader_(debugLog), slides_(std::move(random)) {}

void PagePictures::setScale(double fontScale, double pixelDensity) {
    fontScale_ = fontScale;
    pixelDensity_ = pixelDensity;
}

Image PagePictures::picture(std::string_view resource, ImageSize bounds) {
    Form form = smallest(resource);
    if (form.image.isEmpty()) {
        return {};
    }
    const ImageSize units = scaledSize(sizeOf(form.image, form.factor), fontScale_, bounds);
    const ImageSize target = {pixels(units.width, pixelDensity_), pixels(units.height, pixelDensity_)};
    if (target.width > form.image.width() || target.height > form.image.height()) {
        form = largest(resource, std::move(form));
    }
    return scaling_.fit(form.image, target);
}

Image PagePictures::icon(std::string_view resource, ImageSize size) {
    Form form = smallest(resource);
    if (form.image.isEmpty()) {
        return {};
    }
    if (size.width > form.image.width() || size.height > form.image.height()) {
        form = largest(resource, std::move(form));
    }
    return scaling_.resample(form.image, size);
}

ImageSize PagePictures::describedSize(std::string_view resource) {
    const Form form = smallest(resource);
    return sizeOf(form.image, form.factor);
}

Image PagePictures::applicationIcon() {
    Image icon = engine_.isUninstalling() ? loadFile(kIcon) : load(kIcon);
    if (icon.isEmpty()) {
        debugLog_.line("No icon data");
    }
    return icon;
}

// The result of getFilePathByAlias says nothing.
Image PagePictures::loadFile(const char* alias) {
    PathText path;
    engine_.getFilePathByAlias(alias, path.data(), static_cast<int>(PathText::capacity()));
    SharedBuffer content;
    if (path.isEmpty() || files_.fileSize(path.view()) > kMostIconBytes ||
        OUtils::readWholeFile(path.view(), content, files_) != 0) {
        return {};
    }
    return loader_.loadImage(content.data(), static_cast<std::size_t>(content.size()));
}

std::optional<std::string> PagePictures::nextSlide(std::string_view name, std::int32_t count) {
    return slides_.next(name, count);
}

Image PagePictures::load(const std::string& resource) {
    SharedBuffer block;
    if (engine_.readAlias(block, resource.c_str(), nullptr) != 0 || block.size() < 1) {
        return {};
    }
    return loader_.loadImage(block.data(), static_cast<std::size_t>(block.size()));
}

PagePictures::Form PagePictures::smallest(std::string_view resource) {
    for (int factor = 1; factor <= kLargestFactor; ++factor) {
        Image image = load(formName(resource, factor));
        if (!image.isEmpty()) {
            return {std::move(image), factor};
        }
    }
    return {};
}

PagePictures::Form PagePictures::largest(std::string_view resource, Form smallest) {
    for (int factor = kLargestFactor; factor > smallest.factor; --factor) {
        Image image = load(formName(resource, factor));
        if (!image.isEmpty()) {
            return {std::move(image), factor};
        }
    }
    return smallest;
}
