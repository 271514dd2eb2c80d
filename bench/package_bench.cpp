// Measures single operations on a package, for bench/run:
//
//   package_bench checksum PACKAGE        the checksum test, once
//   package_bench inflate PACKAGE RUNS    prints the median ratio to a bare loop, and both median seconds
//   package_bench sizes PACKAGE           prints the size of the inflated cabinet in bytes

#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "package/little_endian.h"
#include "package/package_checksum.h"
#include "package/solid_decompressor.h"
#include "support/utilities.h"

namespace {

struct Chunk {
    std::uint32_t outputOffset;
    std::uint32_t outputSize;
    std::uint32_t inputOffset;
    std::uint32_t inputSize;
};

std::uint32_t wordAt(const std::string& data, std::size_t offset) {
    return LittleEndian::readUnsigned(reinterpret_cast<const unsigned char*>(data.data()) + offset);
}

// The solid stream of a package: found by its first bytes.
std::string solidStreamOf(const char* package) {
    std::string data;
    if (OUtils::readWholeFile(package, data, platform::systemFileSystem()) != 0) {
        std::fprintf(stderr, "can't read %s\n", package);
        std::exit(1);
    }
    // The image may hold the same word as a constant; the stream is where the lead block ends.
    for (std::size_t at = data.find("SolidHD"); at != std::string::npos; at = data.find("SolidHD", at + 1)) {
        if (at >= 64 && wordAt(data, at - 64) == 0x63276327 && wordAt(data, at + 8) == 100) {
            return data.substr(at);
        }
    }
    std::fprintf(stderr, "%s holds no solid stream\n", package);
    std::exit(1);
}

std::vector<Chunk> chunksOf(const std::string& stream) {
    std::vector<Chunk> chunks;
    for (std::uint32_t i = 0; i < wordAt(stream, 16); ++i) {
        const std::size_t at = 20 + i * 16;
        chunks.push_back(
            {wordAt(stream, at), wordAt(stream, at + 4), wordAt(stream, at + 8), wordAt(stream, at + 12)});
    }
    return chunks;
}

double secondsOf(const std::chrono::steady_clock::time_point& begin) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double bareLoop(const std::string& stream, const std::vector<Chunk>& chunks, std::size_t total) {
    const auto begin = std::chrono::steady_clock::now();
    const std::unique_ptr<unsigned char[]> output(new unsigned char[total]);
    for (const Chunk& chunk : chunks) {
        uLongf size = chunk.outputSize;
        const auto* input = reinterpret_cast<const Bytef*>(stream.data()) + chunk.inputOffset;
        if (uncompress(output.get() + chunk.outputOffset, &size, input, chunk.inputSize) != Z_OK) {
            std::exit(1);
        }
    }
    return secondsOf(begin);
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double ourExpansion(const std::string& stream) {
    const auto* data = reinterpret_cast<const unsigned char*>(stream.data());
    const auto begin = std::chrono::steady_clock::now();
    const std::unique_ptr<SolidDecompressor> decompressor = createSolidDecompressor(data, DebugLog());
    SolidBlock output;
    if (decompressor->decompress(data, static_cast<std::int64_t>(stream.size()), output) !=
        SolidResult::kDone) {
        std::exit(1);
    }
    return secondsOf(begin);
}

void measureInflating(const std::string& stream, std::size_t total, int runs) {
    const std::vector<Chunk> chunks = chunksOf(stream);
    std::vector<double> ratios;
    std::vector<double> ours;
    std::vector<double> bare;
    for (int i = 0; i <= runs; ++i) {
        const double a = ourExpansion(stream);
        const double b = bareLoop(stream, chunks, total);
        if (i > 0) {  // the first pair warms up
            ratios.push_back(a / b);
            ours.push_back(a);
            bare.push_back(b);
        }
    }
    std::printf("%f %f %f\n", median(ratios), median(ours), median(bare));
}

}  // namespace

int main(int argc, char** argv) {
    const std::string_view what = argc > 2 ? argv[1] : "";
    if (what == "checksum") {
        return verifyInstallerChecksum(argv[2], platform::systemFileSystem()) ? 0 : 1;
    }
    if (what != "inflate" && what != "sizes") {
        std::fprintf(stderr, "usage: package_bench checksum|inflate|sizes PACKAGE [RUNS]\n");
        return 2;
    }
    const std::string stream = solidStreamOf(argv[2]);
    std::size_t total = 0;
    for (const Chunk& chunk : chunksOf(stream)) {
        total += chunk.outputSize;
    }
    if (what == "sizes") {
        std::printf("%zu\n", total);
        return 0;
    }
    measureInflating(stream, total, argc > 3 ? std::atoi(argv[3]) : 5);
    return 0;
}
