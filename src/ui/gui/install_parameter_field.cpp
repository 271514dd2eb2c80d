#include "ui/gui/install_parameter_field.h"

#include <algorithm>
#include <vector>

#include "base/text_functions.h"
#include "base/utf8_character.h"
#include "base/visible_text.h"
#include "contracts/install_exchange_info.h"
#include "description/wizard_words.h"
#include "platform/written_path.h"
#include "ui/field_values.h"

namespace {

constexpr std::size_t kCapacity = 512;
constexpr std::size_t kToolTipCapacity = 4096;

// Empty past the last item.
std::string itemOf(std::string_view list, int index) {
    const std::vector<std::string> items = OUtils::splitText(list, ';');
    const auto wanted = static_cast<std::size_t>(std::max(index, 0));
    return wanted < items.size() ? items[wanted] : std::string();
}

// Runs of white space as one blank, none at the ends.
std::string withoutSurplusSpace(std::string_view text) {
    std::string result;
    for (const char c : trimmedAnswer(text)) {
        if (!OUtils::isWhiteSpace(c)) {
            result += c;
        } else if (result.back() != ' ') {
            result += ' ';
        }
    }
    return result;
}

std::string expanded(std::string_view text, InstallExchangeInfo& engine) {
    std::string buffer(kToolTipCapacity, '\0');
    std::string source(text);
    if (engine.expandVariables(source.c_str(), buffer.data(), static_cast<int>(buffer.size()), false) == 0) {
        return source;
    }
    buffer.resize(buffer.find('\0'));
    return buffer;
}

}  // namespace

struct InstallParameterField::KindWord {
    std::string_view word;
    ParameterKind kind;
};

InstallParameterField::ParameterKind InstallParameterField::kindOf(std::string_view content) {
    static constexpr KindWord kWords[] = {
        {"RadioButtons", ParameterKind::kRadioButtons}, {"Directory", ParameterKind::kDirectory},
        {"CheckBox", ParameterKind::kCheckBox},         {"Info", ParameterKind::kInfo},
        {"EditBox", ParameterKind::kEditBox},
    };
    for (const KindWord& known : kWords) {
        if (OUtils::equalsIgnoreCase(content, known.word)) {
            return known.kind;
        }
    }
    return ParameterKind::kUnknown;
}

void InstallParameterField::create() {
    parameterKind_ = kindOf(description().content.view());
    const int nameWidth = width() * 2 / 5;
    name_ = addLabel(description().label.view(), nameWidth);
    ControlSpec spec;
    spec.kind = ControlKind::kLabel;
    spec.place = {left() + nameWidth + gap(), 0, std::max(1, width() - nameWidth - gap()),
                  host().textHeight()};
    spec.colours = labelColours();
    // Named by its label, a value would be read out as the label again.
    value_ = add(spec);
    setHeight(std::max(heightOf(name_), heightOf(value_)) + gap());
}

void InstallParameterField::moveTo(int y) {
    moveControl(name_, y);
    moveControl(value_, y);
}

void InstallParameterField::load() {
    display_ =
        render(valueOfVariable(description().variable.view(), engine(), kCapacity)).substr(0, kCapacity - 1);
    display_ = OUtils::visibleText(display_);
    explainName();
    showFitting();
}

std::string InstallParameterField::render(const std::string& value) const {
    const WizardWords& words = engine().getWords();
    switch (parameterKind_) {
        case ParameterKind::kDirectory:
            return platform::writtenPath(cleanDirectory(value));
        case ParameterKind::kCheckBox:
            return OUtils::textToInteger(value) != 0 ? words.text("SettingYes") : words.text("SettingNo");
        case ParameterKind::kRadioButtons:
            // Without a value nothing is chosen, and to show the first item would be wrong.
            return value.empty() ? words.text("SettingUnreadable")
                                 : itemOf(description().description.view(), OUtils::textToInteger(value));
        case ParameterKind::kInfo:
            return std::string(description().description.view());
        case ParameterKind::kEditBox:
            return value;
        case ParameterKind::kUnknown:
            break;
    }
    return words.text("SettingUnreadable");
}

void InstallParameterField::explainName() {
    const bool hasExplanation = parameterKind_ == ParameterKind::kDirectory ||
                                parameterKind_ == ParameterKind::kCheckBox ||
                                parameterKind_ == ParameterKind::kEditBox;
    if (hasExplanation && !description().description.isEmpty()) {
        toolkit().setToolTip(
            name_,
            OUtils::visibleText(withoutSurplusSpace(expanded(description().description.view(), engine()))));
    }
}

void InstallParameterField::showFitting() {
    const std::string shown = shortenedText(toolkit(), display_, toolkit().place(value_).width);
    toolkit().setText(value_, shown);
    toolkit().setToolTip(value_, shown == display_ ? std::string_view() : std::string_view(display_));
}

bool InstallParameterField::validate() {
    return !isVisible() || parameterKind_ != ParameterKind::kDirectory || !display_.empty();
}

std::string shortenedText(Toolkit& toolkit, const std::string& text, int width) {
    if (toolkit.measureText(text).width <= width) {
        return text;
    }
    std::vector<std::size_t> ends = {0};  // of its characters
    for (std::string_view rest = text; !rest.empty();) {
        const std::size_t length = std::max<std::size_t>(1, OUtils::utf8CharacterLength(rest));
        ends.push_back(ends.back() + length);
        rest.remove_prefix(length);
    }
    const auto cut = [&text](std::size_t end) { return text.substr(0, end) + "..."; };
    const auto tooLong = std::partition_point(ends.begin() + 1, ends.end(), [&](std::size_t end) {
        return toolkit.measureText(cut(end)).width <= width;
    });
    return cut(*(tooLong - 1));
}
