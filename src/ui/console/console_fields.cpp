#include "ui/console/console_fields.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "description/dialog_model.h"
#include "ui/decimal_text.h"

namespace ConsoleInterface {

namespace {

constexpr int kRadioValueCapacity = 512;
constexpr int kCheckboxValueCapacity = 16;
constexpr std::size_t kNetworkPathStart = 2;
// What the C locale calls white space.
constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

template <typename Field>
std::unique_ptr<ConsoleField> make() {
    return std::make_unique<Field>();
}

struct FieldType {
    std::int32_t type;
    std::unique_ptr<ConsoleField> (*make)();
};

constexpr FieldType kFieldTypes[] = {
    {kFieldDirectory, make<DirectoryField>}, {kFieldCheckBox, make<CheckboxField>},
    {kFieldRadioButtons, make<RadioField>},  {kFieldEditBox, make<PlainTextField>},
    {kFieldPassword, make<PasswordField>},
};

std::string_view trimEnd(std::string_view text, std::string_view characters) {
    return text.substr(0, text.find_last_not_of(characters) + 1);
}

std::string_view trim(std::string_view text) {
    const std::size_t start = text.find_first_not_of(kWhiteSpace);
    return start == std::string_view::npos ? std::string_view() : trimEnd(text.substr(start), kWhiteSpace);
}

// A network path keeps the two separators that it begins with.
std::string cleanPath(std::string_view answer) {
    std::string path(trim(answer));
    OUtils::setSeparators(path.data());
    std::string clean;
    const std::size_t body = std::min(path.find_first_not_of('\\'), path.size());
    clean.append(path, 0, std::min(body, kNetworkPathStart));
    for (std::size_t i = body; i < path.size(); ++i) {
        if (path[i] != '\\' || clean.back() != '\\') {
            clean += path[i];
        }
    }
    return std::string(trimEnd(trimEnd(trimEnd(clean, "\\"), kWhiteSpace), "\\"));
}

// The answer as it came, or the default of the variable when the question was interrupted.
std::string askForText(const DialogFieldDesc& field, InputProvider& input, InstallExchangeInfo& engine,
                       bool echo) {
    char value[OUtils::kPathCapacity] = "";
    char fallback[OUtils::kPathCapacity] = "";
    char answer[OUtils::kPathCapacity] = "";
    engine.getVariable(field.variable.c_str(), value, sizeof value);
    engine.getDefaultValue(field.variable.c_str(), fallback, sizeof fallback);
    const int result = input.askText(field.label.c_str(), answer, sizeof answer, value, fallback, echo);
    return result == 0 ? fallback : answer;
}

std::vector<std::string> itemsOf(const DialogFieldDesc& field) {
    std::vector<std::string> items;
    std::vector<std::string> details;
    OUtils::splitText(field.content.c_str(), ';', items);
    OUtils::splitText(field.description.c_str(), ';', details);
    for (std::size_t i = 0; i < details.size() && items.size() >= details.size(); ++i) {
        items[i] += " " + details[i];
    }
    return items;
}

std::vector<bool> enabledOf(const DialogFieldDesc& field, std::size_t count, InstallExchangeInfo& engine) {
    std::vector<std::string> conditions;
    OUtils::splitText(field.enable.c_str(), '|', conditions);
    std::vector<bool> enabled(count, true);
    for (std::size_t i = 0; i < count && i < conditions.size(); ++i) {
        enabled[i] = engine.evaluateCondition(conditions[i].c_str()) != 0;
    }
    return enabled;
}

// The variable as a number below `count`, or -1.
int presetOf(const DialogFieldDesc& field, int capacity, std::size_t count, InstallExchangeInfo& engine) {
    std::string value(static_cast<std::size_t>(capacity), '\0');
    engine.getVariable(field.variable.c_str(), value.data(), capacity);
    const int number = parseDecimal(value.c_str()).value_or(-1);
    return number >= 0 && static_cast<std::size_t>(number) < count ? number : -1;
}

void store(const DialogFieldDesc& field, const std::string& answer, InstallExchangeInfo& engine) {
    engine.setVariable(field.variable.c_str(), answer.c_str());
}

}  // namespace

std::unique_ptr<ConsoleField> makeField(std::int32_t type) {
    for (const FieldType& entry : kFieldTypes) {
        if (entry.type == type) {
            return entry.make();
        }
    }
    return nullptr;
}

void ConsoleField::process(const DialogFieldDesc& field, InputProvider& input, InstallExchangeInfo& engine) {
    if (engine.evaluateCondition(field.condition.c_str()) != 0) {
        ask(field, input, engine);
    }
}

void RadioField::ask(const DialogFieldDesc& field, InputProvider& input, InstallExchangeInfo& engine) {
    const std::vector<std::string> items = itemsOf(field);
    const std::vector<bool> enabled = enabledOf(field, items.size(), engine);
    const int preset = presetOf(field, kRadioValueCapacity, items.size(), engine);
    store(field, std::to_string(input.askList(field.label.c_str(), preset, items, enabled)), engine);
}

void CheckboxField::ask(const DialogFieldDesc& field, InputProvider& input, InstallExchangeInfo& engine) {
    const int preset = presetOf(field, kCheckboxValueCapacity, 2, engine);
    const int answer = input.askChoice(field.label.c_str(), preset, "no", "yes", false, true);
    store(field, std::to_string(answer), engine);
}

void DirectoryField::ask(const DialogFieldDesc& field, InputProvider& input, InstallExchangeInfo& engine) {
    store(field, cleanPath(askForText(field, input, engine, true)), engine);
}

void PlainTextField::ask(const DialogFieldDesc& field, InputProvider& input, InstallExchangeInfo& engine) {
    store(field, std::string(trim(askForText(field, input, engine, true))), engine);
}

void PasswordField::ask(const DialogFieldDesc& field, InputProvider& input, InstallExchangeInfo& engine) {
    store(field, askForText(field, input, engine, false), engine);
}

}  // namespace ConsoleInterface
