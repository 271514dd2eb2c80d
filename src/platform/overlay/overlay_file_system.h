#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/change_rules.h"
#include "platform/overlay/file_change.h"
#include "platform/quiet_reading.h"

struct OverlayState;
struct OverlayPlace;
class OverlayPlaces;

// A file system over another one, the base: what is read comes from the base, what is changed stays in
// memory, and the base isn't changed at all. While this object lives, the whole process reads as
// platform::QuietReading has it.
//
// Refused is what the base would refuse by its rules, as far as that can be asked for without trying
// (platform::ChangeRules). Where it differs from the base:
// - Files with several names are several files once one of them is changed.
// - On Windows only the base's files have share modes.
// - Of contents that would take more memory than the limit the largest are forgotten: reading one of them
//   fails with a status of its own (platform::Refusal::kNotKept).
// - Space is only taken on a volume, not given back by the removal of the base's files.
//
// Usable by any thread. Outlives its open files and directories.
class OverlayFileSystem : public platform::FileSystem {
public:
    static constexpr std::int64_t kMemoryLimit = std::int64_t{256} * 1024 * 1024;

    // Both are borrowed; the rules are those of the base.
    OverlayFileSystem(platform::FileSystem& base, platform::ChangeRules& rules,
                      std::int64_t memoryLimit = kMemoryLimit);
    ~OverlayFileSystem() override;

    // What would have to be done to the base, by path: a directory before what is in it. Costs what was met
    // and changed, not what the base has.
    std::vector<platform::FileChange> changes() const;
    // What removeAtRestart was asked for, in order.
    std::vector<std::string> removedAtRestart() const;
    // How many readings have failed because the content was forgotten.
    int forgottenReads() const;
    // 0, or the status with which the base would refuse to have a file made or written at the path.
    int wouldRefuseWriting(std::string_view path);

    // What other parts of a machine make, over what is no directory: a symbolic link with this text, and a
    // file of which nothing is known but its name.
    int putLink(std::string_view path, std::string_view text);
    int putUnknownFile(std::string_view path);

    int open(std::string_view path, const platform::OpenOptions& options,
             std::unique_ptr<platform::File>& outFile) override;
    bool exists(std::string_view path) override;
    platform::PathKind kindOf(std::string_view path) override;
    bool isDirectory(std::string_view path) override;
    bool isOrdinaryDirectory(std::string_view path) override;
    std::int64_t fileSize(std::string_view path) override;
    int resolveFile(std::string_view path, std::string& outPath) override;
    int linkTarget(std::string_view path, std::string& outTarget) override;
    int takeDirectoryRights(std::string_view path) override;
    std::string rightsOf(std::string_view path) override;
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
    bool temporaryDirectory(std::string& outPath) override;
    bool temporaryName(std::string_view prefix, std::uint32_t number, std::string& outPath) override;
    int realPath(std::string_view path, std::string& outPath) override;
    bool isProtected(std::string_view path, platform::Protection protection) override;
    int createPrivateDirectory(std::string_view parent, std::string_view prefix,
                               std::string& outPath) override;
    std::vector<std::string> otherPrivatePlaces() override;
    int findVolume(std::string_view path, platform::Volume& outVolume) override;
    int removeAtRestart(std::string_view path) override;

private:
    template <typename Operate>
    int at(std::string_view path, Operate operate);
    using Look = int (OverlayPlaces::*)(const OverlayPlace& from);
    using Move = int (OverlayPlaces::*)(const OverlayPlace& from, const OverlayPlace& to);
    int between(std::string_view from, std::string_view to, Look look, Move move);
    std::string realPathOf(const OverlayPlace& place);

    platform::QuietReading quiet_;
    std::unique_ptr<OverlayState> state_;
    std::vector<std::string> removedAtRestart_;
    int privateDirectories_ = 0;
};
