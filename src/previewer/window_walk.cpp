#include "previewer/window_walk.h"

#include <algorithm>
#include <utility>

#include "contracts/install_exchange_info.h"
#include "contracts/installer_ui.h"

namespace {

// No description leads through more pages one after the other.
constexpr int kMostSteps = 400;
constexpr std::uint64_t kTick = 100;
constexpr int kMostSecondsWithoutFocus = 5;

// Waits and slides are the same each time.
WxGUI::Surroundings windowSurroundings(const PreviewMachine::Surroundings& surroundings, Toolkit& toolkit) {
    return {toolkit,
            surroundings.machine.console,
            surroundings.answers,
            surroundings.machine.files,
            [now = std::uint64_t{0}]() mutable { return now += kTick; },
            [] { return std::uint32_t{0}; }};
}

// Copies what the toolkit has drawn.
class KeptPicture : public PictureReceiver {
public:
    void take(const Picture& picture) override {
        image = Image(picture.width, picture.height, false);
        for (int y = 0; y < image.height(); ++y) {
            const std::size_t bytes = static_cast<std::size_t>(picture.width) * 3;
            std::copy_n(picture.rgb + bytes * static_cast<std::size_t>(y), bytes, image.rgbRow(y));
        }
    }

    Image image;
};

}  // namespace

WindowWalk::WindowWalk(const PreviewMachine::Surroundings& surroundings, WatchedToolkit& toolkit,
                       WalkRecord& record, SavePicture save)
    : WxGUI(surroundings.isUninstallation, windowSurroundings(surroundings, toolkit), surroundings.log),
      toolkit_(toolkit),
      record_(record),
      save_(std::move(save)),
      phase_(surroundings.isUninstallation ? "uninstall" : "install") {}

int WindowWalk::run() {
    pages_.emplace(*engine(), phase_);
    toolkit_.nextStep = [this] { takeStep(); };
    return WxGUI::run();
}

void WindowWalk::showPage(int dialog, int sub, bool show) {
    WxGUI::showPage(dialog, sub, show);
    if (show) {
        shown_ = {dialog, sub};
    }
}

int WindowWalk::leaveDialog(int dialog) {
    notePage();
    return WxGUI::leaveDialog(dialog);
}

void WindowWalk::leaveSubDialog(int dialog, int sub) {
    notePage();
    WxGUI::leaveSubDialog(dialog, sub);
}

// A display in memory has no window manager: the window that comes under the mouse gets the focus, and until
// then its pages look otherwise. On another display it may never come.
bool WindowWalk::waitsForFocus() {
    return !toolkit_.isActive() && toolkit_.seconds() < kMostSecondsWithoutFocus;
}

void WindowWalk::takeStep() {
    if (waitsForFocus()) {
        return;
    }
    if (engine()->isFinished() || engine()->isCancelled()) {
        toolkit_.closeFrame();
        return;
    }
    notePage();
    const PagePosition before = shown_;
    const bool isOver = ++steps_ > kMostSteps;
    const int result = isOver ? -1 : engine()->shift(this, 1);
    if (engine()->isFinished()) {
        toolkit_.closeFrame();
    } else if (result != 0 || shown_ == before) {
        record_.ends.push_back(phase_ + ": the page " + pages_->fileNameOf(before) +
                               " can't be left with these answers");
        toolkit_.closeFrame();
    }
}

void WindowWalk::noteWhatHolds(PageRecord& page) {
    const std::int32_t state = engine()->getUiState();
    if (state == kUiFieldInvalid) {
        page.notes.emplace_back("a field isn't valid with these answers, so a user can't go on");
    } else if (state == kUiConditionUnmet) {
        page.notes.emplace_back("the page holds its user with these answers");
    }
}

// A frame without any of its pages has no name, and nobody gets to see it.
void WindowWalk::notePage() {
    const std::string file = pages_->fileNameOf(shown_);
    if (file.empty()) {
        return;
    }
    const bool isNew = noted_.insert(shown_).second;
    if (!isNew) {
        return;
    }
    toolkit_.processEvents();
    KeptPicture picture;
    PageRecord page{file, toolkit_.clientSize(), {}, {}};
    page.faults = findLayoutFaults(page.size, toolkit_.shownControls());
    noteWhatHolds(page);
    if (toolkit_.drawPage(picture)) {
        save_(file, picture.image);
    } else {
        page.notes.emplace_back("the page can't be drawn");
    }
    for (const std::string& box : toolkit_.takeBoxes()) {
        page.notes.push_back("a box: " + box);
    }
    record_.pages.push_back(std::move(page));
}
