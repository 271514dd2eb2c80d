#include "platform/console_device.h"
#include "platform/platform.h"
#include "platform/program.h"
#include "previewer/preview_run.h"
#include "ui/gui/start/window_toolkit.h"

int programMain(const std::vector<std::string>& arguments) {
    const auto first = arguments.begin() + (arguments.empty() ? 0 : 1);
    const platform::Platform system = platform::systemPlatform();
    const int result =
        PreviewRun({system, openWindowToolkit, platform::startVirtualDisplay, platform::setLetterSize},
                   readPreviewOptions({first, arguments.end()}))
            .run();
    system.console.flush();
    return result;
}
