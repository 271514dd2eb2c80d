#include "open_findings.h"

#include <algorithm>
#include <string_view>

namespace {

bool isOfError(const OpenFinding& open, const std::string& error) {
    const std::string_view wanted = open.error;
    return wanted.starts_with('*') ? error.find(wanted.substr(1)) != std::string::npos
                                   : error.starts_with(wanted);
}

template <typename List, typename Matches>
bool isEmptyOrAny(const List& list, Matches matches) {
    return list.empty() || std::ranges::any_of(list, matches);
}

}  // namespace

const std::vector<OpenFinding>& openFindings() {
    static const std::vector<OpenFinding> kOpen = {
        {"the reason is missing for a package that can't be read",
         "",
         "*reading",
         {"open /kit/first", "read /kit/first", "open /kit/second", "read /kit/second"},
         {Fault::kSilent}},
        {"the reason is missing for a file that can't be backed up",
         "",
         "*reading",
         {"open \\opt\\tandrel\\README.md", "read \\opt\\tandrel\\README.md"},
         {Fault::kSilent}},
        {"the reason is missing for a directory that can't be listed in the end",
         "",
         "*reading",
         {"list \\opt\\tandrel/uninstall"},
         {Fault::kSilent}},
        {"an empty directory of an earlier version that couldn't go entirely stays",
         "upgrade",
         "",
         {"/var/state/removal-2/journal"},
         {Fault::kEndDiffers}},
        {"a journal that can't be written any more, nor cut, is taken for a damaged or an older one",
         "",
         "*lasting",
         {"write /var/state/removal-2/journal", "flush /var/state/removal-2/journal"},
         {Fault::kEndDiffers, Fault::kEndFails}},
    };
    return kOpen;
}

const OpenFinding* openFindingOf(const std::string& operation, const std::string& error,
                                 const std::string& call, const Finding& finding) {
    const auto found = std::ranges::find_if(openFindings(), [&](const OpenFinding& open) {
        return (open.operation[0] == '\0' || operation == open.operation) && isOfError(open, error) &&
               isEmptyOrAny(open.calls,
                            [&](const auto& part) { return call.find(part) != std::string::npos; }) &&
               isEmptyOrAny(open.faults, [&](Fault fault) { return fault == finding.fault; });
    });
    return found == openFindings().end() ? nullptr : &*found;
}
