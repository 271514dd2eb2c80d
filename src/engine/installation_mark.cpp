#include "engine/installation_mark.h"

#include "description/product_description.h"
#include "engine/removal_journal_format.h"
#include "engine/report.h"
#include "engine/run_locks.h"
#include "package/cabinet.h"
#include "platform/environment.h"
#include "support/p_file_stream.h"
#include "support/utilities.h"

namespace Format = RemovalJournalFormat;

namespace {

// Others hold the lock for a moment only.
constexpr std::uint32_t kJournalsWait = 5000;  // milliseconds
constexpr std::string_view kDescriptionAlias = "install.xml";

int writePrivately(platform::FileSystem& files, const std::string& path, std::string_view content) {
    PFileStream file(files);
    int status = file.createNew(path, true);
    status = status != 0 ? status : file.writeText(content);
    status = status != 0 ? status : file.flush();
    const int closed = file.close();
    return status != 0 ? status : closed;
}

}  // namespace

bool InstallationMark::open(Report& report) {
    std::string directory;
    if (backups_.journal().isOpen() || !parts_.machine.environment.stateDirectory(directory)) {
        return true;
    }
    const int status = openJournal();
    if (status != 0) {
        backups_.journal().discard();
    }
    return status == 0 || reportFailure(status, report);
}

// Until the notes say whose it is, another run could take it for the rest of a run that was killed.
int InstallationMark::openJournal() {
    const auto guard = lockJournals(parts_.machine.events, kJournalsWait);
    RemovalJournal& journal = backups_.journal();
    int status = journal.open();
    std::string description;
    const auto file = parts_.cabinet.readAlias(kDescriptionAlias);
    if (status == 0 && file) {
        description = journal.directory() + '/' + std::string(Format::kDescriptionFile);
        status = writePrivately(parts_.machine.files, description,
                                {file->content.text(), static_cast<std::size_t>(file->content.size())});
    }
    return status != 0 ? status
                       : WorkNotes(journal).begin(parts_.model.product.fullName().value_or(""), description);
}

bool InstallationMark::reportFailure(int status, Report& report) {
    std::string directory;
    parts_.machine.environment.stateDirectory(directory);
    report.note("Nothing was installed: there is no way to note down that the installation is at work");
    report.addReason(directory, status);
    return false;
}

bool InstallationMark::noteInstalling(const InstallationPlaces& places, Report& report) {
    if (!backups_.journal().isOpen()) {
        return true;
    }
    const int status = WorkNotes(backups_.journal()).installing(places);
    return status == 0 || reportFailure(status, report);
}

void InstallationMark::noteInstalled() {
    if (backups_.journal().isOpen() && WorkNotes(backups_.journal()).stage(WorkStage::kInstalled) != 0) {
        parts_.debugLog.line("WARNING: The end of the installation could not be noted down");
    }
}
