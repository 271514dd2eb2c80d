#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "platform/registry.h"

// A registry in memory that records what is done to it and refuses where it is asked to. The two views are
// kept apart; the four roots always exist. For one thread.
class MemoryRegistry : public platform::Registry {
public:
    enum class Operation { kCreateKey, kDeleteKey, kReadValue, kWriteValue, kDeleteValue };

    // Set-up and inspection in the native view unless a parameter says otherwise; not recorded, never
    // refused.
    void addKey(platform::RegistryRoot root, std::string_view path,
                platform::RegistryView view = platform::RegistryView::kNative);
    void addText(platform::RegistryRoot root, std::string_view path, std::string_view name,
                 std::string_view text, platform::RegistryView view = platform::RegistryView::kNative);
    bool hasKey(platform::RegistryRoot root, std::string_view path,
                platform::RegistryView view = platform::RegistryView::kNative) const;
    // Null when there is no such value.
    const platform::RegistryValue* value(platform::RegistryRoot root, std::string_view path,
                                         std::string_view name,
                                         platform::RegistryView view = platform::RegistryView::kNative) const;

    // All keys and values of both views: "HKLM\a\b", "HKLM\a\b:name (32)", with the type and the data.
    std::map<std::string, std::string> everything() const;

    // At this path and below nothing can be written, made or deleted, in any root and view.
    void setReadOnly(std::string_view path) { readOnly_.push_back(std::string(path)); }
    bool isReadOnly(std::string_view path) const;
    // At this path and below nothing can be read or listed either.
    void setForbidden(std::string_view path);

    // The n-th (from 1) operation of this kind from now on is refused. Each call adds one refusal.
    void failAt(Operation operation, int n) { faults_.push_back({operation, n}); }
    void clearFaults() { faults_.clear(); }

    // What was asked for, in order, failed calls included: "createKey HKLM\a\b", "deleteKey ...",
    // "writeValue HKLM\a\b:name", "deleteValue ...". Reading isn't recorded. The roots are HKCR, HKCU, HKLM,
    // HKU; a call in the 32-bit view ends in " (32)".
    std::vector<std::string> operations;
    // Called before each of them.
    std::function<void()> watcher;

    int createKey(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                  int& outCreated) override;
    int testKey(platform::RegistryRoot root, std::string_view path, platform::RegistryView view) override;
    int deleteKey(platform::RegistryRoot root, std::string_view path, platform::RegistryView view) override;
    int listKeys(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                 std::vector<std::string>& outNames) override;
    int readValue(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                  std::string_view name, platform::RegistryValue& outValue) override;
    int writeValue(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                   std::string_view name, const platform::RegistryValue& value) override;
    int deleteValue(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                    std::string_view name) override;
    int listValues(platform::RegistryRoot root, std::string_view path, platform::RegistryView view,
                   std::vector<std::string>& outNames) override;

private:
    struct NamedValue {
        std::string name;
        platform::RegistryValue value;
    };
    struct Key {
        std::string name;  // the last component in its own case
        std::map<std::string, NamedValue> values;
    };
    // The path in lower case, components separated by a zero byte so that children follow their parent.
    using Address = std::tuple<platform::RegistryRoot, platform::RegistryView, std::string>;

    struct Fault {
        Operation operation;
        int remaining;
    };

    bool isRefused(Operation operation);
    static Address addressOf(platform::RegistryRoot root, std::string_view path, platform::RegistryView view);
    int makeLevels(platform::RegistryRoot root, std::string_view path, platform::RegistryView view);
    Key* find(const Address& address);
    void record(const char* operation, platform::RegistryRoot root, std::string_view path,
                platform::RegistryView view, std::optional<std::string_view> valueName = std::nullopt);

    std::map<Address, Key> keys_;
    std::vector<std::string> readOnly_;
    std::vector<std::string> forbidden_;
    std::vector<Fault> faults_;
};
