#include "ui/gui/wx/work_loop.h"

#include <gtk/gtk.h>

#include <utility>

namespace {

// Behind all that can be seen: GTK lays out the lines of a text beyond its edges after what it draws.
constexpr int kBehindDrawing = GDK_PRIORITY_REDRAW + 1;

// Its turn comes when nothing waits that is more urgent. Turns nest.
class Turn {
public:
    explicit Turn(const Turn*& innermost)
        : innermost_(innermost),
          outer_(std::exchange(innermost, this)),
          source_(g_idle_add_full(kBehindDrawing, note, this, nullptr)) {}
    ~Turn() {
        g_source_remove(source_);
        innermost_ = outer_;
    }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    bool hasCome() const { return hasCome_; }

private:
    static gboolean note(gpointer turn) {
        static_cast<Turn*>(turn)->hasCome_ = true;
        return G_SOURCE_CONTINUE;
    }

    const Turn*& innermost_;
    const Turn* const outer_;
    bool hasCome_ = false;
    guint source_;
};

class GtkWorkLoop : public WorkLoop {
public:
    void handleWaiting() override {
        const Turn turn(turn_);
        YieldFor(wxEVT_CATEGORY_ALL);
    }
    // wxWidgets asks this for as long as it handles events.
    bool Pending() const override { return turn_ == nullptr ? WorkLoop::Pending() : !turn_->hasCome(); }

    bool keepForLater(const wxKeyEvent& /*key*/) override { return false; }

private:
    const Turn* turn_ = nullptr;  // none outside of handleWaiting
};

}  // namespace

std::unique_ptr<WorkLoop> WorkLoop::make() {
    return std::make_unique<GtkWorkLoop>();
}
