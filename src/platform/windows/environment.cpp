#include "platform/environment.h"

#include <shlobj.h>

#include <array>
#include <cstdlib>

#include "platform/program.h"
#include "platform/windows/wide_text.h"

namespace platform {

namespace {

// The C library treats longer texts as a programming error and may end the process.
constexpr std::size_t kLongestVariable = 32766;

constexpr const char* kStateVariable = "TANDREL_STATE_DIR";
constexpr const char* kStateDirectoryName = "\\Tandrel";

class WindowsEnvironment : public Environment {
public:
    std::optional<std::string> get(std::string_view name) override {
        const std::wstring wideName = wideOf(name);
        std::wstring value(256, L'\0');
        for (;;) {
            SetLastError(ERROR_SUCCESS);
            const DWORD length =
                GetEnvironmentVariableW(wideName.c_str(), value.data(), static_cast<DWORD>(value.size()));
            if (length == 0 && GetLastError() != ERROR_SUCCESS) {
                return std::nullopt;
            }
            if (length < value.size()) {
                return utf8Of(std::wstring_view(value.data(), length));
            }
            value.resize(length);
        }
    }

    bool set(std::string_view name, std::string_view value) override {
        const std::wstring wideName = wideOf(name);
        const std::wstring wideValue = wideOf(value);
        if (wideName.empty() || wideName.find(L'=') != std::wstring::npos ||
            wideName.size() + wideValue.size() > kLongestVariable) {
            return false;
        }
        if (SetEnvironmentVariableW(wideName.c_str(), wideValue.empty() ? nullptr : wideValue.c_str()) == 0 &&
            GetLastError() != ERROR_ENVVAR_NOT_FOUND) {
            return false;
        }
        // The C library has a copy of the environment, which getenv reads.
        return _wputenv_s(wideName.c_str(), wideValue.c_str()) == 0;
    }

    bool programPath(std::string& outPath) override { return ownImagePath(outPath); }

    bool currentDirectory(std::string& outPath) override {
        std::wstring path(MAX_PATH, L'\0');
        for (;;) {
            const DWORD length = GetCurrentDirectoryW(static_cast<DWORD>(path.size()), path.data());
            if (length == 0) {
                return false;
            }
            if (length < path.size()) {
                outPath = utf8Of(std::wstring_view(path.data(), length));
                return true;
            }
            path.resize(length);
        }
    }

    bool stateDirectory(std::string& outPath) override {
        const std::optional<std::string> configured = get(kStateVariable);
        if (configured && !configured->empty()) {
            outPath = *configured;
            return true;
        }
        std::array<wchar_t, MAX_PATH> path{};
        if (SHGetFolderPathW(nullptr, CSIDL_COMMON_APPDATA, nullptr, SHGFP_TYPE_CURRENT, path.data()) !=
            S_OK) {
            return false;
        }
        outPath = utf8Of(path.data()) + kStateDirectoryName;
        return true;
    }
};

}  // namespace

Environment& systemEnvironment() {
    static WindowsEnvironment environment;
    return environment;
}

}  // namespace platform
