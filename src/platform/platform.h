#pragma once

// The operating system as one bundle: the main program makes it once and hands it down; tests put fakes in.
namespace platform {

class FileSystem;
class Registry;
class Processes;
class Environment;
class ConsoleDevice;
class NamedEvents;
class ShellObjects;
class Firewall;

struct Platform {
    FileSystem& files;
    Registry& registry;
    Processes& processes;
    Environment& environment;
    ConsoleDevice& console;
    NamedEvents& events;
    ShellObjects& shell;
    Firewall& firewall;
};

// The machine itself.
Platform systemPlatform();

}  // namespace platform
