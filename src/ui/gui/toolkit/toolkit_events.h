#pragma once

#include "ui/gui/toolkit/control.h"

// What the toolkit reports. All of it comes on the thread that called Toolkit::run, also while
// Toolkit::processEvents is at work; nothing may throw.
class ToolkitEvents {
public:
    virtual ~ToolkitEvents() = default;

    // The toolkit works. False: the loop ends at once.
    virtual bool onStart() = 0;
    // The frame has come to the screen, once.
    virtual void onFirstShow() = 0;
    virtual void onActivate(bool isActive) = 0;
    // Nothing is left to do.
    virtual void onIdle() = 0;
    // Once a second.
    virtual void onTimer() = 0;
    // The user wants to close the frame. True: it closes.
    virtual bool onClose() = 0;
    // The user pressed a button, a check box, or a radio button that was not chosen.
    virtual void onPress(ControlId control) = 0;
    // Return was pressed. `boxUsesEnter`: the focus is in a control that has its own use for it. True: done;
    // false: the control with the focus gets the key.
    virtual bool onEnter(bool boxUsesEnter) = 0;
    // Alt was pressed alone, in a themed frame.
    virtual void onAltKey() = 0;
    // The user changed the text of a box.
    virtual void onText(ControlId control) = 0;
    // The control got the focus.
    virtual void onFocus(ControlId control) = 0;
    // Tab moved the focus.
    virtual void onNavigate(bool forward) = 0;
    // After Toolkit::wake.
    virtual void onWake() = 0;
    // The display has gone: nothing is shown or asked any more. The loop ends as soon as control is back in
    // it.
    virtual void onDisplayLost() = 0;
};
