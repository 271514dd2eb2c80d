#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "base/failure.h"
#include "checking/description_check.h"
#include "packager/commands.h"
#include "packager/findings_report.h"
#include "support/utilities.h"

namespace {

CheckTargets targetsOf(const std::string& word) {
    return {.windows = word != "linux", .linux = word != "windows"};
}

std::vector<std::string> reportOf(const CommandLine& commandLine, const std::vector<Finding>& findings) {
    if (commandLine.format == "json") {
        return findingsAsJson(commandLine.checked, findings);
    }
    return commandLine.format == "sarif" ? findingsAsSarif(commandLine.checked, findings)
                                         : findingsAsText(commandLine.checked, findings);
}

}  // namespace

bool runCheck(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files) {
    std::string text;
    if (const int status = OUtils::readWholeFile(commandLine.checked, text, files); status != 0) {
        fail(commandLine.checked + ": the description can't be read: " + OUtils::readingErrorText(status));
    }
    CheckOptions options{targetsOf(commandLine.systems), std::nullopt};
    if (!commandLine.root.empty()) {
        if (!files.isDirectory(commandLine.root)) {
            fail(commandLine.root + ": no such directory");
        }
        options.root = commandLine.root;
    }
    const std::vector<Finding> findings = checkDescription(text, options, files);
    for (const std::string& line : reportOf(commandLine, findings)) {
        output.print(line);
    }
    return std::ranges::none_of(findings, [&](const Finding& finding) {
        return commandLine.strict || finding.code.severity() == Severity::kError;
    });
}
