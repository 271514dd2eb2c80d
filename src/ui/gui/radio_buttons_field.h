#pragma once

#include <vector>

#include "ui/gui/dialog_field.h"

// A label with radio buttons below it. The variable holds the number of the chosen one, from 0, or -1.
class RadioButtonsField : public DialogField {
public:
    using DialogField::DialogField;

    void create() override;
    void load() override;
    void store() override;
    bool validate() override { return true; }
    void onActivate(ControlId control) override;

protected:
    void moveTo(int y) override;
    // A hidden button can't be reached by a key either; shown again, each is what its own condition made it.
    void setVisible(bool visible) override;

private:
    void addButton(std::string_view caption, std::string_view toolTip);
    int chosen() const;

    ControlId label_ = 0;
    std::vector<ControlId> buttons_;
    std::vector<bool> enabled_;
};
