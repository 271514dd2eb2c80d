#include "platform/windows/user_desktop.h"

#include <windows.h>

#include <exdisp.h>
#include <servprov.h>
#include <shldisp.h>
#include <shlobj.h>
#include <shobjidl.h>

#include "platform/windows/com_objects.h"

namespace platform {

namespace {

// A chain of objects, each asked for the next; the first failure ends it. Some calls answer S_FALSE and hand
// out nothing.
template <typename Interface>
HRESULT require(HRESULT result, const ComPointer<Interface>& object) {
    return SUCCEEDED(result) && object.get() == nullptr ? E_NOINTERFACE : result;
}

template <typename From, typename To>
HRESULT ask(const ComPointer<From>& object, ComPointer<To>& outObject) {
    return require(object->QueryInterface(__uuidof(To), outObject.receiveAny()), outObject);
}

// The window of the desktop itself, which the shell keeps among those of its folders.
HRESULT findDesktop(ComPointer<IDispatch>& outDesktop) {
    ComPointer<IShellWindows> windows;
    const HRESULT result = CoCreateInstance(__uuidof(ShellWindows), nullptr, CLSCTX_LOCAL_SERVER,
                                            __uuidof(IShellWindows), windows.receiveAny());
    if (FAILED(result)) {
        return result;
    }
    VARIANT place{};
    place.vt = VT_I4;
    place.lVal = CSIDL_DESKTOP;
    VARIANT none{};
    long window = 0;
    return require(
        windows->FindWindowSW(&place, &none, SWC_DESKTOP, &window, SWFO_NEEDDISPATCH, outDesktop.receive()),
        outDesktop);
}

HRESULT findView(ComPointer<IShellFolderViewDual>& outView) {
    ComPointer<IDispatch> desktop;
    ComPointer<IServiceProvider> provider;
    HRESULT result = findDesktop(desktop);
    result = FAILED(result) ? result : ask(desktop, provider);
    ComPointer<IShellBrowser> browser;
    result = FAILED(result) ? result
                            : require(provider->QueryService(SID_STopLevelBrowser, __uuidof(IShellBrowser),
                                                             browser.receiveAny()),
                                      browser);
    ComPointer<IShellView> view;
    result = FAILED(result) ? result : require(browser->QueryActiveShellView(view.receive()), view);
    ComPointer<IDispatch> background;
    result =
        FAILED(result)
            ? result
            : require(view->GetItemObject(SVGIO_BACKGROUND, __uuidof(IDispatch), background.receiveAny()),
                      background);
    return FAILED(result) ? result : ask(background, outView);
}

// The shell's own object in the process of the desktop; one made here would run with our rights.
HRESULT findShell(ComPointer<IShellDispatch2>& outShell) {
    ComPointer<IShellFolderViewDual> view;
    HRESULT result = findView(view);
    ComPointer<IDispatch> application;
    result = FAILED(result) ? result : require(view->get_Application(application.receive()), application);
    return FAILED(result) ? result : ask(application, outShell);
}

}  // namespace

bool openOnUserDesktop(const std::wstring& target) {
    const ComApartment apartment;
    ComPointer<IShellDispatch2> shell;
    if (FAILED(apartment.result()) || FAILED(findShell(shell))) {
        return false;
    }
    const AutomationText file(utf8Of(target));
    const VARIANT none{};
    return SUCCEEDED(shell->ShellExecute(file.get(), none, none, none, none));
}

}  // namespace platform
