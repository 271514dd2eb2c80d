#pragma once

#include <wx/evtloop.h>

#include <memory>

class wxKeyEvent;

// A loop in which long work can stop to handle events. Has one implementation for each system (gtk/, msw/).
class WorkLoop : public wxEventLoop {
public:
    static std::unique_ptr<WorkLoop> make();

    // Handles what waits: input, timers, what is to be laid out and drawn. What GTK keeps for an idle moment,
    // such as the layout of lines that nobody sees, stays there. May be called by what it handles.
    virtual void handleWaiting() = 0;

    // True: the key is to be ignored now; the application's filter gets it again from here as soon as it has
    // left the system's queue. A box that opens before that would get the same key.
    virtual bool keepForLater(const wxKeyEvent& key) = 0;
};
