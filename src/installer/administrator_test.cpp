#include "installer/administrator_test.h"

#include <memory>

#include "platform/file_system.h"

namespace {

constexpr char kProbeStem[] = "\\test$$$1234ajgtr";
constexpr char kProbeExtension[] = ".tmp";
constexpr int kMostProbes = 100;

// The first name without a number. One that is taken is left to whoever has it.
bool canCreateProbe(platform::FileSystem& files, const std::string& directory) {
    platform::OpenOptions options;
    options.access = platform::kWrite;
    options.disposition = platform::Disposition::kCreateNew;
    for (int number = 0; number < kMostProbes; ++number) {
        const std::string path =
            directory + kProbeStem + (number == 0 ? "" : std::to_string(number)) + kProbeExtension;
        std::unique_ptr<platform::File> probe;
        if (files.open(path, options, probe) == 0) {
            probe.reset();
            files.removeFile(path);
            return true;
        }
        if (!files.exists(path)) {
            return false;
        }
    }
    return false;
}

}  // namespace

bool hasAdministrativePrivileges(platform::FileSystem& files, const std::vector<std::string>& directories) {
    for (const std::string& directory : directories) {
        if (canCreateProbe(files, directory)) {
            return true;
        }
    }
    return false;
}
