#include "engine/removal_outcome.h"

#include <algorithm>
#include <cstddef>

#include "package/backup_file.h"
#include "package/backup_reader.h"
#include "platform/file_system.h"
#include "platform/path_identity.h"

namespace {

void addNote(RecordLook& look, std::string_view note) {
    look.note += (look.note.empty() ? "" : "; ") + std::string(note);
}

// Of a file whose record says that an earlier one comes back in its place.
RemovalOutcome outcomeOfReplaced(const RecordLook& before, RecordLook& after, const RemovalFacts& facts) {
    if (before.content != after.content) {
        return RemovalOutcome::kPutBack;
    }
    if (before.state == PlaceState::kDifferent) {
        return RemovalOutcome::kLeftChanged;
    }
    if (facts.archived.contains(after.identity)) {
        return RemovalOutcome::kFailed;
    }
    addNote(after, "no earlier file was kept");
    return RemovalOutcome::kLeftForeign;
}

// Of what is there and holds neither an earlier value nor somebody else's.
RemovalOutcome outcomeOfLeft(const RecordLook& before, RecordLook& after, const RemovalFacts& facts) {
    switch (after.rule) {
        case UndoRule::kRestoresUnchanged:
            return outcomeOfReplaced(before, after, facts);
        case UndoRule::kKeepsChanged:
        case UndoRule::kRemovesIfUnused:
            return after.state == PlaceState::kDifferent ? RemovalOutcome::kLeftChanged
                                                         : RemovalOutcome::kFailed;
        case UndoRule::kTakesOne:
            return before.content != after.content ? RemovalOutcome::kGone : RemovalOutcome::kFailed;
        case UndoRule::kRemoves:
            break;
    }
    return RemovalOutcome::kFailed;
}

RemovalOutcome outcomeOf(const RecordLook& before, RecordLook& after, const RemovalFacts& facts) {
    switch (after.state) {
        case PlaceState::kAbsent:
        case PlaceState::kNotNeeded:
            return RemovalOutcome::kGone;
        case PlaceState::kFormer:
            return RemovalOutcome::kPutBack;
        case PlaceState::kOthers:
            return before.state == PlaceState::kOthers ? RemovalOutcome::kLeftForeign
                                                       : RemovalOutcome::kPutBack;
        case PlaceState::kUnreadable:
            return RemovalOutcome::kFailed;
        case PlaceState::kAsMade:
        case PlaceState::kDifferent:
            break;
    }
    return outcomeOfLeft(before, after, facts);
}

// Directories and keys stay for good reason while they hold what isn't the product's.
void judgeContainers(std::vector<SurveyedRecord>& after, std::vector<RemovalOutcome>& outcomes,
                     const RemovalFacts& facts) {
    std::unordered_set<std::string> failed(facts.ownFiles.begin(), facts.ownFiles.end());
    std::vector<std::size_t> containers;
    for (std::size_t i = 0; i < after.size(); ++i) {
        const bool isContainer = after[i].look.rule == UndoRule::kRemovesIfUnused;
        if (outcomes[i] == RemovalOutcome::kFailed && isContainer) {
            containers.push_back(i);
        } else if (outcomes[i] == RemovalOutcome::kFailed) {
            failed.insert(after[i].look.identity);
        }
    }
    // What is inside another one has the longer name.
    std::ranges::stable_sort(containers, std::ranges::greater(),
                             [&](std::size_t i) { return after[i].look.identity.size(); });
    for (const std::size_t i : containers) {
        RecordLook& look = after[i].look;
        const bool holdsOthers = std::ranges::any_of(
            look.holds, [&](const std::string& identity) { return !failed.contains(identity); });
        if (holdsOthers) {
            outcomes[i] = RemovalOutcome::kLeftForeign;
            addNote(look, "it holds what isn't the product's");
        } else {
            failed.insert(look.identity);
        }
    }
}

}  // namespace

std::vector<RemovalOutcome> removalOutcomes(const std::vector<SurveyedRecord>& before,
                                            std::vector<SurveyedRecord>& after, const RemovalFacts& facts) {
    std::vector<RemovalOutcome> outcomes;
    for (std::size_t i = 0; i < after.size(); ++i) {
        outcomes.push_back(outcomeOf(before[i].look, after[i].look, facts));
    }
    judgeContainers(after, outcomes, facts);
    return outcomes;
}

std::unordered_set<std::string> archivedFiles(platform::FileSystem& files, const std::string& path) {
    std::unordered_set<std::string> found;
    BackupFile archive(files);
    if (path.empty() || !archive.openForReading(path)) {
        return found;
    }
    BackupReader reader(archive);
    BackupEntry entry;
    if (!reader.start()) {
        return found;
    }
    while (reader.next(entry) == BackupReader::Found::kEntry && reader.skip(entry.size)) {
        found.insert(platform::pathIdentity(entry.name));
    }
    return found;
}
