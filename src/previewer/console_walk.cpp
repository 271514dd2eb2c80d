#include "previewer/console_walk.h"

#include <algorithm>

#include "base/text_functions.h"
#include "contracts/install_exchange_info.h"

namespace {

constexpr int kEnter = '\n';
// Where they are reached, the walk would go on for ever.
constexpr int kMostReads = 5000;
constexpr int kMostWaits = 20;
constexpr int kMostPages = 400;

// What a terminal shows in the end of text in which lines are written over from their start.
std::string settledText(const std::string& output) {
    std::string text;
    for (std::string line : OUtils::splitText(output, '\n')) {
        while (!line.empty() && (line.back() == ' ' || line.back() == '\r')) {
            line.pop_back();
        }
        text += line.substr(line.rfind('\r') + 1) + "\n";
    }
    text.resize(text.empty() ? 0 : text.size() - 1);  // the last line has no end
    return text;
}

}  // namespace

ConsoleWalk::ConsoleWalk(const PreviewMachine::Surroundings& surroundings, RehearsedConsole& console,
                         std::vector<ConsolePage>& pages)
    : ConsoleUI(surroundings.isUninstallation, false, false, surroundings.machine.console,
                surroundings.answers, surroundings.log),
      console_(console),
      pages_(pages),
      phase_(surroundings.isUninstallation ? "uninstall" : "install") {
    console_.takeText();
    console_.inputIsTerminal = true;
    console_.beforeRead = [this] { pressEnter(); };
    console_.onSleep = [this] { stopWaiting(); };
}

int ConsoleWalk::run() {
    list_.emplace(*engine(), phase_);
    bool isAutomated = false;
    createInputProvider("", isAutomated);
    const int result = ConsoleUI::run();
    endPage();
    return result;
}

int ConsoleWalk::finish() {
    const int result = ConsoleUI::finish();
    endPage();
    return result;
}

int ConsoleWalk::showDialog(int dialog) {
    begin({dialog, -1});
    return ConsoleUI::showDialog(dialog);
}

int ConsoleWalk::showSubDialog(int dialog, int sub) {
    begin({dialog, sub});
    return ConsoleUI::showSubDialog(dialog, sub);
}

// The terminal shows the line end.
void ConsoleWalk::pressEnter() {
    if (++reads_ > kMostReads) {
        console_.interrupted = true;
        return;
    }
    console_.put("\n");
    if (console_.lines.empty()) {
        console_.lines.emplace_back();
    }
    if (console_.keys.empty()) {
        console_.keys.push_back(kEnter);
    }
}

void ConsoleWalk::stopWaiting() {
    if (++waits_ > kMostWaits && engine() != nullptr && !engine()->isCancelled()) {
        engine()->cancel(this);
    }
}

void ConsoleWalk::begin(PagePosition page) {
    endPage();
    current_ = list_->pageAt(page);
    if (++shown_ > kMostPages) {
        engine()->cancel(this);
    }
}

// A page that was shown before gets the rest of its text.
void ConsoleWalk::endPage() {
    const std::string text = settledText(console_.takeText());
    const std::string file = list_ ? list_->fileNameOf(current_) : std::string();
    if (file.empty() || text.empty()) {
        return;
    }
    const auto known = std::ranges::find(pages_, file, &ConsolePage::file);
    if (known != pages_.end()) {
        known->text += text;
    } else {
        pages_.push_back({file, text});
    }
}
