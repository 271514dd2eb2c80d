#pragma once

#include <string>

#include "ui/gui/page_geometry.h"
#include "ui/gui/toolkit/toolkit.h"

class DialogField;
class InstallExchangeInfo;

// What the parts of a page use of the frame that they lie in.
class PageHost {
public:
    virtual ~PageHost() = default;

    virtual Toolkit& toolkit() = 0;
    virtual InstallExchangeInfo& engine() = 0;
    // For the present size of the page.
    virtual PageGeometry geometry() = 0;
    virtual bool isThemed() = 0;
    // Of a line, in the toolkit's units.
    virtual int textHeight() = 0;
    // The user made another choice, which the field has stored; what depends on it follows. `control` keeps
    // the focus.
    virtual void choiceChanged(const DialogField& field, ControlId control) = 0;
    // The user changed a text, which the field has stored.
    virtual void textChanged(const DialogField& field) = 0;
};

// What the user typed into the control.
std::string textOf(Toolkit& toolkit, ControlId control);
