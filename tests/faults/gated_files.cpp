#include "gated_files.h"

namespace {

std::string callOf(const char* operation, std::string_view path, std::string_view to = "") {
    std::string call = std::string(operation) + " " + std::string(path);
    return to.empty() ? call : call + " -> " + std::string(to);
}

bool isForWriting(const platform::OpenOptions& options) {
    return (options.access & platform::kWrite) != 0 ||
           options.disposition != platform::Disposition::kOpenExisting;
}

}  // namespace

class GatedFiles::OpenFile : public platform::File {
public:
    OpenFile(std::unique_ptr<platform::File> file, CallGate& gate, std::string_view path, bool isForWriting)
        : file_(std::move(file)), gate_(gate), path_(path), isForWriting_(isForWriting) {}

    int read(void* buffer, std::uint32_t size, std::uint32_t& outDone) override {
        outDone = 0;
        return gate_.refuses(CallClass::kReading, callOf("read", path_)) ? gate_.fileStatus()
                                                                         : file_->read(buffer, size, outDone);
    }
    int write(const void* buffer, std::uint32_t size, std::uint32_t& outDone) override;
    int seek(std::int64_t distance, platform::Origin origin, std::int64_t& outPosition) override {
        gate_.pass();
        return file_->seek(distance, origin, outPosition);
    }
    std::int64_t size() override { return file_->size(); }
    int truncateHere() override { return refuses("truncate") ? gate_.fileStatus() : file_->truncateHere(); }
    int flush() override { return refuses("flush") ? gate_.fileStatus() : file_->flush(); }
    int setRights(platform::FileRights rights) override {
        return refuses("setRights") ? gate_.fileStatus() : file_->setRights(rights);
    }
    int takeRightsOf(std::string_view path) override {
        return refuses("takeRights") ? gate_.fileStatus() : file_->takeRightsOf(path);
    }
    int makeExecutable() override {
        return refuses("makeExecutable") ? gate_.fileStatus() : file_->makeExecutable();
    }
    // Closed in any case.
    int close() override {
        const bool fails = isForWriting_ && !isClosed_ && refuses("close");
        isClosed_ = true;
        const int status = file_->close();
        return fails ? gate_.fileStatus() : status;
    }

private:
    bool refuses(const char* operation) {
        return gate_.refuses(CallClass::kChanging, callOf(operation, path_));
    }

    std::unique_ptr<platform::File> file_;
    CallGate& gate_;
    std::string path_;
    bool isForWriting_;
    bool isClosed_ = false;
};

int GatedFiles::OpenFile::write(const void* buffer, std::uint32_t size, std::uint32_t& outDone) {
    outDone = 0;
    const std::string call = callOf("write", path_);
    const bool fails = gate_.refuses(CallClass::kChanging, call);
    if (fails && gate_.fileStatus() == MemoryFileSystem::kDiskFull) {
        file_->write(buffer, size / 2, outDone);
    }
    if (fails) {
        return gate_.fileStatus();
    }
    if (!gate_.isWatchingWrites() || size < 2) {
        return file_->write(buffer, size, outDone);
    }
    const std::uint32_t half = size / 2;
    int status = file_->write(buffer, half, outDone);
    if (status == 0) {
        gate_.reportTornWrite(call);
        std::uint32_t rest = 0;
        status = file_->write(static_cast<const char*>(buffer) + half, size - half, rest);
        outDone += rest;
    }
    return status;
}

class GatedFiles::OpenDirectory : public platform::Directory {
public:
    OpenDirectory(std::unique_ptr<platform::Directory> directory, CallGate& gate, std::string_view path)
        : directory_(std::move(directory)), gate_(gate), path_(path) {}

    int list(std::vector<platform::DirectoryEntry>& outEntries) override {
        outEntries.clear();
        return gate_.refuses(CallClass::kReading, callOf("list", path_)) ? gate_.fileStatus()
                                                                         : directory_->list(outEntries);
    }
    int listDisk(std::vector<platform::DiskEntry>& outEntries) override {
        outEntries.clear();
        return gate_.refuses(CallClass::kReading, callOf("list", path_)) ? gate_.fileStatus()
                                                                         : directory_->listDisk(outEntries);
    }
    int openDirectory(std::string_view name, std::unique_ptr<platform::Directory>& outDirectory) override {
        outDirectory = nullptr;
        const std::string path = pathOf(name);
        if (gate_.refuses(CallClass::kReading, callOf("openDirectory", path))) {
            return gate_.fileStatus();
        }
        std::unique_ptr<platform::Directory> inner;
        const int status = directory_->openDirectory(name, inner);
        if (status == 0) {
            outDirectory = std::make_unique<OpenDirectory>(std::move(inner), gate_, path);
        }
        return status;
    }
    int removeFile(std::string_view name) override {
        return refuses("removeFile", name) ? gate_.fileStatus() : directory_->removeFile(name);
    }
    int removeDirectory(std::string_view name) override {
        return refuses("removeDirectory", name) ? gate_.fileStatus() : directory_->removeDirectory(name);
    }
    int openFile(std::string_view name, std::unique_ptr<platform::File>& outFile) override {
        outFile = nullptr;
        const std::string path = pathOf(name);
        if (gate_.refuses(CallClass::kReading, callOf("open", path))) {
            return gate_.fileStatus();
        }
        std::unique_ptr<platform::File> inner;
        const int status = directory_->openFile(name, inner);
        if (status == 0) {
            outFile = std::make_unique<OpenFile>(std::move(inner), gate_, path, false);
        }
        return status;
    }
    int takeFileAway(std::string_view name, std::string_view to) override {
        return refuses("takeFileAway", name) ? gate_.fileStatus() : directory_->takeFileAway(name, to);
    }
    int takeDirectoryAway(std::string_view name, std::string_view to) override {
        return refuses("takeDirectoryAway", name) ? gate_.fileStatus()
                                                  : directory_->takeDirectoryAway(name, to);
    }

private:
    std::string pathOf(std::string_view name) const { return path_ + "/" + std::string(name); }
    bool refuses(const char* operation, std::string_view name) {
        return gate_.refuses(CallClass::kChanging, callOf(operation, pathOf(name)));
    }

    std::unique_ptr<platform::Directory> directory_;
    CallGate& gate_;
    std::string path_;
};

bool GatedFiles::refuses(const char* operation, std::string_view path, std::string_view to) {
    return gate_.refuses(CallClass::kChanging, callOf(operation, path, to));
}

int GatedFiles::open(std::string_view path, const platform::OpenOptions& options,
                     std::unique_ptr<platform::File>& outFile) {
    outFile = nullptr;
    const bool writes = isForWriting(options);
    if (gate_.refuses(writes ? CallClass::kChanging : CallClass::kReading,
                      callOf(writes ? "openForWriting" : "open", path))) {
        return gate_.fileStatus();
    }
    std::unique_ptr<platform::File> inner;
    const int status = files_.open(path, options, inner);
    if (status == 0) {
        outFile = std::make_unique<OpenFile>(std::move(inner), gate_, path, writes);
    }
    return status;
}

int GatedFiles::takeDirectoryRights(std::string_view path) {
    return refuses("takeDirectoryRights", path) ? gate_.fileStatus() : files_.takeDirectoryRights(path);
}

int GatedFiles::removeFile(std::string_view path) {
    return refuses("removeFile", path) ? gate_.fileStatus() : files_.removeFile(path);
}

int GatedFiles::moveFile(std::string_view from, std::string_view to) {
    return refuses("moveFile", from, to) ? gate_.fileStatus() : files_.moveFile(from, to);
}

int GatedFiles::replaceFile(std::string_view from, std::string_view to) {
    return refuses("replaceFile", from, to) ? gate_.fileStatus() : files_.replaceFile(from, to);
}

int GatedFiles::takeFileAway(std::string_view path, std::string_view to) {
    return refuses("takeFileAway", path, to) ? gate_.fileStatus() : files_.takeFileAway(path, to);
}

int GatedFiles::takeDirectoryAway(std::string_view path, std::string_view to) {
    return refuses("takeDirectoryAway", path, to) ? gate_.fileStatus() : files_.takeDirectoryAway(path, to);
}

int GatedFiles::createDirectory(std::string_view path) {
    return refuses("createDirectory", path) ? gate_.fileStatus() : files_.createDirectory(path);
}

int GatedFiles::removeDirectory(std::string_view path) {
    return refuses("removeDirectory", path) ? gate_.fileStatus() : files_.removeDirectory(path);
}

int GatedFiles::list(std::string_view path, std::vector<platform::DirectoryEntry>& outEntries) {
    outEntries.clear();
    return gate_.refuses(CallClass::kReading, callOf("list", path)) ? gate_.fileStatus()
                                                                    : files_.list(path, outEntries);
}

int GatedFiles::openDirectory(std::string_view path, std::unique_ptr<platform::Directory>& outDirectory) {
    outDirectory = nullptr;
    if (gate_.refuses(CallClass::kReading, callOf("openDirectory", path))) {
        return gate_.fileStatus();
    }
    std::unique_ptr<platform::Directory> inner;
    const int status = files_.openDirectory(path, inner);
    if (status == 0) {
        outDirectory = std::make_unique<OpenDirectory>(std::move(inner), gate_, path);
    }
    return status;
}

int GatedFiles::makeExecutable(std::string_view path) {
    return refuses("makeExecutable", path) ? gate_.fileStatus() : files_.makeExecutable(path);
}

int GatedFiles::createPrivateDirectory(std::string_view parent, std::string_view prefix,
                                       std::string& outPath) {
    outPath.clear();
    return refuses("createPrivateDirectory", parent) ? gate_.fileStatus()
                                                     : files_.createPrivateDirectory(parent, prefix, outPath);
}

int GatedFiles::removeAtRestart(std::string_view path) {
    return refuses("removeAtRestart", path) ? gate_.fileStatus() : files_.removeAtRestart(path);
}
