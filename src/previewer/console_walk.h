#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "previewer/page_list.h"
#include "previewer/preview_machine.h"
#include "previewer/walk_record.h"
#include "ui/console/console_ui.h"

// What the console showed on one page.
struct ConsolePage {
    std::string file;  // the name of its file, without the ending
    std::string text;
};

// The front end on a console in memory, where somebody presses Enter at each question. What is printed
// between two pages belongs to the first of them.
class ConsoleWalk : public ConsoleUI {
public:
    // All of them outlive this object. `console` is the machine's.
    ConsoleWalk(const PreviewMachine::Surroundings& surroundings, RehearsedConsole& console,
                std::vector<ConsolePage>& pages);

    int run() override;
    int finish() override;
    int showDialog(int dialog) override;
    int showSubDialog(int dialog, int sub) override;

private:
    void pressEnter();
    void stopWaiting();
    void begin(PagePosition page);
    void endPage();

    RehearsedConsole& console_;
    std::vector<ConsolePage>& pages_;
    const std::string phase_;
    std::optional<PageList> list_;
    PagePosition current_;
    int reads_ = 0;
    int waits_ = 0;
    int shown_ = 0;
};
