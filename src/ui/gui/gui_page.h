#pragma once

#include <memory>
#include <vector>

#include "ui/gui/dialog_field.h"
#include "ui/gui/page_buttons.h"
#include "ui/gui/page_elements.h"

// A dialog or a sub-dialog in the frame: its buttons, elements and fields. Tab goes through them in this
// order.
class GuiPage {
public:
    GuiPage(PageHost& host, PagePictures& pictures, TaskList& tasks)
        : host_(host), buttons_(host), elements_(host, pictures, tasks) {}

    void build(int dialog, int sub);
    void clear();

    PageButtons& buttons() { return buttons_; }
    const PageButtons& buttons() const { return buttons_; }
    PageElements& elements() { return elements_; }
    const PageElements& elements() const { return elements_; }

    // The field that the control belongs to; null when there is none.
    DialogField* fieldOf(ControlId control);
    // Shows each field whose condition holds below the one before it, or where its description says.
    void placeFields();
    void loadFields();
    void storeFields();
    // Whether all fields are valid. Tells each field's variable for it whether that one is.
    bool validateFields();

private:
    PageHost& host_;
    PageButtons buttons_;
    PageElements elements_;
    std::vector<std::unique_ptr<DialogField>> fields_;
};
