#include "packager/answers_template.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <string_view>
#include <vector>

#include "base/text_functions.h"
#include "base/visible_text.h"
#include "checking/references.h"
#include "description/colour_theme.h"
#include "description/dialog_model.h"
#include "description/dialog_reader.h"
#include "description/predefined_variables.h"
#include "description/pxml.h"
#include "description/pxml_entities.h"

namespace {

// A longer text of DefValues isn't read whole.
constexpr std::size_t kReadableBytes = 1023;

constexpr std::string_view kHead =
    "<!-- Answers for an unattended run, as the option configFile of a setup takes them.\n"
    "     A variable in a comment has a default that depends on the machine, on other variables or on an\n"
    "     earlier installation. Take its line out of the comment to answer it. -->\n"
    "<DefValues>\n";
constexpr std::string_view kEnd = "</DefValues>\n";

// In one line, without what could end a comment.
std::string inComment(std::string_view text) {
    std::string line;
    for (const char c : OUtils::visibleText(text)) {
        const bool isSpace = c == '\n' || c == '\r' || c == '\t';
        if (c == '-' && line.ends_with('-')) {
            line += ' ';
        }
        line += isSpace ? ' ' : c;
    }
    return line;
}

std::string comment(std::string_view text) {
    return "  <!-- " + inComment(text) + " -->\n";
}

std::string valueElement(std::string_view name, std::string_view text) {
    std::string element = "<Value Name=\"" + std::string(name) + "\" DataType=\"value\">";
    PXMLEntities::appendEscaped(element, text);
    return element + "</Value>";
}

class AnswersWriter {
public:
    explicit AnswersWriter(const PXML& description) : description_(description) {
        const std::int32_t section = description.findByName("DefValues");
        for (const std::int32_t node :
             section < 0 ? std::vector<std::int32_t>() : description.childrenOf(section)) {
            const std::string_view name = description.getAttribute(node, "Name").value_or("");
            defaults_[OUtils::toLowerAscii(name)].push_back(node);
        }
    }

    std::string write() {
        const ColourTheme theme;
        DialogModel model;
        DialogReader(description_, theme, model, DebugLog()).readDialogs(false);
        for (const DialogDesc& page : model.getDialogs()) {
            addPage(page);
            std::ranges::for_each(page.subDialogs, [this](const DialogDesc& sub) { addPage(sub); });
        }
        std::string text(kHead);
        for (const std::string& name : order_) {
            text += "\n" + questions_[OUtils::toLowerAscii(name)] + answerFor(name);
        }
        return text.append(kEnd);
    }

private:
    void addPage(const DialogDesc& page) {
        for (const DialogFieldDesc& field : page.fields) {
            const std::string name(field.variable.view());
            if (field.type == kFieldInstallParameter || !isPlainVariableName(name) ||
                PredefinedVariables::isPredefined(name)) {
                continue;
            }
            std::string& question = questions_[OUtils::toLowerAscii(name)];
            if (question.empty()) {
                order_.push_back(name);
            }
            question += comment(questionOf(page, field));
            question += choicesOf(field);
        }
    }

    static std::string questionOf(const DialogDesc& page, const DialogFieldDesc& field) {
        std::string text = "Page " + std::string(page.name.view());
        if (!page.conditionText.view().empty()) {
            text += " (if " + std::string(page.conditionText.view()) + ")";
        }
        text += ", \"" + std::string(field.label.view()) + "\": " + std::string(kindOf(field.type));
        if (!field.condition.view().empty()) {
            text += ", if " + std::string(field.condition.view());
        }
        return text;
    }

    static std::string_view kindOf(std::int32_t type) {
        switch (type) {
            case kFieldDirectory:
                return "a directory";
            case kFieldCheckBox:
                return "0 (no) or 1 (yes)";
            case kFieldRadioButtons:
                return "the number of an item";
            case kFieldPassword:
                return "a password, so keep this file safe";
            default:
                return "a text";
        }
    }

    static std::string choicesOf(const DialogFieldDesc& field) {
        std::string text;
        if (field.type == kFieldRadioButtons) {
            int number = 0;
            for (const std::string& item : OUtils::splitText(field.content.view(), ';')) {
                text += comment("  " + std::to_string(number++) + ": " + item);
            }
        }
        return text;
    }

    std::string answerFor(const std::string& name) const {
        const auto found = defaults_.find(OUtils::toLowerAscii(name));
        const std::int32_t node = found == defaults_.end() ? -1 : found->second.front();
        const std::string_view text = node < 0 ? "" : description_.getText(node).value_or("");
        if (node >= 0 && found->second.size() == 1 && isPlainDefault(node, text)) {
            return "  " + valueElement(name, text) + "\n";
        }
        // Two dashes would end the comment early, and what is looked up is no answer.
        const std::string_view shown = node >= 0 && isText(node) ? text : defaultOf(node);
        const std::string element = valueElement(name, shown);
        return inComment(element) == element
                   ? comment(element)
                   : comment(valueElement(name, "")) + comment("Default: " + element);
    }

    std::string_view defaultOf(std::int32_t node) const {
        return node < 0 ? std::string_view() : description_.getAttribute(node, "Default").value_or("");
    }

    bool isText(std::int32_t node) const {
        return OUtils::startsWithIgnoreCase(description_.getAttribute(node, "DataType").value_or(""),
                                            "value");
    }

    // Whether an answer with this text is what the description gives on every machine.
    bool isPlainDefault(std::int32_t node, std::string_view text) const {
        return isText(node) && !description_.getAttribute(node, "Condition") &&
               !description_.getAttribute(node, "UseOld") && text.find('$') == std::string_view::npos &&
               text.size() <= kReadableBytes && OUtils::visibleText(text) == text &&
               text.find_first_of("\r\n\t") == std::string_view::npos;
    }

    const PXML& description_;
    std::map<std::string, std::vector<std::int32_t>>
        defaults_;  // by names in lower case, as are the questions
    std::map<std::string, std::string> questions_;
    std::vector<std::string> order_;
};

}  // namespace

std::string answersTemplate(const PXML& description) {
    return AnswersWriter(description).write();
}
