#include "ui/gui/wx/task_list.h"

#include <wx/imaglist.h>
#include <wx/settings.h>

#include <algorithm>
#include <memory>

#include "ui/gui/wx/accessibility.h"
#include "ui/gui/wx/conversion.h"

namespace {

// Takes neither the focus nor a click.
class Rows : public wxListCtrl {
public:
    bool AcceptsFocus() const override { return false; }
    bool AcceptsFocusRecursively() const override { return false; }
};

void ignoreUser(wxWindow& window) {
    const auto ignore = [](wxEvent&) {};
    window.Bind(wxEVT_LEFT_DOWN, ignore);
    window.Bind(wxEVT_LEFT_DCLICK, ignore);
    window.Bind(wxEVT_RIGHT_DOWN, ignore);
    window.Bind(wxEVT_MIDDLE_DOWN, ignore);
    for (wxWindow* child : window.GetChildren()) {
        ignoreUser(*child);
    }
}

}  // namespace

TaskListControl::TaskListControl(const ControlSite& site, const ControlSpec& /*spec*/) : PageControl(site) {
    list_ = new Rows;
    list_->Hide();
    list_->Create(site.parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                  wxLC_REPORT | wxLC_NO_HEADER | wxLC_SINGLE_SEL | wxBORDER_STATIC);
    adopt(list_);
    list_->AppendColumn(wxString());
    ignoreUser(*list_);
}

void TaskListControl::setPlace(Place place) {
    PageControl::setPlace(place);
    list_->SetColumnWidth(0, std::max(1, list_->GetClientSize().x - 1));
}

wxString TaskListControl::text() const {
    wxString rows;
    for (int i = 0; i < list_->GetItemCount(); ++i) {
        rows << (i == 0 ? "" : "\n") << list_->GetItemText(i);
    }
    return rows;
}

wxSize TaskListControl::wordsSize() const {
    const int width = list_->GetColumnWidth(0);
    list_->SetColumnWidth(0, wxLIST_AUTOSIZE);
    const int needed = list_->GetItemCount() > 0 ? list_->GetColumnWidth(0) : 0;
    list_->SetColumnWidth(0, width);
    return {needed + list_->GetSize().x - list_->GetClientSize().x, 0};
}

void TaskListControl::setTaskIcons(Extent size, std::span<const Picture> icons) {
    const double density = display::density();
    auto images = std::make_unique<wxImageList>(static_cast<int>(size.width / density),
                                                static_cast<int>(size.height / density), true,
                                                static_cast<int>(icons.size()));
    for (const Picture& icon : icons) {
        images->Add(bitmapOf(icon, density));
    }
    list_->AssignImageList(images.release(), wxIMAGE_LIST_SMALL);
}

void TaskListControl::addTask(const TaskRow& row) {
    const long index = list_->InsertItem(list_->GetItemCount(), wxString());
    rows_.push_back({row.colour, row.isInactive, wxString()});
    setTask(static_cast<int>(index), row);
}

void TaskListControl::setTask(int index, const TaskRow& row) {
    if (index < 0 || index >= list_->GetItemCount()) {
        return;
    }
    list_->SetItem(index, 0, wideText(row.text), row.icon);
    rows_[static_cast<std::size_t>(index)] = {row.colour, row.isInactive, wideText(row.state)};
    colour(index);
    describe();
}

void TaskListControl::describe() {
    wxString rows;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        rows << (i == 0 ? "" : "\n") << list_->GetItemText(static_cast<long>(i));
        if (!rows_[i].state.empty()) {
            rows << ": " << rows_[i].state;
        }
    }
    accessibility::setContent(*list_, accessibility::Role::kList, rows);
}

void TaskListControl::colour(int index) {
    const Row& row = rows_[static_cast<std::size_t>(index)];
    const wxSystemColour system = row.isInactive ? wxSYS_COLOUR_GRAYTEXT : wxSYS_COLOUR_WINDOWTEXT;
    list_->SetItemTextColour(index, row.own == -1 ? wxSystemSettings::GetColour(system) : colourOf(row.own));
}

void TaskListControl::applyColours() {
    const ControlColours& own = colours();
    const std::int32_t background = own.background == -1 ? pageColours().background : own.background;
    list_->SetBackgroundColour(background == -1 ? list_->GetParent()->GetBackgroundColour()
                                                : colourOf(background));
    for (int i = 0; i < list_->GetItemCount(); ++i) {
        colour(i);
    }
    list_->Refresh();
}
