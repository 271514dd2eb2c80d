#pragma once

#include "fakes/fake_console_device.h"
#include "fakes/fake_environment.h"
#include "fakes/fake_firewall.h"
#include "fakes/fake_named_events.h"
#include "fakes/fake_processes.h"
#include "fakes/fake_shell_objects.h"
#include "fakes/memory_file_system.h"
#include "fakes/memory_registry.h"
#include "platform/platform.h"

// A whole machine in memory.
struct FakePlatform {
    MemoryFileSystem files;
    MemoryRegistry registry;
    FakeProcesses processes;
    FakeEnvironment environment;
    FakeConsoleDevice console;
    FakeNamedEvents events;
    FakeShellObjects shell;
    FakeFirewall firewall;

    platform::Platform bundle() {
        return {files, registry, processes, environment, console, events, shell, firewall};
    }
};
