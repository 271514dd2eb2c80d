#include "engine/journaled_registry.h"

#include "base/text_functions.h"

using platform::RegistryRoot;
using platform::RegistryValue;
using platform::RegistryView;

namespace {

RemovalRecord recordOf(RemovalStep step, RegistryRoot root, std::string_view path, RegistryView view,
                       std::string_view name = {}) {
    RemovalRecord record;
    record.step = step;
    record.root = static_cast<std::uint8_t>(root);
    record.view = static_cast<std::uint8_t>(view);
    record.path = path;
    record.other = name;
    return record;
}

std::string_view withoutEnd(std::string_view path) {
    while (path.ends_with('\\')) {
        path.remove_suffix(1);
    }
    return path;
}

// Empty for a key right below a root.
std::string_view parentOf(std::string_view path) {
    const std::size_t separator = path.find_last_of('\\');
    return separator == std::string_view::npos ? std::string_view() : withoutEnd(path.substr(0, separator));
}

// The name as the store spells it, which ignores case.
std::string spelledLike(std::string_view name, const std::vector<std::string>& names) {
    for (const std::string& spelled : names) {
        if (OUtils::equalsIgnoreCase(spelled, name)) {
            return spelled;
        }
    }
    return std::string(name);
}

}  // namespace

template <typename Call>
int JournaledRegistry::change(RemovalRecord& record, Call call) {
    if (journal_.append(record, RemovalJournal::Durability::kFlushed) != 0) {
        return platform::kRegIoFailed;
    }
    return call();
}

int JournaledRegistry::createKey(RegistryRoot root, std::string_view path, RegistryView view,
                                 int& outCreated) {
    outCreated = 0;
    RemovalRecord record = recordOf(RemovalStep::kCreateKey, root, withoutEnd(path), view);
    for (std::string_view level = record.path;
         !level.empty() && registry_.testKey(root, level, view) == platform::kRegNotFound;
         level = parentOf(level)) {
        ++record.subject;
    }
    if (record.subject == 0) {
        return registry_.createKey(root, path, view, outCreated);
    }
    return change(record, [&] { return registry_.createKey(root, path, view, outCreated); });
}

int JournaledRegistry::deleteKey(RegistryRoot root, std::string_view path, RegistryView view) {
    RemovalRecord record = recordOf(RemovalStep::kDeleteKey, root, path, view);
    std::vector<std::string> names;
    int status = registry_.listKeys(root, path, view, names);
    if (status != platform::kRegOk || !names.empty()) {
        return status != platform::kRegOk ? status : registry_.deleteKey(root, path, view);
    }
    status = registry_.listValues(root, path, view, names);
    for (std::size_t i = 0; status == platform::kRegOk && i < names.size(); ++i) {
        status = keepValue(root, path, view, names[i], record);
    }
    if (status != platform::kRegOk) {
        return status;
    }
    record.path = spelledLikeInParent(root, path, view);
    return change(record, [&] { return registry_.deleteKey(root, path, view); });
}

// The last level of the path as the store spells it.
std::string JournaledRegistry::spelledLikeInParent(RegistryRoot root, std::string_view path,
                                                   RegistryView view) {
    const std::string_view key = withoutEnd(path);
    const std::string_view parent = parentOf(key);
    const std::size_t name = key.find_last_of('\\') + 1;
    std::vector<std::string> names;
    registry_.listKeys(root, parent, view, names);
    return std::string(key.substr(0, name)) + spelledLike(key.substr(name), names);
}

// A value that isn't there leaves nothing to keep.
int JournaledRegistry::keepValue(RegistryRoot root, std::string_view path, RegistryView view,
                                 std::string_view name, RemovalRecord& record) {
    RegistryValue value;
    const int status = registry_.readValue(root, path, view, name, value);
    if (status == platform::kRegOk) {
        record.before.push_back({std::string(name), value.type, value.data});
    }
    return status == platform::kRegNotFound ? static_cast<int>(platform::kRegOk) : status;
}

int JournaledRegistry::writeValue(RegistryRoot root, std::string_view path, RegistryView view,
                                  std::string_view name, const RegistryValue& value) {
    RemovalRecord record = recordOf(RemovalStep::kWriteValue, root, path, view, name);
    record.after.push_back({std::string(name), value.type, value.data});
    if (const int status = keepValue(root, path, view, name, record); status != platform::kRegOk) {
        return status;
    }
    return change(record, [&] { return registry_.writeValue(root, path, view, name, value); });
}

int JournaledRegistry::deleteValue(RegistryRoot root, std::string_view path, RegistryView view,
                                   std::string_view name) {
    std::vector<std::string> names;
    registry_.listValues(root, path, view, names);
    const std::string spelled = spelledLike(name, names);
    RemovalRecord record = recordOf(RemovalStep::kDeleteValue, root, path, view, spelled);
    const int status = keepValue(root, path, view, spelled, record);
    if (status != platform::kRegOk) {
        return status;
    }
    if (record.before.empty()) {
        return registry_.deleteValue(root, path, view, name);
    }
    return change(record, [&] { return registry_.deleteValue(root, path, view, name); });
}
