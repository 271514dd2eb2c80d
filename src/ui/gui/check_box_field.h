#pragma once

#include "ui/gui/dialog_field.h"

// A box with its caption. The variable holds 1 or 0; as a value, all but 0 means a check.
class CheckBoxField : public DialogField {
public:
    using DialogField::DialogField;

    void create() override;
    void load() override;
    void store() override;
    bool validate() override { return true; }
    void onActivate(ControlId control) override;

protected:
    void moveTo(int y) override { moveControl(box_, y); }

private:
    ControlId box_ = 0;
};
