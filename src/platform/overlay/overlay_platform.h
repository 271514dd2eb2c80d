#pragma once

#include "platform/overlay/overlay_environment.h"
#include "platform/overlay/overlay_file_system.h"
#include "platform/overlay/overlay_firewall.h"
#include "platform/overlay/overlay_named_events.h"
#include "platform/overlay/overlay_processes.h"
#include "platform/overlay/overlay_registry.h"
#include "platform/overlay/overlay_shell_objects.h"
#include "platform/platform.h"

// What a machine says to changes that aren't made.
struct MachineRules {
    platform::ChangeRules& files;
    platform::RegistryRules& registry;
    platform::VariableRules variables;
};
MachineRules systemMachineRules();

// A whole machine over another one, the base, which is only read. Its console is the base's.
struct OverlayPlatform {
    // What both refer to outlives this object; the rules are those of the base.
    OverlayPlatform(const platform::Platform& base, const MachineRules& rules);

    OverlayFileSystem files;
    OverlayRegistry registry;
    OverlayProcesses processes;
    OverlayEnvironment environment;
    OverlayNamedEvents events;
    OverlayShellObjects shell;
    OverlayFirewall firewall;
    platform::ConsoleDevice& console;

    platform::Platform bundle() {
        return {files, registry, processes, environment, console, events, shell, firewall};
    }
};
