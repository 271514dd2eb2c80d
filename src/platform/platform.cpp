#include "platform/platform.h"

#include "platform/console_device.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/firewall.h"
#include "platform/named_events.h"
#include "platform/processes.h"
#include "platform/registry.h"
#include "platform/shell_objects.h"

namespace platform {

Platform systemPlatform() {
    return Platform{systemFileSystem(), systemRegistry(),    systemProcesses(),    systemEnvironment(),
                    systemConsole(),    systemNamedEvents(), systemShellObjects(), systemFirewall()};
}

}  // namespace platform
