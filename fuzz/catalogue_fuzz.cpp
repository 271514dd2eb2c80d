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

// The catalogue of a cabinet, in the plain form and within a stream that is right; and what is extracted from
// it.
namespace {

class SilentOutput : public PackagerOutput {
public:
    void print(std::string_view) override {}
    void tell(std::string_view) override {}
    void progress(const char*, int) override {}
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
    Cabinet cabinet(files);
    cabinet.load(path, 0);
    for (std::int32_t i = 0; i < cabinet.getCount(); ++i) {
        const EntryContent content = cabinet.entryContent(i);
        std::int32_t size = 0;
        SharedBuffer buffer;
        const int result = cabinet.readEntry(i, size, buffer, nullptr);
        if ((result == 0) != (content.data != nullptr) ||
            (result == 0 && size != static_cast<std::int32_t>(content.size))) {
            std::abort();
        }
        if (cabinet.findAlias(cabinet.entry(i).alias()) < i) {
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
