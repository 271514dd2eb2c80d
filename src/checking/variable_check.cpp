#include "checking/variable_check.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "base/text_functions.h"
#include "checking/check_context.h"
#include "checking/declared_variables.h"
#include "checking/nearest_word.h"
#include "checking/references.h"
#include "checking/text_uses.h"
#include "description/path_variables.h"
#include "description/predefined_variables.h"
#include "description/run_option_table.h"
#include "support/utilities.h"

namespace {

// The variable that the buttons Customize and Express set, whatever the description says.
constexpr std::string_view kCustomizeVariable = "CUSTOMIZE";

bool isSwitchedOn(std::optional<std::string_view> attribute) {
    return attribute && !attribute->starts_with('0');
}

std::string lower(std::string_view text) {
    return OUtils::toLowerAscii(text);
}

class VariableCheck {
public:
    VariableCheck(const CheckContext& context, const DeclaredVariables& variables)
        : context_(context), variables_(variables), names_(variables.names()) {}

    void run() {
        forEachText(context_, [this](const TextUse& use) { checkText(use); });
        for (const std::int32_t button : context_.nodesOf("Button")) {
            checkButton(button);
        }
        checkDeclarations();
        checkCircles();
        checkExclusions();
        checkUninstallation();
        checkUnused();
    }

private:
    void report(FindingCode code, const TextUse& use, std::string message, std::string hint = {}) {
        if (use.attribute) {
            context_.addAtAttribute(code, use.node, *use.attribute, std::move(message), std::move(hint));
        } else {
            context_.addAtText(code, use.node, std::move(message), std::move(hint));
        }
    }

    // What a text that replaces no references has to do with variables.
    void checkText(const TextUse& use) {
        switch (use.references) {
            case TextUse::References::kBrackets:
                checkBrackets(use);
                break;
            case TextUse::References::kDollars:
                checkDollars(use);
                break;
            case TextUse::References::kName:
                checkName(use);
                break;
            case TextUse::References::kNone:
                checkPlain(use);
                break;
        }
    }

    // Elsewhere brackets may be meant as they are.
    void checkBracketsOfPath(const TextUse& use) {
        const bool isPath =
            use.attribute ? isPathAttribute(use.name) : isPathElement(context_.xml(), use.node);
        for (std::size_t at = use.text.find('['); isPath && at != std::string_view::npos;
             at = use.text.find('[', at + 1)) {
            const std::size_t end = use.text.find(']', at);
            const std::string_view name =
                use.text.substr(at + 1, end == std::string_view::npos ? 0 : end - at - 1);
            if (end != std::string_view::npos && !isReferenceName(name)) {
                report("reference-name", use,
                       "the brackets in \"" + std::string(use.text.substr(at, end + 1 - at)) +
                           "\" hold no name of a variable");
                return;
            }
        }
    }

    void checkBrackets(const TextUse& use) {
        checkBracketsOfPath(use);
        for (const Reference& reference : bracketReferences(use.text)) {
            if (!reference.isClosed) {
                report("reference-unclosed", use,
                       "the reference [" + std::string(reference.name) + " isn't closed");
            } else if (isPlainVariableName(reference.name)) {
                this->use(reference.name, use);
            } else if (isMeantAsVariable(reference.name)) {
                const std::string name(reference.name.substr(1));
                const std::string environments = "[$" + name + "] is a variable of the environment, not ";
                report("reference-form", use, environments + name + " of the description",
                       "Write [" + name + "].");
            }
        }
        for (const Reference& reference : dollarReferences(use.text)) {
            const bool isBracketed = reference.at > 0 && use.text[reference.at - 1] == '[';
            if (!isBracketed && variables_.find(reference.name) != nullptr) {
                report("reference-form", use,
                       "$" + std::string(reference.name) + " isn't replaced in this text",
                       "Write [" + std::string(reference.name) + "].");
            }
        }
    }

    // A variable that has its value from the environment may have its name from there, too.
    bool isMeantAsVariable(std::string_view name) const {
        const DeclaredVariable* const variable =
            isEnvironmentName(name) ? variables_.find(name.substr(1)) : nullptr;
        return variable != nullptr && !variable->values.empty() &&
               std::ranges::all_of(variable->values, [this](std::int32_t node) {
                   return OUtils::startsWithIgnoreCase(context_.attribute(node, "DataType").value_or(""),
                                                       "value");
               });
    }

    void checkDollars(const TextUse& use) {
        const std::string own = lower(context_.attribute(use.node, "Name").value_or(""));
        for (const Reference& reference : dollarReferences(use.text)) {
            if (isEnvironmentName(reference.name) || PredefinedVariables::isPredefined(reference.name)) {
                continue;
            }
            if (reference.name.empty()) {
                report("reference-form", use, "a $ without a name leaves the variable empty");
                continue;
            }
            this->use(reference.name, use);
            const DeclaredVariable* const variable = variables_.find(reference.name);
            if (variable != nullptr && own != lower(reference.name)) {
                checkOrder(*variable, use);
            }
        }
        for (const Reference& reference : bracketReferences(use.text)) {
            if (reference.isClosed && isKnown(reference.name)) {
                report("reference-form", use,
                       "[" + std::string(reference.name) + "] isn't replaced in this text",
                       "Write $" + std::string(reference.name) + ".");
            }
        }
        if (use.text.find("://") != std::string_view::npos) {
            report("variable-address", use, "a variable keeps one of the slashes of an address");
        }
    }

    // Control variables get their values from the setup, and what was set before stays known.
    void checkOrder(const DeclaredVariable& variable, const TextUse& use) {
        const bool isLater = !variable.values.empty() && variable.values.front() > use.node;
        if (isLater) {
            report("variable-order", use,
                   variable.name + " is declared further down, and has no value yet when this one is made");
        }
    }

    void checkName(const TextUse& use) {
        const std::string_view type = context_.typeOf(use.node);
        const bool isNameList = type == grammar::kExcludedVariable || type == grammar::kControlVariable;
        if (isNameList || isEnvironmentName(use.text)) {
            return;  // told below, or no variable of the description
        }
        const bool isSet = type == "Trigger" || (type == "Field" && !isShownOnly(use.node));
        if (isSet && PredefinedVariables::isPredefined(use.text)) {
            report("variable-predefined", use, std::string(use.text) + " can't be set");
            return;
        }
        this->use(use.text, use);
    }

    bool isShownOnly(std::int32_t field) const {
        return OUtils::equalsIgnoreCase(context_.attribute(field, "Type").value_or(""), "InstallParameter");
    }

    void checkPlain(const TextUse& use) {
        for (const Reference& reference : bracketReferences(use.text)) {
            if (!reference.isClosed || !isKnown(reference.name)) {
                continue;
            }
            markUsed(reference.name);
            const bool isRegistry = context_.xml().getNode(use.node)->parent >= 0 &&
                                    context_.typeOf(context_.xml().getNode(use.node)->parent) == "Registry";
            const std::string name(reference.name);
            if (isRegistry && use.name != "Log") {
                report("reference-unexpanded", use, "[" + name + "] is only replaced with Expand");
            } else if (isShown(use)) {
                const bool isText = OUtils::equalsIgnoreCase(context_.xml().getName(use.node), "Text");
                report("reference-shown", use, "[" + name + "] is shown as it is written",
                       isText && !use.attribute ? "Add ExpandVars=\"1\"." : "");
            }
        }
    }

    // Texts for people. Of others, patterns for example, a bracket may be a part.
    bool isShown(const TextUse& use) const {
        const std::string_view type = context_.typeOf(use.node);
        const std::string_view parent = context_.typeOf(context_.xml().getNode(use.node)->parent);
        const bool isCaption = use.name == "Label" || use.name == "Description" || use.name == "Content" ||
                               use.name.ends_with("Label");
        return isCaption || parent == "ProductDesc" ||
               (use.name.empty() && (type == "Button" || type == grammar::kPageElement));
    }

    bool isKnown(std::string_view name) const {
        return variables_.find(name) != nullptr || PredefinedVariables::isPredefined(name);
    }

    void markUsed(std::string_view name) { used_.insert(lower(name)); }

    void use(std::string_view name, const TextUse& use) {
        markUsed(name);
        if (isKnown(name)) {
            noteUninstallation(name, use);
            return;
        }
        const std::string_view nearest = nearestWord(name, names_);
        report("variable-undeclared", use, "there is no variable " + std::string(name),
               nearest.empty() ? std::string()
                               : "Write \"" + std::string(nearest) + "\" if that is what is meant.");
    }

    void checkButton(std::int32_t button) {
        const std::string_view name = context_.attribute(button, "Name").value_or("");
        const bool isPreset =
            OUtils::equalsIgnoreCase(name, "Customize") || OUtils::equalsIgnoreCase(name, "Express");
        if (isPreset) {
            markUsed(kCustomizeVariable);
            if (variables_.find(kCustomizeVariable) == nullptr) {
                context_.addAtAttribute("variable-undeclared", button, "Name",
                                        "this button sets the variable CUSTOMIZE, and there is none");
            }
        }
        bool isValid = false;
        for (const std::string& assigned :
             assignedBy(context_.attribute(button, "Action").value_or(""), isValid)) {
            markUsed(assigned);
            if (PredefinedVariables::isPredefined(assigned)) {
                context_.addAtAttribute("variable-predefined", button, "Action", assigned + " can't be set");
            }
        }
        if (!isValid) {
            context_.addAtAttribute("action-invalid", button, "Action",
                                    "this action is neither Cancel nor Help nor a list of assignments");
        }
    }

    void checkDeclarations() {
        for (const DeclaredVariable* const variable : variables_.all()) {
            for (std::size_t i = 0; i < variable->values.size(); ++i) {
                checkValue(*variable, i);
            }
            if (variable->values.empty() && !variable->isValidation) {
                reportNeverSet(*variable);
            }
        }
        for (const std::int32_t field : context_.nodesOf("Field")) {
            checkField(field);
        }
    }

    void checkValue(const DeclaredVariable& variable, std::size_t index) {
        const std::int32_t node = variable.values[index];
        const std::string_view name = context_.attribute(node, "Name").value_or("");
        if (PredefinedVariables::isPredefined(name)) {
            context_.addAtAttribute("variable-predefined", node, "Name", std::string(name) + " can't be set");
        } else if (!isPlainVariableName(name) && !isEnvironmentName(name)) {
            context_.addAtAttribute(
                "variable-name", node, "Name",
                "no reference finds a variable with the name \"" + std::string(name) + "\"");
        }
        if (index > 0) {
            checkRepetition(variable.values[index - 1], node, variable.name);
        }
        const bool follows = isSwitchedOn(context_.attribute(node, "Recalculate"));
        if (follows && variable.isAsked) {
            context_.addAtAttribute(
                "variable-recalculated", node, "Recalculate",
                variable.name + " follows other variables only until somebody is asked for it");
        }
        checkOption(node, name);
        checkSources(node);
    }

    void checkOption(std::int32_t node, std::string_view name) {
        const std::string_view type = context_.attribute(node, "DataType").value_or("");
        if (OUtils::startsWithIgnoreCase(type, "cmdlinearg") && run_options::isTaken(name)) {
            context_.addAtAttribute("variable-option-taken", node, "Name",
                                    "every setup has an option " + std::string(name) + " of its own");
        }
    }

    void checkRepetition(std::int32_t earlier, std::int32_t later, const std::string& name) {
        const auto first = context_.attribute(earlier, "Condition");
        const auto second = context_.attribute(later, "Condition");
        const bool mayBeOption =
            OUtils::startsWithIgnoreCase(context_.attribute(later, "DataType").value_or(""), "cmdlinearg");
        if (!mayBeOption && (!second || first == second)) {
            context_.addAtElement("variable-repeated", later,
                                  "this Value of " + name + " replaces the one above");
        }
    }

    void checkSources(std::int32_t node) {
        const std::string_view type = context_.attribute(node, "DataType").value_or("");
        const auto need = [&](vocabulary::AttributeName attribute) {
            if (!context_.attribute(node, attribute)) {
                context_.addAtElement(
                    "attribute-missing", node,
                    "a Value of this DataType needs the attribute " + std::string(attribute.view()));
            }
        };
        if (OUtils::startsWithIgnoreCase(type, "registry")) {
            need("RegPlace");
            need("RegKey");
        } else if (OUtils::startsWithIgnoreCase(type, "installvar")) {
            need("AppName");
        }
    }

    // Where it is named first.
    void reportNeverSet(const DeclaredVariable& variable) {
        const auto isIt = [&](std::string_view name) {
            return OUtils::equalsIgnoreCase(name, variable.name);
        };
        for (const std::int32_t node : context_.nodesOf(grammar::kControlVariable)) {
            if (isIt(context_.text(node)) && used_.contains(lower(variable.name))) {
                context_.addAtText("variable-never-set", node, variable.name + " has no Value in DefValues");
                return;
            }
        }
        for (const std::int32_t node : context_.nodesOf("Trigger")) {
            if (isIt(context_.attribute(node, "Variable").value_or(""))) {
                context_.addAtAttribute("variable-never-set", node, "Variable",
                                        variable.name + " has no Value in DefValues");
                return;
            }
        }
    }

    void checkField(std::int32_t field) {
        const std::string_view type = context_.attribute(field, "Type").value_or("");
        const DeclaredVariable* const variable = variables_.find(context_.text(field));
        if (OUtils::equalsIgnoreCase(type, "RadioButtons")) {
            checkChoices(field, variable);
        } else if (OUtils::equalsIgnoreCase(type, "Password") && variable != nullptr) {
            checkPassword(field, *variable);
        }
    }

    std::size_t partsOf(std::int32_t field, vocabulary::AttributeName attribute, char separator) const {
        const std::string_view text = context_.attribute(field, attribute).value_or("");
        return text.empty() ? 0 : OUtils::splitText(text, separator).size();
    }

    void checkChoices(std::int32_t field, const DeclaredVariable* variable) {
        const std::size_t choices = partsOf(field, "Content", ';');
        if (choices == 0) {
            context_.addAtElement("field-choices", field,
                                  "these RadioButtons have no Content, and so no choices");
            return;
        }
        if (partsOf(field, "Description", ';') > choices) {
            context_.addAtAttribute("field-choices", field, "Description",
                                    "there are more descriptions than choices");
        }
        if (partsOf(field, "Enable", '|') > choices) {
            context_.addAtAttribute("field-choices", field, "Enable",
                                    "there are more conditions than choices");
        }
        if (variable != nullptr) {
            checkChosen(field, *variable, choices);
        }
    }

    void checkChosen(std::int32_t field, const DeclaredVariable& variable, std::size_t choices) {
        for (const std::string& value : variables_.knownValues(variable.name)) {
            const bool isNumber = !value.empty() && value.size() < 6 &&
                                  value.find_first_not_of("0123456789") == std::string::npos;
            if (!value.empty() && (!isNumber || std::stoul(value) >= choices)) {
                context_.addAtText("field-choices", field,
                                   "the value \"" + value + "\" of " + variable.name + " is none of the " +
                                       std::to_string(choices) + " choices, which are counted from 0",
                                   "Give the variable the number of a choice.");
            }
        }
    }

    void checkPassword(std::int32_t field, const DeclaredVariable& variable) {
        if (!isExcludedEverywhere(variable)) {
            context_.addAtText("password-recorded", field,
                               "the password is written into the records, which others can read");
        }
        const std::vector<std::string> values = variables_.knownValues(variable.name);
        if (std::ranges::any_of(values, [](const std::string& value) { return !value.empty(); })) {
            context_.addAtText("password-shown", field,
                               "the value of " + variable.name + " is shown as the default");
        }
    }

    bool isExcludedEverywhere(const DeclaredVariable& variable) const {
        bool fromLog = false;
        bool fromConfig = false;
        for (const std::int32_t node : context_.nodesOf(grammar::kExcludedVariable)) {
            if (context_.text(node) != variable.name) {
                continue;
            }
            const std::string_view words = context_.attribute(node, "ExcludeFrom").value_or("all");
            fromLog = fromLog || words.find("log") != std::string_view::npos ||
                      words.find("all") != std::string_view::npos;
            fromConfig = fromConfig || words.find("config") != std::string_view::npos ||
                         words.find("all") != std::string_view::npos;
        }
        return fromLog && fromConfig;
    }

    // Recalculated variables that depend on themselves. Each walk ends at what was looked at before.
    void checkCircles() {
        std::unordered_map<std::string, std::vector<std::string>> references;
        std::unordered_map<std::string, std::int32_t> nodes;
        for (const std::int32_t node : context_.nodesOf("Value")) {
            if (!isSwitchedOn(context_.attribute(node, "Recalculate"))) {
                continue;
            }
            const std::string name = lower(context_.attribute(node, "Name").value_or(""));
            nodes.emplace(name, node);
            for (const Reference& reference : dollarReferences(context_.text(node))) {
                references[name].push_back(lower(reference.name));
            }
        }
        std::unordered_map<std::string, int> state;  // 1: on the way; 2: done
        for (const std::int32_t node : context_.nodesOf("Value")) {
            const std::string name = lower(context_.attribute(node, "Name").value_or(""));
            if (nodes.contains(name)) {
                walk(name, references, nodes, state);
            }
        }
    }

    void walk(const std::string& first,
              const std::unordered_map<std::string, std::vector<std::string>>& references,
              const std::unordered_map<std::string, std::int32_t>& nodes,
              std::unordered_map<std::string, int>& state) {
        struct Step {
            std::string name;
            std::size_t next = 0;
        };
        std::vector<Step> way;
        const auto enter = [&](const std::string& name) {
            state[name] = 1;
            way.push_back({name, 0});
        };
        if (state[first] == 0) {
            enter(first);
        }
        while (!way.empty()) {
            Step& step = way.back();
            const auto found = references.find(step.name);
            if (found == references.end() || step.next == found->second.size()) {
                state[step.name] = 2;
                way.pop_back();
                continue;
            }
            const std::string& next = found->second[step.next++];
            if (state[next] == 1) {
                const std::int32_t node = nodes.at(step.name);
                context_.addAtText("variable-circular", node,
                                   std::string(context_.attribute(node, "Name").value_or("")) +
                                       " is recalculated from a variable that depends on it");
            } else if (state[next] == 0 && nodes.contains(next)) {
                enter(next);
            }
        }
    }

    // Here the case of names counts.
    void checkExclusions() {
        for (const std::int32_t node : context_.nodesOf(grammar::kExcludedVariable)) {
            const std::string_view name = context_.text(node);
            const DeclaredVariable* const variable = variables_.find(name);
            if (!name.empty() && (variable == nullptr || variable->name != name)) {
                context_.addAtText("exclusion-unknown", node,
                                   "there is no variable " + std::string(name) + " in this spelling");
            }
        }
    }

    // An uninstallation calculates the values again, but for those with UseOld.
    void noteUninstallation(std::string_view name, const TextUse& use) {
        const bool isInUninstallation = context_.enclosing(use.node, "UninstallDialogs") >= 0 ||
                                        context_.enclosing(use.node, "PreUninstall") >= 0;
        if (isInUninstallation) {
            usedByUninstallation_.insert(lower(name));
        }
    }

    void checkUninstallation() {
        for (const DeclaredVariable* const variable : variables_.all()) {
            if (!variable->isAsked || variable->values.empty() ||
                !usedByUninstallation_.contains(lower(variable->name))) {
                continue;
            }
            const bool isKept = std::ranges::any_of(variable->values, [this](std::int32_t node) {
                return context_.attribute(node, "UseOld").has_value();
            });
            if (!isKept) {
                context_.addAtElement("variable-use-old", variable->values.front(),
                                      "the uninstallation uses " + variable->name +
                                          ", but not with the value that the user has chosen");
            }
        }
    }

    bool hasExpandedTree() {
        return std::ranges::any_of(context_.nodesOf("Tree"), [this](std::int32_t node) {
            return context_.attribute(node, "ExpandVarsInFile").has_value();
        });
    }

    // A file with ExpandVarsInFile may use any variable.
    bool readsExpandedFiles() {
        if (hasExpandedTree()) {
            return false;
        }
        for (const std::int32_t node : context_.nodesOf("FN")) {
            if (!context_.attribute(node, "ExpandVarsInFile")) {
                continue;
            }
            std::string content;
            const bool isRead = context_.root() && OUtils::readWholeFile(*context_.root() + "/" +
                                                                             std::string(context_.text(node)),
                                                                         content, context_.files()) == 0;
            if (!isRead) {
                return false;
            }
            for (const Reference& reference : bracketReferences(content)) {
                markUsed(reference.name);
            }
        }
        return std::ranges::none_of(context_.nodesOf("CreateFile"), [this](std::int32_t node) {
            return context_.attribute(node, "ExpandVarsInFile").has_value();
        });
    }

    void checkUnused() {
        if (!readsExpandedFiles()) {
            return;
        }
        for (const DeclaredVariable* const variable : variables_.all()) {
            const bool isOwn = !variable->values.empty() && !variable->isControl && !variable->isValidation;
            if (isOwn && !used_.contains(lower(variable->name)) && isPlainVariableName(variable->name)) {
                context_.addAtElement("variable-unused", variable->values.front(),
                                      "nothing uses the variable " + variable->name);
            }
        }
    }

    const CheckContext& context_;
    const DeclaredVariables& variables_;
    std::vector<std::string_view> names_;
    std::unordered_set<std::string> used_;  // lower case
    std::unordered_set<std::string> usedByUninstallation_;
};

}  // namespace

void checkVariables(const CheckContext& context, const DeclaredVariables& variables) {
    VariableCheck(context, variables).run();
}
