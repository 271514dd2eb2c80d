#include "engine/work_notes.h"

#include <algorithm>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "engine/directory_check.h"
#include "engine/removal_journal.h"
#include "engine/removal_journal_format.h"
#include "platform/path_identity.h"

namespace {

namespace Format = RemovalJournalFormat;
using platform::pathIdentity;

struct StageWord {
    WorkStage stage;
    std::string_view word;
};

constexpr StageWord kStages[] = {{WorkStage::kBegun, Format::kStageBegun},
                                 {WorkStage::kInstalling, Format::kStageInstalling},
                                 {WorkStage::kInstalled, Format::kStageInstalled},
                                 {WorkStage::kUndone, Format::kStageUndone},
                                 {WorkStage::kEnded, Format::kStageEnded}};

std::string_view wordOf(WorkStage stage) {
    return std::ranges::find(kStages, stage, &StageWord::stage)->word;
}

WorkStage stageOf(std::string_view word) {
    const StageWord* found = std::ranges::find(kStages, word, &StageWord::word);
    return found == std::end(kStages) ? WorkStage::kEnded : found->stage;
}

bool hasControl(std::string_view text) {
    return std::ranges::any_of(text, [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

bool isSamePath(std::string_view one, std::string_view other) {
    return !one.empty() && pathIdentity(one) == pathIdentity(other);
}

}  // namespace

bool isFileIn(std::string_view directory, std::string_view path) {
    const std::string_view name = OUtils::lastPathComponent(path);
    const bool isName = !name.empty() && name != "." && name != ".." &&
                        name.find(':') == std::string_view::npos && !hasControl(name);
    return isName && name.size() < path.size() &&
           isSamePath(directory, path.substr(0, path.size() - name.size() - 1));
}

std::string numberedNote(std::string_view name, std::size_t number) {
    return std::string(name) + " " + std::to_string(number);
}

bool UnfinishedWork::concerns(std::string_view name) const {
    return !name.empty() && (product == name || std::ranges::any_of(removed, [&](const Removed& one) {
                                 return one.application == name;
                             }));
}

bool UnfinishedWork::concernsLog(std::string_view log) const {
    return isSamePath(log, places.log) ||
           std::ranges::any_of(removed, [&](const Removed& one) { return isSamePath(log, one.log); });
}

int WorkNotes::begin(std::string_view product, std::string_view description) {
    return journal_.note({{std::string(Format::kProductNote), std::string(product)},
                          {std::string(Format::kDescriptionNote), std::string(description)},
                          {std::string(Format::kStageNote), std::string(wordOf(WorkStage::kBegun))}});
}

int WorkNotes::installing(const InstallationPlaces& places) {
    return journal_.note(
        {{std::string(Format::kTemporaryLogNote), places.temporaryLog},
         {std::string(Format::kTemporaryArchiveNote), places.temporaryArchive},
         {std::string(Format::kLogNote), places.log},
         {std::string(Format::kArchiveNote), places.archive},
         {std::string(Format::kContinuesNote), std::string(places.continuesEarlier ? Format::kYes : "")},
         {std::string(Format::kStageNote), std::string(wordOf(WorkStage::kInstalling))}});
}

int WorkNotes::stage(WorkStage stage) {
    return journal_.note(Format::kStageNote, wordOf(stage));
}

int WorkNotes::attempt(int number) {
    return journal_.note(Format::kAttemptsNote, std::to_string(number));
}

int WorkNotes::partlyUndone() {
    return journal_.note(Format::kPartlyNote, Format::kYes);
}

std::string WorkNotes::text(std::string_view name) const {
    return journal_.noteOf(name).value_or("");
}

std::string WorkNotes::ownFile(std::string_view name) const {
    const std::string found = text(name);
    return isFileIn(journal_.directory(), found)
               ? journal_.directory() + '/' + std::string(OUtils::lastPathComponent(found))
               : std::string();
}

std::string WorkNotes::path(std::string_view name) const {
    std::string found = text(name);
    return isAbsolutePath(found) && !hasControl(found) ? found : std::string();
}

UnfinishedWork WorkNotes::read() const {
    UnfinishedWork work;
    work.product = text(Format::kProductNote);
    work.stage = stageOf(journal_.noteOf(Format::kStageNote).value_or(std::string(Format::kStageBegun)));
    work.attempts = std::max(0, OUtils::textToInteger(text(Format::kAttemptsNote)));
    work.description = ownFile(Format::kDescriptionNote);
    work.places = {ownFile(Format::kTemporaryLogNote), ownFile(Format::kTemporaryArchiveNote),
                   path(Format::kLogNote), path(Format::kArchiveNote),
                   text(Format::kContinuesNote) == Format::kYes};
    work.isPartlyUndone = text(Format::kPartlyNote) == Format::kYes;
    for (int i = 1; i <= Format::kMostNumberedNotes; ++i) {
        const auto application = journal_.noteOf(numberedNote(Format::kApplicationNote, i));
        if (!application) {
            break;
        }
        work.removed.push_back({*application, path(numberedNote(Format::kRemovedLogNote, i)),
                                text(numberedNote(Format::kForGoodNote, i)) == Format::kYes});
    }
    return work;
}
