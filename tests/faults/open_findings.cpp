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
        {"the log misses records that couldn't be written", "", "", {"write /tmp/orinstall"}, {}},
        {"the reason is missing for the records of an installation",
         "",
         "",
         {"openForWriting /tmp/", "close /tmp/", "write /tmp/", "setRights /tmp/", "moveFile /tmp/",
          "templog.log", "open /tmp/", "read /tmp/"},
         {Fault::kSilent}},
        {"the reason is missing for actions",
         "",
         "",
         {"/opt/tandrel/docs\\.tandrel", "\\docs\\agreement.md", "\\docs\\banner.png",
          "tandrel/docs\\.tandrel"},
         {Fault::kSilent}},
        {"the reason is missing for shortcuts", "", "", {"createLink", "createUrlLink"}, {Fault::kSilent}},
        {"the reason is missing for keys and the list of applications",
         "",
         "",
         {"createKey", "deleteKey", "\\Uninstall\\Tandrel", "testKey", "readValue"},
         {Fault::kSilent}},
        {"the reason is missing for the environment", "", "", {"broadcastEnvironment"}, {Fault::kSilent}},
        {"the reason is missing for the journal of a removal",
         "",
         "",
         {"/var/state/removal-"},
         {Fault::kSilent}},
        {"the reason is missing for the last steps of an uninstallation",
         "",
         "",
         {"/var/state/written-", "samples/hello-setup", "uninstall/backup.bin", "uninstall/install.log",
          "opt\\tandrel/uninstall", "opt\\tandrel/samples", "/kit/install.log"},
         {Fault::kSilent}},
        {"what lasting faults leave isn't taken up by the next run", "install", "*lasting", {}, {}},
        {"what lasting faults leave isn't taken up by the next run", "upgrade", "*lasting", {}, {}},
        {"what lasting faults leave isn't taken up by the next run", "revert", "*lasting", {}, {}},
        {"what a revert couldn't bring back isn't tried again by the next run",
         "revert",
         "",
         {"opt\\tandrel/uninstall\\.tandrel"},
         {Fault::kEndDiffers, Fault::kEndFails}},
        {"a revert that can't read or copy its log or archive leaves a mixture of two versions",
         "revert",
         "",
         {"/tmp/", "/var/state/removal-", "uninstall/install.log", "uninstall/backup.bin", "README.md"},
         {Fault::kEndDiffers, Fault::kEndFails, Fault::kUnnamed}},
        {"the reason is missing for files that can't be read",
         "",
         "*reading",
         {"/kit/", "README.md", "uninstall/install.log", "uninstall/install.xml"},
         {Fault::kSilent}},
        {"an entry that can't be read counts as none",
         "",
         "*reading",
         {"testKey Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall",
          "readValue Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall"},
         {}},
        {"an earlier log that can't be read at the start counts as none",
         "upgrade",
         "*reading",
         {"open /opt/tandrel/uninstall/install.log", "read /opt/tandrel/uninstall/install.log"},
         {Fault::kEndDiffers}},
        {"what is left of an earlier version whose log can't be read isn't named",
         "upgrade",
         "*reading",
         {"read /tmp/"},
         {Fault::kUntrue}},
        {"an empty directory of an earlier version that couldn't go entirely stays",
         "upgrade",
         "",
         {"uninstall", "/var/state/removal-"},
         {Fault::kEndDiffers}},
        {"an INI file that can't be read at first has another record",
         "install",
         "*reading",
         {"tools.ini"},
         {Fault::kUntrue}},
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
