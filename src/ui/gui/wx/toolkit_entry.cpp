#include "ui/gui/toolkit/toolkit.h"
#include "ui/gui/wx/wx_toolkit.h"

// On Linux the module offers this function and no other.
extern "C" Toolkit* tandrelToolkit(std::uint32_t version) noexcept {
    static WxToolkit toolkit;
    return version == kToolkitVersion ? &toolkit : nullptr;
}
