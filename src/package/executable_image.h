#pragma once

#include <cstdint>
#include <string_view>

// Computes from the headers of a program's image where it ends in the file. For Windows images (PE) and Linux
// images (ELF) of 32 and 64 bits, little-endian.

enum class ImageKind { kNone, kElf, kPe };

enum class ImageProblem {
    kNone,
    kNotExecutable,  // neither ELF nor PE, or headers that contradict themselves
    kCut,            // the file ends before the image does
    kDataAfter,      // something follows the image: a package, or a signature
};

struct ExecutableImage {
    ImageKind kind = ImageKind::kNone;
    std::uint64_t end = 0;  // in bytes from the start of the file, as far as the headers could be read
    ImageProblem problem = ImageProblem::kNotExecutable;
};

// `content` is the whole file, or its beginning with all headers; `fileSize` is the size of the whole file.
// An image whose headers are not within `content` counts as cut.
ExecutableImage measureExecutableImage(std::string_view content, std::uint64_t fileSize);
inline ExecutableImage measureExecutableImage(std::string_view content) {
    return measureExecutableImage(content, content.size());
}
