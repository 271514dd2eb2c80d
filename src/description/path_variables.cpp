#include "description/path_variables.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <vector>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "description/pxml.h"
#include "description/vocabulary_lookup.h"
#include "platform/written_path.h"

namespace {

using vocabulary::AttributeName;
using vocabulary::ElementName;

constexpr ElementName kPathElements[] = {"InstallLogFile", "InstallBackupFile", "UninstallXmlFile",
                                         "UninstallCmd",   "CopyFile",          "RemoveFile",
                                         "RemoveDir",      "RunProgram",        "OpenDocument"};
constexpr AttributeName kPathAttributes[] = {"Dest",     "Path",   "FileName", "StartPath",
                                             "IconPath", "Target", "WorkDir",  "Directory"};

using Names = std::vector<std::string>;
// Each name with those whose values are paths when its own is.
using Relations = std::map<std::string, Names>;

// The name in [NAME] at the start of the text; empty when there is none.
std::string leadingReference(std::string_view text) {
    const std::size_t end = text.find(']');
    const bool isReference = text.starts_with('[') && end != std::string_view::npos;
    return isReference ? OUtils::toLowerAscii(text.substr(1, end - 1)) : std::string();
}

// The name in $NAME at the start of an expression that is a path if that variable is; empty when there is
// none.
std::string leadingPart(std::string_view expression) {
    if (!expression.starts_with('$')) {
        return {};
    }
    const std::size_t end = std::min(expression.find_first_of("/\\"), expression.size());
    const std::string_view name = expression.substr(1, end - 1);
    const bool isName = std::ranges::all_of(name, [](char c) {
        return c == '_' || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    });
    return isName ? OUtils::toLowerAscii(name) : std::string();
}

void addName(std::string name, Names& names) {
    if (!name.empty()) {
        names.push_back(std::move(name));
    }
}

void addReferences(const PXML& description, std::int32_t node, Names& names) {
    if (isPathElement(description, node)) {
        addName(leadingReference(description.getText(node).value_or("")), names);
    }
    // The target of such a shortcut is an address, in which every separator counts.
    const bool isAddress =
        OUtils::equalsIgnoreCase(vocabulary::attributeOf(description, node, "Type").value_or(""), "URL");
    for (const AttributeName attribute : kPathAttributes) {
        if (isAddress && attribute.view() == "Target") {
            continue;
        }
        addName(leadingReference(vocabulary::attributeOf(description, node, attribute).value_or("")), names);
    }
}

void addField(const PXML& description, std::int32_t node, Names& names) {
    const auto type = vocabulary::attributeOf(description, node, "Type");
    if (vocabulary::isCalled(description, node, "Field") &&
        OUtils::equalsIgnoreCase(type.value_or(""), "Directory")) {
        addName(OUtils::toLowerAscii(description.getText(node).value_or("")), names);
    }
}

void addRelation(const PXML& description, std::int32_t node, Relations& relations) {
    if (!vocabulary::isCalled(description, node, "Value")) {
        return;
    }
    const auto type = vocabulary::attributeOf(description, node, "DataType");
    const std::string name =
        OUtils::toLowerAscii(vocabulary::attributeOf(description, node, "Name").value_or(""));
    const std::string other = leadingPart(description.getText(node).value_or(""));
    if (OUtils::startsWithIgnoreCase(type.value_or(""), "value") && !name.empty() && !other.empty()) {
        relations[name].push_back(other);
        relations[other].push_back(name);
    }
}

}  // namespace

bool isPathElement(const PXML& description, std::int32_t node) {
    return std::ranges::any_of(kPathElements, [&](const ElementName element) {
        return vocabulary::isCalled(description, node, element);
    });
}

bool isPathAttribute(std::string_view name) {
    return std::ranges::any_of(kPathAttributes, [&](const AttributeName attribute) {
        return OUtils::equalsIgnoreCase(attribute.view(), name);
    });
}

PathVariables::PathVariables(const PXML& description) {
    Names waiting;
    Relations relations;
    for (std::int32_t node = 0; node < description.getNodeCount(); ++node) {
        addReferences(description, node, waiting);
        addField(description, node, waiting);
        addRelation(description, node, relations);
    }
    while (!waiting.empty()) {
        const std::string name = std::move(waiting.back());
        waiting.pop_back();
        const auto related = relations.find(name);
        if (names_.insert(name).second && related != relations.end()) {
            waiting.insert(waiting.end(), related->second.begin(), related->second.end());
        }
    }
}

bool PathVariables::contains(std::string_view name) const {
    return names_.contains(OUtils::toLowerAscii(name));
}

std::optional<VariableReading> WrittenPathLookup::read(std::string_view name, std::size_t limit) {
    std::optional<VariableReading> reading = variables_.read(name, limit);
    if (reading && paths_.contains(name)) {
        reading->value = platform::writtenPath(reading->value);
    }
    return reading;
}
