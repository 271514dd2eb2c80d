#include "platform/machine_of_files.h"

#include <gtest/gtest.h>

#include <vector>

#include "fakes/temporary_directory.h"
#include "platform/memory/memory_change_rules.h"
#include "platform/overlay/overlay_file_system.h"

namespace {

class SystemUnderTest : public FileSystemUnderTest {
public:
    platform::FileSystem& files() override { return platform::systemFileSystem(); }
    const std::string& directory() const override { return directory_.path(); }
    void write(const std::string& path, std::string_view content) override { writeTestFile(path, content); }
    std::string read(const std::string& path) override { return readTestFile(path); }
    bool exists(const std::string& path) override { return testFileExists(path); }

private:
    TemporaryDirectory directory_;
};

class OverlaidSystem : public FileSystemUnderTest {
public:
    platform::FileSystem& files() override { return files_; }
    const std::string& directory() const override { return directory_.path(); }

private:
    TemporaryDirectory directory_;
    OverlayFileSystem files_{platform::systemFileSystem(), platform::systemChangeRules()};
};

class OverlaidMemory : public FileSystemUnderTest {
public:
    OverlaidMemory() { base_.addDirectory(directory_); }
    platform::FileSystem& files() override { return files_; }
    platform::FileSystem& base() { return base_; }
    const std::string& directory() const override { return directory_; }

private:
    std::string directory_ = "/srv/data";
    MemoryFileSystem base_;
    MemoryChangeRules rules_{base_};
    OverlayFileSystem files_{base_, rules_};
};

void fill(platform::FileSystem& files, const std::string& directory) {
    for (const char* const name : {"a", "d", "d/sub", "sub", "sub/deeper", "empty"}) {
        ASSERT_EQ(files.createDirectory(directory + "/" + name), 0) << name;
    }
    for (const char* const name : {"f", "d/f", "d/sub/g", "a/b", "from", "to", "free", "none", "taken", "new",
                                   "private", "f0", "takenDirectory"}) {
        writeFile(files, directory + "/" + name, "what the base has");
    }
}

}  // namespace

void writeFile(platform::FileSystem& files, const std::string& path, std::string_view content) {
    platform::OpenOptions options;
    options.access = platform::kWrite;
    options.disposition = platform::Disposition::kCreateAlways;
    std::unique_ptr<platform::File> file;
    ASSERT_EQ(files.open(path, options, file), 0) << path;
    std::uint32_t done = 0;
    EXPECT_EQ(file->write(content.data(), static_cast<std::uint32_t>(content.size()), done), 0) << path;
    EXPECT_EQ(file->close(), 0) << path;
}

std::string readFile(platform::FileSystem& files, const std::string& path) {
    std::unique_ptr<platform::File> file;
    const int status = files.open(path, {}, file);
    EXPECT_EQ(status, 0) << path;
    if (status != 0) {
        return {};
    }
    std::string content(static_cast<std::size_t>(file->size()) + 1, '\0');
    std::uint32_t done = 0;
    EXPECT_EQ(file->read(content.data(), static_cast<std::uint32_t>(content.size()), done), 0) << path;
    content.resize(done);
    return content;
}

void removeContent(platform::FileSystem& files, const std::string& directory) {
    std::vector<platform::DirectoryEntry> entries;
    ASSERT_EQ(files.list(directory, entries), 0) << directory;
    for (const platform::DirectoryEntry& entry : entries) {
        const std::string path = directory + "/" + entry.name;
        if (entry.isDirectory) {
            removeContent(files, path);
        }
        EXPECT_EQ(entry.isDirectory ? files.removeDirectory(path) : files.removeFile(path), 0) << path;
    }
}

void FileSystemUnderTest::write(const std::string& path, std::string_view content) {
    writeFile(files(), path, content);
}

std::string FileSystemUnderTest::read(const std::string& path) {
    return readFile(files(), path);
}

MachineOfFiles systemMachine() {
    return std::make_unique<SystemUnderTest>();
}

MachineOfFiles overlayOfSystem() {
    return std::make_unique<OverlaidSystem>();
}

MachineOfFiles overlayOfMemory() {
    return std::make_unique<OverlaidMemory>();
}

MachineOfFiles overlayOfEmptiedSystem() {
    auto machine = std::make_unique<OverlaidSystem>();
    fill(platform::systemFileSystem(), machine->directory());
    removeContent(machine->files(), machine->directory());
    return machine;
}

MachineOfFiles overlayOfEmptiedMemory() {
    auto machine = std::make_unique<OverlaidMemory>();
    fill(machine->base(), machine->directory());
    removeContent(machine->files(), machine->directory());
    return machine;
}
