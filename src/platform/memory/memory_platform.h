#pragma once

#include "platform/memory/memory_console_device.h"
#include "platform/memory/memory_environment.h"
#include "platform/memory/memory_file_system.h"
#include "platform/memory/memory_firewall.h"
#include "platform/memory/memory_named_events.h"
#include "platform/memory/memory_processes.h"
#include "platform/memory/memory_registry.h"
#include "platform/memory/memory_shell_objects.h"
#include "platform/platform.h"

// A whole machine in memory.
struct MemoryPlatform {
    MemoryFileSystem files;
    MemoryRegistry registry;
    MemoryProcesses processes;
    MemoryEnvironment environment;
    MemoryConsoleDevice console;
    MemoryNamedEvents events;
    MemoryShellObjects shell;
    MemoryFirewall firewall;

    platform::Platform bundle() {
        return {files, registry, processes, environment, console, events, shell, firewall};
    }
};
