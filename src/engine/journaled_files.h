#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/removal_journal.h"
#include "platform/file_system.h"

namespace platform {
class Environment;
}

// A file system on which a removal can be taken back. What it removes or changes is first written to the
// journal and kept there, unless the removal itself has made it or an archive holds it. What is kept is moved
// into the journal's directory, or copied with its rights where that is on another volume.
//
// One difference from the real one: nothing can be marked for removal at the next start of the system.
class JournaledFileSystem : public platform::FileSystem {
public:
    // All are borrowed: the real machine, and a journal that is open.
    JournaledFileSystem(platform::FileSystem& files, platform::Environment& environment,
                        RemovalJournal& journal)
        : files_(files), environment_(environment), journal_(journal) {}

    // For calls of other parts of the machine that make or replace a file at `path`: keeps what is there.
    // `outRecord` is for the second call, which says that the file is made or, with another status than 0,
    // that nothing has changed.
    int prepareWriting(std::string_view path, std::uint32_t& outRecord);
    void finishWriting(std::string_view path, std::uint32_t record, int status);

    int open(std::string_view path, const platform::OpenOptions& options,
             std::unique_ptr<platform::File>& outFile) override;
    bool exists(std::string_view path) override { return files_.exists(path); }
    platform::PathKind kindOf(std::string_view path) override { return files_.kindOf(path); }
    bool isDirectory(std::string_view path) override { return files_.isDirectory(path); }
    bool isOrdinaryDirectory(std::string_view path) override { return files_.isOrdinaryDirectory(path); }
    std::int64_t fileSize(std::string_view path) override { return files_.fileSize(path); }
    int resolveFile(std::string_view path, std::string& outPath) override {
        return files_.resolveFile(path, outPath);
    }
    int linkTarget(std::string_view path, std::string& outTarget) override {
        return files_.linkTarget(path, outTarget);
    }
    int takeDirectoryRights(std::string_view path) override;
    std::string rightsOf(std::string_view path) override { return files_.rightsOf(path); }
    int removeFile(std::string_view path) override;
    int moveFile(std::string_view from, std::string_view to) override;
    int replaceFile(std::string_view from, std::string_view to) override;
    int takeFileAway(std::string_view path, std::string_view to) override { return moveFile(path, to); }
    int takeDirectoryAway(std::string_view path, std::string_view to) override;
    int createDirectory(std::string_view path) override;
    int removeDirectory(std::string_view path) override;
    int list(std::string_view path, std::vector<platform::DirectoryEntry>& outEntries) override {
        return files_.list(path, outEntries);
    }
    int openDirectory(std::string_view path, std::unique_ptr<platform::Directory>& outDirectory) override;
    int makeExecutable(std::string_view path) override;
    bool temporaryDirectory(std::string& outPath) override { return files_.temporaryDirectory(outPath); }
    bool temporaryName(std::string_view prefix, std::uint32_t number, std::string& outPath) override {
        return files_.temporaryName(prefix, number, outPath);
    }
    int realPath(std::string_view path, std::string& outPath) override {
        return files_.realPath(path, outPath);
    }
    bool isProtected(std::string_view path, platform::Protection protection) override {
        return files_.isProtected(path, protection);
    }
    int createPrivateDirectory(std::string_view parent, std::string_view prefix,
                               std::string& outPath) override;
    std::vector<std::string> otherPrivatePlaces() override { return files_.otherPrivatePlaces(); }
    int findVolume(std::string_view path, platform::Volume& outVolume) override {
        return files_.findVolume(path, outVolume);
    }
    int removeAtRestart(std::string_view path) override;

private:
    class OpenFile;
    class OpenDirectory;
    class Entry;
    class PathEntry;
    class OpenedEntry;

    // What a removal was going to take away when its record was written.
    struct Announced {
        std::uint32_t record = 0;
        std::uint32_t kept = 0;
    };
    using Relocate = int (platform::FileSystem::*)(std::string_view from, std::string_view to);

    std::string absolute(std::string_view path);
    bool isOurs(std::string_view path) const;
    std::uint32_t ourRecord(std::string_view path) const;
    PlaceContent contentOf(std::string_view path);
    void nowHolds(std::string_view path, std::uint32_t record, const PlaceContent& content);
    void forget(std::string_view path);

    int removeEntry(const std::string& path, Entry& entry, const Announced* announced = nullptr);
    int keepEntry(const std::string& path, Entry& entry, const Announced& announced);
    int removeDirectoryEntry(const std::string& path, Entry& entry);
    int announceDirectory(const std::string& path, Announced& outAnnounced);
    int announceDirectories(const std::vector<std::string>& paths);
    bool goesWithJournal(const std::string& path);
    int announceRemoval(const std::string& path, Announced& outAnnounced);
    int copyToKept(const std::string& path, Entry& entry, std::uint32_t kept);

    int relocate(std::string_view from, std::string_view to, Relocate call, bool replaces);
    int relocateOver(const std::string& from, const std::string& to, platform::PathKind present,
                     Relocate call);
    int displace(const std::string& path);
    void putBackDisplaced();

    int prepareOpening(const std::string& place, const platform::OpenOptions& options,
                       std::uint32_t& outRecord);
    int recordWriting(const std::string& path, platform::PathKind present, std::uint32_t& outRecord);
    int keepPresent(RemovalRecord& record);
    int keepRights(const std::string& path, std::uint32_t& outRecord);
    template <typename Change>
    int changeRights(const std::string& path, Change change);
    void closed(const std::string& path, std::uint32_t record, const PlaceContent& content);

    // A file or a directory that the removal has made, or a file whose former content is kept.
    struct Own {
        std::uint32_t record = 0;
        PlaceContent content;
    };

    platform::FileSystem& files_;
    platform::Environment& environment_;
    RemovalJournal& journal_;
    std::unordered_map<std::string, Own> own_;                         // by the identity of the path
    std::unordered_map<std::string, Announced> announcedDirectories_;  // by the identity of the path
    // The link that was taken away last to make room for a file.
    Announced displaced_;
    std::string displacedPath_;
};
