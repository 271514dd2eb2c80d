#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/md5.h"

namespace platform {
class Environment;
class FileSystem;
}  // namespace platform

// The digest of a whole file, read in blocks. None when it can't be opened or read to its end; `outStatus`
// says why, and is 0 otherwise.
std::optional<Md5Digest> digestOfFile(platform::FileSystem& files, std::string_view path,
                                      int* outStatus = nullptr);

// The digests of what an installation wrote, by the path of the file. Spellings of one path are the same
// (platform/path_identity.h).
class WrittenSums {
public:
    // One more content that the file may have; nothing for an empty path.
    void add(std::string_view path, const Md5Digest& digest);
    // Adds what `others` know of files of which nothing is known here.
    void addMissing(const WrittenSums& others);
    // Whether anything is known of the file.
    bool knows(std::string_view path) const;
    // Whether this is one of the contents that the installation gave the file.
    bool holds(std::string_view path, const Md5Digest& digest) const;
    bool isEmpty() const { return digests_.empty(); }

    using Digests = std::map<std::string, std::vector<Md5Digest>, std::less<>>;
    // By the identity of the path.
    const Digests& digests() const { return digests_; }

private:
    friend class ProductState;

    Digests digests_;
};

// What is remembered of the installed products outside of what their descriptions name: for each, known by
// the path of its action log, the digests of what was written. See product_state_format.md.
class ProductState {
public:
    // Both are borrowed.
    ProductState(platform::FileSystem& files, platform::Environment& environment)
        : files_(files), environment_(environment) {}

    // Nothing is kept for an empty path of the log, and nothing without a state directory.

    // Empty when nothing is kept, and when what is there can't be read or isn't whole: the content is checked
    // and never believed in part.
    WrittenSums load(std::string_view logPath);
    // Takes the place of what was kept in one step; after a failure that is as it was. False when it can't be
    // written.
    bool save(std::string_view logPath, const WrittenSums& sums);
    // The levels of the state directory that were made for the product, or for one before it. 0 where nothing
    // is kept.
    std::int32_t levels(std::string_view logPath);
    // Notes that the product is being uninstalled. True when another uninstallation noted that before and was
    // killed. Without a state directory nothing is noted.
    bool beginUndo(std::string_view logPath);
    // However it ended. 0, or the system's error number of a note that can't be removed.
    int endUndo(std::string_view logPath);
    // The file that is the note; empty where nothing is noted.
    std::string markOf(std::string_view logPath);
    // For the end of an uninstallation that left nothing to repeat. What isn't there is no failure. The last
    // product takes the levels of the state directory along that were made for any of them.
    bool remove(std::string_view logPath);
    // Why the last of these calls failed.
    int failure() const { return failure_; }
    // So many levels of the state directory were made and can't go now: they go with a product that is
    // remembered there. Nothing for 0, and where there is none.
    void leaveLevels(std::int32_t levels);

private:
    // What a file says; `levels` of the state directory were made for it.
    struct Content {
        WrittenSums sums;
        std::int32_t levels = 0;
    };

    std::string nameOf(std::string_view start, std::string_view logPath);
    std::string pathOf(std::string_view logPath);
    bool read(const std::string& path, std::string_view logPath, Content& outContent);
    bool write(const std::string& path, const std::string& text);
    std::int32_t makeDirectory();
    std::int32_t removeDirectory(std::int32_t levels);
    bool takeLevels(const std::string& path, std::int32_t levels);

    platform::FileSystem& files_;
    platform::Environment& environment_;
    int failure_ = 0;
};
