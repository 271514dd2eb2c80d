#include "platform/shell_objects.h"

#include <windows.h>

#include <intshcut.h>
#include <isguids.h>
#include <shellapi.h>
#include <shlobj.h>

#include <algorithm>

#include "platform/windows/com_objects.h"
#include "platform/windows/library_search.h"
#include "platform/windows/private_security.h"
#include "platform/windows/user_desktop.h"

namespace platform {

namespace {

constexpr UINT kBroadcastMilliseconds = 1000;

// Gives `url` as it is to the object: it is not completed or checked.
constexpr DWORD kUrlAsItIs = 1;

std::wstring backslashed(std::string_view path) {
    std::wstring wide = wideOf(path);
    std::replace(wide.begin(), wide.end(), L'/', L'\\');
    return wide;
}

template <typename Interface>
HRESULT saveAs(const ComPointer<Interface>& object, std::string_view linkPath) {
    ComPointer<IPersistFile> file;
    const HRESULT result = object->QueryInterface(IID_IPersistFile, file.receiveAny());
    return FAILED(result) ? result : file->Save(backslashed(linkPath).c_str(), TRUE);
}

// A link without its target or arguments would start something else; the rest only adorns it.
HRESULT describe(const ComPointer<IShellLinkW>& shellLink, const LinkDescription& link) {
    const HRESULT path = shellLink->SetPath(wideOf(link.target).c_str());
    shellLink->SetDescription(wideOf(link.description).c_str());
    const HRESULT arguments = shellLink->SetArguments(wideOf(link.arguments).c_str());
    shellLink->SetWorkingDirectory(wideOf(link.workDirectory).c_str());
    if (!link.iconPath.empty()) {
        shellLink->SetIconLocation(wideOf(link.iconPath).c_str(), 0);
    }
    return FAILED(path) ? path : arguments;
}

HRESULT makeShellLink(std::string_view linkPath, const LinkDescription& link) {
    const ComApartment apartment;
    if (FAILED(apartment.result())) {
        return apartment.result();
    }
    ComPointer<IShellLinkW> shellLink;
    HRESULT result = CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                      shellLink.receiveAny());
    if (SUCCEEDED(result)) {
        result = describe(shellLink, link);
    }
    return FAILED(result) ? result : saveAs(shellLink, linkPath);
}

HRESULT makeInternetShortcut(std::string_view linkPath, std::string_view url) {
    const ComApartment apartment;
    if (FAILED(apartment.result())) {
        return apartment.result();
    }
    ComPointer<IUniformResourceLocatorW> shortcut;
    HRESULT result = CoCreateInstance(CLSID_InternetShortcut, nullptr, CLSCTX_INPROC_SERVER,
                                      IID_IUniformResourceLocatorW, shortcut.receiveAny());
    if (SUCCEEDED(result)) {
        result = shortcut->SetURL(wideOf(url).c_str(), kUrlAsItIs);
    }
    return FAILED(result) ? result : saveAs(shortcut, linkPath);
}

// Some calls answer S_FALSE for a success with a reserve.
int statusOfResult(HRESULT result) {
    return FAILED(result) ? static_cast<int>(result) : 0;
}

// "http:", "mailto:" and the like; a single letter is a drive.
bool isUrl(const std::wstring& text) {
    const std::size_t length =
        text.find_first_not_of(L"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+.-");
    return length != std::wstring::npos && length > 1 && text[length] == L':';
}

// What the shell is to open: a URL as it is, a path, or the full path of a name that has none, which the
// shell would look for in the current directory first. Empty when there is nothing of that name.
std::wstring targetOf(std::string_view path) {
    const std::wstring text = wideOf(path);
    return isUrl(text) || text.find_first_of(L"\\/:") != std::wstring::npos ? text : findProgram(text);
}

// Where no class says how to open a file, the desktop would ask the user, and nobody would learn of it here.
bool canDesktopOpen(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return attributes != INVALID_FILE_ATTRIBUTES;
    }
    const std::size_t dot = path.find_last_of(L".\\/");
    HKEY fileClass = nullptr;
    if (dot == std::wstring::npos || path[dot] != L'.' ||
        RegOpenKeyExW(HKEY_CLASSES_ROOT, path.data() + dot, 0, KEY_QUERY_VALUE, &fileClass) !=
            ERROR_SUCCESS) {
        return false;
    }
    RegCloseKey(fileClass);
    return true;
}

class WindowsShellObjects : public ShellObjects {
public:
    int createLink(std::string_view linkPath, const LinkDescription& link) override {
        return statusOfResult(makeShellLink(linkPath, link));
    }

    int createUrlLink(std::string_view linkPath, std::string_view url) override {
        return statusOfResult(makeInternetShortcut(linkPath, url));
    }

    // Only an administrator, or a developer's machine, could make one.
    int createSymlink(std::string_view /*linkPath*/, std::string_view /*target*/) override {
        return ERROR_NOT_SUPPORTED;
    }

    bool openDocument(std::string_view path) override {
        constexpr INT_PTR kLastError = 32;
        if (openForUser(path)) {
            return true;
        }
        const std::wstring target = targetOf(path);
        if (target.empty()) {
            return false;
        }
        const HINSTANCE answer =
            ShellExecuteW(nullptr, L"open", target.c_str(), nullptr, nullptr, SW_SHOWDEFAULT);
        return reinterpret_cast<INT_PTR>(answer) > kLastError;
    }

    bool openForUser(std::string_view path) override {
        const std::wstring target = targetOf(path);
        if (holderOfThisProcess() != Holder::kAdministrators || target.empty()) {
            return false;
        }
        if (isUrl(target)) {
            return openOnUserDesktop(target);
        }
        // The desktop has another current directory.
        const std::wstring full = fullPath(target);
        return canDesktopOpen(full) && openOnUserDesktop(full);
    }

    bool broadcastEnvironment() override {
        const auto name = reinterpret_cast<LPARAM>("Environment");
        DWORD_PTR answer = 0;
        SendMessageTimeoutA(HWND_BROADCAST, WM_SETTINGCHANGE, 0, name, SMTO_ABORTIFHUNG,
                            kBroadcastMilliseconds, &answer);
        // Wide listeners get the narrow text, which the first call has converted for them already.
        SendMessageTimeoutW(HWND_BROADCAST, WM_SETTINGCHANGE, 0, name, SMTO_ABORTIFHUNG,
                            kBroadcastMilliseconds, &answer);
        return true;
    }
};

}  // namespace

ShellObjects& systemShellObjects() {
    static WindowsShellObjects shell;
    return shell;
}

}  // namespace platform
