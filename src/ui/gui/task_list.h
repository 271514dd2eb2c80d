#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "description/dialog_model.h"
#include "ui/gui/page_host.h"

class PagePictures;

// The task lists of the page: one row for each task of the dialog, with an icon for its state.
class TaskList {
public:
    TaskList(PageHost& host, PagePictures& pictures) : host_(host), pictures_(pictures) {}

    // Fills a control with the tasks of the dialog.
    void fill(ControlId control, const DialogElementDesc& element, int dialog);
    // Shows a state in all rows of the task of this name.
    void setState(std::string_view name, std::string_view text, std::int32_t state);
    void clear() { rows_.clear(); }

private:
    struct Row {
        ControlId control;
        int index;
        std::string name;
        bool hasIcon;
    };

    bool addIcons(ControlId control, const DialogElementDesc& element);
    // The row borrows the text, and its words until the next one.
    TaskRow rowOf(std::string_view text, std::int32_t state, bool hasIcon);

    PageHost& host_;
    PagePictures& pictures_;
    std::vector<Row> rows_;
    std::string stateWords_;
};
