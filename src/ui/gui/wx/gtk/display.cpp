#include "ui/gui/wx/display.h"

#include <X11/Xlib.h>
#include <fcntl.h>
#include <gdk/gdkx.h>
#include <gtk/gtk.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <clocale>
#include <csetjmp>
#include <cstdlib>

namespace display {

namespace {

std::atomic<bool> lost = false;

// A call that uses the display, as long as it lasts.
class Use {
public:
    Use() : outer_(innermost_) { innermost_ = this; }
    ~Use() { innermost_ = outer_; }
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;

    static Use* innermost() { return innermost_; }
    std::jmp_buf& beginning() { return beginning_; }

private:
    static Use* innermost_;
    Use* const outer_;
    std::jmp_buf beginning_{};
};

Use* Use::innermost_ = nullptr;

// An exception would run the destructors on its way, which call GTK, whose own code was cut off in the middle
// of it: a signal of GObject that is left like this breaks the next one.
void abandon() {
    if (Use* const use = Use::innermost()) {
        std::longjmp(use->beginning(), 1);
    }
}

// The library calls this when the server doesn't answer any more, and ends the process if it returns.
int noteLoss(Display* /*connection*/) {
    lost = true;
    abandon();
    return 0;
}

// What a library says about a display that it doesn't get is for its developers.
class Silence {
public:
    Silence() : errors_(dup(STDERR_FILENO)) {
        const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
        if (errors_ >= 0 && nowhere >= 0) {
            dup2(nowhere, STDERR_FILENO);
        }
        if (nowhere >= 0) {
            close(nowhere);
        }
    }
    ~Silence() {
        if (errors_ >= 0) {
            dup2(errors_, STDERR_FILENO);
            close(errors_);
        }
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

private:
    int errors_;
};

bool isSet(const char* variable) {
    const char* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

// Numbers, dates and error texts of the program stay as they are, and with them the words of the toolkit.
void useUnicode() {
    gtk_disable_setlocale();
    std::setlocale(LC_CTYPE, "C.UTF-8");
}

std::string refusal() {
    const char* const variable = isSet("DISPLAY") ? "DISPLAY" : "WAYLAND_DISPLAY";
    std::string reason = std::string("the display \"") + std::getenv(variable) + "\" can't be opened";
    std::replace_if(
        reason.begin(), reason.end(), [](char c) { return c >= 0 && c < ' '; }, ' ');
    return reason;
}

// The library's remarks on the desktop's settings are none of the user's business; what ends the process is.
GLogWriterOutput dropMessage(GLogLevelFlags level, const GLogField* fields, gsize count, gpointer data) {
    const bool isFatal = (level & (G_LOG_FLAG_FATAL | G_LOG_LEVEL_ERROR)) != 0;
    return isFatal ? g_log_writer_default(level, fields, count, data) : G_LOG_WRITER_HANDLED;
}

}  // namespace

bool open(std::string& outReason) {
    if (!isSet("G_MESSAGES_DEBUG")) {
        g_log_set_writer_func(dropMessage, nullptr, nullptr);
    }
    useUnicode();
    // A process survives the loss of an X server, but not that of a Wayland compositor.
    gdk_set_allowed_backends("x11,wayland");
    const Silence silence;
    if (gtk_init_check(nullptr, nullptr) == FALSE) {
        outReason = refusal();
        return false;
    }
    if (GDK_IS_X11_DISPLAY(gdk_display_get_default())) {
        XSetIOErrorHandler(noteLoss);
    }
    return true;
}

bool isLost() {
    return lost;
}

void flush() {
    gdk_display_flush(gdk_display_get_default());
}

double density() {
    GdkDisplay* const screens = gdk_display_get_default();
    GdkMonitor* monitor = screens == nullptr ? nullptr : gdk_display_get_primary_monitor(screens);
    if (monitor == nullptr && screens != nullptr) {
        monitor = gdk_display_get_monitor(screens, 0);
    }
    return monitor == nullptr ? 1.0 : gdk_monitor_get_scale_factor(monitor);
}

bool use(void (*work)(void*), void* data) {
    if (lost) {
        return false;
    }
    Use use;
    if (setjmp(use.beginning()) != 0) {
        return false;
    }
    work(data);
    return true;
}

void leaveIfLost() {
    if (lost) {
        abandon();
    }
}

}  // namespace display
