#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "engine/changes/record_look.h"
#include "engine/product_state.h"

class PStream;

// What one record made, as the machine holds it now.
struct SurveyedRecord {
    std::string_view word;  // the kind of change
    RecordLook look;
};

// Looks at the machine with the records of an action log in hand, once or several times, and changes nothing.
// The records are kept in memory, so the log may go between two looks. One thread.
class RecordSurvey {
public:
    // What `machine` refers to outlives this object.
    explicit RecordSurvey(const platform::Platform& machine);

    // Reads the log at `path`, which is the action log at `registeredPath` or a copy of it: what is
    // remembered of the files' contents is found by the latter. To be called once. None after a success,
    // otherwise why not, in words without an end. A log that is damaged in parts is read as far as possible.
    std::optional<std::string> read(const std::string& path, const std::string& registeredPath);

    // Whether the log was read to its end, and all of its lines were understood. Known after the first look.
    bool isLogWhole() const { return isWhole_; }
    // What isn't known of the log or the product, one line each for people. Complete after the first look.
    const std::vector<std::string>& notes() const { return notes_; }
    // As the log gives it; may be empty.
    const std::string& archivePath() const { return archive_; }
    // The identities of the product's own files that have no record: log, archive and description.
    const std::vector<std::string>& unrecordedFiles() const { return unrecorded_; }

    // The directories that the installation made, by their identities (platform/path_identity.h).
    std::unordered_set<std::string> madeDirectories();
    // In the order of the log. Two looks have the same things in the same places.
    std::vector<SurveyedRecord> look();

private:
    struct Record {
        std::size_t looker;
        std::string fields;
        std::string former;
    };

    std::optional<std::string> readLog(const std::string& path);
    void readPlaces(PStream& log);
    void readRecords(PStream& log, std::int64_t start);
    void takeLine(std::string_view line, std::string_view former);
    void note(std::string text);
    void noteDamagedLines();
    void readState(const std::string& path, const std::string& registeredPath);

    platform::Platform machine_;
    WrittenSums written_;
    LookContext context_;
    std::vector<std::unique_ptr<RecordLooker>> lookers_;  // as lookerKinds()
    std::vector<Record> records_;
    std::string archive_;
    std::vector<std::string> unrecorded_;
    std::vector<std::string> notes_;
    std::size_t damagedLines_ = 0;
    bool isWhole_ = true;
    bool hasLooked_ = false;
};
