#include "ui/gui/page_buttons.h"

#include <string_view>

#include "base/utf8_character.h"
#include "base/visible_text.h"
#include "contracts/install_exchange_info.h"
#include "ui/field_values.h"

namespace {

bool has(const DialogButtonDesc& button, DialogButtonFlag flag) {
    return (button.flags & flag) != 0;
}

// The character after the first `&` that isn't doubled; 0 when there is none.
char32_t accessKeyOf(std::string_view caption) {
    for (std::size_t i = caption.find('&'); i != std::string_view::npos; i = caption.find('&', i + 2)) {
        const std::string_view rest = caption.substr(i + 1);
        if (!rest.starts_with('&')) {
            const std::size_t length = OUtils::utf8CharacterLength(rest);
            return length == 0 ? 0 : OUtils::utf8CodePoint(rest.substr(0, length));
        }
    }
    return 0;
}

}  // namespace

void PageButtons::build(int dialog, int sub) {
    clear();
    const int count = host_.engine().getDialogItemCount(dialog, sub);
    for (int i = 0; i < count; ++i) {
        if (const DialogButtonDesc* button = host_.engine().getDialogItem(dialog, i, sub)) {
            add(*button);
        }
    }
}

void PageButtons::add(const DialogButtonDesc& description) {
    const std::string caption = OUtils::visibleText(description.label.view());
    ControlSpec spec;
    spec.kind = has(description, kButtonLinkStyle) ? ControlKind::kLinkButton : ControlKind::kButton;
    spec.place =
        host_.geometry().placeOf({description.x, description.y, description.width, description.height,
                                  description.horizontalAlign, description.verticalAlign});
    spec.text = caption;
    if (host_.isThemed()) {
        spec.colours = {description.foregroundColour, description.backgroundColour,
                        description.activeForeground, description.activeBackground};
    }
    Toolkit& toolkit = host_.toolkit();
    buttons_.push_back({toolkit.add(spec), &description});
    toolkit.show(buttons_.back().control, conditionHolds(description.condition.view(), host_.engine()));
    toolkit.enable(buttons_.back().control,
                   conditionHolds(description.enableCondition.view(), host_.engine()));
}

void PageButtons::clear() {
    for (const Button& button : buttons_) {
        host_.toolkit().remove(button.control);
    }
    buttons_.clear();
}

const DialogButtonDesc* PageButtons::find(ControlId control) const {
    for (const Button& button : buttons_) {
        if (button.control == control) {
            return button.description;
        }
    }
    return nullptr;
}

void PageButtons::refresh() {
    for (const auto& [control, description] : buttons_) {
        if (!description->condition.isEmpty()) {
            host_.toolkit().show(control, conditionHolds(description->condition.view(), host_.engine()));
        }
        if (!description->enableCondition.isEmpty()) {
            host_.toolkit().enable(control,
                                   conditionHolds(description->enableCondition.view(), host_.engine()));
        }
    }
}

void PageButtons::enableDisableable(bool enable) {
    for (const auto& [control, description] : buttons_) {
        if (!description->enableCondition.isEmpty()) {
            host_.toolkit().enable(control,
                                   conditionHolds(description->enableCondition.view(), host_.engine()));
        } else if (has(*description, kButtonDisableable)) {
            host_.toolkit().enable(control, enable);
        }
    }
}

ControlId PageButtons::firstToFocus(bool defaultOnly, ControlId& ioDefault) const {
    for (const auto& [control, description] : buttons_) {
        const bool isDefault = has(*description, kButtonDefault);
        if (isDefault) {
            ioDefault = control;
        }
        if ((isDefault || !defaultOnly) && canTakeFocus(control)) {
            return control;
        }
    }
    return 0;
}

bool PageButtons::canTakeFocus(ControlId control) const {
    return host_.toolkit().isShown(control) && host_.toolkit().isEnabled(control);
}

void PageButtons::addAccessKeys(std::vector<AccessKey>& outKeys) const {
    for (const auto& [control, description] : buttons_) {
        const std::string caption = OUtils::visibleText(description->label.view());
        if (const char32_t key = accessKeyOf(caption)) {
            outKeys.push_back({key, control});
        }
    }
}
