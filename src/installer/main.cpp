#include "installer/console_control.h"
#include "installer/installer_program.h"
#include "installer/no_window.h"
#include "platform/platform.h"
#include "platform/program.h"

int programMain(const std::vector<std::string>& arguments) {
    platform::setControlHandler(handleConsoleControl);
    platform::Platform system = platform::systemPlatform();
    NoWindow windows;
    return InstallerProgram(system, windows).run(arguments);
}
