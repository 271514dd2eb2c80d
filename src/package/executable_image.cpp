#include "package/executable_image.h"

#include <algorithm>

#include "package/little_endian.h"

namespace {

// Reads the headers and checks every access. After a read outside the content all further ones give 0.
class HeaderReader {
public:
    explicit HeaderReader(std::string_view content) : content_(content) {}

    std::uint64_t read(std::uint64_t offset, unsigned size) {
        if (offset > content_.size() || size > content_.size() - offset) {
            isCut_ = true;
        }
        if (isCut_) {
            return 0;
        }
        const auto* bytes = reinterpret_cast<const unsigned char*>(content_.data()) + offset;
        switch (size) {
            case 2:
                return LittleEndian::readUnsigned16(bytes);
            case 4:
                return LittleEndian::readUnsigned(bytes);
            default:
                return LittleEndian::readUnsigned64(bytes);
        }
    }
    bool isCut() const { return isCut_; }

private:
    std::string_view content_;
    bool isCut_ = false;
};

// Finds the largest end. A range that overflows makes the headers invalid.
class EndFinder {
public:
    void add(std::uint64_t offset, std::uint64_t size) {
        if (size > UINT64_MAX - offset) {
            isBroken_ = true;
        } else {
            end_ = std::max(end_, offset + size);
        }
    }
    std::uint64_t end() const { return end_; }
    bool isBroken() const { return isBroken_; }

private:
    std::uint64_t end_ = 0;
    bool isBroken_ = false;
};

// The offsets of the fields of an ELF file, for each size of an address.
struct ElfFields {
    unsigned word;  // the size of an address
    std::uint64_t headerSize, programTable, sectionTable, programEntrySize, programCount, sectionEntrySize,
        sectionCount;
    std::uint64_t segmentOffset, segmentSize;
    std::uint64_t sectionType, sectionOffset, sectionSize;
};

constexpr ElfFields kElf32 = {4, 52, 28, 32, 42, 44, 46, 48, 4, 16, 4, 16, 20};
constexpr ElfFields kElf64 = {8, 64, 32, 40, 54, 56, 58, 60, 8, 32, 4, 24, 32};

constexpr std::uint64_t kSectionWithoutBytes = 8;  // SHT_NOBITS

ExecutableImage measured(ImageKind kind, const HeaderReader& reader, const EndFinder& ends,
                         std::uint64_t fileSize) {
    ExecutableImage image{kind, ends.end(), ImageProblem::kNone};
    if (ends.isBroken()) {
        return {};
    }
    if (reader.isCut() || image.end > fileSize) {
        image.problem = ImageProblem::kCut;
    } else if (image.end < fileSize) {
        image.problem = ImageProblem::kDataAfter;
    }
    return image;
}

// The end of an ELF image is the largest end of its headers, segments and sections. A stripped image may have
// no sections; its segments bound it then.
ExecutableImage measureElf(std::string_view content, std::uint64_t fileSize) {
    constexpr char kClass64 = 2;
    constexpr char kLittleEndian = 1;
    if (content.size() < 20) {
        return {ImageKind::kElf, 0, ImageProblem::kCut};
    }
    if (content[5] != kLittleEndian || content[4] < 1 || content[4] > kClass64) {
        return {};
    }
    const ElfFields& fields = content[4] == kClass64 ? kElf64 : kElf32;
    HeaderReader reader(content);
    EndFinder ends;
    ends.add(0, fields.headerSize);
    const std::uint64_t programs = reader.read(fields.programTable, fields.word);
    const std::uint64_t programSize = reader.read(fields.programEntrySize, 2);
    const std::uint64_t programCount = reader.read(fields.programCount, 2);
    ends.add(programs, programSize * programCount);
    for (std::uint64_t i = 0; i < programCount && !reader.isCut(); ++i) {
        const std::uint64_t segment = programs + i * programSize;
        ends.add(reader.read(segment + fields.segmentOffset, fields.word),
                 reader.read(segment + fields.segmentSize, fields.word));
    }
    const std::uint64_t sections = reader.read(fields.sectionTable, fields.word);
    const std::uint64_t sectionSize = reader.read(fields.sectionEntrySize, 2);
    const std::uint64_t sectionCount = sections == 0 ? 0 : reader.read(fields.sectionCount, 2);
    ends.add(sections, sectionSize * sectionCount);
    for (std::uint64_t i = 0; i < sectionCount && !reader.isCut() && !ends.isBroken(); ++i) {
        const std::uint64_t section = sections + i * sectionSize;
        if (reader.read(section + fields.sectionType, 4) != kSectionWithoutBytes) {
            ends.add(reader.read(section + fields.sectionOffset, fields.word),
                     reader.read(section + fields.sectionSize, fields.word));
        }
    }
    if (programCount == 0 && !reader.isCut()) {
        return {};  // an object file, not a program
    }
    return measured(ImageKind::kElf, reader, ends, fileSize);
}

// The symbols that an unstripped image of the cross compiler has after its sections.
void addPeSymbols(HeaderReader& reader, std::uint64_t coffHeader, EndFinder& ends) {
    constexpr std::uint64_t kSymbolSize = 18;
    const std::uint64_t symbols = reader.read(coffHeader + 8, 4);
    if (symbols == 0) {
        return;
    }
    const std::uint64_t strings = symbols + reader.read(coffHeader + 12, 4) * kSymbolSize;
    ends.add(strings, reader.read(strings, 4));
}

// The end of a PE image is the end of its last section's raw data.
ExecutableImage measurePe(std::string_view content, std::uint64_t fileSize) {
    constexpr std::uint64_t kCoffHeaderSize = 20;
    constexpr std::uint64_t kSectionHeaderSize = 40;
    HeaderReader reader(content);
    const std::uint64_t peHeader = reader.read(0x3C, 4);
    const std::uint64_t signature = reader.read(peHeader, 4);
    if (reader.isCut()) {
        return {ImageKind::kPe, 0, ImageProblem::kCut};
    }
    if (signature != 0x00004550) {
        return {};
    }
    const std::uint64_t coffHeader = peHeader + 4;
    const std::uint64_t optionalSize = reader.read(coffHeader + 16, 2);
    const std::uint64_t optionalHeader = coffHeader + kCoffHeaderSize;
    const std::uint64_t sectionCount = reader.read(coffHeader + 2, 2);
    if (!reader.isCut() && (optionalSize < 64 || sectionCount == 0)) {
        return {};  // an object file, not a program
    }
    EndFinder ends;
    ends.add(0, reader.read(optionalHeader + 60, 4));  // all headers, rounded up to the file alignment
    for (std::uint64_t i = 0; i < sectionCount && !reader.isCut(); ++i) {
        const std::uint64_t section = optionalHeader + optionalSize + i * kSectionHeaderSize;
        ends.add(reader.read(section + 20, 4), reader.read(section + 16, 4));
    }
    addPeSymbols(reader, coffHeader, ends);
    return measured(ImageKind::kPe, reader, ends, fileSize);
}

}  // namespace

ExecutableImage measureExecutableImage(std::string_view content, std::uint64_t fileSize) {
    using namespace std::string_view_literals;
    if (content.starts_with("\177ELF"sv)) {
        return measureElf(content, fileSize);
    }
    if (content.starts_with("MZ"sv)) {
        return measurePe(content, fileSize);
    }
    return {};
}
