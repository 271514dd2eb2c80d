#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "platform/virtual_display.h"
#include "previewer/index_page.h"
#include "previewer/preview_directory.h"
#include "previewer/preview_machine.h"
#include "previewer/preview_options.h"

class Toolkit;

// One run of the program. Exit codes: 0 done, 1 failed or, with `isStrict`, faults found, 2 wrong use.
class PreviewRun {
public:
    // What the run needs of the machine. All of it outlives the run.
    struct Surroundings {
        platform::Platform machine;
        // Null when there is no toolkit, with a line that says why.
        std::function<Toolkit*(std::string& outReason)> openToolkit;
        std::function<std::unique_ptr<platform::VirtualDisplay>(int width, int height,
                                                                std::string& outReason)>
            startDisplay;
        // As platform::setLetterSize.
        std::function<bool(platform::Environment& environment, int percent)> setLetterSize;
    };

    PreviewRun(Surroundings surroundings, PreviewOptions options);

    int run();

private:
    int runAll();
    int walkInWindow();
    AnswerSet walkOnConsole(std::size_t set);
    void writeConsolePages(const Preview& preview);
    void walkInWindows(Preview& preview);
    void prepareSurroundingsOfWindows();
    SizeWalk startWindowWalk(std::size_t set, int size);
    std::string commandLineOf(std::size_t set, int size);
    // Gives the pictures of the differences.
    std::vector<PreviewFile> compare(Preview& preview);
    int report(const Preview& preview);
    void readPackage();
    std::string readAnswers(std::size_t set);
    PreviewMachine machineFor(std::size_t set);
    std::string setName(std::size_t set) const;
    std::string directoryOf(std::size_t set, const std::string& kind) const;
    void say(const std::string& line);

    Surroundings surroundings_;
    PreviewOptions options_;
    PreviewDirectory directory_;
    RehearsedProduct product_;
};
