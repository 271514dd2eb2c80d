#include "installer/console_control.h"

#include <atomic>

#include "contracts/install_exchange_info.h"

namespace {

std::atomic<InstallExchangeInfo*> activeInstaller{nullptr};
std::atomic<InstallerUI*> activeUI{nullptr};

}  // namespace

void setActiveInstaller(InstallExchangeInfo* installer) {
    activeInstaller = installer;
}

void setActiveUI(InstallerUI* ui) {
    activeUI = ui;
}

bool handleConsoleControl(platform::ControlEvent event) {
    switch (event) {
        case platform::ControlEvent::kInterrupt:
        case platform::ControlEvent::kClose:
        case platform::ControlEvent::kLogoff:
        case platform::ControlEvent::kShutdown:
            break;
        default:
            return false;
    }
    if (InstallExchangeInfo* installer = activeInstaller) {
        installer->cancel(activeUI);
    }
    return true;
}
