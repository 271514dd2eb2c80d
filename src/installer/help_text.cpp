#include "installer/help_text.h"

#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/text_functions.h"
#include "base/visible_text.h"
#include "description/control_variables.h"
#include "description/predefined_variables.h"
#include "description/pxml.h"
#include "description/run_option_table.h"
#include "description/vocabulary_lookup.h"
#include "installer/version_option.h"
#include "support/run_outcome.h"

namespace {

constexpr std::string_view kOptionForms =
    "Each option is written -name=value, --name=value, -name value or -name.\n";
constexpr std::size_t kLongestText = 300;  // of a description's text, in bytes

struct Variable {
    std::string name;
    std::string label;                  // of the field that asks for it; empty without one
    std::string choices;                // of that field
    std::vector<std::string> defaults;  // as the description writes them; one for each condition
    bool isOption = false;              // an option of its own, too
    bool isSecret = false;
};

// In one line, and with nothing in it that a terminal obeys.
std::string shown(std::string_view text) {
    std::string line;
    for (const char c : OUtils::visibleText(text.substr(0, kLongestText))) {
        const bool isBlank = c == ' ' || c == '\t' || c == '\n' || c == '\r';
        if (!isBlank) {
            line += c;
        } else if (!line.empty() && line.back() != ' ') {
            line += ' ';
        }
    }
    if (text.size() > kLongestText) {
        line += "...";
    }
    return line;
}

// The variables of a description that a user can set, in the order in which it names them.
class VariableList {
public:
    explicit VariableList(const PXML& description) : description_(description) {
        const std::int32_t values = vocabulary::findElement(description, "DefValues");
        for (const std::int32_t child :
             values < 0 ? std::vector<std::int32_t>() : description.childrenOf(values)) {
            addValue(child);
        }
        const std::int32_t dialogs = vocabulary::findElement(description, "Dialogs");
        for (std::int32_t field = vocabulary::findElement(description, "Field"); field >= 0;
             field = vocabulary::findElement(description, "Field", field)) {
            if (dialogs >= 0 && isBelow(field, dialogs)) {
                addField(field);
            }
        }
        dropControls();
    }

    const std::vector<Variable>& all() const { return variables_; }

private:
    Variable& variable(std::string_view name) {
        const auto [place, isNew] = places_.emplace(OUtils::toLowerAscii(name), variables_.size());
        if (isNew) {
            variables_.emplace_back().name = shown(name);
        }
        return variables_[place->second];
    }

    std::string_view attribute(std::int32_t node, vocabulary::AttributeName name) const {
        return vocabulary::attributeOf(description_, node, name).value_or(std::string_view());
    }

    void addValue(std::int32_t node) {
        const std::string_view name = attribute(node, "Name");
        if (name.empty() || PredefinedVariables::isPredefined(name)) {
            return;
        }
        const std::string_view type = attribute(node, "DataType");
        const bool isText = OUtils::startsWithIgnoreCase(type, "value");
        const bool isOption = OUtils::startsWithIgnoreCase(type, "cmdlinearg");
        const std::string_view text = isText || isOption
                                          ? description_.getText(node).value_or(std::string_view())
                                          : attribute(node, "Default");
        Variable& entry = variable(name);
        entry.isOption = entry.isOption || isOption;
        entry.defaults.push_back((isText || isOption ? "" : "what the system says, otherwise ") +
                                 ("\"" + shown(text) + "\""));
    }

    void addField(std::int32_t node) {
        const std::string_view name = description_.getText(node).value_or(std::string_view());
        if (name.empty()) {
            return;
        }
        Variable& entry = variable(name);
        const std::string_view type = attribute(node, "Type");
        entry.isSecret = entry.isSecret || OUtils::equalsIgnoreCase(type, "Password");
        if (!entry.label.empty()) {
            return;
        }
        entry.label = shown(attribute(node, "Label"));
        if (OUtils::equalsIgnoreCase(type, "CheckBox")) {
            entry.choices = "0 or 1";
        } else if (OUtils::equalsIgnoreCase(type, "RadioButtons")) {
            addChoices(attribute(node, "Content"), entry);
        }
    }

    // A variable of several choices holds the number of one.
    static void addChoices(std::string_view items, Variable& entry) {
        int number = 0;
        vocabulary::forEachWord(items, [&](std::string_view item) {
            entry.choices += (number == 0 ? "" : ", ") + std::to_string(number) + ": " + shown(item);
            ++number;
        });
    }

    bool isBelow(std::int32_t node, std::int32_t ancestor) const {
        while (node > ancestor) {
            node = description_.getNode(node)->parent;
        }
        return node == ancestor;
    }

    // They are the setup's own.
    void dropControls() {
        ControlVariables controls;
        controls.read(description_, DebugLog());
        std::erase_if(variables_, [&](const Variable& entry) {
            for (std::int32_t role = 0; entry.label.empty() && role < kControlVariableCount; ++role) {
                if (OUtils::equalsIgnoreCase(controls.nameOf(static_cast<ControlVariable>(role)),
                                             entry.name)) {
                    return true;
                }
            }
            return false;
        });
        places_.clear();
    }

    const PXML& description_;
    std::vector<Variable> variables_;
    std::unordered_map<std::string, std::size_t> places_;  // by the name in lower case
};

std::string productLine(const PXML& description) {
    const auto part = [&](vocabulary::ElementName name) {
        const std::int32_t product = vocabulary::findElement(description, "ProductDesc");
        const std::int32_t node = product < 0 ? -1 : vocabulary::findChild(description, product, name);
        return shown(description.getText(node).value_or(std::string_view()));
    };
    const std::string name = part("Fullname");
    std::string line = "This is the setup of " + (name.empty() ? "a product without a name" : name);
    if (const std::string major = part("MajorVersion"); !major.empty()) {
        line += ", version " + major + "." + part("MinorVersion") + "." + part("MinestVersion");
    }
    return line + ".\n";
}

std::string options() {
    std::string text = "Options:\n";
    for (const RunOptionRow& row : run_options::kTable) {
        text += "  -" + std::string(row.name) + std::string(row.value) + "\n      " +
                std::string(row.meaning) + "\n";
    }
    text += "  -VARIABLE_NAME=VALUE\n      sets the variable NAME of the product\n";
    return text;
}

std::string describe(const Variable& entry) {
    std::string text = "  " + entry.name + "\n";
    if (!entry.label.empty()) {
        text += "      " + entry.label + "\n";
    }
    if (!entry.choices.empty()) {
        text += "      " + entry.choices + "\n";
    }
    std::string defaults;
    for (const std::string& value : entry.defaults) {
        defaults += (defaults.empty() ? "" : "; or ") + value;
    }
    if (!entry.isSecret && !defaults.empty()) {
        text += "      default: " + defaults + "\n";
    }
    if (entry.isOption) {
        text += "      also the option -" + entry.name + "=VALUE\n";
    }
    return text;
}

std::string variables(const PXML& description) {
    const VariableList list(description);
    std::string text;
    for (const Variable& entry : list.all()) {
        text += describe(entry);
    }
    return text.empty() ? "" : "\nVariables of the product, each set by -VARIABLE_NAME=VALUE:\n" + text;
}

std::string exitCodesOfTable() {
    std::string text = "With -exitCodes=1:\n";
    for (const RunEndRow& row : kRunEnds) {
        const std::string code = std::to_string(static_cast<int>(row.end));
        text += "  " + code + std::string(5 - code.size(), ' ') + std::string(row.meaning) + "\n";
    }
    return text;
}

std::string exitCodes() {
    return std::string("\nExit codes:\n") +
           "  0    the setup ran, or the uninstallation was started or worked\n"
           "  2    another run for the product is at work\n"
           "  3    an interrupted run was not taken back\n"
           "  255  the run could not start, or the uninstallation failed\n" +
           exitCodesOfTable();
}

}  // namespace

std::string noPackageText() {
    return "This program is the Tandrel installer without a package: there is nothing to install.\n"
           "A package in a file of its own is installed with -bin=FILE. The option -help lists all options.";
}

std::string helpText(PackageKind package, const PXML& description) {
    std::string text = versionLine();
    switch (package) {
        case PackageKind::kNone:
            text += noPackageText() + "\n";
            break;
        case PackageKind::kUnreadable:
            text += "The package can't be read, so nothing is known of its product.\n";
            break;
        case PackageKind::kReadable:
            text += productLine(description);
            break;
    }
    text += "\n" + std::string(kOptionForms) + "\n" + options();
    if (package == PackageKind::kReadable) {
        text += variables(description);
    }
    return text + exitCodes();
}
