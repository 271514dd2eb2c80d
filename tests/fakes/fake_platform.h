#pragma once

#include "fakes/fake_console_device.h"
#include "fakes/fake_environment.h"
#include "fakes/fake_named_events.h"
#include "fakes/fake_processes.h"
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

    platform::Platform bundle() { return {files, registry, processes, environment, console, events}; }
};
