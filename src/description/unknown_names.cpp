#include "description/unknown_names.h"

#include <algorithm>
#include <cctype>
#include <optional>

#include "base/text_functions.h"
#include "description/command_line_arguments.h"
#include "description/expressions.h"
#include "description/install_variable.h"
#include "description/predefined_variables.h"
#include "description/pxml.h"
#include "description/vocabulary_lookup.h"

namespace {

constexpr std::string_view kVariablePrefix = "VARIABLE_";
constexpr std::size_t kAnswerCapacity = 1024;

bool isNameCharacter(char c) {
    return c == '_' || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// The variables that a description mentions, in any ASCII case: as a whole text or attribute, as [NAME] or as
// $NAME. Which of these really are names of variables is known to many readers; to take a label for one only
// keeps a line from the screen.
class MentionedNames {
public:
    explicit MentionedNames(const PXML& description) {
        for (std::int32_t i = 0; i < description.getNodeCount(); ++i) {
            const PXMLNode& node = *description.getNode(i);
            add(node.text.value_or(std::string_view()));
            for (const PXMLAttribute& attribute : node.attributes) {
                add(attribute.value.value_or(std::string_view()));
            }
        }
    }

    bool contains(std::string_view name) const { return names_.contains(OUtils::toLowerAscii(name)); }

private:
    void add(std::string_view text) {
        if (text.size() <= InstallVariable::kNameLimit) {
            addName(text);
        }
        for (std::size_t at = text.find_first_of("[$"); at != std::string_view::npos;
             at = text.find_first_of("[$", at + 1)) {
            const std::string_view rest = text.substr(at + 1);
            const auto end = std::find_if_not(rest.begin(), rest.end(), isNameCharacter);
            addName(rest.substr(0, static_cast<std::size_t>(end - rest.begin())));
        }
    }
    void addName(std::string_view name) {
        if (!name.empty()) {
            names_.insert(OUtils::toLowerAscii(name));
        }
    }

    std::unordered_set<std::string> names_;
};

std::string option(std::string_view name) {
    return "-" + std::string(name);
}

std::string noSuchVariable(std::string_view name) {
    return "the description has no variable " + std::string(name);
}

class Remarks {
public:
    Remarks(const PXML& description, Expressions& expressions)
        : description_(description), expressions_(expressions) {}

    void addArguments(const GivenNames& given) {
        for (int i = 0; i < given.arguments->getArgumentCount(); ++i) {
            const std::string_view name = given.arguments->getArgumentName(i);
            if (OUtils::startsWithIgnoreCase(name, kVariablePrefix) && name.size() > kVariablePrefix.size()) {
                addVariable(*given.arguments, i);
            } else if (!isOption(name, given.programOptions)) {
                lines_.push_back(option(name) + ": there is no such option, and it has no effect");
            }
        }
    }

    void addAnswers(const PXML& answers, std::string_view path) {
        const std::int32_t section = vocabulary::findElement(answers, "DefValues");
        if (section < 0) {
            return;
        }
        for (const std::int32_t child : answers.childrenOf(section)) {
            const auto name = vocabulary::attributeOf(answers, child, "Name");
            if (name && vocabulary::isCalled(answers, child, "Value")) {
                addAnswer(answers, child, *name, std::string(path) + ": ");
            }
        }
    }

    std::vector<std::string> take() { return std::move(lines_); }

private:
    void addVariable(const CommandLineArguments& arguments, int index) {
        const std::string_view whole = arguments.getArgumentName(index);
        const std::string_view name = whole.substr(kVariablePrefix.size());
        if (PredefinedVariables::isPredefined(name)) {
            lines_.push_back(option(whole) + ": this variable can't be set, and the option has no effect");
            return;
        }
        if (!isMentioned(name)) {
            lines_.push_back(option(whole) + ": " + noSuchVariable(name));
        }
        if (arguments.isArgumentEmptied(index)) {
            lines_.push_back(option(whole) + "= has no value and counts as 1");
        }
    }

    void addAnswer(const PXML& answers, std::int32_t node, std::string_view name, const std::string& place) {
        if (PredefinedVariables::isPredefined(name)) {
            lines_.push_back(place + "the variable " + std::string(name) + " can't be set");
        } else if (!isMentioned(name)) {
            lines_.push_back(place + noSuchVariable(name));
        }
        const auto text = answers.getText(node);
        const auto type = vocabulary::attributeOf(answers, node, "DataType");
        if (type && text && OUtils::startsWithIgnoreCase(*type, "value") &&
            expressions_.holds(vocabulary::attributeOf(answers, node, "Condition")) &&
            !expressions_.expandDollars(*text, kAnswerCapacity)) {
            lines_.push_back(place + "the value of " + std::string(name) +
                             " refers to a variable that doesn't exist, or is too long, and counts as empty");
        }
    }

    // Also the options that the description reads by a variable's name.
    bool isOption(std::string_view name, const std::vector<std::string_view>& programOptions) {
        return std::find(programOptions.begin(), programOptions.end(), name) != programOptions.end() ||
               descriptionOptions().contains(OUtils::toLowerAscii(name));
    }

    const std::unordered_set<std::string>& descriptionOptions() {
        if (!options_) {
            options_ = optionsReadBy(description_);
        }
        return *options_;
    }

    // A description may be large, so its names are only collected when somebody gave one.
    bool isMentioned(std::string_view name) {
        if (!mentioned_) {
            mentioned_.emplace(description_);
        }
        return mentioned_->contains(name);
    }

    const PXML& description_;
    Expressions& expressions_;
    std::optional<MentionedNames> mentioned_;
    std::optional<std::unordered_set<std::string>> options_;
    std::vector<std::string> lines_;
};

}  // namespace

std::unordered_set<std::string> optionsReadBy(const PXML& description) {
    std::unordered_set<std::string> options;
    const std::int32_t section = vocabulary::findElement(description, "DefValues");
    for (const std::int32_t child :
         section < 0 ? std::vector<std::int32_t>() : description.childrenOf(section)) {
        const auto name = vocabulary::attributeOf(description, child, "Name");
        const auto type = vocabulary::attributeOf(description, child, "DataType");
        if (name && type && OUtils::startsWithIgnoreCase(*type, "cmdlinearg")) {
            options.insert(OUtils::toLowerAscii(*name));
        }
    }
    return options;
}

std::vector<std::string> remarksOnGivenNames(const PXML& description, Expressions& expressions,
                                             const GivenNames& given) {
    Remarks remarks(description, expressions);
    if (given.arguments != nullptr) {
        remarks.addArguments(given);
    }
    if (given.answers != nullptr) {
        remarks.addAnswers(*given.answers, given.answersPath);
    }
    return remarks.take();
}
