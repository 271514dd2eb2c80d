#include <string>
#include <string_view>

#include "fuzz_target.h"
#include "package/package_checksum.h"
#include "packager/commands.h"
#include "platform/memory/memory_environment.h"
#include "platform/memory/memory_file_system.h"
#include "platform/memory/memory_processes.h"
#include "solid_stream_memory.h"

// A whole package, with or without an image before it, as the tools and the installer read it.
namespace {

class SilentOutput : public PackagerOutput {
public:
    void print(std::string_view) override {}
    void warn(std::string_view) override {}
    void progress(std::string_view, int) override {}
    bool finish() override { return true; }
};

bool anyStreamAsksForTooMuchMemory(std::string_view package) {
    constexpr std::string_view kMagic = "SolidHD";
    for (std::size_t at = package.find(kMagic); at != std::string_view::npos;
         at = package.find(kMagic, at + 1)) {
        if (asksForTooMuchMemory(package.substr(at))) {
            return true;
        }
    }
    return false;
}

}  // namespace

// Accepted when every check of the tool finds it right, so its content has been expanded.
bool accepts(std::string_view input) {
    if (anyStreamAsksForTooMuchMemory(input)) {
        return false;
    }
    MemoryFileSystem files;
    MemoryEnvironment environment;
    MemoryProcesses processes;
    files.addFile("/p", input);
    SilentOutput output;
    verifyInstallerChecksum("/p", files);
    const int listed = runPackager({"list", "/p"}, output, files, environment, processes);
    const int verified = runPackager({"verify", "/p"}, output, files, environment, processes);
    require(verified != 0 || listed == 0);
    return verified == 0;
}
