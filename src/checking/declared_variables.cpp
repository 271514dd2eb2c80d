#include "checking/declared_variables.h"

#include <algorithm>

#include "base/text_functions.h"
#include "checking/check_context.h"
#include "checking/references.h"

DeclaredVariables::DeclaredVariables(const CheckContext& context) : context_(context) {
    addValues();
    addControlVariables();
    addFields();
    addAssignments();
}

const DeclaredVariable* DeclaredVariables::find(std::string_view name) const {
    const auto found = variables_.find(OUtils::toLowerAscii(name));
    return found == variables_.end() ? nullptr : &found->second;
}

std::vector<std::string_view> DeclaredVariables::names() const {
    std::vector<std::string_view> names;
    for (const DeclaredVariable* const variable : ordered_) {
        names.emplace_back(variable->name);
    }
    return names;
}

std::vector<std::string> DeclaredVariables::knownValues(std::string_view name) const {
    std::vector<std::string> values;
    const DeclaredVariable* const variable = find(name);
    for (const std::int32_t node : variable == nullptr ? std::vector<std::int32_t>() : variable->values) {
        const std::string_view type = context_.attribute(node, "DataType").value_or("");
        const std::string_view text = context_.text(node);
        if (OUtils::startsWithIgnoreCase(type, "value") && text.find('$') == std::string_view::npos) {
            values.emplace_back(text);
        }
    }
    return values;
}

DeclaredVariable& DeclaredVariables::add(std::string_view name) {
    const auto [found, isNew] = variables_.try_emplace(OUtils::toLowerAscii(name));
    if (isNew) {
        found->second.name = std::string(name);
        ordered_.push_back(&found->second);
    }
    return found->second;
}

void DeclaredVariables::addValues() {
    for (const std::int32_t node : context_.nodesOf("Value")) {
        const std::string_view name = context_.attribute(node, "Name").value_or("");
        if (!name.empty()) {
            add(name).values.push_back(node);
        }
    }
}

void DeclaredVariables::addControlVariables() {
    for (const std::int32_t node : context_.nodesOf(grammar::kControlVariable)) {
        if (!context_.text(node).empty()) {
            add(context_.text(node)).isControl = true;
        }
    }
}

// A field asks for a variable, but doesn't make one.
void DeclaredVariables::addFields() {
    for (const std::int32_t node : context_.nodesOf("Field")) {
        const std::string_view type = context_.attribute(node, "Type").value_or("");
        const auto found = variables_.find(OUtils::toLowerAscii(context_.text(node)));
        if (found != variables_.end() && !OUtils::equalsIgnoreCase(type, "InstallParameter")) {
            found->second.isAsked = true;
            found->second.isText = found->second.isText || OUtils::equalsIgnoreCase(type, "EditBox") ||
                                   OUtils::equalsIgnoreCase(type, "Password") ||
                                   OUtils::equalsIgnoreCase(type, "Directory");
        }
        const std::string_view validation = context_.attribute(node, "ValidationVariable").value_or("");
        if (!validation.empty()) {
            add(validation).isValidation = true;
        }
    }
}

void DeclaredVariables::addAssignments() {
    for (const std::int32_t node : context_.nodesOf("Trigger")) {
        const std::string_view name = context_.attribute(node, "Variable").value_or("");
        if (!name.empty() && !isEnvironmentName(name)) {
            add(name).isAssigned = true;
        }
    }
    for (const std::int32_t node : context_.nodesOf("Button")) {
        bool isValid = false;
        for (const std::string& name : assignedBy(context_.attribute(node, "Action").value_or(""), isValid)) {
            add(name).isAssigned = true;
        }
    }
}

std::vector<std::string> assignedBy(std::string_view action, bool& outIsValid) {
    std::vector<std::string> names;
    outIsValid = true;
    if (OUtils::startsWithIgnoreCase(action, "Cancel") || OUtils::startsWithIgnoreCase(action, "Help")) {
        return names;
    }
    for (const std::string& part : OUtils::splitText(action, ';')) {
        const std::string_view assignment = OUtils::trimWhiteSpace(part);
        const std::size_t close = assignment.find("]='");
        const bool isWhole = assignment.starts_with('[') && close != std::string_view::npos &&
                             assignment.ends_with('\'') && assignment.size() > close + 3 &&
                             isPlainVariableName(assignment.substr(1, close - 1));
        if (isWhole) {
            names.emplace_back(assignment.substr(1, close - 1));
        } else if (!assignment.empty()) {
            outIsValid = false;
        }
    }
    return names;
}
