#include "engine/installation_records.h"

#include "contracts/system_operations.h"
#include "description/product_description.h"
#include "description/variable_exclusions.h"
#include "description/variable_store.h"
#include "platform/file_system.h"
#include "support/p_file_stream.h"
#include "support/utilities.h"

std::vector<LoggedVariable> loggedVariables(const ProductModel& model) {
    std::vector<LoggedVariable> kept;
    for (std::int32_t i = 0; i < model.variables.getCount(); ++i) {
        const InstallVariable& variable = model.variables.at(i);
        if (model.exclusions.isVariableExported(variable.name, kExcludeFromLog)) {
            kept.push_back({variable.name, variable.value});
        }
    }
    return kept;
}

bool InstallationRecords::open() {
    if (!openLog()) {
        parts_.debugLog.line("ERROR: Obtaining temp filename for install temp log!");
        return false;
    }
    if (!openArchive()) {
        parts_.debugLog.line("ERROR: Obtaining temp filename for install temp backup!");
        log_.close();
        parts_.machine.files.removeFile(temporaryLog_);
        return false;
    }
    const ProductDescription& product = parts_.model.product;
    log_.writeHeader(product.uninstallXmlFile().value_or(""), product.installBackupFile().value_or(""));
    log_.writeVariables(loggedVariables(parts_.model));
    return true;
}

bool InstallationRecords::openLog() {
    temporaryLog_ = parts_.system.temporaryFileName().value_or("");
    return !temporaryLog_.empty() && log_.openNew(temporaryLog_);
}

bool InstallationRecords::openArchive() {
    temporaryArchive_ = parts_.system.temporaryFileName().value_or("");
    return !temporaryArchive_.empty() && archive_.openForWriting(temporaryArchive_);
}

bool InstallationRecords::closeAll() {
    const bool logWritten = log_.close();
    if (!logWritten) {
        parts_.debugLog.line("ERROR: The install log could not be written completely");
    }
    const bool archiveWritten = archive_.close() == 0;
    if (!archiveWritten) {
        parts_.debugLog.line("ERROR: The backup file could not be written completely");
    }
    return logWritten && archiveWritten;
}

bool InstallationRecords::publish() {
    const bool written = closeAll();
    const ProductDescription& product = parts_.model.product;
    const bool logPublished =
        publishFile("install log", temporaryLog_, product.installLogFile().value_or(""));
    const bool archivePublished =
        publishFile("backup file", temporaryArchive_, product.installBackupFile().value_or(""));
    return written && logPublished && archivePublished;
}

bool InstallationRecords::publishFile(const char* what, const std::string& from, const std::string& to) {
    platform::FileSystem& files = parts_.machine.files;
    if (!to.empty()) {
        if (files.replaceFile(from, to) == 0) {
            handOver(what, to);
            return true;
        }
        if (!copyPrivately(from, to)) {
            parts_.debugLog.print("ERROR: The %s could not be written to %s; it stays at %s", what,
                                  to.c_str(), from.c_str());
            return false;
        }
        handOver(what, to);
    }
    files.removeFile(from);
    return true;
}

// Whoever may uninstall the product has to read its records, not only who installed it. A record that keeps
// the rights of a private file is whole all the same.
void InstallationRecords::handOver(const char* what, const std::string& path) {
    const int status = parts_.machine.files.takeDirectoryRights(path);
    if (status != 0) {
        parts_.debugLog.line("WARNING: The " + std::string(what) + " " + path +
                             " keeps the rights of a private file (" + std::to_string(status) + ")");
    }
}

// Where a file can't be moved. The copy empties what it finds and leaves its rights as they are.
bool InstallationRecords::copyPrivately(const std::string& from, const std::string& to) {
    platform::FileSystem& files = parts_.machine.files;
    PFileStream target(files);
    return target.openPrivate(to) == 0 && target.close() == 0 && OUtils::copyFile(from, to, files);
}
