#include "installer/administrator_test.h"

#include <memory>

#include "platform/file_system.h"

namespace {

constexpr char kProbeName[] = "\\test$$$1234ajgtr.tmp";

bool canCreateProbe(platform::FileSystem& files, const std::string& path) {
    platform::OpenOptions options;
    options.access = platform::kWrite;
    options.disposition = platform::Disposition::kCreateAlways;
    std::unique_ptr<platform::File> probe;
    if (files.open(path, options, probe) != 0) {
        return false;
    }
    probe.reset();
    files.removeFile(path);
    return true;
}

}  // namespace

bool hasAdministrativePrivileges(platform::FileSystem& files, const std::vector<std::string>& directories) {
    for (const std::string& directory : directories) {
        if (canCreateProbe(files, directory + kProbeName)) {
            return true;
        }
    }
    return false;
}
