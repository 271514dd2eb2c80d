#pragma once

#include "platform/console_device.h"

class InstallExchangeInfo;
class InstallerUI;

// What the console control handler reaches from its own thread: the running session and its front end.
// Either may be null. The pointers are only borrowed.
void setActiveInstaller(InstallExchangeInfo* installer);
void setActiveUI(InstallerUI* ui);

// Asks the front end to confirm the end of the session for an interrupt, close, logoff or shutdown, and
// returns true; returns false for every other event, so that the system's default ends the process.
bool handleConsoleControl(platform::ControlEvent event);
