#include "packager/build_check.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "base/failure.h"
#include "checking/description_check.h"
#include "packager/findings_report.h"
#include "packager/image_kind.h"
#include "support/utilities.h"

namespace {

// A package without an image may be for either system.
CheckTargets targetsOf(const CommandLine& commandLine, platform::FileSystem& files) {
    const ImageKind kind = commandLine.bin ? ImageKind::kNone : kindOfImage(commandLine.image, files);
    return {.windows = kind != ImageKind::kElf, .linux = kind != ImageKind::kPe};
}

}  // namespace

void checkBeforeBuild(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files) {
    std::string text;
    if (OUtils::readWholeFile(commandLine.description, text, files) != 0 ||
        !files.isDirectory(commandLine.root)) {
        return;
    }
    std::size_t errors = 0;
    for (const Finding& finding :
         checkDescription(text, {targetsOf(commandLine, files), commandLine.root}, files)) {
        if (finding.code.name() == FindingCode("document-loss").name()) {
            continue;  // told with each document that is packed
        }
        const bool isError = finding.code.severity() == Severity::kError;
        const bool isAllowed = isError && std::ranges::find(commandLine.allowed, finding.code.name()) !=
                                              commandLine.allowed.end();
        errors += isError && !isAllowed ? 1 : 0;
        output.warn(findingLine(commandLine.description, finding,
                                isAllowed ? "allowed" : severityWord(finding.code.severity())));
        if (!isAllowed) {
            output.warn("    " + printable(finding.hint));
        }
    }
    if (errors > 0) {
        fail(commandLine.description + ": no package was made because of " + std::to_string(errors) +
             (errors == 1 ? " error" : " errors") +
             ": correct the description, or allow them with --allow CODE");
    }
}
