#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "call_gate.h"
#include "platform/file_system.h"

// A file system whose calls pass a gate. A write that fails for want of space writes half before.
class GatedFiles : public platform::FileSystem {
public:
    // Both are borrowed.
    GatedFiles(platform::FileSystem& files, CallGate& gate) : files_(files), gate_(gate) {}

    int open(std::string_view path, const platform::OpenOptions& options,
             std::unique_ptr<platform::File>& outFile) override;
    bool exists(std::string_view path) override { return look().exists(path); }
    platform::PathKind kindOf(std::string_view path) override { return look().kindOf(path); }
    bool isDirectory(std::string_view path) override { return look().isDirectory(path); }
    bool isOrdinaryDirectory(std::string_view path) override { return look().isOrdinaryDirectory(path); }
    std::int64_t fileSize(std::string_view path) override { return look().fileSize(path); }
    int resolveFile(std::string_view path, std::string& outPath) override {
        return look().resolveFile(path, outPath);
    }
    int findVolume(std::string_view path, platform::Volume& outVolume) override {
        return look().findVolume(path, outVolume);
    }
    int linkTarget(std::string_view path, std::string& outTarget) override {
        return look().linkTarget(path, outTarget);
    }
    int takeDirectoryRights(std::string_view path) override;
    std::string rightsOf(std::string_view path) override { return look().rightsOf(path); }
    int removeFile(std::string_view path) override;
    int moveFile(std::string_view from, std::string_view to) override;
    int replaceFile(std::string_view from, std::string_view to) override;
    int takeFileAway(std::string_view path, std::string_view to) override;
    int takeDirectoryAway(std::string_view path, std::string_view to) override;
    int createDirectory(std::string_view path) override;
    int removeDirectory(std::string_view path) override;
    int list(std::string_view path, std::vector<platform::DirectoryEntry>& outEntries) override;
    int openDirectory(std::string_view path, std::unique_ptr<platform::Directory>& outDirectory) override;
    int makeExecutable(std::string_view path) override;
    bool temporaryDirectory(std::string& outPath) override { return look().temporaryDirectory(outPath); }
    bool temporaryName(std::string_view prefix, std::uint32_t number, std::string& outPath) override {
        return look().temporaryName(prefix, number, outPath);
    }
    int realPath(std::string_view path, std::string& outPath) override {
        return look().realPath(path, outPath);
    }
    bool isProtected(std::string_view path, platform::Protection protection) override {
        return look().isProtected(path, protection);
    }
    int createPrivateDirectory(std::string_view parent, std::string_view prefix,
                               std::string& outPath) override;
    std::vector<std::string> otherPrivatePlaces() override { return look().otherPrivatePlaces(); }
    int removeAtRestart(std::string_view path) override;

private:
    class OpenFile;
    class OpenDirectory;

    platform::FileSystem& look() {
        gate_.pass();
        return files_;
    }
    bool refuses(const char* operation, std::string_view path, std::string_view to = "");

    platform::FileSystem& files_;
    CallGate& gate_;
};
