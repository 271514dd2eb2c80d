#include "ui/gui/wx/radio_group.h"

#include <algorithm>
#include <utility>

RadioGroup::~RadioGroup() {
    if (noChoice_ != nullptr) {
        retired_.add(noChoice_);
    }
}

void RadioGroup::leave(const PageControl& member) {
    std::erase(members_, &member);
    if (chosen_ == &member) {
        chosen_ = nullptr;
    }
}

bool RadioGroup::isEntry(const PageControl& member) const {
    const auto canBeEntered = [](const PageControl* button) {
        return button->window()->IsShown() && button->window()->IsThisEnabled();
    };
    const auto chosen = std::find_if(members_.begin(), members_.end(), [&](const PageControl* button) {
        return button->isChecked() && canBeEntered(button);
    });
    if (chosen != members_.end()) {
        return *chosen == &member;
    }
    const auto first = std::find_if(members_.begin(), members_.end(), canBeEntered);
    return first != members_.end() && *first == &member;
}

void RadioGroup::makeNoChoice(wxWindow* parent) {
    if (noChoice_ == nullptr) {
        noChoice_ = new wxRadioButton;
        noChoice_->Hide();
        noChoice_->Create(parent, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize, wxRB_GROUP);
        noChoice_->SetValue(true);
    }
}

bool RadioGroup::choose(const PageControl* member) {
    return std::exchange(chosen_, member) != member;
}

void RadioGroup::chooseNone() {
    chosen_ = nullptr;
    if (noChoice_ != nullptr) {
        noChoice_->SetValue(true);
    }
}
