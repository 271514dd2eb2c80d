#pragma once

#include <string>
#include <string_view>

class InstallerUI;

// What a graphical run has to say while it has no window: before its front end runs, and after that. A box
// shows the lines once the run can't go on, as many of them as fit on a screen.
class WindowlessNotice {
public:
    static constexpr int kMostLines = 20;

    void add(std::string_view line);
    void clear();
    // Shows the lines and forgets them; nothing without lines.
    void show(InstallerUI& ui);

private:
    std::string text_;
    int lines_ = 0;
};
