#include "ui/gui/images/png_decoder.h"

#include <png.h>

#include <cstring>
#include <vector>

#include "ui/gui/images/decode_error.h"
#include "ui/gui/images/image.h"

namespace {

constexpr std::size_t kSignatureSize = 8;
// No stream of PNG's compression gets larger than this when it is expanded.
constexpr std::uint64_t kMaxExpansion = 1032;

struct ByteSource {
    const std::uint8_t* next;
    std::size_t left;
};

void onError(png_structp /*png*/, png_const_charp reason) {
    throw DecodeError{reason};
}

// A damaged file can have thousands.
void onWarning(png_structp /*png*/, png_const_charp /*text*/) {}

void readBytes(png_structp png, png_bytep outBytes, std::size_t count) {
    auto* source = static_cast<ByteSource*>(png_get_io_ptr(png));
    if (count > source->left) {
        png_error(png, "the file ends too soon");
    }
    std::memcpy(outBytes, source->next, count);
    source->next += count;
    source->left -= count;
}

// The library's two objects.
class PngObjects {
public:
    PngObjects() : png(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, onError, onWarning)) {
        info = png != nullptr ? png_create_info_struct(png) : nullptr;
    }
    ~PngObjects() { png_destroy_read_struct(&png, &info, nullptr); }
    PngObjects(const PngObjects&) = delete;
    PngObjects& operator=(const PngObjects&) = delete;

    bool areMade() const { return info != nullptr; }

    png_structp png = nullptr;
    png_infop info = nullptr;
};

class PngDecoding {
public:
    PngDecoding(DecodedImage& out, ByteSource afterSignature, ImageReceiver& receiver)
        : out_(out), source_(afterSignature), receiver_(receiver) {}

    ImageResult run();

private:
    void readHeader();
    void checkThatDataCanHoldThePixels() const;
    bool hasUsableChannels();
    void readRowByRow();
    void readInterlaced();
    // A row as the library gives it, gray made colours.
    void putRow(int y, const std::uint8_t* row);

    DecodedImage& out_;
    ByteSource source_;
    ImageReceiver& receiver_;
    PngObjects objects_;
    std::vector<std::uint8_t> colours_;
};

ImageResult PngDecoding::run() {
    if (!objects_.areMade()) {
        return ImageResult::kBroken;
    }
    readHeader();
    checkThatDataCanHoldThePixels();
    png_set_packing(objects_.png);
    png_set_expand(objects_.png);
    png_set_strip_16(objects_.png);
    const int passes = png_set_interlace_handling(objects_.png);
    png_read_update_info(objects_.png, objects_.info);
    if (!hasUsableChannels()) {
        return ImageResult::kUnusableChannels;
    }
    receiver_.setSize(out_.width, out_.height);
    receiver_.begin(out_.channels == 4);
    if (passes == 1) {
        readRowByRow();
    } else {
        readInterlaced();
    }
    png_read_end(objects_.png, nullptr);
    return ImageResult::kLoaded;
}

void PngDecoding::readHeader() {
    png_set_read_fn(objects_.png, &source_, readBytes);
    png_set_sig_bytes(objects_.png, kSignatureSize);
    png_set_user_limits(objects_.png, kMaxImageSide, kMaxImageSide);
    // A negative count means all chunks that aren't needed for the pixels: profiles and texts are skipped,
    // not expanded.
    png_set_keep_unknown_chunks(objects_.png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
    png_read_info(objects_.png, objects_.info);
    out_.width = static_cast<int>(png_get_image_width(objects_.png, objects_.info));
    out_.height = static_cast<int>(png_get_image_height(objects_.png, objects_.info));
}

// So a few bytes with a large size in their header don't cost the memory of a large picture.
void PngDecoding::checkThatDataCanHoldThePixels() const {
    const std::uint64_t rowSize = png_get_rowbytes(objects_.png, objects_.info);
    if (rowSize * static_cast<std::uint64_t>(out_.height) / kMaxExpansion > source_.left) {
        png_error(objects_.png, "the file is too short for its size");
    }
}

bool PngDecoding::hasUsableChannels() {
    switch (png_get_color_type(objects_.png, objects_.info)) {
        case PNG_COLOR_TYPE_GRAY:
            out_.channels = 1;
            return true;
        case PNG_COLOR_TYPE_RGB:
            out_.channels = 3;
            return true;
        case PNG_COLOR_TYPE_RGB_ALPHA:
            out_.channels = 4;
            return true;
        default:
            return false;
    }
}

void PngDecoding::readRowByRow() {
    std::vector<std::uint8_t> row(png_get_rowbytes(objects_.png, objects_.info));
    for (int y = 0; y < out_.height; ++y) {
        png_read_row(objects_.png, row.data(), nullptr);
        putRow(y, row.data());
    }
}

// Only the last pass completes the first row.
void PngDecoding::readInterlaced() {
    const std::size_t rowSize = png_get_rowbytes(objects_.png, objects_.info);
    std::vector<std::uint8_t> pixels(rowSize * static_cast<std::size_t>(out_.height));
    std::vector<png_bytep> rows;
    rows.reserve(static_cast<std::size_t>(out_.height));
    for (int y = 0; y < out_.height; ++y) {
        rows.push_back(pixels.data() + rowSize * static_cast<std::size_t>(y));
    }
    png_read_image(objects_.png, rows.data());
    for (int y = 0; y < out_.height; ++y) {
        putRow(y, rows[static_cast<std::size_t>(y)]);
    }
}

void PngDecoding::putRow(int y, const std::uint8_t* row) {
    if (out_.channels != 1) {
        receiver_.putRow(y, row);
        return;
    }
    colours_.resize(static_cast<std::size_t>(out_.width) * 3);
    for (std::size_t i = 0; i < colours_.size(); ++i) {
        colours_[i] = row[i / 3];
    }
    receiver_.putRow(y, colours_.data());
}

}  // namespace

ImageResult decodePng(DecodedImage& out, const std::uint8_t* data, std::size_t size, ImageReceiver& receiver,
                      const DebugLog& debugLog) {
    if (size < kSignatureSize || png_sig_cmp(data, 0, kSignatureSize) != 0) {
        return ImageResult::kNotThisKind;
    }
    try {
        return PngDecoding(out, {data + kSignatureSize, size - kSignatureSize}, receiver).run();
    } catch (const DecodeError& error) {
        debugLog.line("A PNG picture can't be read: " + error.reason);
        return ImageResult::kBroken;
    }
}
