#include "engine/additional_actions.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

#include "base/fixed_text.h"
#include "base/text_functions.h"
#include "contracts/system_operations.h"
#include "engine/changes/directory_change.h"
#include "engine/description_tags.h"
#include "engine/engine_parts.h"
#include "engine/report.h"
#include "platform/file_system.h"
#include "support/run_outcome.h"

namespace {

enum Detail : std::uint32_t { kNoExpansion = 1, kNoPathCorrection = 2 };

struct DetailWord {
    vocabulary::WordName word;
    Detail detail;
};

constexpr DetailWord kDetailWords[] = {
    {"NoExpansion", kNoExpansion},
    {"NoPathCorrection", kNoPathCorrection},
};

constexpr std::uint32_t kOpenPause = 100;  // milliseconds
constexpr std::uint32_t kMillisecondsOfAnUpdate = 10;
constexpr unsigned kDefaultFileMode = 0444;
// By these codes of Windows a program says that it succeeded and that the system has to be restarted for it;
// the second one has begun to.
constexpr std::int32_t kRestartCodes[] = {3010, 1641};

bool asksForRestart(const ProgramOutcome& program) {
    return program.exitCode && std::ranges::find(kRestartCodes, *program.exitCode) != std::end(kRestartCodes);
}

constexpr std::size_t kPathLimit = PathText::capacity() - 1;

}  // namespace

// The order is that in which the names are compared.
const AdditionalActions::Kind AdditionalActions::kKinds[] = {
    {"OpenDocument", true, 0, &AdditionalActions::openDocument},
    {"OpenURL", true, kNoPathCorrection, &AdditionalActions::openUrl},
    {"RunProgram", true, 0, &AdditionalActions::runProgram},
    {"CopyFile", true, 0, &AdditionalActions::copyFile},
    {"Registry", false, 0, &AdditionalActions::changeRegistry},
    {"RemoveFile", true, 0, &AdditionalActions::removeFile},
    {"RemoveDir", true, 0, &AdditionalActions::removeDirectory},
    {"CreateFile", true, 0, &AdditionalActions::createFile},
};

AdditionalActions::AdditionalActions(const ChangeContext& context, const EngineParts& parts)
    : context_(context),
      contents_(parts.cabinet, parts.model.expressions, context.debugLog),
      extractor_(parts.cabinet, contents_, context.machine.files),
      registry_(context),
      product_(parts.model.product),
      programs_(context.machine.processes, context.machine.shell, context.debugLog),
      outcome_(parts.outcome) {}

std::vector<std::string_view> AdditionalActions::actionNames() {
    std::vector<std::string_view> names;
    for (const Kind& kind : kKinds) {
        names.push_back(kind.tag);
    }
    return names;
}

bool AdditionalActions::run(std::string_view container) {
    failed_ = false;
    context_.debugLog.line("Running Files for installation tag: <" + std::string(container) + ">");
    for (std::int32_t group = context_.tags.nextContainer(container, -1); group >= 0;
         group = context_.tags.nextContainer(container, group)) {
        for (const std::int32_t node : context_.tags.childrenOf(group)) {
            runAction(node);
        }
        context_.report.flushLines();
    }
    return !failed_;
}

const AdditionalActions::Kind* AdditionalActions::kindOf(std::string_view tag) {
    const auto* found =
        std::find_if(std::begin(kKinds), std::end(kKinds), [&](const Kind& kind) { return kind.tag == tag; });
    return found == std::end(kKinds) ? nullptr : found;
}

// The log line of an element is shown even when the element is no action.
void AdditionalActions::runAction(std::int32_t node) {
    DescriptionTags& tags = context_.tags;
    if (!tags.conditionHolds(node)) {
        return;
    }
    Action action;
    action.node = node;
    action.details = readDetails(node);
    showLogLine(node);
    const Kind* kind = kindOf(tags.nameOf(node));
    const auto text = tags.requiredTextOf(node);
    if (kind == nullptr || (kind->needsText && !text)) {
        return;
    }
    action.details |= kind->details;
    readProgramFlags(action);
    action.path = pathOf(action, text);
    (this->*kind->step)(action);
}

std::uint32_t AdditionalActions::readDetails(std::int32_t node) {
    const std::vector<std::string> words =
        OUtils::splitText(context_.tags.attribute(node, "Details").value_or(""), ';');
    std::uint32_t details = 0;
    for (const std::string& word : words) {
        const auto* known = std::find_if(std::begin(kDetailWords), std::end(kDetailWords),
                                         [&](const DetailWord& row) { return row.word.view() == word; });
        if (known != std::end(kDetailWords)) {
            details |= known->detail;
        } else if (!word.empty()) {
            context_.debugLog.line("[WARNING] Unrecognized details flag (" + word + ") for tag " +
                                   std::string(context_.tags.nameOf(node)));
        }
    }
    return details;
}

void AdditionalActions::readProgramFlags(Action& action) {
    DescriptionTags& tags = context_.tags;
    const std::string update(tags.attribute(action.node, "ProgressUpdate").value_or(""));
    const std::int32_t interval = OUtils::textToInteger(update);
    action.pause = interval > 0 ? static_cast<std::uint32_t>(interval) * kMillisecondsOfAnUpdate : 0;
    const bool hidesErrors =
        tags.hasAttribute(action.node, "ErrorOutput") && !tags.isSet(action.node, "ErrorOutput");
    action.programFlags = (tags.isSet(action.node, "Wait") ? kRunWait : 0U) |
                          (tags.isSet(action.node, "AsRoot") ? kRunAsRoot : 0U) |
                          (tags.isSet(action.node, "Asynchronous") ? kRunAsynchronous : 0U) |
                          (interval != 0 ? kRunAdvanceProgress : 0U) | (hidesErrors ? kRunNoErrorOutput : 0U);
}

void AdditionalActions::showLogLine(std::int32_t node) {
    const auto line = context_.tags.attribute(node, "Log");
    if (!line.value_or("").empty()) {
        context_.report.addLine(context_.tags.expandForSystem(line), true);
    }
}

std::string AdditionalActions::textOf(const Action& action, std::optional<std::string_view> text) {
    return (action.details & kNoExpansion) != 0 ? std::string(text.value_or(""))
                                                : context_.tags.expand(text, true);
}

// A path that is too long would, when cut, be another one: it counts as none.
std::string AdditionalActions::pathOf(const Action& action, std::optional<std::string_view> text) {
    std::string path = textOf(action, text);
    if ((action.details & kNoPathCorrection) == 0) {
        path = normalizedPath(std::move(path));
    }
    if (path.size() > kPathLimit) {
        context_.debugLog.line("ERROR: A path is too long: \"" + path + "\"");
        path.clear();
    }
    return path;
}

std::string AdditionalActions::destinationOf(const Action& action) {
    return collapsedPath(context_.tags.expand(context_.tags.attribute(action.node, "Dest"), true))
        .substr(0, kPathLimit);
}

void AdditionalActions::openDocument(const Action& action) {
    open(action, "Document");
}

void AdditionalActions::openUrl(const Action& action) {
    open(action, "URL");
}

void AdditionalActions::open(const Action& action, const char* what) {
    const bool opened = programs_.run({action.path, "", "", action.programFlags | kRunOpenWithShell},
                                      context_.report, kOpenPause);
    const std::string outcome = std::string(what) + (opened ? " was opened" : " was NOT opened");
    context_.debugLog.line((opened ? "" : "ERROR: ") + outcome + " : \"" + action.path + "\"");
}

void AdditionalActions::runProgram(const Action& action) {
    const auto written = context_.tags.attribute(action.node, "Arguments");
    const std::string arguments = (action.details & kNoExpansion) != 0
                                      ? std::string(written.value_or(""))
                                      : context_.tags.expandForSystem(written, true);
    const std::string workDir = pathOf(action, context_.tags.attribute(action.node, "WorkDir"));
    const ProgramOutcome program = programs_.execute({action.path, arguments, workDir, action.programFlags},
                                                     context_.report, action.pause);
    if (outcome_ != nullptr && asksForRestart(program)) {
        outcome_->noteRestart();
    }
    const std::string outcome = program.started ? "Program was started" : "ERROR: Program was NOT started";
    context_.debugLog.line(outcome + " : \"" + action.path + " " + arguments + "\"");
}

void AdditionalActions::copyFile(const Action& action) {
    if (!context_.tags.hasAttribute(action.node, "Dest")) {
        context_.debugLog.line("ERROR: Copy file without Dest attribute!");
        return;
    }
    const std::string destination = destinationOf(action);
    const bool copied = context_.system.copyFile(action.path, destination);
    const std::string outcome = copied ? "Additional copy " : "ERROR: Additional copy FAILED ";
    context_.debugLog.line(outcome + ": \"" + destination + "\"");
}

void AdditionalActions::changeRegistry(const Action& action) {
    failed_ = !registry_.applyElement(action.node, product_) || failed_;
}

void AdditionalActions::removeFile(const Action& action) {
    platform::FileSystem& files = context_.machine.files;
    const char* path = action.path.c_str();
    const int status = files.removeFile(action.path);
    if (status == 0) {
        context_.debugLog.print("Additionally removed file : \"%s\"", path);
    } else if (files.exists(action.path)) {
        context_.debugLog.print("ERROR: Remove file could not remove file \"%s\"!", path);
        context_.report.addReason(action.path, status);
    } else {
        context_.debugLog.print("WARNING: Tried to remove a file that doesn't exist \"%s\".", path);
    }
}

void AdditionalActions::removeDirectory(const Action& action) {
    platform::FileSystem& files = context_.machine.files;
    const char* path = action.path.c_str();
    if (removeEmptyDirectories(files, action.path) > 0) {
        context_.debugLog.print("Additionally removed dir : \"%s\"", path);
    } else if (files.exists(action.path)) {
        context_.debugLog.print("ERROR: Remove dir could not remove directories \"%s\"!", path);
    } else {
        context_.debugLog.print("WARNING: Tried to remove a directory that doesn't exist \"%s\".", path);
    }
}

void AdditionalActions::createFile(const Action& action) {
    DescriptionTags& tags = context_.tags;
    if (!tags.hasAttribute(action.node, "Dest")) {
        context_.debugLog.line("ERROR: Create file without Dest attribute (alias: \"" + action.path + "\")!");
        return;
    }
    const std::string destination = destinationOf(action);
    const bool stripsExtension = tags.isSet(action.node, "StripExeExt");
    const bool expandsContent = tags.isSet(action.node, "ExpandVarsInFile");
    const unsigned mode = fileModeOf(action.node);
    extractor_.extractAlias(action.path, destination, expandsContent, stripsExtension);
    context_.debugLog.line("Created a file from alias(" + action.path + ") : \"" + destination + "\" (0" +
                           OUtils::formatText("%o", mode) + ")");
}

// The mode is only logged: files get the mode that is usual for new ones.
unsigned AdditionalActions::fileModeOf(std::int32_t node) {
    const auto attribute = context_.tags.attribute(node, "FileMod");
    if (!attribute) {
        return kDefaultFileMode;
    }
    const std::string text(*attribute);
    char* end = nullptr;
    const long mode = std::strtol(text.c_str(), &end, 0);
    if (end == text.c_str() || *end != '\0') {
        context_.debugLog.line("WARNING: Failed to parse file modification - provided string: " + text);
        return kDefaultFileMode;
    }
    return static_cast<unsigned>(mode);
}
