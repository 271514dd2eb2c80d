#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "support/debug_log.h"
#include "ui/gui/images/image_loader.h"
#include "ui/gui/images/image_scaling.h"
#include "ui/gui/images/slide_choice.h"

class InstallExchangeInfo;
namespace platform {
class FileSystem;
}

// The pictures of a package in the size of the screen. A package may hold a picture in larger forms: NAME@2x
// and NAME@3x are NAME with two and three times the pixels. Where a picture has to grow, it is made from its
// largest form.
class PagePictures {
public:
    // `engine` and `files` outlive this object. `random` chooses slides.
    PagePictures(InstallExchangeInfo& engine, platform::FileSystem& files, SlideChoice::RandomNumbers random,
                 DebugLog debugLog);

    // How much larger pictures are than in the description: `fontScale` times the pixels of a unit of length.
    void setScale(double fontScale, double pixelDensity);
    double pixelDensity() const { return pixelDensity_; }
    double scale() const { return fontScale_ * pixelDensity_; }

    // The picture for the screen, in pixels. `bounds` are those of its element, in the toolkit's units; a
    // side below 1 is no bound. Empty when the package has no such picture, or one that can't be read.
    Image picture(std::string_view resource, ImageSize bounds);
    // In exactly this size.
    Image icon(std::string_view resource, ImageSize size);
    // The size of the picture as the description sees it; 0 by 0 without a picture.
    ImageSize describedSize(std::string_view resource);
    // The icon of the frame, as it is; empty when there is none. An uninstallation has no package, and its
    // icon is a file of the product.
    Image applicationIcon();
    // The resource of the next slide; see SlideChoice.
    std::optional<std::string> nextSlide(std::string_view name, std::int32_t count);

private:
    struct Form {
        Image image;
        int factor = 1;  // of its size to the described one
    };

    Image load(const std::string& resource);
    Image loadFile(const char* alias);
    Form smallest(std::string_view resource);
    Form largest(std::string_view resource, Form smallest);

    InstallExchangeInfo& engine_;
    platform::FileSystem& files_;
    DebugLog debugLog_;
    ImageLoader loader_;
    ImageScaling scaling_;
    SlideChoice slides_;
    double fontScale_ = 1.0;
    double pixelDensity_ = 1.0;
};
