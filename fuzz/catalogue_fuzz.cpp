#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "fuzz_target.h"
#include "package/cabinet.h"
#include "package_bytes.h"
#include "packager/commands.h"
#include "platform/memory/memory_environment.h"
#include "platform/memory/memory_file_system.h"
#include "platform/memory/memory_processes.h"

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

// Whether there was anything to read.
bool readAll(MemoryFileSystem& files, const char* path) {
    Cabinet cabinet(files, DebugLog());
    cabinet.load(path, 0);
    for (std::int32_t i = 0; i < cabinet.getCount(); ++i) {
        const std::optional<std::string_view> content = cabinet.entryContent(i);
        const std::optional<CabinetFile> file = cabinet.readEntry(i);
        require(file.has_value() == content.has_value());
        require(!file || file->content.size() == static_cast<std::int32_t>(content->size()));
        require(cabinet.findAlias(cabinet.entry(i).alias()).value_or(-1) >= i);
    }
    return cabinet.getCount() > 0;
}

}  // namespace

bool accepts(std::string_view input) {
    MemoryFileSystem files;
    MemoryEnvironment environment;
    MemoryProcesses processes;
    files.addFile("/plain", leadBlock() + std::string(input));
    files.addFile("/solid", leadBlock() + solidStream(input));
    const bool isPlainRead = readAll(files, "/plain");
    const bool isSolidRead = readAll(files, "/solid");
    SilentOutput output;
    const int extracted =
        runPackager({"extract", "/solid", "--to", "/out/here"}, output, files, environment, processes);
    runPackager({"extract", "/solid", "--tree", "--to", "/out/here/tree"}, output, files, environment,
                processes);
    for (const std::string& path : files.allFiles()) {
        require(path == "/plain" || path == "/solid" || path.starts_with("/out/here/"));
    }
    return isPlainRead && isSolidRead && extracted == 0;
}
