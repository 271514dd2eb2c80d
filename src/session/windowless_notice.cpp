#include "session/windowless_notice.h"

#include "contracts/installer_ui.h"

namespace {

constexpr char kCaption[] = "Installation";

}  // namespace

void WindowlessNotice::add(std::string_view line) {
    ++lines_;
    if (lines_ <= kMostLines) {
        text_ += (text_.empty() ? "" : "\n") + std::string(line);
    } else if (lines_ == kMostLines + 1) {
        text_ += "\n...";
    }
}

void WindowlessNotice::clear() {
    text_.clear();
    lines_ = 0;
}

void WindowlessNotice::show(InstallerUI& ui) {
    if (!text_.empty()) {
        ui.setFatalMessage(text_.c_str(), kCaption);
        ui.showFatalMessage();
        clear();
    }
}
