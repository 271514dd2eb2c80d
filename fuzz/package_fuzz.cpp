#include <cstdint>
#include <string>
#include <vector>

#include "fakes/fake_environment.h"
#include "fakes/memory_file_system.h"
#include "package/package_checksum.h"
#include "package/solid_format.h"
#include "packager/commands.h"

// A whole package, with or without an image before it, as the tools and the installer read it.
namespace {

class SilentOutput : public PackagerOutput {
public:
    void print(std::string_view) override {}
    void warn(std::string_view) override {}
    void progress(std::string_view, int) override {}
    bool finish() override { return true; }
};

// Whether a record anywhere asks for so much memory that the fuzzer's own limit would end the run.
bool asksForTooMuch(const std::string& input) {
    const std::size_t start = input.find("SolidHD");
    for (std::size_t i = start; i != std::string::npos && i + 36 <= input.size() && i < start + 20 + 16 * 256;
         i += 16) {
        const auto* record = reinterpret_cast<const unsigned char*>(input.data()) + i + 20;
        if (SolidChunk::decode(record).uncompressedSize > 0x4000000) {
            return true;
        }
    }
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    if (asksForTooMuch(input)) {
        return 0;
    }
    MemoryFileSystem files;
    FakeEnvironment environment;
    files.addFile("/p", input);
    SilentOutput output;
    verifyInstallerChecksum("/p", files);
    runPackager({"list", "/p"}, output, files, environment);
    runPackager({"verify", "/p"}, output, files, environment);
    return 0;
}
