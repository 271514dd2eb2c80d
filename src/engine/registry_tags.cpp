#include "engine/registry_tags.h"

#include "base/fixed_text.h"
#include "base/path_functions.h"
#include "base/text_functions.h"
#include "contracts/system_modifications.h"
#include "description/product_description.h"
#include "engine/action_log_format.h"

void RegistryTags::applyRegistryTag(InstallerUI* ui, std::int32_t node) {
    const bool openedHere = !context_.log.isOpen() && openProductLog();
    for (const std::int32_t child : context_.tags.childrenOf(node)) {
        applyChild(ui, child);
    }
    Report(ui, &context_.errors).flushLines();
    if (openedHere && !context_.log.close()) {
        context_.debugLog.print("ERROR: The changes of the registry could not be written to the action log");
    }
}

bool RegistryTags::openProductLog() {
    PathText path;
    return product_.getInstallLogFile(path.data(), static_cast<int>(PathText::capacity())) == 0 &&
           !path.isEmpty() && context_.log.openToAppend(path.c_str()) == 0;
}

void RegistryTags::applyChild(InstallerUI* ui, std::int32_t node) {
    DescriptionTags& tags = context_.tags;
    if (!tags.hasAttribute(node, "Place") || !tags.hasAttribute(node, "Path") || !tags.conditionHolds(node)) {
        return;
    }
    const Change change = readChange(node);
    carryOut(change);
    const char* line = tags.attribute(node, "Log");
    if (line != nullptr) {
        Report(ui, &context_.errors).addLine(textOf(change, line), false);
    }
}

RegistryTags::Change RegistryTags::readChange(std::int32_t node) {
    DescriptionTags& tags = context_.tags;
    Change change;
    change.node = node;
    change.expand = tags.isSet(node, "Expand");
    change.place = tags.attribute(node, "Place");
    change.path = textOf(change, tags.attribute(node, "Path"));
    OUtils::setSeparators(change.path.data());
    const char* valueName = tags.attribute(node, "Value");
    if (valueName != nullptr) {
        change.expandedValueName = textOf(change, valueName);
        change.valueName = valueName;
    }
    return change;
}

std::string RegistryTags::textOf(const Change& change, const char* text) {
    return change.expand ? context_.tags.expand(text) : std::string(text);
}

void RegistryTags::carryOut(const Change& change) {
    const std::string_view name = context_.tags.nameOf(change.node);
    if (name == "AddValue") {
        addValue(change);
    } else if (name == "AddKey") {
        addKey(change);
    } else if (name == "RemoveValue") {
        removeValue(change);
    } else if (name == "RemoveKey") {
        removeKey(change);
    } else {
        context_.debugLog.print("ERROR: Usupported registry action \"%s\"",
                                context_.tags.nameOf(change.node));
    }
}

void RegistryTags::addValue(const Change& change) {
    const char* text = context_.tags.textOf(change.node);
    if (change.valueName == nullptr || text == nullptr) {
        context_.debugLog.print("ERROR: No registry value name supplied!");
        return;
    }
    int created = 0;
    if (context_.modifications.writeRegistryValue(
            change.place.c_str(), change.path.c_str(), context_.tags.attribute(change.node, "Type"),
            change.expandedValueName.c_str(), textOf(change, text).c_str(), created) != 0 ||
        !isRecorded(change)) {
        return;
    }
    if (created > 0) {
        context_.log.writeRecord(ActionLogFormat::kRegistryKey,
                                 {std::to_string(created), change.place, change.path});
    }
    context_.log.writeRecord(ActionLogFormat::kRegistryValue,
                             {change.place, change.path, change.expandedValueName});
}

void RegistryTags::addKey(const Change& change) {
    const int created = context_.modifications.createRegistryKey(change.place.c_str(), change.path.c_str());
    if (created > 0 && isRecorded(change)) {
        context_.log.writeRecord(ActionLogFormat::kRegistryKey,
                                 {std::to_string(created), change.place, change.path});
    }
}

void RegistryTags::removeValue(const Change& change) {
    if (change.valueName == nullptr) {
        context_.debugLog.print("ERROR: No registry value name supplied!");
        return;
    }
    context_.modifications.deleteRegistryValue(change.place.c_str(), change.path.c_str(),
                                               change.expandedValueName.c_str());
}

void RegistryTags::removeKey(const Change& change) {
    const char* count = context_.tags.attribute(change.node, "KeyCount");
    context_.modifications.deleteRegistryKeys(change.place.c_str(), change.path.c_str(),
                                              count == nullptr ? 1 : OUtils::textToInteger(count));
}

bool RegistryTags::isRecorded(const Change& change) {
    return context_.log.isOpen() && context_.tags.holds(context_.tags.attribute(change.node, "ActionLog"));
}
