#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/record_survey.h"
#include "engine/removal_outcome.h"
#include "platform/platform.h"

class StartMessages;
struct RecordList;
struct RunOptions;

// What the option -receipt does in an uninstallation: each record of the action log is looked at before it
// and after it, and what became of it is written to a file.
class RemovalReceipt {
public:
    // What `machine` refers to and the messages outlive this object. `path` is absolute.
    RemovalReceipt(const platform::Platform& machine, StartMessages& messages, std::string path)
        : machine_(machine), messages_(messages), path_(std::move(path)) {}

    // Why the uninstallation by the log at `log` can't have this receipt, in words without an end; none when
    // it can. One in a directory that goes with the product would go as well.
    static std::optional<std::string> problemOf(const std::string& path, const std::string& log,
                                                const platform::Platform& machine);

    // Looks at the machine before the uninstallation by the log at `log`, which is the one at `registeredLog`
    // or a copy of it. May be called again, by another log. A log that can't be read gives an empty list.
    void begin(const std::string& log, const std::string& registeredLog);
    // Looks at it again and writes the receipt, says why if it can't be written, and then prints the list
    // instead. Prints the summary unless `isQuiet`. False when there is no receipt.
    bool finish(bool isSuccess, bool isQuiet);

private:
    RecordList listOf(bool isSuccess);

    platform::Platform machine_;
    StartMessages& messages_;
    std::string path_;
    std::string log_;
    std::unique_ptr<RecordSurvey> survey_;
    std::optional<std::string> unreadable_;  // why there is nothing to look at
    std::vector<SurveyedRecord> before_;
    RemovalFacts facts_;
};

// The options of an uninstallation with a receipt, with its path and the log's as the second stage needs
// them.
void completeReceiptOptions(RunOptions& options, platform::Environment& environment);
