#include <zlib.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "fakes/fake_environment.h"
#include "fakes/memory_file_system.h"
#include "package/cabinet.h"
#include "package/package_layout.h"
#include "package/solid_format.h"
#include "packager/commands.h"

// The catalogue of a cabinet, in the plain form and within a valid stream; and the files that are extracted
// from it.
namespace {

class SilentOutput : public PackagerOutput {
public:
    void print(std::string_view) override {}
    void warn(std::string_view) override {}
    void progress(std::string_view, int) override {}
    bool finish() override { return true; }
};

unsigned char* bytesOf(std::string& text) {
    return reinterpret_cast<unsigned char*>(text.data());
}

std::string leadBlock() {
    std::string lead(PackageLayout::kLeadBlockSize, '\0');
    LittleEndian::writeUnsigned(bytesOf(lead) + PackageLayout::kMagic0Offset, PackageLayout::kMagic0);
    LittleEndian::writeUnsigned(bytesOf(lead) + PackageLayout::kMagic1Offset, PackageLayout::kMagic1);
    LittleEndian::writeUnsigned(bytesOf(lead) + PackageLayout::kMagic2Offset, PackageLayout::kMagic2);
    return lead;
}

std::string solidStream(const std::uint8_t* data, std::size_t size) {
    uLongf packedSize = compressBound(static_cast<uLong>(size));
    std::string packed(packedSize, '\0');
    compress2(bytesOf(packed), &packedSize, data, static_cast<uLong>(size), 0);
    packed.resize(packedSize);
    std::string header(SolidFormat::totalHeaderSize(1), '\0');
    header.replace(0, sizeof(SolidFormat::kMagic), SolidFormat::kMagic, sizeof(SolidFormat::kMagic));
    LittleEndian::writeUnsigned(bytesOf(header) + SolidFormat::kFormatIdOffset, SolidFormat::kFormatId);
    LittleEndian::writeUnsigned(bytesOf(header) + SolidFormat::kVersionOffset, SolidFormat::kVersion);
    LittleEndian::writeUnsigned(bytesOf(header) + SolidFormat::kChunkCountOffset, 1);
    const SolidChunk chunk{0, static_cast<std::uint32_t>(size), static_cast<std::int32_t>(header.size()),
                           static_cast<std::uint32_t>(packedSize)};
    chunk.encode(bytesOf(header) + SolidFormat::kHeaderSize);
    return header + packed;
}

void readAll(MemoryFileSystem& files, const char* path) {
    Cabinet cabinet(files, DebugLog());
    cabinet.load(path, 0);
    for (std::int32_t i = 0; i < cabinet.getCount(); ++i) {
        const std::optional<std::string_view> content = cabinet.entryContent(i);
        const std::optional<CabinetFile> file = cabinet.readEntry(i);
        if (file.has_value() != content.has_value() ||
            (file && file->content.size() != static_cast<std::int32_t>(content->size()))) {
            std::abort();
        }
        if (cabinet.findAlias(cabinet.entry(i).alias()).value_or(-1) < i) {
            std::abort();
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MemoryFileSystem files;
    FakeEnvironment environment;
    files.addFile("/plain", leadBlock() + std::string(reinterpret_cast<const char*>(data), size));
    files.addFile("/solid", leadBlock() + solidStream(data, size));
    readAll(files, "/plain");
    readAll(files, "/solid");
    SilentOutput output;
    runPackager({"extract", "/solid", "--to", "/out/here"}, output, files, environment);
    for (const std::string& path : files.allFiles()) {
        if (path != "/plain" && path != "/solid" && !path.starts_with("/out/here/")) {
            std::abort();
        }
    }
    return 0;
}
