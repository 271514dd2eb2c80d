#pragma once

#include <string>
#include <vector>

#include "description/dialog_model.h"
#include "ui/gui/page_host.h"

// The buttons of one page.
class PageButtons {
public:
    explicit PageButtons(PageHost& host) : host_(host) {}
    ~PageButtons() { clear(); }
    PageButtons(const PageButtons&) = delete;
    PageButtons& operator=(const PageButtons&) = delete;

    // Makes the buttons of the page, in the order of the description; each is shown and enabled as its
    // conditions say.
    void build(int dialog, int sub);
    void clear();

    // The description of a button; null when it isn't one of this page.
    const DialogButtonDesc* find(ControlId control) const;
    // Shows and enables by the conditions, where there are any.
    void refresh();
    // The buttons that wait while work is done. An enable condition wins over it.
    void enableDisableable(bool enable);
    // The button that the focus goes to on a new page: the first that is shown and enabled, with
    // `defaultOnly` among those that are marked as default. 0 when there is none. The last button marked as
    // default that is met on the way goes to `ioDefault`.
    ControlId firstToFocus(bool defaultOnly, ControlId& ioDefault) const;
    // Adds the access keys of the captions.
    void addAccessKeys(std::vector<AccessKey>& outKeys) const;

private:
    struct Button {
        ControlId control;
        const DialogButtonDesc* description;
    };

    void add(const DialogButtonDesc& description);
    bool canTakeFocus(ControlId control) const;

    PageHost& host_;
    std::vector<Button> buttons_;
};
