#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>

#include "previewer/page_list.h"
#include "previewer/preview_machine.h"
#include "previewer/walk_record.h"
#include "previewer/watched_toolkit.h"
#include "ui/gui/images/image.h"
#include "ui/gui/wx_gui.h"

// The front end with a window, going from page to page by itself, always forward and whatever its buttons
// say, as an unattended run does. Each page is noted once, when it is complete: when it waits for its user,
// or when it is left after its work.
class WindowWalk : public WxGUI {
public:
    // Keeps the picture of a page under this name.
    using SavePicture = std::function<void(const std::string& file, const Image& picture)>;

    // All of them outlive this object.
    WindowWalk(const PreviewMachine::Surroundings& surroundings, WatchedToolkit& toolkit, WalkRecord& record,
               SavePicture save);

    int run() override;
    void showPage(int dialog, int sub, bool show) override;
    int leaveDialog(int dialog) override;
    void leaveSubDialog(int dialog, int sub) override;

private:
    bool waitsForFocus();
    void takeStep();
    void noteWhatHolds(PageRecord& page);
    void notePage();

    WatchedToolkit& toolkit_;
    WalkRecord& record_;
    SavePicture save_;
    std::string phase_;
    std::optional<PageList> pages_;
    PagePosition shown_;
    std::set<PagePosition> noted_;
    int steps_ = 0;
};
