#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/file_system.h"

// What a job will take of each volume of a machine, in bytes. Files are counted by the directory that they
// are to be in, which need not be there yet.
class VolumeNeeds {
public:
    // What is counted of one volume.
    struct Need {
        platform::Volume volume;
        std::string directory;     // the first one that was counted there
        std::int64_t before = 0;   // written before anything goes
        std::int64_t freed = 0;    // goes then
        std::int64_t after = 0;    // written last
        std::int64_t passing = 0;  // needed for a moment, and not before the rest is there

        // The most that is taken at any time.
        std::int64_t bytes() const;
    };
    // A directory whose volume can't be asked.
    struct Unknown {
        std::string directory;
        int status = 0;
    };

    // Borrowed.
    explicit VolumeNeeds(platform::FileSystem& files) : files_(files) {}

    // The need of the directory's volume, to add to; good until the next call. Where the volume can't be
    // asked, one that nobody sees.
    Need& at(std::string_view directory);
    bool isOneVolume(std::string_view directory, std::string_view other);

    // One for each volume, in the order in which they were met.
    const std::vector<Need>& all() const { return needs_; }
    // The first one of which nothing is known.
    const std::optional<Unknown>& unknown() const { return unknown_; }

private:
    static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

    std::size_t indexOf(std::string_view directory);
    std::size_t find(const std::string& directory);

    platform::FileSystem& files_;
    std::vector<Need> needs_;
    std::unordered_map<std::string, std::size_t> indexes_;  // by directory
    std::optional<Unknown> unknown_;
    Need nobodys_;
};
