#pragma once

#include <wx/radiobut.h>

#include <vector>

#include "ui/gui/wx/page_control.h"

// Radio buttons of which at most one is chosen.
class RadioGroup {
public:
    explicit RadioGroup(RetiredWindows& retired) : retired_(retired) {}
    ~RadioGroup();
    RadioGroup(const RadioGroup&) = delete;
    RadioGroup& operator=(const RadioGroup&) = delete;

    void join(PageControl& member) { members_.push_back(&member); }
    void leave(const PageControl& member);
    const std::vector<PageControl*>& members() const { return members_; }
    // Tab enters a group in one place: at the chosen button, else at the first that can be chosen.
    bool isEntry(const PageControl& member) const;

    // GTK always has one button of a group chosen. This one is never shown and stands for none of the others;
    // it comes before them.
    void makeNoChoice(wxWindow* parent);
    void chooseNone();
    // Notes that `member` is chosen now; false when it was before.
    bool choose(const PageControl* member);

private:
    RetiredWindows& retired_;
    std::vector<PageControl*> members_;
    wxRadioButton* noChoice_ = nullptr;
    const PageControl* chosen_ = nullptr;
};
