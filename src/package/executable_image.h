#pragma once

#include <cstdint>
#include <string_view>

// What the headers of a program's image tell about its end in the file. Windows images (PE) and Linux images
// (ELF) of 32 and 64 bits, little-endian.

enum class ImageKind { kNone, kElf, kPe };

enum class ImageProblem {
    kNone,
    kNotExecutable,  // neither ELF nor PE, or headers that contradict themselves
    kCut,            // the file ends before the image does
    kDataBehind,     // something stands behind the image: a package, or a signature
};

struct ExecutableImage {
    ImageKind kind = ImageKind::kNone;
    std::uint64_t end = 0;  // in bytes from the file's start, as far as the headers reach
    ImageProblem problem = ImageProblem::kNotExecutable;
};

// `content` is the whole file, or at least its headers with `fileSize` telling the whole size. Where the
// headers lie outside `content` the image counts as cut.
ExecutableImage measureExecutableImage(std::string_view content, std::uint64_t fileSize);
inline ExecutableImage measureExecutableImage(std::string_view content) {
    return measureExecutableImage(content, content.size());
}
