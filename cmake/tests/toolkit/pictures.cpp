#include "pictures.h"

// jpeglib.h uses types of stdio without including it.
#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>
#include <png.h>

std::vector<std::uint8_t> throughPng(const std::vector<std::uint8_t>& rgb) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = kPictureSize;
    image.height = kPictureSize;
    image.format = PNG_FORMAT_RGB;
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
    std::vector<std::uint8_t> file(size);
    if (png_image_write_to_memory(&image, file.data(), &size, 0, rgb.data(), 0, nullptr) == 0) {
        return {};
    }
    png_image read{};
    read.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&read, file.data(), size) == 0) {
        return {};
    }
    read.format = PNG_FORMAT_RGB;
    std::vector<std::uint8_t> result(PNG_IMAGE_SIZE(read));
    return png_image_finish_read(&read, nullptr, result.data(), 0, nullptr) != 0
               ? result
               : std::vector<std::uint8_t>();
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
