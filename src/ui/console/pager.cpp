#include "ui/console/pager.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "description/wizard_words.h"

namespace {

constexpr std::size_t kFirstCapacity = 32768;
// The last rows of a window are for the question at the end of a page.
constexpr int kRowsOfQuestion = 2;

}  // namespace

Pager::Pager(platform::ConsoleDevice& terminal, bool quiet, Pause pause, Cancelled cancelled)
    : terminal_(terminal),
      quiet_(quiet),
      pause_(std::move(pause)),
      cancelled_(std::move(cancelled)),
      question_(defaultWords().text("NextPage")) {
    page_.reserve(kFirstCapacity);
}

void Pager::print(std::string_view text) {
    if (cancelled_()) {
        return;
    }
    page_.clear();
    int rows = 0;
    if (!readRows(rows)) {
        page_ = text;
        printPage();
        return;
    }
    printPages(text, rows);
}

// False when there is no window, or none that is high enough for pages.
bool Pager::readRows(int& outRows) {
    int columns = 0;
    return terminal_.windowSize(columns, outRows) && outRows > kRowsOfQuestion;
}

void Pager::printPages(std::string_view text, int rows) {
    Place place;
    shown_ = {place};
    toEnd_ = quiet_;
    while (place.offset < text.size()) {
        page_ += text[place.offset++];
        if (page_.back() != '\n' || ++place.lines % (rows - kRowsOfQuestion) != 0 || toEnd_) {
            continue;
        }
        place = pauseAfterPage(place);
        if (cancelled_()) {
            return;
        }
        if (!readRows(rows)) {
            page_ = text.substr(
                place.offset -
                std::min<std::size_t>(place.offset, 1));  // with the line feed, which opens what is left
            printPage();
            return;
        }
    }
    printPage();
    // Odd but intended: the closing pause depends on the number of bytes, not of lines.
    const std::int64_t last = static_cast<std::int64_t>(text.size()) - 1;
    if (!toEnd_ && last % (rows - kRowsOfQuestion) != 0) {
        waitForPage();
    }
}

void Pager::printPage() {
    terminal_.write(page_);
    terminal_.flush();
    page_.clear();
}

// Where the text goes on; `next` is behind the page.
Pager::Place Pager::pauseAfterPage(Place next) {
    printPage();
    const PageTurn turn = waitForPage();
    toEnd_ = turn == PageTurn::kEnd;
    if (turn != PageTurn::kBack) {
        shown_.push_back(next);
    } else if (shown_.size() > 1) {
        shown_.pop_back();
    }
    return shown_.back();
}

PageTurn Pager::waitForPage() {
    const PageTurn turn = pause_("\n" + question_);
    terminal_.write("\n\n\n");
    terminal_.flush();
    return turn;
}
