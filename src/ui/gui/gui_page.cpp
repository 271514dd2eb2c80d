#include "ui/gui/gui_page.h"

#include <algorithm>
#include <string>

#include "contracts/install_exchange_info.h"
#include "ui/field_values.h"
#include "ui/gui/dialog_field_factory.h"

namespace {

constexpr int kFirstField = 60;  // the height of a field that the description doesn't place

}  // namespace

void GuiPage::build(int dialog, int sub) {
    clear();
    buttons_.build(dialog, sub);
    elements_.build(dialog, sub);
    const int count = host_.engine().getFieldCount(dialog, sub);
    for (int i = 0; i < count; ++i) {
        const DialogFieldDesc* description = host_.engine().getField(dialog, i, sub);
        std::unique_ptr<DialogField> field =
            description == nullptr ? nullptr : makeDialogField(host_, *description);
        if (field != nullptr) {
            field->create();
            fields_.push_back(std::move(field));
        }
    }
    placeFields();
    loadFields();
}

void GuiPage::clear() {
    fields_.clear();
    elements_.clear();
    buttons_.clear();
}

DialogField* GuiPage::fieldOf(ControlId control) {
    const auto found =
        std::find_if(fields_.begin(), fields_.end(), [&](const auto& field) { return field->owns(control); });
    return found == fields_.end() ? nullptr : found->get();
}

void GuiPage::placeFields() {
    const PageGeometry geometry = host_.geometry();
    int y = geometry.scaled(kFirstField);
    for (const auto& field : fields_) {
        const DialogFieldDesc& description = field->description();
        if (description.y > 0) {
            y = geometry.top(description.y, description.verticalAlign);
        }
        y = field->place(y);
    }
}

void GuiPage::loadFields() {
    for (const auto& field : fields_) {
        field->load();
    }
}

void GuiPage::storeFields() {
    for (const auto& field : fields_) {
        field->store();
    }
}

bool GuiPage::validateFields() {
    bool areValid = true;
    for (const auto& field : fields_) {
        const bool isValid = field->validate();
        areValid = areValid && isValid;
        const std::string_view variable = field->description().validationVariable.view();
        if (!variable.empty()) {
            storeVariable(variable, isValid ? "1" : "0", host_.engine());
        }
    }
    return areValid;
}
