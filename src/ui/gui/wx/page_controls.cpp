#include "ui/gui/wx/page_controls.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "ui/gui/wx/accessibility.h"
#include "ui/gui/wx/conversion.h"
#include "ui/gui/wx/documents.h"
#include "ui/gui/wx/plain_controls.h"
#include "ui/gui/wx/radio_group.h"
#include "ui/gui/wx/task_list.h"
#include "ui/gui/wx/themed_controls.h"

void PageControls::enter(wxWindow& panel, bool isThemed) {
    panel_ = &panel;
    isThemed_ = isThemed;
    colours_ = {};
}

void PageControls::clear() {
    controls_.clear();
    group_.reset();
    panel_ = nullptr;
}

ControlId PageControls::add(const ControlSpec& spec) {
    if (panel_ == nullptr || lastId_ == std::numeric_limits<ControlId>::max()) {
        return 0;
    }
    std::unique_ptr<PageControl> control = make(siteOf(spec), spec);
    if (!control) {
        return 0;
    }
    control->setPlace(spec.place);
    control->setPageColours(colours_);
    control->setColours(spec.colours);
    if (!spec.name.empty()) {
        accessibility::setName(*control->window(), wideText(spec.name));
    }
    if (!spec.toolTip.empty()) {
        control->window()->SetToolTip(wideText(spec.toolTip));
    }
    const ControlId id = control->id();
    controls_.emplace(id, std::move(control));
    return id;
}

ControlSite PageControls::siteOf(const ControlSpec& spec) {
    ControlSite site{panel_, ++lastId_, &events_, &retired_, nullptr};
    if (spec.kind == ControlKind::kRadioButton) {
        if (spec.startsGroup || !group_) {
            group_ = std::make_shared<RadioGroup>(retired_);
        }
        site.group = group_;
    }
    return site;
}

std::unique_ptr<PageControl> PageControls::make(const ControlSite& site, const ControlSpec& spec) const {
    if (isThemed_) {
        if (auto control = makeThemedControl(site, spec)) {
            return control;
        }
    }
    switch (spec.kind) {
        case ControlKind::kButton:
        case ControlKind::kLinkButton:
            return std::make_unique<ButtonControl>(site, spec);
        case ControlKind::kText:
            return std::make_unique<TextControl>(site, spec);
        case ControlKind::kLabel:
            return std::make_unique<LabelControl>(site, spec);
        case ControlKind::kTextBox:
        case ControlKind::kPasswordBox:
            return std::make_unique<TextBoxControl>(site, spec);
        case ControlKind::kCheckBox:
            return std::make_unique<CheckBoxControl>(site, spec);
        case ControlKind::kRadioButton:
            return std::make_unique<RadioButtonControl>(site, spec);
        case ControlKind::kProgressBar:
            return std::make_unique<ProgressControl>(site, spec);
        case ControlKind::kLine:
        case ControlKind::kFrame:
            return std::make_unique<OrnamentControl>(site, spec);
        case ControlKind::kLines:
        case ControlKind::kPlainText:
            return std::make_unique<LinesControl>(site, spec);
        case ControlKind::kRichText:
            return std::make_unique<RichTextControl>(site, spec);
        case ControlKind::kHtml:
            return std::make_unique<HtmlControl>(site, spec);
        case ControlKind::kTaskList:
            return std::make_unique<TaskListControl>(site, spec);
        case ControlKind::kPicture:
            return std::make_unique<PictureControl>(site, spec);
    }
    return nullptr;
}

void PageControls::remove(ControlId id) {
    controls_.erase(id);
}

PageControl* PageControls::find(ControlId id) const {
    const auto found = controls_.find(id);
    return found == controls_.end() ? nullptr : found->second.get();
}

PageControl* PageControls::focused() const {
    return owner(wxWindow::FindFocus());
}

PageControl* PageControls::owner(const wxWindow* window) const {
    for (; window != nullptr; window = window->GetParent()) {
        for (const auto& [id, control] : controls_) {
            if (control->window() == window) {
                return control.get();
            }
        }
    }
    return nullptr;
}

void PageControls::setPageColours(const PageColours& colours) {
    colours_ = colours;
    for (const auto& [id, control] : controls_) {
        control->setPageColours(colours);
    }
}

void PageControls::moveFocus(bool forward) {
    std::vector<PageControl*> stops;
    const PageControl* const current = focused();
    for (const auto& [id, control] : controls_) {
        const wxWindow& window = *control->window();
        const bool canStop = window.IsShown() && window.IsThisEnabled() && control->isTabStop();
        if (canStop || control.get() == current) {
            stops.push_back(control.get());
        }
    }
    if (stops.empty()) {
        return;
    }
    if (!forward) {
        std::reverse(stops.begin(), stops.end());
    }
    auto next = std::find(stops.begin(), stops.end(), current);
    next = next == stops.end() || next + 1 == stops.end() ? stops.begin() : next + 1;
    (*next)->takeFocus();
}

void PageControls::showAccessKeys(bool show) {
    for (const auto& [id, control] : controls_) {
        control->showAccessKey(show);
    }
}
