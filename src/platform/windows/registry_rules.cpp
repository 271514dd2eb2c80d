#include "platform/registry_rules.h"

#include <windows.h>

#include "base/text_functions.h"
#include "platform/windows/registry_keys.h"
#include "platform/windows/wide_text.h"

namespace platform {

namespace {

constexpr std::size_t kLongestKeyName = 255;      // characters
constexpr std::size_t kLongestValueName = 16383;  // characters
constexpr std::string_view kSoftware = "software\\";
constexpr std::string_view kSoftware32 = "software\\wow6432node\\";

class WindowsRegistryRules : public RegistryRules {
public:
    // The nearest key that is there decides. Opening it with the right to write changes nothing.
    int wouldRefuse(const RegistryKey& key) override {
        std::wstring path = wideOf(key.path);
        const REGSAM view = viewFlagOf(key.view);
        for (;;) {
            HKEY opened = nullptr;
            const LSTATUS status =
                RegOpenKeyExW(rootKeyOf(key.root), path.data(), 0, KEY_WRITE | view, &opened);
            if (status == ERROR_SUCCESS) {
                RegCloseKey(opened);
            }
            if (status != ERROR_FILE_NOT_FOUND || path.empty()) {
                return static_cast<int>(status);
            }
            const std::size_t separator = path.find_last_of(L'\\');
            path.resize(separator == std::wstring::npos ? 0 : separator);
        }
    }

    // Only the software of the machine, and its classes, differ between the views.
    RegistryKey canonical(const RegistryKey& key) const override {
        RegistryKey result = key;
        std::string path = OUtils::toLowerAscii(key.path) + "\\";
        const bool isMachine = key.root == RegistryRoot::kLocalMachine;
        if (isMachine && path.starts_with(kSoftware32)) {
            result.view = RegistryView::k32Bit;
            result.path = key.path.substr(0, kSoftware.size() - 1);
            if (key.path.size() > kSoftware32.size()) {
                result.path += '\\' + key.path.substr(kSoftware32.size());
            }
        } else if (key.root != RegistryRoot::kClassesRoot && !(isMachine && path.starts_with(kSoftware))) {
            result.view = RegistryView::kNative;
        }
        return result;
    }

    bool isKeyName(std::string_view name) const override { return wideOf(name).size() <= kLongestKeyName; }
    bool isValueName(std::string_view name) const override {
        return wideOf(name).size() <= kLongestValueName;
    }
    std::string nameKey(std::string_view name) const override {
        std::wstring wide = wideOf(name);
        CharUpperBuffW(wide.data(), static_cast<DWORD>(wide.size()));
        return utf8Of(std::wstring_view(wide));
    }
    int statusOfRootDeletion() const override { return kRegBadArgument; }
};

}  // namespace

RegistryRules& systemRegistryRules() {
    static WindowsRegistryRules rules;
    return rules;
}

}  // namespace platform
