#include "ui/gui/directory_field.h"

#include <algorithm>

#include "base/visible_text.h"
#include "contracts/install_exchange_info.h"
#include "description/wizard_words.h"
#include "platform/written_path.h"
#include "ui/field_values.h"
#include "ui/gui/toolkit/copied_text.h"

namespace {

constexpr int kButtonWidth = 30;
constexpr std::size_t kMostBytes = 1559;

}  // namespace

void DirectoryField::create() {
    const int buttonWidth = host().geometry().scaled(kButtonWidth);
    const int labelWidth = width() / 3;
    const int boxWidth = width() * 2 / 3 - gap() * 2 - buttonWidth;
    addBox(labelWidth, boxWidth);
    const std::string name = OUtils::visibleText(description().label.view());
    ControlSpec spec;
    spec.kind = ControlKind::kButton;
    spec.place = {left() + labelWidth + gap() + std::max(1, boxWidth) + gap(), 0, buttonWidth,
                  heightOf(box())};
    spec.text = "...";
    spec.name = name;
    if (host().isThemed()) {
        spec.colours = {description().buttonForeground, description().buttonBackground, -1, -1};
    }
    button_ = add(spec);
    measure();
}

void DirectoryField::moveTo(int y) {
    EditBoxField::moveTo(y);
    moveControl(button_, y);
}

void DirectoryField::onActivate(ControlId control) {
    if (control != button_) {
        return;
    }
    CopiedText chosen;
    if (toolkit().chooseDirectory(OUtils::visibleText(engine().getWords().text("ChooseDirectory")),
                                  textOf(toolkit(), box()), chosen)) {
        take(std::string_view(chosen.copy).substr(0, kMostBytes));
    }
}

void DirectoryField::take(std::string_view path) {
    const std::string directory = cleanDirectory(path);
    toolkit().setText(box(), OUtils::visibleText(textForBox(directory)));
    storeVariable(description().variable.view(), directory, engine());
    setChanged(false);
    host().textChanged(*this);
}

std::string DirectoryField::valueFromBox(std::string_view typed) const {
    return cleanDirectory(typed);
}

std::string DirectoryField::textForBox(std::string_view value) const {
    return platform::writtenPath(cleanDirectory(value));
}
