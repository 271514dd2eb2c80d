#include "installer/removal_receipt.h"

#include <utility>

#include "installer/receipt_file.h"
#include "installer/record_list.h"
#include "installer/run_options.h"
#include "installer/start_messages.h"

std::optional<std::string> RemovalReceipt::problemOf(const std::string& path, const std::string& log,
                                                     const platform::Platform& machine) {
    if (auto problem = ReceiptFile::problemOf(path, log, machine.files)) {
        return problem;
    }
    RecordSurvey survey(machine);
    if (survey.read(log, log)) {
        return std::nullopt;  // for the uninstallation to say
    }
    const std::string directory = ReceiptFile::directoryAmong(survey.madeDirectories(), path, machine.files);
    return directory.empty() ? std::nullopt
                             : std::optional("the receipt " + path + " would lie in " + directory +
                                             ", which is to be removed");
}

void RemovalReceipt::begin(const std::string& log, const std::string& registeredLog) {
    log_ = registeredLog.empty() ? log : registeredLog;
    survey_ = std::make_unique<RecordSurvey>(machine_);
    unreadable_ = survey_->read(log, log_);
    before_ = survey_->look();
    facts_ = {archivedFiles(machine_.files, survey_->archivePath()), survey_->unrecordedFiles()};
}

RecordList RemovalReceipt::listOf(bool isSuccess) {
    RecordList list{"uninstallation",
                    log_,
                    isSuccess,
                    {"gone", "put back", "changed and left", "foreign and left", "failed"},
                    {},
                    {}};
    std::vector<SurveyedRecord> after = survey_->look();
    const std::vector<RemovalOutcome> outcomes = removalOutcomes(before_, after, facts_);
    for (std::size_t i = 0; i < after.size(); ++i) {
        list.rows.push_back(
            {static_cast<std::size_t>(outcomes[i]), after[i].word, after[i].look.name, after[i].look.note});
    }
    list.notes = survey_->notes();
    if (unreadable_) {
        list.notes.push_back(log_ + ": " + *unreadable_);
    }
    return list;
}

bool RemovalReceipt::finish(bool isSuccess, bool isQuiet) {
    const RecordList list = listOf(isSuccess);
    const int status = ReceiptFile::write(list, path_, machine_.files);
    if (status != 0) {
        messages_.remark(ReceiptFile::failureText(path_, status));
        messages_.print(listAsText(list));
    } else if (!isQuiet) {
        messages_.print(summaryOf(list) + "\n");
    }
    return status == 0;
}

void completeReceiptOptions(RunOptions& options, platform::Environment& environment) {
    if (options.receipt) {
        options.receipt = ReceiptFile::absolutePath(*options.receipt, environment);
        options.receiptLog = ReceiptFile::absolutePath(
            options.receiptLog.empty() ? options.uninstallLog.value_or("") : options.receiptLog, environment);
    }
}
