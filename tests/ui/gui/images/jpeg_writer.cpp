#include "ui/gui/images/jpeg_writer.h"

#include <jpeglib.h>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr char kStartOfScan = '\xDA';
constexpr std::size_t kEndMarkerSize = 2;

void setColours(jpeg_compress_struct& encoder, const JpegWriter::Options& options) {
    constexpr std::array<J_COLOR_SPACE, 5> kSpaces{JCS_UNKNOWN, JCS_GRAYSCALE, JCS_UNKNOWN, JCS_RGB,
                                                   JCS_CMYK};
    encoder.input_components = options.components;
    encoder.in_color_space = kSpaces[static_cast<std::size_t>(options.components)];
    jpeg_set_defaults(&encoder);
    if (options.components == 4 && !options.adobeMarker) {
        encoder.write_Adobe_marker = FALSE;
    }
}

void writeRows(jpeg_compress_struct& encoder, const JpegWriter::Options& options,
               const std::array<std::uint8_t, 4>& pixel) {
    std::vector<std::uint8_t> row;
    for (int x = 0; x < options.width; ++x) {
        row.insert(row.end(), pixel.begin(), pixel.begin() + options.components);
    }
    for (int y = 0; y < options.height; ++y) {
        JSAMPROW rows[] = {row.data()};
        jpeg_write_scanlines(&encoder, rows, 1);
    }
}

// Where a header of the frame has its height, in any of the forms of a frame.
std::size_t sizeOffset(const std::string& file) {
    for (std::size_t marker = 2; marker + 4 <= file.size();) {
        const auto type = static_cast<std::uint8_t>(file[marker + 1]);
        if (type >= 0xC0 && type <= 0xC2) {
            return marker + 5;
        }
        marker += 2 + static_cast<std::uint8_t>(file[marker + 2]) * 256U +
                  static_cast<std::uint8_t>(file[marker + 3]);
    }
    std::abort();
}

}  // namespace

std::string JpegWriter::file(const Options& options, const std::array<std::uint8_t, 4>& pixel) {
    jpeg_compress_struct encoder{};
    jpeg_error_mgr errors{};
    encoder.err = jpeg_std_error(&errors);
    jpeg_create_compress(&encoder);
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&encoder, &bytes, &size);
    encoder.image_width = static_cast<JDIMENSION>(options.width);
    encoder.image_height = static_cast<JDIMENSION>(options.height);
    setColours(encoder, options);
    jpeg_set_quality(&encoder, 100, TRUE);
    encoder.arith_code = options.arithmetic ? TRUE : FALSE;
    if (options.progressive) {
        jpeg_simple_progression(&encoder);
    }
    jpeg_start_compress(&encoder, TRUE);
    writeRows(encoder, options, pixel);
    jpeg_finish_compress(&encoder);
    jpeg_destroy_compress(&encoder);
    std::string file(reinterpret_cast<char*>(bytes), size);
    std::free(bytes);
    return file;
}

std::string JpegWriter::withSize(std::string file, int width, int height) {
    std::size_t offset = sizeOffset(file);
    for (const int side : {height, width}) {
        file[offset++] = static_cast<char>(side / 256);
        file[offset++] = static_cast<char>(side % 256);
    }
    return file;
}

std::string JpegWriter::withScansRepeated(const std::string& file, int count) {
    const std::size_t start = file.rfind(std::string("\xFF") + kStartOfScan);
    const std::string scan = file.substr(start, file.size() - kEndMarkerSize - start);
    std::string longer = file.substr(0, file.size() - kEndMarkerSize);
    for (int i = 0; i < count; ++i) {
        longer += scan;
    }
    return longer + file.substr(file.size() - kEndMarkerSize);
}
