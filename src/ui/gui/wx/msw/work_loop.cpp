#include "ui/gui/wx/work_loop.h"

void WorkLoop::handleWaiting() {
    YieldFor(wxEVT_CATEGORY_ALL);
}

bool WorkLoop::Pending() const {
    return wxEventLoop::Pending();
}
