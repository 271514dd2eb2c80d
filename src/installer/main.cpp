#include "installer/console_control.h"
#include "installer/installer_program.h"
#include "platform/platform.h"
#include "platform/program.h"
#include "ui/gui/start/window_toolkit.h"
#include "ui/gui/window_front_ends.h"

int programMain(const std::vector<std::string>& arguments) {
    platform::setControlHandler(handleConsoleControl);
    platform::Platform system = platform::systemPlatform();
    WindowFrontEnds windows(system.console, system.files, openWindowToolkit);
    return InstallerProgram(system, windows).run(arguments);
}
