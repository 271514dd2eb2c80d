#include "platform/program.h"

#include "platform/registry.h"
#include "platform/windows/wide_text.h"

namespace platform {

namespace {

constexpr std::size_t kLongestDirectory = 519;  // characters

}  // namespace

bool ownImagePath(std::string& outPath) {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) {
            return false;
        }
        if (length < path.size()) {
            path.resize(length);
            outPath = utf8Of(path);
            return true;
        }
        path.resize(path.size() * 2);
    }
}

int lastSystemError() {
    return static_cast<int>(GetLastError());
}

bool keepsRunningPrograms() {
    return true;
}

std::vector<std::string> administratorDirectories(Registry& registry) {
    RegistryValue value;
    if (registry.readValue(RegistryRoot::kLocalMachine, "SOFTWARE\\Microsoft\\Windows\\CurrentVersion",
                           RegistryView::kNative, "ProgramFilesDir", value) != kRegOk ||
        (value.type != kRegString && value.type != kRegExpandString) || value.data.empty() ||
        wideOf(value.data.c_str()).size() > kLongestDirectory) {
        return {};
    }
    return {value.data};
}

}  // namespace platform
