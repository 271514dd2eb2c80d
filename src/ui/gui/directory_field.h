#pragma once

#include <string>
#include <string_view>

#include "ui/gui/edit_box_field.h"

// A box for a directory with a button that opens a chooser. The box shows the path as the system writes it;
// the variable has it in the form that all directories have.
class DirectoryField : public EditBoxField {
public:
    using EditBoxField::EditBoxField;

    void create() override;
    void onActivate(ControlId control) override;

protected:
    void moveTo(int y) override;
    std::string valueFromBox(std::string_view typed) const override;
    std::string textForBox(std::string_view value) const override;

private:
    void take(std::string_view path);

    ControlId button_ = 0;
};
