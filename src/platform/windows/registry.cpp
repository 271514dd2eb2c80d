#include "platform/registry.h"

#include <windows.h>

#include "platform/windows/registry_keys.h"
#include "platform/windows/wide_text.h"

namespace platform {

static_assert(kRegNone == REG_NONE && kRegString == REG_SZ && kRegExpandString == REG_EXPAND_SZ);
static_assert(kRegBinary == REG_BINARY && kRegDword == REG_DWORD && kRegMultiString == REG_MULTI_SZ);
static_assert(kRegQword == REG_QWORD && kRegNotFound == ERROR_FILE_NOT_FOUND);
static_assert(kRegAccessDenied == ERROR_ACCESS_DENIED && kRegBadArgument == ERROR_INVALID_PARAMETER);

namespace {

constexpr std::size_t kLongestKeyName = 255;  // characters of one level
constexpr DWORD kLongestName = 16384;         // characters of a value's name with the terminator

bool isText(std::uint32_t type) {
    return type == kRegString || type == kRegExpandString || type == kRegMultiString;
}

// The names between the backslashes, without the empty ones.
std::vector<std::wstring> componentsOf(std::string_view path) {
    std::vector<std::wstring> components(1);
    for (const wchar_t character : wideOf(path)) {
        if (character != L'\\') {
            components.back() += character;
        } else if (!components.back().empty()) {
            components.emplace_back();
        }
    }
    if (components.back().empty()) {
        components.pop_back();
    }
    return components;
}

std::wstring joined(const std::vector<std::wstring>& components) {
    std::wstring path;
    for (const std::wstring& component : components) {
        path += path.empty() ? L"" : L"\\";
        path += component;
    }
    return path;
}

class Key {
public:
    Key() = default;
    Key(RegistryRoot root, std::string_view path, RegistryView view, REGSAM access)
        : status_(static_cast<int>(RegOpenKeyExW(rootKeyOf(root), joined(componentsOf(path)).c_str(), 0,
                                                 access | viewFlagOf(view), &key_))) {}
    ~Key() { close(); }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    int status() const { return status_; }
    HKEY get() const { return key_; }
    void take(HKEY key) {
        close();
        key_ = key;
    }

private:
    void close() {
        if (key_ != nullptr) {
            RegCloseKey(key_);
        }
    }

    HKEY key_ = nullptr;
    int status_ = kRegOk;
};

std::string bytesToData(std::uint32_t type, const std::string& bytes) {
    if (!isText(type)) {
        return bytes;
    }
    std::wstring text(reinterpret_cast<const wchar_t*>(bytes.data()), bytes.size() / sizeof(wchar_t));
    while (!text.empty() && text.back() == L'\0') {
        text.pop_back();
    }
    return utf8Of(std::wstring_view(text));
}

std::string dataToBytes(const RegistryValue& value) {
    if (!isText(value.type)) {
        return value.data;
    }
    std::wstring text = wideOf(std::string_view(value.data));
    // A list of texts ends with an empty one.
    text.append(value.type == kRegMultiString && !text.empty() ? 2 : 1, L'\0');
    return std::string(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t));
}

// Collects the names that `enumerate(index, buffer, inOutLength)` gives.
template <typename Enumerate>
int collectNames(std::vector<std::string>& outNames, Enumerate enumerate) {
    std::wstring name(kLongestName, L'\0');
    for (DWORD index = 0;; index++) {
        DWORD length = kLongestName;
        const LSTATUS status = enumerate(index, name.data(), &length);
        if (status != ERROR_SUCCESS) {
            return status == ERROR_NO_MORE_ITEMS ? kRegOk : static_cast<int>(status);
        }
        outNames.push_back(utf8Of(std::wstring_view(name.data(), length)));
    }
}

class WindowsRegistry : public Registry {
public:
    int createKey(RegistryRoot root, std::string_view path, RegistryView view, int& outCreated) override {
        outCreated = 0;
        Key key;
        for (const std::wstring& component : componentsOf(path)) {
            if (component.size() > kLongestKeyName) {
                return kRegBadArgument;
            }
            HKEY next = nullptr;
            DWORD disposition = 0;
            // Rights to write into a level on the way aren't needed, and may be missing.
            const LSTATUS status = RegCreateKeyExW(key.get() != nullptr ? key.get() : rootKeyOf(root),
                                                   component.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                                   KEY_READ | viewFlagOf(view), nullptr, &next, &disposition);
            if (status != ERROR_SUCCESS) {
                return static_cast<int>(status);
            }
            key.take(next);
            outCreated += disposition == REG_CREATED_NEW_KEY ? 1 : 0;
        }
        return kRegOk;
    }

    int testKey(RegistryRoot root, std::string_view path, RegistryView view) override {
        return Key(root, path, view, KEY_READ).status();
    }

    int deleteKey(RegistryRoot root, std::string_view path, RegistryView view) override {
        const std::wstring wide = joined(componentsOf(path));
        if (wide.empty()) {
            return kRegBadArgument;
        }
        return static_cast<int>(RegDeleteKeyExW(rootKeyOf(root), wide.c_str(), viewFlagOf(view), 0));
    }

    int listKeys(RegistryRoot root, std::string_view path, RegistryView view,
                 std::vector<std::string>& outNames) override {
        outNames.clear();
        const Key key(root, path, view, KEY_READ);
        if (key.status() != kRegOk) {
            return key.status();
        }
        return collectNames(outNames, [&key](DWORD index, wchar_t* name, DWORD* length) {
            return RegEnumKeyExW(key.get(), index, name, length, nullptr, nullptr, nullptr, nullptr);
        });
    }

    int readValue(RegistryRoot root, std::string_view path, RegistryView view, std::string_view name,
                  RegistryValue& outValue) override {
        const Key key(root, path, view, KEY_READ);
        if (key.status() != kRegOk) {
            return key.status();
        }
        const std::wstring wideName = wideOf(name);
        std::string bytes(1024, '\0');
        for (;;) {
            DWORD type = REG_NONE;
            auto size = static_cast<DWORD>(bytes.size());
            const LSTATUS status = RegQueryValueExW(key.get(), wideName.c_str(), nullptr, &type,
                                                    reinterpret_cast<BYTE*>(bytes.data()), &size);
            // The value may change between two calls; then the next one gets more room.
            bytes.resize(size);
            if (status == ERROR_SUCCESS) {
                outValue.type = type;
                outValue.data = bytesToData(type, bytes);
            }
            if (status != ERROR_MORE_DATA) {
                return static_cast<int>(status);
            }
        }
    }

    int writeValue(RegistryRoot root, std::string_view path, RegistryView view, std::string_view name,
                   const RegistryValue& value) override {
        const Key key(root, path, view, KEY_SET_VALUE);
        if (key.status() != kRegOk) {
            return key.status();
        }
        const std::string bytes = dataToBytes(value);
        return static_cast<int>(RegSetValueExW(key.get(), wideOf(name).c_str(), 0, value.type,
                                               reinterpret_cast<const BYTE*>(bytes.data()),
                                               static_cast<DWORD>(bytes.size())));
    }

    int deleteValue(RegistryRoot root, std::string_view path, RegistryView view,
                    std::string_view name) override {
        const Key key(root, path, view, KEY_SET_VALUE);
        return key.status() != kRegOk ? key.status()
                                      : static_cast<int>(RegDeleteValueW(key.get(), wideOf(name).c_str()));
    }

    int listValues(RegistryRoot root, std::string_view path, RegistryView view,
                   std::vector<std::string>& outNames) override {
        outNames.clear();
        const Key key(root, path, view, KEY_READ);
        if (key.status() != kRegOk) {
            return key.status();
        }
        return collectNames(outNames, [&key](DWORD index, wchar_t* name, DWORD* length) {
            return RegEnumValueW(key.get(), index, name, length, nullptr, nullptr, nullptr, nullptr);
        });
    }
};

}  // namespace

Registry& systemRegistry() {
    static WindowsRegistry registry;
    return registry;
}

}  // namespace platform
