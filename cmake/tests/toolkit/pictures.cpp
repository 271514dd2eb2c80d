#include "pictures.h"

// jpeglib.h uses types of stdio without including it.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include <jpeglib.h>
#include <png.h>

#include "ui/gui/images/png_writer.h"

namespace {

std::string pngFile(const std::vector<std::uint8_t>& rgb) {
    constexpr std::size_t kRow = std::size_t{kPictureSize} * 3;
    std::string rows;
    for (std::size_t start = 0; start < rgb.size(); start += kRow) {
        rows += '\0';
        rows.append(reinterpret_cast<const char*>(rgb.data()) + start, kRow);
    }
    PngWriter::Header header;
    header.width = kPictureSize;
    header.height = kPictureSize;
    return PngWriter::file(header, rows);
}

void readBytes(png_structp png, png_bytep bytes, std::size_t count) {
    auto& rest = *static_cast<std::string_view*>(png_get_io_ptr(png));
    if (count > rest.size()) {
        png_error(png, "the file ends too soon");
    }
    rest.copy(reinterpret_cast<char*>(bytes), count);
    rest.remove_prefix(count);
}

}  // namespace

std::vector<std::uint8_t> throughPng(const std::vector<std::uint8_t>& rgb) {
    const std::string file = pngFile(rgb);
    std::string_view rest = file;
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_read_fn(png, &rest, readBytes);
    png_read_info(png, info);
    std::vector<std::uint8_t> result;
    std::vector<std::uint8_t> row(png_get_rowbytes(png, info));
    for (png_uint_32 y = 0; y < png_get_image_height(png, info); ++y) {
        png_read_row(png, row.data(), nullptr);
        result.insert(result.end(), row.begin(), row.end());
    }
    png_destroy_read_struct(&png, &info, nullptr);
    return result;
}

namespace {

std::vector<std::uint8_t> decodeJpeg(const unsigned char* file, unsigned long size) {
    jpeg_decompress_struct reader{};
    jpeg_error_mgr errors{};
    reader.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&reader);
    jpeg_mem_src(&reader, file, size);
    jpeg_read_header(&reader, TRUE);
    jpeg_start_decompress(&reader);
    const std::size_t row = std::size_t{reader.output_width} * 3;
    std::vector<std::uint8_t> result(row * reader.output_height);
    while (reader.output_scanline < reader.output_height) {
        JSAMPROW line = result.data() + row * reader.output_scanline;
        jpeg_read_scanlines(&reader, &line, 1);
    }
    jpeg_finish_decompress(&reader);
    jpeg_destroy_decompress(&reader);
    return result;
}

}  // namespace

std::vector<std::uint8_t> throughJpeg(const std::vector<std::uint8_t>& rgb) {
    jpeg_compress_struct writer{};
    jpeg_error_mgr errors{};
    writer.err = jpeg_std_error(&errors);
    jpeg_create_compress(&writer);
    unsigned char* file = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&writer, &file, &size);
    writer.image_width = kPictureSize;
    writer.image_height = kPictureSize;
    writer.input_components = 3;
    writer.in_color_space = JCS_RGB;
    jpeg_set_defaults(&writer);
    jpeg_set_quality(&writer, 100, TRUE);
    jpeg_start_compress(&writer, TRUE);
    std::vector<std::uint8_t> copy = rgb;
    while (writer.next_scanline < writer.image_height) {
        JSAMPROW line = copy.data() + std::size_t{kPictureSize} * 3 * writer.next_scanline;
        jpeg_write_scanlines(&writer, &line, 1);
    }
    jpeg_finish_compress(&writer);
    jpeg_destroy_compress(&writer);
    std::vector<std::uint8_t> result = decodeJpeg(file, size);
    std::free(file);  // NOLINT(cppcoreguidelines-no-malloc): it is the library's
    return result;
}
