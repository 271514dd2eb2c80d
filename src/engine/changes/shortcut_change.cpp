#include "engine/changes/shortcut_change.h"

#include <algorithm>

#include "engine/action_log_format.h"
#include "engine/changes/change_record.h"
#include "engine/changes/element_groups.h"
#include "engine/changes/former_state.h"
#include "engine/changes/record_text.h"
#include "engine/description_tags.h"
#include "engine/report.h"
#include "engine/uninstall_command.h"
#include "platform/file_system.h"
#include "platform/shell_objects.h"
#include "platform/written_path.h"

namespace {

namespace Format = ActionLogFormat;

struct TypeWord {
    vocabulary::WordName word;
    ShortcutType type;
};

constexpr TypeWord kTypes[] = {
    {"Symlink", ShortcutType::kSymlink},
    {"File", ShortcutType::kFile},
    {"URL", ShortcutType::kUrl},
    {"Uninstall", ShortcutType::kUninstall},
};

std::optional<ShortcutType> typeOf(std::optional<std::string_view> word) {
    const auto* found = std::ranges::find(kTypes, word, &TypeWord::word);
    return found == std::end(kTypes) ? std::nullopt : std::optional(found->type);
}

std::string recordOf(const std::string& linkPath) {
    return RecordText::join({Format::kCreate, linkPath});
}

bool canBeUndone(const std::string& linkPath) {
    return RecordText::isField(linkPath) && RecordText::fits(Format::kShortcut, recordOf(linkPath));
}

// The words end with a blank, so that two follow them.
std::string lineOf(const char* word, std::string_view linkPath) {
    return std::string(word) + " shortcut " + platform::writtenPath(linkPath);
}

// No status of the system: why is in the log.
constexpr int kNotMade = -1;

int createUninstallShortcut(platform::ShellObjects& shell, const ProductDescription& product,
                            const DebugLog& debugLog, const ShortcutRequest& shortcut) {
    const auto command = uninstallCommandOf(product, ProgramQuotes::kNone, debugLog);
    return command ? shell.createLink(shortcut.linkPath,
                                      {command->program, shortcut.description, command->arguments, "", ""})
                   : kNotMade;
}

int create(platform::ShellObjects& shell, const ProductDescription& product, const DebugLog& debugLog,
           const ShortcutRequest& shortcut) {
    switch (shortcut.type) {
        case ShortcutType::kFile:
            return shell.createLink(shortcut.linkPath,
                                    {shortcut.target, shortcut.description, shortcut.arguments,
                                     shortcut.startPath, shortcut.iconPath});
        case ShortcutType::kUrl:
            return shell.createUrlLink(shortcut.linkPath, shortcut.target);
        case ShortcutType::kUninstall:
            return createUninstallShortcut(shell, product, debugLog, shortcut);
        case ShortcutType::kSymlink:
            return shell.createSymlink(shortcut.linkPath, shortcut.target);
    }
    return kNotMade;
}

// A link that is there already is replaced, and its undo deletes what is in the place. Only the system knows
// what a link is going to contain: where that is what was there, the record doesn't say so.
template <typename Make>
bool makeRecorded(platform::FileSystem& files, const std::string& linkPath, ActionLogWriter* log, Make make) {
    ChangeRecord record(log);
    const std::string fields = recordOf(linkPath);
    const std::string former = FormerState::ofFile(files, linkPath);
    if (!record.write(Format::kShortcut, {fields}, former)) {
        return false;
    }
    const bool isMade = make();
    const bool isSame = !former.empty() && FormerState::ofFile(files, linkPath) == former;
    if (!isMade || isSame) {
        record.withdraw();
    }
    return isMade && (!isSame || record.write(Format::kShortcut, {fields}));
}

// The path in a record of a shortcut; none in one of another kind.
std::optional<std::string_view> linkPathIn(std::string_view fields) {
    const std::size_t end = std::min(fields.find(Format::kSeparator), fields.size());
    return fields.substr(0, end) == Format::kCreate
               ? std::optional(fields.substr(std::min(end + 1, fields.size())))
               : std::nullopt;
}

UndoResult takeBack(platform::FileSystem& files, Report& report, std::string_view linkPath) {
    const int status = linkPath.empty() ? 0 : files.removeFile(linkPath);
    const bool done = !linkPath.empty() && status == 0;
    report.addLine(lineOf(done ? "Remove " : "FAILED to remove ", linkPath), false);
    if (done) {
        return UndoResult::kDone;
    }
    if (linkPath.empty() || !files.exists(linkPath)) {
        return UndoResult::kGone;
    }
    report.addReason(linkPath, status);
    return UndoResult::kFailed;
}

}  // namespace

bool ShortcutChange::apply() {
    return applyGroups(context_, "Shortcuts", [this](std::int32_t child) {
        return context_.tags.nameOf(child) != vocabulary::ElementName("Add") || applyChild(child);
    });
}

bool ShortcutChange::applyChild(std::int32_t node) {
    const std::optional<Element> element = readElement(node);
    return !element || (prepareDirectory(element->directory) && applyRequest(element->shortcut));
}

// None when the child lacks something that it needs; it is skipped then.
std::optional<ShortcutChange::Element> ShortcutChange::readElement(std::int32_t node) {
    DescriptionTags& tags = context_.tags;
    const std::optional<ShortcutType> type = typeOf(tags.attribute(node, "Type"));
    if (!type || !tags.hasAttribute(node, "Dest") || !tags.requiredTextOf(node) ||
        (*type != ShortcutType::kUninstall && !tags.hasAttribute(node, "Target"))) {
        return std::nullopt;
    }
    Element element;
    element.directory = normalizedPath(tags.expandAttribute(node, "Dest") + '\\');
    ShortcutRequest& shortcut = element.shortcut;
    shortcut.type = *type;
    shortcut.linkPath = element.directory + tags.expand(tags.requiredTextOf(node));
    shortcut.target = tags.expandAttribute(node, "Target");
    if (*type != ShortcutType::kUrl) {
        shortcut.target = normalizedPath(shortcut.target);
    }
    shortcut.description =
        tags.expandForSystem(tags.attribute(node, "Description").value_or(kDefaultDescription));
    shortcut.arguments = tags.expandForSystem(tags.attribute(node, "Arguments"));
    shortcut.startPath = normalizedPath(tags.expandAttribute(node, "StartPath"));
    shortcut.iconPath = normalizedPath(tags.expandAttribute(node, "IconPath"));
    return element;
}

bool ShortcutChange::prepareDirectory(const std::string& directory) {
    const bool done = directories_.create(directory);
    if (!done) {
        context_.debugLog.line("ERROR: Creating directory: \"" + directory + "\"");
    }
    return done;
}

bool ShortcutChange::applyRequest(const ShortcutRequest& shortcut) {
    const std::optional<std::string> fields =
        add(context_.machine, product_, context_.report, context_.debugLog, shortcut, &context_.log);
    if (!fields) {
        context_.debugLog.line("ERROR: Creating shortcut: \"" + shortcut.linkPath + "\" to \"" +
                               shortcut.target + "\" and args\"" + shortcut.arguments + "\"");
    }
    return fields.has_value();
}

std::optional<std::string> ShortcutChange::add(const platform::Platform& machine,
                                               const ProductDescription& product, Report& report,
                                               const DebugLog& debugLog, const ShortcutRequest& shortcut,
                                               ActionLogWriter* log) {
    int status = 0;
    const auto make = [&] {
        status = create(machine.shell, product, debugLog, shortcut);
        return status == 0;
    };
    const bool done =
        canBeUndone(shortcut.linkPath) && makeRecorded(machine.files, shortcut.linkPath, log, make);
    const std::string line = lineOf(done ? "Create " : "FAILED to create ", shortcut.linkPath);
    report.addLine(line, false);
    if (!done) {
        report.addError(line);
        if (status != kNotMade) {
            report.addReason(shortcut.linkPath, status);
        }
        return std::nullopt;
    }
    return recordOf(shortcut.linkPath);
}

bool ShortcutChange::undo(const LogRecord& record) {
    platform::FileSystem& files = context_.machine.files;
    const auto linkPath = linkPathIn(record.fields);
    const bool wasNotMade =
        linkPath && !record.former.empty() && FormerState::ofFile(files, *linkPath) == record.former;
    return !linkPath || wasNotMade || takeBack(files, context_.report, *linkPath) != UndoResult::kFailed;
}

bool ShortcutChange::remove(platform::FileSystem& files, Report& report, std::string_view fields) {
    const auto linkPath = linkPathIn(fields);
    return !linkPath || takeBack(files, report, *linkPath) == UndoResult::kDone;
}
