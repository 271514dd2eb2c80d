#pragma once

#include <string>

#include "ui/gui/dialog_field.h"

// Shows on a summary page what another field has chosen: a name and a value, without input.
class InstallParameterField : public DialogField {
public:
    using DialogField::DialogField;

    void create() override;
    void load() override;
    void store() override {}
    // Only a directory must not be empty.
    bool validate() override;

protected:
    void moveTo(int y) override;

private:
    enum class ParameterKind { kUnknown, kRadioButtons, kDirectory, kCheckBox, kInfo, kEditBox };
    struct KindWord;

    static ParameterKind kindOf(std::string_view content);
    std::string render(const std::string& value) const;
    void explainName();
    void showFitting();

    ParameterKind parameterKind_ = ParameterKind::kUnknown;
    std::string display_;
    ControlId name_ = 0;
    ControlId value_ = 0;
};

// The beginning of the text that fits into the width, with three dots if that isn't all of it.
std::string shortenedText(Toolkit& toolkit, const std::string& text, int width);
