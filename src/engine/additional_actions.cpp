#include "engine/additional_actions.h"

#include <cstdlib>
#include <cstring>
#include <vector>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "contracts/system_modifications.h"
#include "contracts/system_operations.h"
#include "engine/alias_extractor.h"
#include "engine/changes/program_run.h"
#include "platform/file_system.h"

namespace {

enum Detail : std::uint32_t { kNoExpansion = 1, kNoPathCorrection = 2 };

constexpr std::uint32_t kOpenDelay = 100;  // milliseconds
constexpr std::uint32_t kMillisecondsOfAnUpdate = 10;
constexpr int kDefaultFileMode = 0444;
constexpr std::size_t kPathLimit = OUtils::kPathCapacity - 1;

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

AdditionalActions::AdditionalActions(Parts parts)
    : context_(parts.context),
      extractor_(parts.extractor),
      system_(parts.system),
      files_(parts.files),
      registry_(parts.context, parts.product),
      directories_(parts.files) {}

std::vector<std::string_view> AdditionalActions::actionNames() {
    std::vector<std::string_view> names;
    for (const Kind& kind : kKinds) {
        names.emplace_back(kind.tag);
    }
    return names;
}

int AdditionalActions::runAdditionalActions(InstallerUI* ui, const char* container) {
    if (container == nullptr) {
        return -1;
    }
    context_.debugLog.print("Running Files for installation tag: <%s>", container);
    for (std::int32_t group = context_.tags.nextGroup(container, -1); group >= 0;
         group = context_.tags.nextGroup(container, group)) {
        for (const std::int32_t node : context_.tags.childrenOf(group)) {
            runAction(ui, node);
        }
        Report(ui, &context_.errors).flushLines();
    }
    return 0;
}

const AdditionalActions::Kind* AdditionalActions::kindOf(const char* tag) {
    for (const Kind& kind : kKinds) {
        if (std::strcmp(kind.tag, tag) == 0) {
            return &kind;
        }
    }
    return nullptr;
}

void AdditionalActions::runAction(InstallerUI* ui, std::int32_t node) {
    DescriptionTags& tags = context_.tags;
    if (tags.nameOf(node) == nullptr || !tags.conditionHolds(node)) {
        return;
    }
    Action action;
    action.node = node;
    action.details = readDetails(node);
    showLogLine(ui, node);
    const Kind* kind = kindOf(tags.nameOf(node));
    const char* text = tags.textOf(node);
    if (kind == nullptr || (kind->needsText && (text == nullptr || *text == '\0'))) {
        return;
    }
    action.details |= kind->details;
    readProgramFlags(action);
    action.path = pathOf(action, text);
    (this->*kind->step)(ui, action);
}

std::uint32_t AdditionalActions::readDetails(std::int32_t node) {
    std::vector<std::string> words;
    OUtils::splitText(context_.tags.attribute(node, "Details"), ';', words);
    std::uint32_t details = 0;
    for (const std::string& word : words) {
        if (word == "NoExpansion") {
            details |= kNoExpansion;
        } else if (word == "NoPathCorrection") {
            details |= kNoPathCorrection;
        } else if (!word.empty()) {
            context_.debugLog.print("[WARNING] Unrecognized details flag (%s) for tag %s", word.c_str(),
                                    context_.tags.nameOf(node));
        }
    }
    return details;
}

void AdditionalActions::readProgramFlags(Action& action) {
    DescriptionTags& tags = context_.tags;
    const char* update = tags.attribute(action.node, "ProgressUpdate");
    const std::int32_t interval = update == nullptr ? 0 : OUtils::textToInteger(update);
    action.delay = interval > 0 ? static_cast<std::uint32_t>(interval) * kMillisecondsOfAnUpdate : 0;
    const bool hidesErrors =
        tags.hasAttribute(action.node, "ErrorOutput") && !tags.isSet(action.node, "ErrorOutput");
    action.programFlags = (tags.isSet(action.node, "Wait") ? kRunWait : 0U) |
                          (tags.isSet(action.node, "AsRoot") ? kRunAsRoot : 0U) |
                          (tags.isSet(action.node, "Asynchronous") ? kRunAsynchronous : 0U) |
                          (interval != 0 ? kRunAdvanceProgress : 0U) | (hidesErrors ? kRunNoErrorOutput : 0U);
}

void AdditionalActions::showLogLine(InstallerUI* ui, std::int32_t node) {
    const char* line = context_.tags.attribute(node, "Log");
    if (line != nullptr && *line != '\0') {
        Report(ui, &context_.errors).addLine(context_.tags.expand(line), true);
    }
}

std::string AdditionalActions::textOf(const Action& action, const char* text) {
    if (text == nullptr) {
        return {};
    }
    return (action.details & kNoExpansion) != 0 ? std::string(text) : context_.tags.expand(text, true);
}

// A path that is too long would, when cut, be another one: it counts as none.
std::string AdditionalActions::pathOf(const Action& action, const char* text) {
    std::string path = textOf(action, text);
    if ((action.details & kNoPathCorrection) == 0) {
        path = normalizedPath(std::move(path));
    }
    if (path.size() > kPathLimit) {
        context_.debugLog.print("ERROR: A path is too long: \"%s\"", path.c_str());
        path.clear();
    }
    return path;
}

std::string AdditionalActions::destinationOf(const Action& action) {
    return collapsedPath(context_.tags.expand(context_.tags.attribute(action.node, "Dest"), true))
        .substr(0, kPathLimit);
}

void AdditionalActions::openDocument(InstallerUI*, const Action& action) {
    open(action, "Document");
}

void AdditionalActions::openUrl(InstallerUI*, const Action& action) {
    open(action, "URL");
}

void AdditionalActions::open(const Action& action, const char* what) {
    const bool opened = context_.modifications.runAssociatedProgram(
        action.path.c_str(), nullptr, action.programFlags | kRunOpenWithShell, nullptr, nullptr, kOpenDelay);
    context_.debugLog.print("%s%s was %sopened : \"%s\"", opened ? "" : "ERROR: ", what, opened ? "" : "NOT ",
                            action.path.c_str());
}

void AdditionalActions::runProgram(InstallerUI* ui, const Action& action) {
    DescriptionTags& tags = context_.tags;
    const std::string arguments = textOf(action, tags.attribute(action.node, "Arguments"));
    const std::string workDir = pathOf(action, tags.attribute(action.node, "WorkDir"));
    const bool started = context_.modifications.runAssociatedProgram(
        action.path.c_str(), tags.hasAttribute(action.node, "Arguments") ? arguments.c_str() : nullptr,
        action.programFlags, tags.hasAttribute(action.node, "WorkDir") ? workDir.c_str() : nullptr, ui,
        action.delay);
    context_.debugLog.print("%sProgram was %sstarted : \"%s %s\"",
                            started ? "" : "ERROR: ", started ? "" : "NOT ", action.path.c_str(),
                            arguments.c_str());
}

void AdditionalActions::copyFile(InstallerUI*, const Action& action) {
    if (!context_.tags.hasAttribute(action.node, "Dest")) {
        context_.debugLog.print("ERROR: Copy file without Dest attribute!");
        return;
    }
    const std::string destination = destinationOf(action);
    const bool copied = system_.copyFile(action.path.c_str(), destination.c_str());
    context_.debugLog.print("%sAdditional copy %s: \"%s\"", copied ? "" : "ERROR: ", copied ? "" : "FAILED ",
                            destination.c_str());
}

void AdditionalActions::changeRegistry(InstallerUI* ui, const Action& action) {
    registry_.applyRegistryTag(ui, action.node);
}

void AdditionalActions::removeFile(InstallerUI*, const Action& action) {
    if (files_.removeFile(action.path.c_str()) == 0) {
        context_.debugLog.print("Additionally removed file : \"%s\"", action.path.c_str());
    } else if (files_.exists(action.path.c_str())) {
        context_.debugLog.print("ERROR: Remove file could not remove file \"%s\"!", action.path.c_str());
    } else {
        context_.debugLog.print("WARNING: Tried to remove a file that doesn't exist \"%s\".",
                                action.path.c_str());
    }
}

void AdditionalActions::removeDirectory(InstallerUI*, const Action& action) {
    if (directories_.removeEmptyDirectories(action.path) > 0) {
        context_.debugLog.print("Additionally removed dir : \"%s\"", action.path.c_str());
    } else if (files_.exists(action.path.c_str())) {
        context_.debugLog.print("ERROR: Remove dir could not remove directories \"%s\"!",
                                action.path.c_str());
    } else {
        context_.debugLog.print("WARNING: Tried to remove a directory that doesn't exist \"%s\".",
                                action.path.c_str());
    }
}

void AdditionalActions::createFile(InstallerUI*, const Action& action) {
    if (!context_.tags.hasAttribute(action.node, "Dest")) {
        context_.debugLog.print("ERROR: Create file without Dest attribute (alias: \"%s\")!",
                                action.path.c_str());
        return;
    }
    const std::string destination = destinationOf(action);
    const bool stripsExtension = context_.tags.isSet(action.node, "StripExeExt");
    const bool expandsContent = context_.tags.isSet(action.node, "ExpandVarsInFile");
    const int mode = fileModeOf(action.node);
    extractor_.extractAlias(action.path.c_str(), destination.c_str(), expandsContent, stripsExtension);
    context_.debugLog.print("Created a file from alias(%s) : \"%s\" (0%o)", action.path.c_str(),
                            destination.c_str(), static_cast<unsigned>(mode));
}

int AdditionalActions::fileModeOf(std::int32_t node) {
    const char* text = context_.tags.attribute(node, "FileMod");
    if (text == nullptr) {
        return kDefaultFileMode;
    }
    char* end = nullptr;
    const long mode = std::strtol(text, &end, 0);
    if (end == text || *end != '\0') {
        context_.debugLog.print("WARNING: Failed to parse file modification - provided string: %s", text);
        return kDefaultFileMode;
    }
    return static_cast<int>(mode);
}
