#include "ui/gui/dialog_field.h"

#include <algorithm>

#include "base/visible_text.h"
#include "ui/field_values.h"

namespace {

constexpr int kGap = 5;
constexpr int kMargin = 20;

}  // namespace

DialogField::DialogField(PageHost& host, const DialogFieldDesc& description)
    : host_(host), description_(description) {}

DialogField::~DialogField() {
    for (const ControlId control : controls_) {
        toolkit().remove(control);
    }
}

bool DialogField::owns(ControlId control) const {
    return std::find(controls_.begin(), controls_.end(), control) != controls_.end();
}

int DialogField::place(int y) {
    isVisible_ = conditionHolds(description_.condition.view(), engine());
    if (!isVisible_) {
        setVisible(false);
        return y;
    }
    moveTo(y);
    setVisible(true);
    showValidity();
    return y + height_;
}

void DialogField::setVisible(bool visible) {
    for (const ControlId control : controls_) {
        toolkit().show(control, visible);
    }
}

ControlId DialogField::add(const ControlSpec& spec) {
    controls_.push_back(toolkit().add(spec));
    return controls_.back();
}

ControlId DialogField::addLabel(std::string_view text, int width) {
    const std::string shown = OUtils::visibleText(text);
    ControlSpec spec;
    spec.kind = ControlKind::kLabel;
    spec.place = {left(), 0, width, 0};
    spec.text = shown;
    spec.colours = labelColours();
    return add(spec);
}

void DialogField::moveControl(ControlId control, int y) {
    Place place = toolkit().place(control);
    place.y = y;
    toolkit().setPlace(control, place);
}

int DialogField::gap() const {
    return host_.geometry().scaled(kGap);
}

int DialogField::left() const {
    const int x = description_.x == -1 ? kMargin : description_.x;
    return host_.geometry().left(x, description_.horizontalAlign);
}

int DialogField::width() const {
    const PageGeometry geometry = host_.geometry();
    return description_.width > 0 ? geometry.scaled(description_.width)
                                  : std::max(1, geometry.page().width - geometry.scaled(kMargin) - left());
}

ControlColours DialogField::labelColours() const {
    return host_.isThemed() ? ControlColours{description_.labelColour, description_.background, -1, -1}
                            : ControlColours{};
}
