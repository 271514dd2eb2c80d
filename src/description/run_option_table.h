#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>

#include "base/text_functions.h"

// The options of a setup's command line: what reads them, explains them and keeps descriptions off them goes
// by this table.

enum class RunOptionKind {
    kSetting,           // of a run
    kQuestion,          // answered instead of a run, if it is given without a value
    kYieldingQuestion,  // the same, but a description that reads an option of this name has it for itself
};

struct RunOptionRow {
    std::string_view name;   // case-sensitive
    std::string_view value;  // its form, with what comes in front of it; empty for an option without a value
    std::string_view meaning;  // one line without a full stop
    RunOptionKind kind;
};

namespace run_options {

using enum RunOptionKind;

inline constexpr RunOptionRow kTable[] = {
    {"help", "", "prints this and ends; also -h and -?", kQuestion},
    {"version", "", "prints the version of the installer and ends", kYieldingQuestion},
    {"gui", "=0|1", "0: the console instead of a window", kSetting},
    {"auto", "", "asks nothing and takes every default", kSetting},
    {"configFile", "=FILE", "takes the answers from a file and asks nothing", kSetting},
    {"quiet", "=0|1", "1: prints little", kSetting},
    {"ignoreErrors", "=0|1", "1: goes on to the normal end after a step has failed", kSetting},
    {"backup", "=0|1", "0: keeps nothing of an earlier installation that is removed", kSetting},
    {"bin", "=FILE", "takes the package from a separate file", kSetting},
    {"exitCodes", "=0|1", "1: the exit code tells how the run ended, see below", kSetting},
    {"receipt", "=FILE", "an uninstallation or verification: lists there what became of each record",
     kSetting},
    {"verify", "=FILE", "compares the machine with this action log, changes nothing, and ends", kSetting},
    {"debug", "=0|1|2|3|4", "above 0: writes a log into the directory for temporary files", kSetting},
    {"uninstall", "=FILE", "starts the uninstallation of the product with this action log", kSetting},
    {"uninstallApp", "=NAME", "the registered name of the product that is uninstalled", kSetting},
    {"uninstallFile", "=FILE", "the second stage of an uninstallation: the copy of the action log", kSetting},
    {"receiptLog", "=FILE", "the second stage with a receipt: the action log of the installation", kSetting},
};

// Further names of `help`, for those who try them first.
inline constexpr std::string_view kOtherHelpNames[] = {"h", "?"};

// The name of a row. A literal that isn't one doesn't compile.
class Name {
public:
    template <std::size_t Size>
    consteval Name(const char (&literal)[Size]) : name_(literal) {  // NOLINT(google-explicit-constructor)
        if (std::ranges::find(kTable, name_, &RunOptionRow::name) == std::end(kTable)) {
            throw "there is no such option: add it to the table, and to the manual";
        }
    }
    constexpr std::string_view view() const { return name_; }

private:
    std::string_view name_;
};

// Whether a description can't have an option of this name for itself. Descriptions name theirs in any case.
inline bool isTaken(std::string_view name) {
    const auto isName = [name](std::string_view known) { return OUtils::equalsIgnoreCase(known, name); };
    return std::ranges::any_of(kOtherHelpNames, isName) ||
           std::ranges::any_of(kTable, [&](const RunOptionRow& row) {
               return row.kind != kYieldingQuestion && isName(row.name);
           });
}

}  // namespace run_options
