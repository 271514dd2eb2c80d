#include "platform/platform.h"

#include <gtest/gtest.h>

#include "platform/console_device.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/firewall.h"
#include "platform/named_events.h"
#include "platform/processes.h"
#include "platform/registry.h"
#include "platform/shell_objects.h"

TEST(SystemPlatform, BundlesTheObjectsOfTheProcess) {
    const platform::Platform machine = platform::systemPlatform();
    EXPECT_EQ(&machine.files, &platform::systemFileSystem());
    EXPECT_EQ(&machine.registry, &platform::systemRegistry());
    EXPECT_EQ(&machine.processes, &platform::systemProcesses());
    EXPECT_EQ(&machine.environment, &platform::systemEnvironment());
    EXPECT_EQ(&machine.console, &platform::systemConsole());
    EXPECT_EQ(&machine.events, &platform::systemNamedEvents());
    EXPECT_EQ(&machine.shell, &platform::systemShellObjects());
    EXPECT_EQ(&machine.firewall, &platform::systemFirewall());
}
