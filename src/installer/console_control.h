#pragma once

#include "platform/console_device.h"

class InstallExchangeInfo;
class InstallerUI;

// The running session and its front end, which the console control handler uses from its own thread.
// Either may be null. The pointers are borrowed.
void setActiveInstaller(InstallExchangeInfo* installer);
void setActiveUI(InstallerUI* ui);

// Asks the front end to confirm the end of the session for an interrupt, close, logoff or shutdown, and
// returns true; returns false for every other event, so that the system's default action ends it.
bool handleConsoleControl(platform::ControlEvent event);
