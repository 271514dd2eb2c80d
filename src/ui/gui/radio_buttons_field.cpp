#include "ui/gui/radio_buttons_field.h"

#include <string>

#include "base/text_functions.h"
#include "base/visible_text.h"
#include "ui/field_values.h"

namespace {

constexpr std::size_t kCapacity = 5;

}  // namespace

void RadioButtonsField::create() {
    const std::vector<std::string> items = OUtils::splitText(description().content.view(), ';');
    std::vector<std::string> toolTips = OUtils::splitText(description().description.view(), ';');
    toolTips.resize(items.size());
    label_ = addLabel(description().label.view(), 0);
    int height = gap() * 2 + heightOf(label_);
    for (std::size_t i = 0; i < items.size(); ++i) {
        addButton(items[i], toolTips[i]);
        height += heightOf(buttons_.back()) + gap();
    }
    enabled_ = enabledItems(description().enable.view(), items.size(), engine());
    setHeight(height);
}

void RadioButtonsField::addButton(std::string_view caption, std::string_view toolTip) {
    const std::string shownCaption = OUtils::visibleText(caption);
    const std::string shownToolTip = OUtils::visibleText(toolTip);
    const std::string label = OUtils::visibleText(description().label.view());
    const std::string name = label.empty() ? shownCaption : label + ": " + shownCaption;
    ControlSpec spec;
    spec.kind = ControlKind::kRadioButton;
    spec.place = {left() + gap(), 0, 0, 0};
    spec.text = shownCaption;
    // The label is that of the group, and would take the place of the caption.
    spec.name = name;
    spec.toolTip = shownToolTip;
    spec.startsGroup = buttons_.empty();
    if (host().isThemed()) {
        spec.colours = {description().inputForeground, description().background, -1, -1};
    }
    buttons_.push_back(add(spec));
}

void RadioButtonsField::moveTo(int y) {
    y += gap();
    moveControl(label_, y);
    y += heightOf(label_) + gap();
    for (const ControlId button : buttons_) {
        moveControl(button, y);
        y += heightOf(button) + gap();
    }
}

void RadioButtonsField::setVisible(bool visible) {
    DialogField::setVisible(visible);
    for (std::size_t i = 0; i < buttons_.size(); ++i) {
        toolkit().enable(buttons_[i], visible && enabled_[i]);
    }
}

void RadioButtonsField::load() {
    const auto value =
        isVisible() ? readVariable(description().variable.view(), engine(), kCapacity) : std::nullopt;
    if (!value) {
        return;
    }
    const int number = OUtils::textToInteger(*value);
    for (std::size_t i = 0; i < buttons_.size(); ++i) {
        toolkit().setChecked(buttons_[i], static_cast<int>(i) == number);
    }
}

void RadioButtonsField::store() {
    if (isVisible()) {
        storeVariable(description().variable.view(), std::to_string(chosen()), engine());
    }
}

int RadioButtonsField::chosen() const {
    for (int i = static_cast<int>(buttons_.size()) - 1; i >= 0; --i) {
        if (toolkit().isChecked(buttons_[static_cast<std::size_t>(i)])) {
            return i;
        }
    }
    return -1;
}

void RadioButtonsField::onActivate(ControlId control) {
    const auto value = readVariable(description().variable.view(), engine(), kCapacity);
    const std::string choice = std::to_string(chosen());
    if (value && *value != choice) {
        storeVariable(description().variable.view(), choice, engine());
        host().choiceChanged(*this, control);
    }
}
