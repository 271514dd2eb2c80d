// Reads anything as the journal of a removal: its records, what its notes say of an unfinished run, and its
// continuation. Nothing but the journal's own directory changes, whatever the notes name.
//
// The input's sections make the journal, after its banner: "note NAME" with the text from the second line on,
// "body" with the body of a record, which gets a head with good digests, or bytes as they are.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/removal_backups.h"
#include "engine/removal_journal_format.h"
#include "engine/removal_record.h"
#include "engine/work_notes.h"
#include "fuzz_target.h"
#include "input_sections.h"
#include "package/little_endian.h"
#include "platform/memory/memory_platform.h"
#include "support/md5.h"

namespace {

namespace Format = RemovalJournalFormat;

constexpr char kDirectory[] = "/var/state/removal-1";
// A name that no input hits upon, and one that an input may hit upon.
constexpr char kForeign[] = "/home/someone/4f1c2a90-7d13-letter.txt";
constexpr char kInstalled[] = "/app/tool";

std::string digestOf(std::string_view text, std::size_t size) {
    const Md5Digest digest = md5Of(text.data(), text.size());
    return std::string(reinterpret_cast<const char*>(digest.data()), size);
}

// A mutation would hardly ever find the digests.
std::string framed(std::string_view body, std::uint32_t number) {
    unsigned char fields[2 * sizeof(std::uint32_t)];
    LittleEndian::writeUnsigned(fields, static_cast<std::uint32_t>(body.size()));
    LittleEndian::writeUnsigned(fields + sizeof(std::uint32_t), number);
    std::string frame(Format::kMark);
    frame.append(reinterpret_cast<const char*>(fields), sizeof(fields));
    frame += digestOf(body, Format::kBodyDigestSize);
    frame += digestOf(frame, Format::kHeadDigestSize);
    return frame.append(body);
}

std::string frameOfSection(std::string_view section, std::uint32_t number) {
    constexpr std::string_view kNote = "note ";
    std::string_view rest = section;
    const std::string_view first = takeLine(rest);
    if (first.starts_with(kNote)) {
        RemovalRecord note;
        note.number = number;
        note.path = first.substr(kNote.size());
        note.other = rest;
        return frameOf(note).value_or("");
    }
    return first == "body" ? framed(rest, number) : std::string(section);
}

std::string journalOf(std::string_view input) {
    std::string content(Format::kBanner);
    std::uint32_t number = 0;
    for (const std::string_view section : sectionsOf(input)) {
        content += frameOfSection(section, ++number);
    }
    return content;
}

void checkRecords(const ReadRecords& read, const std::string& content) {
    require(read.end >= Format::kBanner.size() && read.end <= content.size());
    for (const RemovalRecord& record : read.records) {
        const auto frame = frameOf(record);
        require(frame.has_value());
        const ReadRecords again = readRecords(std::string(Format::kBanner) + *frame);
        require(again.isWhole && again.records == std::vector<RemovalRecord>{record});
    }
}

// Empty, or a file in the journal's directory.
bool isOwn(std::string_view path) {
    return path.empty() || isFileIn(kDirectory, path);
}

bool isClean(std::string_view path) {
    return path.find_first_of(std::string_view("\0\n\r\t", 4)) == std::string_view::npos;
}

void checkWork(const UnfinishedWork& work) {
    require(isOwn(work.description) && isOwn(work.places.temporaryLog) &&
            isOwn(work.places.temporaryArchive));
    require(isClean(work.places.log) && isClean(work.places.archive));
    require(work.attempts >= 0);
    for (const UnfinishedWork::Removed& removed : work.removed) {
        require(isClean(removed.log));
        require(removed.application.empty() || work.concerns(removed.application));
        require(removed.log.empty() || work.concernsLog(removed.log));
    }
}

UnfinishedWork lookAt(MemoryPlatform& machine) {
    RemovalJournal journal(machine.files, machine.environment);
    require(journal.look(kDirectory));
    UnfinishedWork work = WorkNotes(journal).read();
    checkWork(work);
    return work;
}

// What another run appends is found, and nothing that is whole has gone.
void checkContinuation(MemoryPlatform& machine, std::size_t recordsBefore) {
    RemovalBackups backups(machine.bundle());
    require(backups.resume(kDirectory));
    for (const UninstallBackup& backup : backups.uninstallBackups) {
        require(isFileIn(kDirectory, backup.archivePath) && isFileIn(kDirectory, backup.directoriesPath));
    }
    for (const NestedBackup& backup : backups.nestedBackups) {
        require(isFileIn(kDirectory, backup.copyPath));
    }
    require(WorkNotes(backups.journal()).attempt(7) == 0);
    require(backups.journal().read().records.size() == recordsBefore + 1);
    require(lookAt(machine).attempts == 7);
    backups.release();
}

}  // namespace

// Accepted when every byte was understood and there is a product whose run hadn't ended.
bool accepts(std::string_view input) {
    MemoryPlatform machine;
    const std::string content = journalOf(input);
    machine.files.addDirectory("/tmp");
    machine.files.addFile(kForeign, "dear");
    machine.files.addFile(kInstalled, "code");
    machine.files.addFile(std::string(kDirectory) + "/journal", content);
    const ReadRecords read = readRecords(content);
    checkRecords(read, content);
    const UnfinishedWork work = lookAt(machine);
    checkContinuation(machine, read.records.size());
    require(machine.files.content(kForeign) == "dear" && machine.files.content(kInstalled) == "code");
    return read.isWhole && !work.product.empty() && work.stage != WorkStage::kEnded;
}
