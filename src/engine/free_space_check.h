#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "engine/engine_parts.h"
#include "engine/volume_needs.h"

class Report;
struct EarlierLog;

// A product that goes before the new one comes.
struct ExpectedRemoval {
    std::string logPath;
    bool isBackedUp = false;    // its files are copied into an archive first
    bool isReversible = false;  // what it takes away is kept, in the state directory
};

// Compares what an installation, and the removals before it, will write and keep with what is free on each
// volume, before anything is changed. It counts what is certain, and so refuses only what can't succeed:
// contents as they are in the package, without the rounding of a file system; of a file that is replaced what
// the new one has more. What a program of the product writes isn't known.
class FreeSpaceCheck {
public:
    // All of them outlive this object.
    FreeSpaceCheck(const EngineParts& parts, Report& report);

    // False when a volume has too little, which is reported with its path and the numbers. A volume that
    // can't be asked is reported, and no obstacle. Once for an object.
    bool run(const std::vector<ExpectedRemoval>& removals);

private:
    void countRemoval(const ExpectedRemoval& removal);
    void countRemoved(const ExpectedRemoval& removal, const std::string& path);
    void countEditedFiles(const EarlierLog& log);
    void countKept(const ExpectedRemoval& removal, const std::string& path);
    void readOwnLog();
    void noteRecorded(const EarlierLog& log);
    void countFiles();
    void countFile(const std::string& directory, const std::string& path, std::int64_t size, bool isBackedUp);
    void countRecords();
    void countRecord(const std::string& path, std::int64_t size);
    std::int64_t sizeOf(std::string_view path);
    bool judge();

    EngineParts parts_;
    Report& report_;
    VolumeNeeds needs_;
    std::string stateDirectory_;
    std::unordered_set<std::string> recorded_;  // identities of files that an earlier installation has
    std::unordered_set<std::string> going_;     // of those that go before the new ones come
    bool isOwnLogGoing_ = false;
    std::int64_t logBytes_ = 0;      // of the new log
    std::int64_t archiveBytes_ = 0;  // of the new archive
    std::int64_t sumsBytes_ = 0;     // of the sums of what is written
};
