#include "ui/gui/images/jpeg_decoder.h"

#include <jpeglib.h>
#include <cstdio>

#include <limits>
#include <vector>

#include "ui/gui/images/decode_error.h"
#include "ui/gui/images/image.h"

namespace {

// A progressive file is gathered in memory, two bytes for each of four channels, and each of its scans goes
// over all of that. Encoders make about ten scans.
constexpr long kMaxWorkMemory = 352L * 1024 * 1024;
constexpr int kMaxScans = 100;
constexpr std::uint64_t kMaxScannedPixels = 1'000'000'000;

void onError(j_common_ptr decompressor) {
    char reason[JMSG_LENGTH_MAX];
    decompressor->err->format_message(decompressor, reason);
    throw DecodeError{reason};
}

// A damaged file can have thousands of warnings.
void onMessage(j_common_ptr /*decompressor*/, int /*level*/) {}

void onProgress(j_common_ptr common) {
    const auto* decompressor = reinterpret_cast<j_decompress_ptr>(common);
    const auto scans = static_cast<std::uint64_t>(decompressor->input_scan_number);
    const std::uint64_t pixels = std::uint64_t{decompressor->image_width} * decompressor->image_height;
    if (scans > kMaxScans || scans * pixels > kMaxScannedPixels) {
        throw DecodeError{"the file has too many scans"};
    }
}

// The library's object with its callbacks.
class Decompressor {
public:
    Decompressor() {
        object.err = jpeg_std_error(&errors_);
        errors_.error_exit = onError;
        errors_.emit_message = onMessage;
        jpeg_create_decompress(&object);
        progress_.progress_monitor = onProgress;
        object.progress = &progress_;
        object.mem->max_memory_to_use = kMaxWorkMemory;
    }
    ~Decompressor() { jpeg_destroy_decompress(&object); }
    Decompressor(const Decompressor&) = delete;
    Decompressor& operator=(const Decompressor&) = delete;

    jpeg_decompress_struct object{};

private:
    jpeg_error_mgr errors_{};
    jpeg_progress_mgr progress_{};
};

class JpegDecoding {
public:
    JpegDecoding(DecodedImage& out, ImageReceiver& receiver) : out_(out), receiver_(receiver) {}

    ImageResult run(const std::uint8_t* data, std::size_t size);

private:
    void readHeader(const std::uint8_t* data, std::size_t size);
    void readRows();
    void convert(const std::uint8_t* row);
    void convertInks(const std::uint8_t* row);

    DecodedImage& out_;
    ImageReceiver& receiver_;
    Decompressor decompressor_;
    std::vector<std::uint8_t> colours_;
};

ImageResult JpegDecoding::run(const std::uint8_t* data, std::size_t size) {
    readHeader(data, size);
    if (out_.channels != 1 && out_.channels != 3 && out_.channels != 4) {
        return ImageResult::kUnusableChannels;
    }
    jpeg_start_decompress(&decompressor_.object);
    receiver_.setSize(out_.width, out_.height);
    receiver_.begin(false);
    readRows();
    jpeg_finish_decompress(&decompressor_.object);
    return ImageResult::kLoaded;
}

void JpegDecoding::readHeader(const std::uint8_t* data, std::size_t size) {
    jpeg_decompress_struct& object = decompressor_.object;
    jpeg_mem_src(&object, data, static_cast<unsigned long>(size));
    jpeg_read_header(&object, TRUE);
    if (!isImageSize(object.image_width, object.image_height)) {
        throw DecodeError{"the picture is too large"};
    }
    // Before jpeg_start_decompress, which reads a progressive file to its end.
    jpeg_calc_output_dimensions(&object);
    out_.width = static_cast<int>(object.image_width);
    out_.height = static_cast<int>(object.image_height);
    out_.channels = object.output_components;
}

void JpegDecoding::readRows() {
    jpeg_decompress_struct& object = decompressor_.object;
    const auto rowSize = object.output_width * static_cast<JDIMENSION>(object.output_components);
    JSAMPARRAY line =
        object.mem->alloc_sarray(reinterpret_cast<j_common_ptr>(&object), JPOOL_IMAGE, rowSize, 1);
    colours_.resize(static_cast<std::size_t>(out_.width) * 3);
    while (object.output_scanline < object.output_height) {
        const int y = static_cast<int>(object.output_scanline);
        jpeg_read_scanlines(&object, line, 1);
        if (out_.channels != 3) {
            convert(line[0]);
        }
        receiver_.putRow(y, out_.channels == 3 ? line[0] : colours_.data());
    }
}

void JpegDecoding::convert(const std::uint8_t* row) {
    if (out_.channels == 4) {
        convertInks(row);
        return;
    }
    for (std::size_t i = 0; i < colours_.size(); ++i) {
        colours_[i] = row[i / 3];
    }
}

// What a file says is ink, but files of Adobe's programs say how much of the paper is left white.
void JpegDecoding::convertInks(const std::uint8_t* row) {
    const unsigned flip = decompressor_.object.saw_Adobe_marker != FALSE ? 0 : 255;
    for (std::size_t i = 0; i < colours_.size(); ++i) {
        const std::uint8_t* inks = row + i / 3 * 4;
        const unsigned colour = inks[i % 3] ^ flip;
        const unsigned light = inks[3] ^ flip;
        colours_[i] = static_cast<std::uint8_t>((colour * light + 127) / 255);
    }
}

}  // namespace

ImageResult decodeJpeg(DecodedImage& out, const std::uint8_t* data, std::size_t size, ImageReceiver& receiver,
                       const DebugLog& debugLog) {
    if (size > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
        return ImageResult::kBroken;
    }
    try {
        return JpegDecoding(out, receiver).run(data, size);
    } catch (const DecodeError& error) {
        debugLog.line("A JPEG picture can't be read: " + error.reason);
        return ImageResult::kBroken;
    }
}
