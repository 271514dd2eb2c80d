#include <string>
#include <vector>

#include "packager/commands.h"
#include "packager/terminal_output.h"
#include "platform/console_device.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/processes.h"

// The system's entry point calls this with the arguments in UTF-8, the program's name first.
int programMain(const std::vector<std::string>& arguments);

int programMain(const std::vector<std::string>& arguments) {
    TerminalOutput output(platform::systemConsole());
    const auto first = arguments.begin() + (arguments.empty() ? 0 : 1);
    return runPackager({first, arguments.end()}, output, platform::systemFileSystem(),
                       platform::systemEnvironment(), platform::systemProcesses());
}
