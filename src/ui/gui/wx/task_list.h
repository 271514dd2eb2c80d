#pragma once

#include <wx/listctrl.h>

#include <vector>

#include "ui/gui/wx/page_control.h"

// kTaskList: rows with icons, which only inform.
class TaskListControl : public PageControl {
public:
    TaskListControl(const ControlSite& site, const ControlSpec& spec);
    void setPlace(Place place) override;
    bool isTabStop() const override { return false; }
    // The rows, one a line.
    wxString text() const override;
    // The width of the longest row with its icon; rows below the last one that is seen can be scrolled to.
    wxSize wordsSize() const override;
    void setTaskIcons(Extent size, std::span<const Picture> icons) override;
    void addTask(const TaskRow& row) override;
    void setTask(int index, const TaskRow& row) override;

protected:
    void applyColours() override;

private:
    void colour(int index);
    void describe();

    struct Row {
        std::int32_t own;  // -1 is the system's
        bool isInactive;
        wxString state;
    };
    wxListCtrl* list_;
    std::vector<Row> rows_;
};
