#pragma once

#include <cstdint>
#include <vector>

#include "description/dialog_model.h"
#include "ui/gui/page_host.h"

// A field of a page in the window: its controls, bound to one variable. It is made when its page is built and
// gone with it. A hidden field, whose condition doesn't hold, is valid and neither reads nor writes its
// variable.
class DialogField {
public:
    // Both outlive this object.
    DialogField(PageHost& host, const DialogFieldDesc& description);
    DialogField(const DialogField&) = delete;
    DialogField& operator=(const DialogField&) = delete;
    // Takes the controls off the page.
    virtual ~DialogField();

    const DialogFieldDesc& description() const { return description_; }
    bool owns(ControlId control) const;
    bool isVisible() const { return isVisible_; }

    // Makes the controls, hidden. Once, before all else.
    virtual void create() = 0;
    // Shows the field at this height if its condition holds, and hides it otherwise. Returns the height for
    // the field below.
    int place(int y);
    // The controls take the value of the variable. A box that the user is typing in stays as it is.
    virtual void load() = 0;
    // The variable takes the value of the controls.
    virtual void store() = 0;
    virtual bool validate() = 0;
    // The user pressed a control of the field.
    virtual void onActivate(ControlId /*control*/) {}
    // The user changed the text of a control of the field.
    virtual void onText() {}

protected:
    // Moves the controls to this height.
    virtual void moveTo(int y) = 0;
    // Shows or hides the controls.
    virtual void setVisible(bool visible);
    // The colours that depend on the value, where there are any.
    virtual void showValidity() {}

    ControlId add(const ControlSpec& spec);
    // A label of this width, or as wide as its text.
    ControlId addLabel(std::string_view text, int width);
    void moveControl(ControlId control, int y);
    int heightOf(ControlId control) { return toolkit().place(control).height; }

    Toolkit& toolkit() const { return host_.toolkit(); }
    InstallExchangeInfo& engine() const { return host_.engine(); }
    PageHost& host() const { return host_; }
    // The space between the parts of a field, in the toolkit's units.
    int gap() const;
    int left() const;
    // The width from the description, or up to the margin at the right edge of the page.
    int width() const;
    // What the field takes of the page, the space below it included. create() sets it.
    void setHeight(int height) { height_ = height; }
    // With a theme, the colours of a label; else none.
    ControlColours labelColours() const;

private:
    PageHost& host_;
    const DialogFieldDesc& description_;
    std::vector<ControlId> controls_;
    int height_ = 0;
    bool isVisible_ = false;
};
