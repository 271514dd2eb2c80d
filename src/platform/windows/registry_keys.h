#pragma once

#include <windows.h>

#include "platform/registry.h"

// How Windows names the roots and the views of the registry.
namespace platform {

inline HKEY rootKeyOf(RegistryRoot root) {
    switch (root) {
        case RegistryRoot::kClassesRoot:
            return HKEY_CLASSES_ROOT;
        case RegistryRoot::kCurrentUser:
            return HKEY_CURRENT_USER;
        case RegistryRoot::kLocalMachine:
            return HKEY_LOCAL_MACHINE;
        case RegistryRoot::kUsers:
            return HKEY_USERS;
    }
    return nullptr;
}

inline REGSAM viewFlagOf(RegistryView view) {
    return view == RegistryView::k32Bit ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
}

}  // namespace platform
