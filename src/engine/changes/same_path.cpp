#include "engine/changes/same_path.h"

#include <algorithm>
#include <memory>
#include <string_view>

#include "base/path_functions.h"
#include "platform/file_system.h"
#include "support/utilities.h"

namespace {

constexpr std::string_view kProbeText = "test";

std::string probeIn(const std::string& directory) {
    return directory + (OUtils::isSeparator(directory.back()) ? "" : "\\") + kProbeName;
}

// A new file in a directory, for as long as this object lives.
class Probe {
public:
    Probe(platform::FileSystem& files, std::string path) : files_(files), path_(std::move(path)) {
        platform::OpenOptions options;
        options.access = platform::kWrite;
        options.disposition = platform::Disposition::kCreateNew;  // nothing is overwritten, no link followed
        std::unique_ptr<platform::File> file;
        made_ = files_.open(path_, options, file) == 0;
        written_ = made_ && write(*file);
    }
    ~Probe() { remove(); }
    Probe(const Probe&) = delete;
    Probe& operator=(const Probe&) = delete;

    bool isWritten() const { return written_; }
    void remove() {
        if (made_) {
            files_.removeFile(path_);
            made_ = false;
        }
    }

private:
    static bool write(platform::File& file) {
        std::uint32_t done = 0;
        const int status = file.write(kProbeText.data(), kProbeText.size(), done);
        const int closed = file.close();
        return status == 0 && closed == 0;
    }

    platform::FileSystem& files_;
    std::string path_;
    bool made_ = false;
    bool written_ = false;
};

bool canBeRead(platform::FileSystem& files, const std::string& path) {
    std::unique_ptr<platform::File> file;
    return files.open(path, {}, file) == 0;
}

}  // namespace

void removeAbandonedProbe(platform::FileSystem& files, const std::string& directory) {
    std::string content;
    if (!directory.empty() && files.kindOf(probeIn(directory)) == platform::PathKind::kFile &&
        OUtils::readWholeFile(probeIn(directory), content, files, OUtils::Links::kRefuse) == 0 &&
        kProbeText.starts_with(content)) {
        files.removeFile(probeIn(directory));
    }
}

bool namesSameDirectory(platform::FileSystem& files, const std::vector<std::string>& paths,
                        const std::string& directory) {
    if (directory.empty() || paths.empty()) {
        return false;
    }
    Probe probe(files, probeIn(directory));
    if (!probe.isWritten()) {
        return false;
    }
    std::vector<std::string> hits;
    for (const std::string& path : paths) {
        if (!path.empty() && canBeRead(files, probeIn(path))) {
            hits.push_back(probeIn(path));
        }
    }
    // A file of that name that isn't the probe outlives it.
    probe.remove();
    return std::ranges::any_of(hits, [&](const std::string& hit) { return !files.exists(hit); });
}

bool samePath(platform::FileSystem& files, const std::string& first, const std::string& second) {
    return namesSameDirectory(files, {first}, second);
}
