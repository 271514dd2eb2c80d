#include "ui/gui/images/image_loader.h"

#include <cstdint>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

#include "ui/gui/images/jpeg_decoder.h"
#include "ui/gui/images/png_decoder.h"
#include "ui/gui/images/raw_image.h"

namespace {

constexpr int kErrorLevel = 4;

class ImageBuilder : public ImageReceiver {
public:
    void setSize(int width, int height) override {
        width_ = width;
        height_ = height;
    }
    void begin(bool hasAlpha) override { image = Image(width_, height_, hasAlpha); }
    void putRow(int y, const std::uint8_t* pixels) override {
        if (!image.hasAlpha()) {
            std::memcpy(image.rgbRow(y), pixels, static_cast<std::size_t>(width_) * 3);
            return;
        }
        std::uint8_t* rgb = image.rgbRow(y);
        std::uint8_t* alpha = image.alphaRow(y);
        for (int x = 0; x < width_; ++x, pixels += 4) {
            *rgb++ = pixels[0];
            *rgb++ = pixels[1];
            *rgb++ = pixels[2];
            *alpha++ = pixels[3];
        }
    }

    Image image;

private:
    int width_ = 0;
    int height_ = 0;
};

bool beginsWith(const std::uint8_t* data, std::size_t size, std::string_view start) {
    return size >= start.size() && std::memcmp(data, start.data(), start.size()) == 0;
}

}  // namespace

ImageLoader::ImageLoader(DebugLog debugLog) : debugLog_(debugLog) {}

// A picture is an ornament: too little memory for one must not end the work.
Image ImageLoader::loadImage(const void* data, std::size_t size) const try {
    if (data == nullptr || size == 0) {
        return {};
    }
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    DecodedImage found;
    ImageBuilder builder;
    ImageResult result = ImageResult::kBroken;
    if (beginsWith(bytes, size, "\x89PNG")) {
        result = LoadPNGArray(found, data, size, builder);
    } else if (beginsWith(bytes, size, "\xFF\xD8")) {
        result = LoadJPGArray(found, data, size, builder);
    } else {
        return RawImage::decode(bytes, size);
    }
    return result == ImageResult::kLoaded ? std::move(builder.image) : Image();
} catch (const std::bad_alloc&) {
    debugLog_.line("There isn't enough memory for a picture");
    return {};
}

ImageResult ImageLoader::LoadPNGArray(DecodedImage& out, const void* data, std::size_t size,
                                      ImageReceiver& receiver) const {
    if (isMissing("ImageLoader::LoadPNGArray", "Can't read NULL PNG data", data, size)) {
        return ImageResult::kNoData;
    }
    return decodePng(out, static_cast<const std::uint8_t*>(data), size, receiver, debugLog_);
}

ImageResult ImageLoader::LoadJPGArray(DecodedImage& out, const void* data, std::size_t size,
                                      ImageReceiver& receiver) const {
    if (isMissing("ImageLoader::LoadJPGArray", "Can't read NULL JPEG data", data, size)) {
        return ImageResult::kNoData;
    }
    return decodeJpeg(out, static_cast<const std::uint8_t*>(data), size, receiver, debugLog_);
}

bool ImageLoader::isMissing(const char* place, const char* message, const void* data,
                            std::size_t size) const {
    if (data != nullptr && size != 0) {
        return false;
    }
    debugLog_.print("%s, level %d: %s", place, kErrorLevel, message);
    return true;
}
