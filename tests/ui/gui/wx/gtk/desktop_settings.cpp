#include "ui/gui/wx/gtk/desktop_settings.h"

#include <X11/Xatom.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::string_view kDensity = "Xft/DPI";
constexpr int kDensityUnit = 1024;

void append(std::string& block, std::uint32_t number) {
    block.append(reinterpret_cast<const char*>(&number), sizeof number);
}

// Numbers in the order of this machine, and names with zeros up to a multiple of four.
std::string blockOf(std::string_view name, std::int32_t value) {
    std::string block;
    append(block, LSBFirst);
    append(block, 1);  // serial number
    append(block, 1);  // settings
    append(block, static_cast<std::uint32_t>(name.size()) << 16);
    block.append(name);
    block.resize((block.size() + 3) / 4 * 4);
    append(block, 1);  // serial number
    append(block, static_cast<std::uint32_t>(value));
    return block;
}

}  // namespace

DesktopSettings::DesktopSettings()
    : display_(XOpenDisplay(nullptr)),
      window_(XCreateSimpleWindow(display_, DefaultRootWindow(display_), 0, 0, 1, 1, 0, 0, 0)) {}

DesktopSettings::~DesktopSettings() {
    XCloseDisplay(display_);
}

void DesktopSettings::setDensity(int dots) {
    const std::string block = blockOf(kDensity, dots * kDensityUnit);
    const Atom property = XInternAtom(display_, "_XSETTINGS_SETTINGS", False);
    XChangeProperty(display_, window_, property, property, 8, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(block.data()), static_cast<int>(block.size()));
    announce();
}

void DesktopSettings::announce() {
    const Atom role = XInternAtom(display_, "_XSETTINGS_S0", False);
    if (XGetSelectionOwner(display_, role) != window_) {
        XSetSelectionOwner(display_, role, window_, CurrentTime);
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = DefaultRootWindow(display_);
        event.xclient.message_type = XInternAtom(display_, "MANAGER", False);
        event.xclient.format = 32;
        event.xclient.data.l[1] = static_cast<long>(role);
        event.xclient.data.l[2] = static_cast<long>(window_);
        XSendEvent(display_, DefaultRootWindow(display_), False, StructureNotifyMask, &event);
    }
    XSync(display_, False);
}
