#include "ui/gui/edit_box_field.h"

#include <algorithm>

#include "base/visible_text.h"
#include "ui/field_values.h"

namespace {

constexpr std::size_t kFirstCapacity = 512;  // of the value that a box starts with
constexpr std::size_t kCapacity = 1560;

}  // namespace

void EditBoxField::create() {
    addBox(width() * 2 / 5, width() * 3 / 5 - gap() * 2);
    measure();
}

// The label is made first so that it comes first for those who have the page read to them.
void EditBoxField::addBox(int labelWidth, int boxWidth) {
    label_ = addLabel(description().label.view(), std::max(1, labelWidth));
    toolkit().setToolTip(label_, OUtils::visibleText(description().description.view()));
    const std::string name = OUtils::visibleText(description().label.view());
    ControlSpec spec;
    spec.kind = boxKind();
    spec.place = {left() + labelWidth + gap(), 0, std::max(1, boxWidth), 0};
    spec.name = name;
    box_ = add(spec);
    toolkit().setLabel(box_, label_);
    showValue(kFirstCapacity);
}

void EditBoxField::measure() {
    setHeight(std::max(heightOf(label_), heightOf(box_)) + gap());
}

void EditBoxField::moveTo(int y) {
    moveControl(box_, y);
    // On one line with the text in the box.
    moveControl(label_, y + std::max(0, (heightOf(box_) - host().textHeight()) / 2));
}

void EditBoxField::load() {
    if (isVisible() && toolkit().focused() != box_) {
        showValue(kCapacity);
    }
}

void EditBoxField::showValue(std::size_t capacity) {
    if (const auto value = readVariable(description().variable.view(), engine(), capacity)) {
        toolkit().setText(box_, OUtils::visibleText(textForBox(*value)));
        isChanged_ = false;
    }
}

void EditBoxField::store() {
    if (isVisible() && isChanged_) {
        storeVariable(description().variable.view(), value(), engine());
        isChanged_ = false;
    }
}

bool EditBoxField::validate() {
    const bool isValid = !isVisible() || !value().empty();
    showValidity();
    return isValid;
}

void EditBoxField::onText() {
    isChanged_ = true;
    store();
    host().textChanged(*this);
}

std::string EditBoxField::value() const {
    return valueFromBox(textOf(toolkit(), box_));
}

std::string EditBoxField::valueFromBox(std::string_view typed) const {
    return std::string(trimmedAnswer(typed));
}

void EditBoxField::showValidity() {
    if (!host().isThemed()) {
        return;
    }
    const DialogFieldDesc& colours = description();
    toolkit().setColours(
        box_, value().empty() ? ControlColours{colours.invalidForeground, colours.invalidBackground, -1, -1}
                              : ControlColours{colours.inputForeground, colours.inputBackground, -1, -1});
}
