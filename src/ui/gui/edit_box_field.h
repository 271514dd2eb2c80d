#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "ui/gui/dialog_field.h"

// A box for one line of text with its label to the left.
class EditBoxField : public DialogField {
public:
    using DialogField::DialogField;

    void create() override;
    void load() override;
    void store() override;
    // A text that has more than white space.
    bool validate() override;
    void onText() override;

protected:
    void moveTo(int y) override;
    void showValidity() override;

    virtual ControlKind boxKind() const { return ControlKind::kTextBox; }
    // The value as the variable holds it, from what the user typed.
    virtual std::string valueFromBox(std::string_view typed) const;
    // The reverse.
    virtual std::string textForBox(std::string_view value) const { return std::string(value); }
    void addBox(int labelWidth, int boxWidth);
    // After all controls are made.
    void measure();
    std::string value() const;
    ControlId box() const { return box_; }
    void setChanged(bool changed) { isChanged_ = changed; }

private:
    void showValue(std::size_t capacity);

    ControlId box_ = 0;
    ControlId label_ = 0;
    bool isChanged_ = false;  // by the user, since the variable was stored
};

// What is typed doesn't appear, and counts as it is, white space included.
class PasswordField : public EditBoxField {
public:
    using EditBoxField::EditBoxField;

protected:
    ControlKind boxKind() const override { return ControlKind::kPasswordBox; }
    std::string valueFromBox(std::string_view typed) const override { return std::string(typed); }
};
