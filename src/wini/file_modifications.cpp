#include "wini/file_modifications.h"

#include <string_view>
#include <vector>

#include "engine/action_log_format.h"
#include "wini/change_description.h"
#include "wini/text_file.h"
#include "wini/undo_text.h"

using ActionLogFormat::kAddAfter;

bool FileModifications::modifyFile(const char* path, const char* description, std::string& outUndo,
                                   InstallerUI* ui) {
    outUndo.clear();
    const std::string target = path == nullptr ? "" : path;
    const std::string source = description == nullptr ? "" : description;
    const std::string undo = UndoText::of({kAddAfter, target, source});
    bool done = UndoText::isField(target) && !source.empty() && UndoText::isLastField(source) &&
                UndoText::fitsRecord(ActionLogFormat::kModifyFile, undo);
    if (done) {
        outUndo = undo;
        done = change(target, source, false);
    }
    return tell(done, "Modifying ", target, ui);
}

bool FileModifications::undoFileModification(const char* undoText, InstallerUI* ui) {
    constexpr std::size_t kFields = 3;
    const std::vector<std::string_view> fields = UndoText::split(undoText, kFields);
    if (fields.size() < kFields || fields[0] != kAddAfter) {
        return false;
    }
    const std::string target(fields[1]);
    const bool done = change(target, std::string(fields[2]), true);
    return tell(done, "Undoing modifications to ", target, ui);
}

bool FileModifications::change(const std::string& path, const std::string& description, bool isUndo) {
    TextFile source(files_, description);
    TextFile target(files_, path);
    if (source.load() != TextFile::State::kLoaded) {
        return false;
    }
    const auto pairs = ChangeDescription::parse(splitTextLines(source.content()));
    if (!pairs.has_value() || target.load() != TextFile::State::kLoaded) {
        return false;
    }
    const TextLines lines = splitTextLines(target.content());
    TextLines changed;
    const bool hasChanged = isUndo ? ChangeDescription::revert(*pairs, lines, changed)
                                   : ChangeDescription::apply(*pairs, lines, changed);
    return !hasChanged || target.store("", changed);
}

bool FileModifications::tell(bool done, const char* action, const std::string& path, InstallerUI* ui) {
    const std::string line = (done ? "" : "FAILED : ") + (action + path);
    Report report(ui, &errors_);
    report.addLine(line, false);
    if (!done) {
        report.addError(line);
    }
    return done;
}
