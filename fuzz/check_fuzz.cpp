// Checks anything as a description, with a few files below its root.

#include <string>
#include <string_view>

#include "checking/description_check.h"
#include "fuzz_target.h"
#include "platform/memory/memory_file_system.h"

namespace {

void addFiles(MemoryFileSystem& files) {
    files.addFile("/root/greet.sh", "#!/bin/sh\necho [INSTALL_DIR]\n");
    files.addFile("/root/licence.md", "# Licence\n\nDo ** what you like.\n");
    files.addFile("/root/licence.rtf", "{\\rtf1\\ansi Do what you like.\\par}");
    files.addFile("/root/banner.png", "This is no picture.");
    files.addFile("/root/names.bin", std::string(9000, 'a'));
}

bool isFindingOfForm(const Finding& finding) {
    return finding.code.name().starts_with("form-");
}

// Findings are in order, lie in the text, and say something.
void checkFinding(const Finding& finding, const SourcePlace& end, const SourcePlace& earlier) {
    require(finding.place.line >= 1 && finding.place.column >= 1);
    require(finding.place <= end && earlier <= finding.place);
    require(!finding.message.empty() && !finding.hint.empty());
}

// Whether nothing is wrong with the form.
bool checkAll(std::string_view text, const CheckOptions& options, MemoryFileSystem& files) {
    const SourcePlace end = SourceLines(text).placeOf(text.size());
    SourcePlace earlier;
    bool isWellFormed = true;
    for (const Finding& finding : checkDescription(text, options, files)) {
        checkFinding(finding, end, earlier);
        earlier = finding.place;
        isWellFormed = isWellFormed && !isFindingOfForm(finding);
    }
    require(files.openFileCount() == 0);
    return isWellFormed;
}

}  // namespace

// Accepted when the form is right.
bool accepts(std::string_view input) {
    MemoryFileSystem files;
    addFiles(files);
    const CheckTargets windows{.windows = true, .linux = false};
    const bool isAccepted = checkAll(input, CheckOptions(), files);
    checkAll(input, {.targets = windows, .root = "/root"}, files);
    return isAccepted;
}
