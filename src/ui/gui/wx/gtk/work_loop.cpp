#include "ui/gui/wx/work_loop.h"

#include <gtk/gtk.h>

namespace {

// Behind all that can be seen: GTK lays out the lines of a text beyond its edges after what it draws.
constexpr int kBehindDrawing = GDK_PRIORITY_REDRAW + 1;

gboolean noteTurn(gpointer isDone) {
    *static_cast<bool*>(isDone) = true;
    return G_SOURCE_CONTINUE;
}

// Its turn comes when nothing waits that is more urgent.
class Turn {
public:
    Turn() : source_(g_idle_add_full(kBehindDrawing, noteTurn, &isDone_, nullptr)) {}
    ~Turn() { g_source_remove(source_); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    const bool& isDone() const { return isDone_; }

private:
    bool isDone_ = false;
    guint source_;
};

template <typename T>
class Restored {
public:
    Restored(T& value, T now) : value_(value), before_(value) { value = now; }
    ~Restored() { value_ = before_; }
    Restored(const Restored&) = delete;
    Restored& operator=(const Restored&) = delete;

private:
    T& value_;
    T before_;
};

class GtkWorkLoop : public WorkLoop {
public:
    void handleWaiting() override {
        const Turn turn;
        const Restored<const bool*> restored(isDone_, &turn.isDone());
        YieldFor(wxEVT_CATEGORY_ALL);
    }
    // wxWidgets asks this for as long as it handles events.
    bool Pending() const override { return isDone_ == nullptr ? WorkLoop::Pending() : !*isDone_; }

    bool keepForLater(const wxKeyEvent& /*key*/) override { return false; }

private:
    const bool* isDone_ = nullptr;
};

}  // namespace

std::unique_ptr<WorkLoop> WorkLoop::make() {
    return std::make_unique<GtkWorkLoop>();
}
