#include "ui/gui/dialog_field_factory.h"

#include <algorithm>

#include "ui/gui/check_box_field.h"
#include "ui/gui/directory_field.h"
#include "ui/gui/edit_box_field.h"
#include "ui/gui/install_parameter_field.h"
#include "ui/gui/radio_buttons_field.h"

namespace {

template <typename Field>
std::unique_ptr<DialogField> make(PageHost& host, const DialogFieldDesc& description) {
    return std::make_unique<Field>(host, description);
}

struct FieldType {
    std::int32_t type;
    std::unique_ptr<DialogField> (*make)(PageHost& host, const DialogFieldDesc& description);
};

constexpr FieldType kFieldTypes[] = {
    {kFieldDirectory, make<DirectoryField>},       {kFieldCheckBox, make<CheckBoxField>},
    {kFieldRadioButtons, make<RadioButtonsField>}, {kFieldInstallParameter, make<InstallParameterField>},
    {kFieldEditBox, make<EditBoxField>},           {kFieldPassword, make<PasswordField>},
};

}  // namespace

std::unique_ptr<DialogField> makeDialogField(PageHost& host, const DialogFieldDesc& description) {
    const auto* known = std::find_if(std::begin(kFieldTypes), std::end(kFieldTypes),
                                     [&](const FieldType& entry) { return entry.type == description.type; });
    return known == std::end(kFieldTypes) ? nullptr : known->make(host, description);
}
