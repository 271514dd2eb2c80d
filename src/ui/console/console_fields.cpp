#include "ui/console/console_fields.h"

#include <string>
#include <string_view>
#include <vector>

#include "base/fixed_text.h"
#include "base/text_functions.h"
#include "description/dialog_model.h"
#include "description/wizard_words.h"
#include "platform/written_path.h"
#include "ui/console/decimal_text.h"
#include "ui/field_values.h"

namespace ConsoleInterface {

namespace {

constexpr std::size_t kRadioValueCapacity = 512;
constexpr std::size_t kCheckboxValueCapacity = 16;

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

std::string defaultOf(const DialogFieldDesc& field, InstallExchangeInfo& engine) {
    PathText value;
    engine.getDefaultValue(field.variable.c_str(), value.data(), static_cast<int>(PathText::capacity()));
    return std::string(value.view());
}

// The texts that stand for an empty answer.
struct Presets {
    std::string value;
    std::string fallback;
};

Presets presetsOf(const DialogFieldDesc& field, InstallExchangeInfo& engine) {
    return {valueOfVariable(field.variable.view(), engine, PathText::capacity()), defaultOf(field, engine)};
}

// The answer as it was given, or the default of the variable when the question was interrupted.
std::string askForText(const DialogFieldDesc& field, InputProvider& input, const Presets& presets,
                       bool echo) {
    PathText answer;
    const bool isAnswered =
        input.askText(field.label.c_str(), answer.data(), static_cast<int>(PathText::capacity()),
                      presets.value.c_str(), presets.fallback.c_str(), echo) != 0;
    return isAnswered ? std::string(answer.view()) : presets.fallback;
}

// As askForText with echo. The presets are shown as the system writes paths; taken over, they stay what they
// are.
std::string askForPath(const DialogFieldDesc& field, InputProvider& input, InstallExchangeInfo& engine) {
    const Presets own = presetsOf(field, engine);
    const Presets shown = {platform::writtenPath(own.value), platform::writtenPath(own.fallback)};
    PathText typed;
    const bool isAnswered =
        input.askDirectory(field.label.c_str(), typed.data(), static_cast<int>(PathText::capacity()),
                           shown.value.data(), shown.fallback.data()) != 0;
    const std::string answer = isAnswered ? std::string(typed.view()) : shown.fallback;
    if (answer == shown.value) {
        return own.value;
    }
    return answer == shown.fallback ? own.fallback : answer;
}

std::vector<std::string> itemsOf(const DialogFieldDesc& field) {
    std::vector<std::string> items = OUtils::splitText(field.content.view(), ';');
    const std::vector<std::string> details = OUtils::splitText(field.description.view(), ';');
    for (std::size_t i = 0; i < details.size() && items.size() >= details.size(); ++i) {
        items[i] += " " + details[i];
    }
    return items;
}

// The variable as a number below `count`, or -1.
int presetOf(const DialogFieldDesc& field, std::size_t capacity, std::size_t count,
             InstallExchangeInfo& engine) {
    const int number = parseDecimal(valueOfVariable(field.variable.view(), engine, capacity)).value_or(-1);
    return number >= 0 && static_cast<std::size_t>(number) < count ? number : -1;
}

void store(const DialogFieldDesc& field, const std::string& answer, InstallExchangeInfo& engine) {
    storeVariable(field.variable.view(), answer, engine);
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
    if (conditionHolds(field.condition.view(), engine)) {
        ask(field, input, engine);
    }
}

void RadioField::ask(const DialogFieldDesc& field, InputProvider& input, InstallExchangeInfo& engine) {
    const std::vector<std::string> items = itemsOf(field);
    const std::vector<bool> enabled = enabledItems(field.enable.view(), items.size(), engine);
    const int preset = presetOf(field, kRadioValueCapacity, items.size(), engine);
    store(field, std::to_string(input.askList(field.label.c_str(), preset, items, enabled)), engine);
}

void CheckboxField::ask(const DialogFieldDesc& field, InputProvider& input, InstallExchangeInfo& engine) {
    const int preset = presetOf(field, kCheckboxValueCapacity, 2, engine);
    const std::string no = engine.getWords().text("AnswerNo");
    const std::string yes = engine.getWords().text("AnswerYes");
    const int answer = input.askChoice(field.label.c_str(), preset, no, yes, false, true);
    store(field, std::to_string(answer), engine);
}

void DirectoryField::ask(const DialogFieldDesc& field, InputProvider& input, InstallExchangeInfo& engine) {
    store(field, cleanDirectory(askForPath(field, input, engine)), engine);
}

void PlainTextField::ask(const DialogFieldDesc& field, InputProvider& input, InstallExchangeInfo& engine) {
    store(field, std::string(trimmedAnswer(askForText(field, input, presetsOf(field, engine), true))),
          engine);
}

void PasswordField::ask(const DialogFieldDesc& field, InputProvider& input, InstallExchangeInfo& engine) {
    store(field, askForText(field, input, presetsOf(field, engine), false), engine);
}

}  // namespace ConsoleInterface
