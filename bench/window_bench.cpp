// Watches the window of a program from outside, for bench/run; the display has no window manager:
//
//   window_bench page COMMAND...    seconds from the start of the program to its first picture; then it is
//   ended window_bench watch COMMAND...   seconds to the end of the program, and the longest time in
//   milliseconds
//                                   in which its window answered
//   window_bench blank              shows a page with a line of text, with nothing but the desktop's toolkit

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <gtk/gtk.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPause{1};
// A question each, and the next one only after the answer.
constexpr std::chrono::milliseconds kBetweenQuestions{10};
constexpr int kSmallestPage = 200;

double secondsSince(Clock::time_point begin) {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "window_bench: %s\n", what);
    std::exit(1);
}

// The windows that go away while somebody asks about them are no failure.
int ignoreError(Display* /*display*/, XErrorEvent* /*error*/) {
    return 0;
}

class Watcher {
public:
    Watcher() : display_(XOpenDisplay(nullptr)) {
        if (display_ == nullptr) {
            fail("there is no display");
        }
        XSetErrorHandler(ignoreError);
        root_ = DefaultRootWindow(display_);
        protocols_ = XInternAtom(display_, "WM_PROTOCOLS", False);
        ping_ = XInternAtom(display_, "_NET_WM_PING", False);
        XSelectInput(display_, root_, SubstructureNotifyMask);
        XSync(display_, False);
    }
    ~Watcher() { XCloseDisplay(display_); }
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;

    bool hasPage() const { return page_ != None; }

    void handleEvents() {
        while (XPending(display_) > 0) {
            XEvent event;
            XNextEvent(display_, &event);
            handle(event);
        }
    }

    // More than one colour.
    bool showsSomething() const {
        XWindowAttributes attributes;
        if (XGetWindowAttributes(display_, page_, &attributes) == 0) {
            return false;
        }
        XImage* const image = XGetImage(display_, page_, 0, 0, static_cast<unsigned>(attributes.width),
                                        static_cast<unsigned>(attributes.height), AllPlanes, ZPixmap);
        if (image == nullptr) {
            return false;
        }
        const unsigned long first = XGetPixel(image, 0, 0);
        bool differs = false;
        for (int y = 0; y < image->height && !differs; ++y) {
            for (int x = 0; x < image->width && !differs; ++x) {
                differs = XGetPixel(image, x, y) != first;
            }
        }
        XDestroyImage(image);
        return differs;
    }

    // How long the last question is open, or took.
    void ask() {
        if (isAsked_) {
            longest_ = std::max(longest_, secondsSince(asked_));
        } else if (hasPage() && Clock::now() - asked_ >= kBetweenQuestions) {
            sendPing();
        }
    }

    double longestSeconds() const { return longest_; }
    int answers() const { return answers_; }

private:
    void handle(const XEvent& event) {
        if (event.type == MapNotify && page_ == None) {
            XWindowAttributes attributes;
            if (XGetWindowAttributes(display_, event.xmap.window, &attributes) != 0 &&
                std::min(attributes.width, attributes.height) >= kSmallestPage) {
                page_ = event.xmap.window;
            }
        } else if (event.type == UnmapNotify && event.xunmap.window == page_) {
            page_ = None;
            isAsked_ = false;
        } else if (event.type == ClientMessage && event.xclient.message_type == protocols_ && isAsked_) {
            longest_ = std::max(longest_, secondsSince(asked_));
            isAsked_ = false;
            ++answers_;
        }
    }

    // As a window manager does that wants to know whether a program hangs (Extended Window Manager Hints,
    // _NET_WM_PING): the window sends the message back to the root.
    void sendPing() {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = page_;
        event.xclient.message_type = protocols_;
        event.xclient.format = 32;
        event.xclient.data.l[0] = static_cast<long>(ping_);
        event.xclient.data.l[2] = static_cast<long>(page_);
        asked_ = Clock::now();
        isAsked_ = true;
        XSendEvent(display_, page_, False, NoEventMask, &event);
        XFlush(display_);
    }

    Display* display_;
    Window root_ = None;
    Window page_ = None;
    Atom protocols_ = None;
    Atom ping_ = None;
    Clock::time_point asked_{};
    bool isAsked_ = false;
    double longest_ = 0;
    int answers_ = 0;
};

pid_t start(char** command) {
    const pid_t process = fork();
    if (process == 0) {
        execvp(command[0], command);
        _exit(127);
    }
    if (process < 0) {
        fail("no process can be started");
    }
    return process;
}

bool hasEnded(pid_t process, int& outStatus) {
    return waitpid(process, &outStatus, WNOHANG) == process;
}

int measurePage(char** command) {
    Watcher watcher;
    const Clock::time_point begin = Clock::now();
    const pid_t process = start(command);
    int status = 0;
    while (!watcher.hasPage() || !watcher.showsSomething()) {
        if (hasEnded(process, status)) {
            fail("the program ended without a window");
        }
        std::this_thread::sleep_for(kPause);
        watcher.handleEvents();
    }
    std::printf("%f\n", secondsSince(begin));
    kill(process, SIGKILL);
    waitpid(process, &status, 0);
    return 0;
}

int watch(char** command) {
    Watcher watcher;
    const Clock::time_point begin = Clock::now();
    const pid_t process = start(command);
    int status = 0;
    while (!hasEnded(process, status)) {
        watcher.handleEvents();
        watcher.ask();
        std::this_thread::sleep_for(kPause);
    }
    const double seconds = secondsSince(begin);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || watcher.answers() == 0) {
        fail("the program failed, or its window never answered");
    }
    std::printf("%f %f\n", seconds, watcher.longestSeconds() * 1000);
    return 0;
}

int showBlankPage() {
    if (gtk_init_check(nullptr, nullptr) == FALSE) {
        fail("there is no display");
    }
    GtkWidget* const window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_default_size(GTK_WINDOW(window), 768, 528);
    gtk_container_add(GTK_CONTAINER(window), gtk_label_new("A page"));
    gtk_widget_show_all(window);
    gtk_main();
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string_view what = argc > 1 ? argv[1] : "";
    if (what == "blank" && argc == 2) {
        return showBlankPage();
    }
    if (what == "page" && argc > 2) {
        return measurePage(argv + 2);
    }
    if (what == "watch" && argc > 2) {
        return watch(argv + 2);
    }
    std::fprintf(stderr, "usage: window_bench page|watch COMMAND... | blank\n");
    return 2;
}
