#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "contracts/input_provider.h"
#include "platform/console_device.h"

// Prints long texts page by page on a terminal.
class Pager {
public:
    // Waits until the user wants another page; the text says so.
    using Pause = std::function<PageTurn(std::string_view text)>;
    using Cancelled = std::function<bool()>;

    // A `quiet` pager never stops. `terminal` outlives the object.
    Pager(platform::ConsoleDevice& terminal, bool quiet, Pause pause, Cancelled cancelled);

    // What is said before each further page, instead of the default words.
    void setQuestion(std::string question) { question_ = std::move(question); }

    // Prints the whole text, or the pages that were shown until the session was cancelled. Without a window
    // of at least 3 rows there is but one page.
    void print(std::string_view text);

private:
    struct Place {
        std::size_t offset = 0;
        int lines = 0;  // before it
    };

    bool readRows(int& outRows);
    void printPages(std::string_view text, int rows);
    void printPage();
    Place pauseAfterPage(Place next);
    PageTurn waitForPage();

    platform::ConsoleDevice& terminal_;
    const bool quiet_;
    const Pause pause_;
    const Cancelled cancelled_;
    std::string question_;
    std::string page_;
    std::vector<Place> shown_;  // the starts of the pages up to the one on the screen
    bool toEnd_ = false;        // no further page is waited for
};
