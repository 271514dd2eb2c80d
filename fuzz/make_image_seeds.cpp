#include <filesystem>
#include <fstream>
#include <string>

#include "ui/gui/images/jpeg_writer.h"
#include "ui/gui/images/png_writer.h"

// make_image_seeds DIRECTORY: writes the seeds of the targets for pictures below it, the same bytes each
// time.
namespace {

using std::string_literals::operator""s;

class SeedWriter {
public:
    SeedWriter(const std::filesystem::path& seeds, const std::string& target) : directory_(seeds / target) {
        std::filesystem::create_directories(directory_);
    }

    void write(const std::string& name, const std::string& bytes) const {
        std::ofstream(directory_ / name, std::ios::binary) << bytes;
    }

private:
    std::filesystem::path directory_;
};

void writePngSeeds(const SeedWriter& seeds) {
    const std::string palette = PngWriter::chunk("PLTE", "rgbRGB");
    const std::string whole = PngWriter::file({.width = 2, .height = 2}, "\0abcdef\0ghijkl"s);
    seeds.write("good-colours", whole);
    seeds.write("good-alpha", PngWriter::file({.width = 1, .height = 2, .colourType = 6}, "\0rgba\2RGBA"s));
    seeds.write("good-gray", PngWriter::file({.width = 3, .height = 1, .colourType = 0}, "\1abc"s));
    seeds.write("good-gray-2-bits",
                PngWriter::file({.width = 4, .height = 1, .depth = 2, .colourType = 0}, "\0\x1B"s));
    seeds.write("good-16-bits", PngWriter::file({.width = 1, .height = 1, .depth = 16}, "\0aabbcc"s));
    seeds.write("good-palette", PngWriter::file({.width = 2, .height = 1, .depth = 1, .colourType = 3},
                                                "\0\x40"s, palette + PngWriter::chunk("tRNS", "\x09"s)));
    seeds.write("good-interlaced",
                PngWriter::file({.width = 2, .height = 2, .colourType = 0, .interlace = 1}, "\0a\0b\0cd"s));
    seeds.write("good-text", PngWriter::file({.width = 1, .height = 1, .colourType = 0}, "\0a"s,
                                             PngWriter::chunk("tEXt", "a\0b"s)));
    seeds.write("bad-gray-alpha", PngWriter::file({.width = 1, .height = 1, .colourType = 4}, "\0ga"s));
    seeds.write("bad-cut", whole.substr(0, whole.size() - 6));
    seeds.write("bad-signature", "\x89PNG and more");
    seeds.write("bad-large",
                PngWriter::file({.width = 6400, .height = 1, .colourType = 0}, std::string(6401, '\0')));
    seeds.write("bad-empty", "");
}

void writeJpegSeeds(const SeedWriter& seeds) {
    const std::string whole = JpegWriter::file({.width = 9, .height = 5}, {200, 100, 50});
    seeds.write("good-colours", whole);
    seeds.write("good-gray", JpegWriter::file({.components = 1}, {77}));
    seeds.write("good-inks", JpegWriter::file({.components = 4, .adobeMarker = false}, {255, 0, 0, 128}));
    seeds.write("good-inks-adobe", JpegWriter::file({.components = 4}, {0, 255, 255, 127}));
    seeds.write("good-progressive", JpegWriter::file({.progressive = true}, {200, 100, 50}));
    seeds.write("good-arithmetic", JpegWriter::file({.arithmetic = true}, {200, 100, 50}));
    seeds.write("bad-two-components", JpegWriter::file({.components = 2}, {1, 2}));
    seeds.write("bad-large", JpegWriter::withSize(whole, 6400, 8));
    seeds.write("bad-cut", whole.substr(0, 100));
    seeds.write("bad-empty", "");
    const std::string gray = JpegWriter::file({.components = 1, .progressive = true}, {77});
    seeds.write("bad-scans", JpegWriter::withScansRepeated(gray, 120));
}

void writeRawSeeds(const SeedWriter& seeds) {
    seeds.write("good-pixels", "\2\0\0\0\2\0\0\0RGBAabcd....wxyz"s);
    seeds.write("good-longer", "\1\0\0\0\1\0\0\0RGBAmore"s);
    seeds.write("bad-cut", "\2\0\0\0\2\0\0\0RGBAabcd....wxy"s);
    seeds.write("bad-large", "\0\x19\0\0\1\0\0\0"s + std::string(25600, 'x'));
    seeds.write("bad-overflow", "\0\0\0\x80\2\0\0\0RGBA"s);
    seeds.write("bad-few", "abc");
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        return 2;
    }
    writePngSeeds({arguments[1], "png_image_fuzz"});
    writeJpegSeeds({arguments[1], "jpeg_image_fuzz"});
    writeRawSeeds({arguments[1], "raw_image_fuzz"});
}
