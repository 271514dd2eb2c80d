#include "ui/gui/check_box_field.h"

#include <algorithm>

#include "base/text_functions.h"
#include "base/visible_text.h"
#include "ui/field_values.h"

namespace {

constexpr std::size_t kCapacity = 16;

const char* numberOf(bool checked) {
    return checked ? "1" : "0";
}

}  // namespace

void CheckBoxField::create() {
    const PageGeometry geometry = host().geometry();
    const std::string caption = OUtils::visibleText(description().label.view());
    const std::string toolTip = OUtils::visibleText(description().description.view());
    ControlSpec spec;
    spec.kind = ControlKind::kCheckBox;
    spec.place = {left(), 0, std::max(0, geometry.scaled(description().width)),
                  std::max(0, geometry.scaled(description().height))};
    spec.text = caption;
    spec.toolTip = toolTip;
    spec.colours = labelColours();
    box_ = add(spec);
    setHeight(gap() * 3 / 2 + heightOf(box_));
}

void CheckBoxField::load() {
    if (!isVisible()) {
        return;
    }
    if (const auto value = readVariable(description().variable.view(), engine(), kCapacity)) {
        toolkit().setChecked(box_, *value != "0");
    }
}

void CheckBoxField::store() {
    if (isVisible()) {
        storeVariable(description().variable.view(), numberOf(toolkit().isChecked(box_)), engine());
    }
}

void CheckBoxField::onActivate(ControlId control) {
    const std::string_view chosen = numberOf(toolkit().isChecked(box_));
    if (valueOfVariable(description().variable.view(), engine(), kCapacity) != chosen) {
        storeVariable(description().variable.view(), chosen, engine());
        host().choiceChanged(*this, control);
    }
}
