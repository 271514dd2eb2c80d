#include "engine/removal_playback.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "engine/file_playback.h"
#include "engine/removal_journal.h"
#include "engine/report.h"
#include "engine/settings_playback.h"
#include "platform/shell_objects.h"
#include "support/utilities.h"

namespace {

bool isAboutJournal(RemovalStep step) {
    return step < RemovalStep::kRemoveFile;
}

bool isFileStep(RemovalStep step) {
    return step >= RemovalStep::kRemoveFile && step < RemovalStep::kCreateKey;
}

// The changes that are still to be taken back, each with what it left in the end.
std::vector<RemovalRecord> openChanges(std::vector<RemovalRecord> records) {
    std::unordered_map<std::uint32_t, PlaceContent> left;
    std::unordered_set<std::uint32_t> settled;
    for (const RemovalRecord& record : records) {
        if (record.step == RemovalStep::kLeft) {
            left[record.subject] = record.left;
        } else if (record.step == RemovalStep::kSettled) {
            settled.insert(record.subject);
        }
    }
    std::erase_if(records, [&](const RemovalRecord& record) {
        return isAboutJournal(record.step) || settled.contains(record.number);
    });
    for (RemovalRecord& record : records) {
        if (const auto found = left.find(record.number); found != left.end()) {
            record.left = found->second;
        }
    }
    return records;
}

}  // namespace

bool RemovalPlayback::isPossible() {
    return isReadable(journal_.read());
}

bool RemovalPlayback::isReadable(const ReadRecords& read) {
    if (read.status != 0) {
        report_.addReason(journal_.directory(), "the journal of the removal can't be read: " +
                                                    OUtils::readingErrorText(read.status));
    }
    return read.status == 0;
}

bool RemovalPlayback::run() {
    ReadRecords read = journal_.read();
    if (!isReadable(read)) {
        return false;
    }
    if (!read.isWhole) {
        report_.note("The journal of the removal is damaged. What it still shows is brought back.");
    }
    const std::vector<RemovalRecord> changes = openChanges(std::move(read.records));
    const bool isBack = takeBack(changes);
    return broadcast(changes) && isBack && read.isWhole;
}

bool RemovalPlayback::takeBack(const std::vector<RemovalRecord>& records) {
    FilePlayback files(machine_.files, journal_, report_);
    SettingsPlayback settings(machine_.registry, machine_.firewall, report_);
    bool isBack = true;
    for (auto change = records.rbegin(); change != records.rend(); ++change) {
        const RemovalRecord& record = *change;
        if (record.step == RemovalStep::kBroadcastEnvironment) {
            continue;
        }
        if (isFileStep(record.step) ? files.takeBack(record) : settings.takeBack(record)) {
            journal_.settle(record.number);
        } else {
            isBack = false;
        }
        report_.pumpEvents();
    }
    return isBack;
}

// Once, when the environment is what it was.
bool RemovalPlayback::broadcast(const std::vector<RemovalRecord>& records) {
    bool isKnown = true;
    for (const RemovalRecord& record : records) {
        if (record.step == RemovalStep::kBroadcastEnvironment) {
            isKnown = machine_.shell.broadcastEnvironment();
            break;
        }
    }
    if (!isKnown) {
        report_.note("The environment has come back, but it could not be made known.");
    }
    for (const RemovalRecord& record : records) {
        if (isKnown && record.step == RemovalStep::kBroadcastEnvironment) {
            journal_.settle(record.number);
        }
    }
    return isKnown;
}
