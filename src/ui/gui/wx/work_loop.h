#pragma once

#include <wx/evtloop.h>

// A loop in which long work can stop to handle events. Has one implementation for each system (gtk/, msw/).
class WorkLoop : public wxEventLoop {
public:
    // Handles what waits: input, timers, what is to be laid out and drawn. What GTK keeps for an idle moment,
    // such as the layout of lines that nobody sees, stays there. May be called by what it handles.
    void handleWaiting();

    bool Pending() const override;

private:
    // Null outside of handleWaiting.
    const bool* isDone_ = nullptr;
};
