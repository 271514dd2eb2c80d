#include "engine/changes/registry_change.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "contracts/system_operations.h"
#include "description/product_description.h"
#include "engine/action_log_format.h"
#include "engine/action_log_writer.h"
#include "engine/changes/change_record.h"
#include "engine/changes/former_state.h"
#include "engine/changes/record_text.h"
#include "engine/description_tags.h"
#include "engine/report.h"

namespace {

using ActionLogFormat::kDefaultValue;
using platform::RegistryRoot;
using platform::RegistryValue;

constexpr auto kView = platform::RegistryView::kNative;

struct NamedRoot {
    vocabulary::WordName name;
    RegistryRoot root;
};

constexpr NamedRoot kRoots[] = {
    {"HKEY_CLASSES_ROOT", RegistryRoot::kClassesRoot},
    {"HKEY_CURRENT_USER", RegistryRoot::kCurrentUser},
    {"HKEY_LOCAL_MACHINE", RegistryRoot::kLocalMachine},
    {"HKEY_USERS", RegistryRoot::kUsers},
};

// A key as the system names it.
struct KeyAddress {
    RegistryRoot root;
    std::string path;  // separated by `\`
};

std::optional<KeyAddress> addressOf(const RegistryChange::Key& key) {
    const auto root = registryRootOf(key.place);
    if (!root) {
        return std::nullopt;
    }
    KeyAddress address{*root, std::string(key.path)};
    std::ranges::replace(address.path, '/', '\\');
    return address;
}

// The fields of a value's record.
std::string recordOf(std::string_view place, std::string_view path, std::string_view valueName) {
    return valueName.empty() ? RecordText::join({place, path, valueName, kDefaultValue})
                             : RecordText::join({place, path, valueName});
}

// No status of a registry: the action log couldn't take a record.
constexpr int kNotWritten = -1;

// The record of a default value has one field more.
bool isDefaultValue(const std::vector<std::string_view>& fields) {
    return fields.size() == 4 && fields[2].empty() && fields[3] == kDefaultValue;
}

bool canBeRecorded(const KeyAddress& address) {
    return address.path.size() <= RegistryChange::kPathLimit && RecordText::isLastField(address.path);
}

bool canBeRecorded(const KeyAddress& address, std::string_view place, std::string_view valueName) {
    return canBeRecorded(address) && RecordText::isLastField(valueName) &&
           RecordText::fits(ActionLogFormat::kRegistryValue, recordOf(place, address.path, valueName));
}

// The paths of all levels, the topmost first. Empty components don't count: the registry has none.
std::vector<std::string> levelsIn(const std::string& path) {
    const std::vector<std::string> components = OUtils::splitText(path, '\\');
    std::vector<std::string> levels;
    for (const std::string& component : components) {
        if (!component.empty()) {
            levels.push_back(levels.empty() ? component : levels.back() + '\\' + component);
        }
    }
    return levels;
}

// How many levels would have to be made. `outStatus` says why that can't be found out: a record with another
// number would leave keys behind, or take away somebody else's.
int missingLevels(platform::Registry& registry, const KeyAddress& address, int& outStatus) {
    const std::vector<std::string> levels = levelsIn(address.path);
    int missing = 0;
    int status = platform::kRegNotFound;
    for (auto level = levels.rbegin(); level != levels.rend() && status == platform::kRegNotFound; ++level) {
        status = registry.testKey(address.root, *level, kView);
        missing += status == platform::kRegNotFound ? 1 : 0;
    }
    outStatus = status == platform::kRegNotFound ? 0 : status;
    return missing;
}

// For the line BEFORE of the action log.
std::string stateOf(const RegistryValue& value) {
    return FormerState::ofBytes(std::to_string(value.type) + ' ' + value.data);
}

std::string textBytes(std::string_view text) {
    return std::string(text);
}

// Base 16 with or without a prefix: "10" means 16. Larger numbers become the largest.
std::string doubleWordBytes(std::string_view text) {
    constexpr long long kLargest = 0xFFFFFFFF;
    const auto number =
        static_cast<std::uint32_t>(std::min(std::strtoll(std::string(text).c_str(), nullptr, 16), kLargest));
    std::string bytes;
    for (int shift = 0; shift < 32; shift += 8) {
        bytes += static_cast<char>(number >> shift & 0xFF);
    }
    return bytes;
}

// Letters of both cases have the bit 64, digits don't; anything else gives some number, without a complaint.
unsigned hexDigit(char digit) {
    const auto code = static_cast<unsigned char>(digit);
    return (code & 0x0F) + ((code & 0x40) != 0 ? 9 : 0);
}

// Half a byte too many makes all of it zero.
std::string binaryBytes(std::string_view text) {
    std::string bytes(text.size() / 2, '\0');
    for (std::size_t i = 0; text.size() % 2 == 0 && i < bytes.size(); ++i) {
        bytes[i] = static_cast<char>((hexDigit(text[2 * i]) << 4 | hexDigit(text[2 * i + 1])) & 0xFF);
    }
    return bytes;
}

struct ValueType {
    std::string_view word;
    std::uint32_t type;
    std::string (*bytesOf)(std::string_view data);
};

constexpr ValueType kValueTypes[] = {
    {"", platform::kRegString, textBytes},
    {"REG_SZ", platform::kRegString, textBytes},
    {"REG_DWORD", platform::kRegDword, doubleWordBytes},
    {"REG_BINARY", platform::kRegBinary, binaryBytes},
};

RegistryValue valueOf(std::string_view word, std::string_view data) {
    const auto* found = std::ranges::find(kValueTypes, word, &ValueType::word);
    return found == std::end(kValueTypes) ? RegistryValue{platform::kRegString, ""}
                                          : RegistryValue{found->type, found->bytesOf(data)};
}

std::string subjectOf(std::string_view work, const RegistryChange::Key& key, std::string_view name) {
    std::string subject(work);
    subject.append(key.place).append("\\").append(key.path);
    return name.empty() ? subject : subject.append(": ").append(name);
}

}  // namespace

std::optional<RegistryRoot> registryRootOf(std::string_view place) {
    const auto* found = std::ranges::find(kRoots, place, &NamedRoot::name);
    return found == std::end(kRoots) ? std::nullopt : std::optional(found->root);
}

const RegistryChange::Action RegistryChange::kActions[] = {
    {"AddValue", &RegistryChange::addValue},
    {"AddKey", &RegistryChange::addKey},
    {"RemoveValue", &RegistryChange::removeValue},
    {"RemoveKey", &RegistryChange::removeKey},
};

bool RegistryChange::applyElement(std::int32_t node, const ProductDescription& product) {
    bool succeeded = true;
    const bool isOpenedHere = !context_.log.isOpen() && openProductLog(product);
    for (const std::int32_t child : context_.tags.childrenOf(node)) {
        if (!isWanted(child)) {
            continue;
        }
        const Element element = readElement(child);
        succeeded = (this->*stepOf(context_.tags.nameOf(child)))(element) && succeeded;
        if (const auto line = context_.tags.attribute(child, "Log")) {
            context_.report.addLine(textOf(element, *line), false);
        }
    }
    context_.report.flushLines();
    if (isOpenedHere && !context_.log.close()) {
        context_.debugLog.line("ERROR: The changes of the registry could not be written to the action log");
        return false;
    }
    return succeeded;
}

bool RegistryChange::openProductLog(const ProductDescription& product) {
    const auto path = product.installLogFile();
    return path && !path->empty() && context_.log.openToAppend(*path);
}

bool RegistryChange::isWanted(std::int32_t node) {
    DescriptionTags& tags = context_.tags;
    return tags.hasAttribute(node, "Place") && tags.hasAttribute(node, "Path") && tags.conditionHolds(node);
}

RegistryChange::Step RegistryChange::stepOf(std::string_view name) {
    const auto* action = std::ranges::find(kActions, name, &Action::element);
    return action == std::end(kActions) ? &RegistryChange::refuse : action->step;
}

bool RegistryChange::refuse(const Element& element) {
    context_.debugLog.line("ERROR: Usupported registry action \"" +
                           std::string(context_.tags.nameOf(element.node)) + '"');
    return true;
}

RegistryChange::Element RegistryChange::readElement(std::int32_t node) {
    DescriptionTags& tags = context_.tags;
    Element element;
    element.node = node;
    element.expand = tags.isSet(node, "Expand");
    element.place = tags.attribute(node, "Place").value_or("");
    element.path = textOf(element, tags.attribute(node, "Path").value_or(""));
    // The record has the path with the separators of the registry.
    OUtils::setSeparators(element.path.data());
    if (const auto valueName = tags.attribute(node, "Value")) {
        element.valueName = textOf(element, *valueName);
    }
    return element;
}

std::string RegistryChange::textOf(const Element& element, std::string_view text) {
    return element.expand ? context_.tags.expand(text) : std::string(text);
}

bool RegistryChange::addValue(const Element& element) {
    const auto text = context_.tags.requiredTextOf(element.node);
    if (!element.valueName || !text) {
        context_.debugLog.line("ERROR: No registry value name supplied!");
        return true;
    }
    const std::string data = textOf(element, *text);
    const std::string_view type = context_.tags.attribute(element.node, "Type").value_or("");
    const Value value = {element.key(), *element.valueName, type, data};
    ChangeRecord record(isRecorded(element) ? &context_.log : nullptr);
    if (const int status = recordValue(element, value, record); status != 0) {
        return reportUnrecorded(element, status);
    }
    const WriteResult result = writeValue(context_.machine.registry, value);
    if (!result.isDone()) {
        record.withdraw();
        return reportFailedChange("FAILED to write the value ", element.key(), *element.valueName,
                                  result.status);
    }
    return true;
}

bool RegistryChange::addKey(const Element& element) {
    ChangeRecord record(isRecorded(element) ? &context_.log : nullptr);
    if (const int recorded = recordKey(element, record); recorded != 0) {
        return reportUnrecorded(element, recorded);
    }
    int status = 0;
    if (createKey(context_.machine.registry, element.key(), &status) > 0) {
        return true;
    }
    record.withdraw();
    return status == platform::kRegOk ||
           reportFailedChange("FAILED to create the key ", element.key(), "", status);
}

bool RegistryChange::removeValue(const Element& element) {
    if (element.valueName) {
        deleteValue(context_.machine.registry, element.key(), *element.valueName);
    } else {
        context_.debugLog.line("ERROR: No registry value name supplied!");
    }
    return true;
}

bool RegistryChange::removeKey(const Element& element) {
    const auto count = context_.tags.attribute(element.node, "KeyCount");
    deleteKeys(context_.machine.registry, element.key(), count ? OUtils::textToInteger(*count) : 1);
    return true;
}

// These are always false. No status: the place isn't one of the hives.
bool RegistryChange::reportFailedChange(std::string_view work, const Key& key, std::string_view name,
                                        std::optional<int> status) {
    context_.report.addError(subjectOf(work, key, name));
    return reportFailure(work, key, name, status);
}

// A failed undo is only reported: it isn't an error of the uninstallation.
bool RegistryChange::reportFailure(std::string_view work, const Key& key, std::string_view name,
                                   std::optional<int> status) {
    const std::string subject = subjectOf(work, key, name);
    context_.debugLog.line("ERROR: " + subject);
    context_.report.addRegistryReason(subject, status.value_or(platform::kRegBadArgument));
    return false;
}

bool RegistryChange::isRecorded(const Element& element) {
    return context_.log.isOpen() && context_.tags.holds(context_.tags.attribute(element.node, "ActionLog"));
}

// Nothing where no level is missing, or none can be made. 0, the registry's status, or kNotWritten.
int RegistryChange::recordKey(const Element& element, ChangeRecord& record) {
    const auto address = addressOf(element.key());
    int status = 0;
    const int missing =
        address && canBeRecorded(*address) ? missingLevels(context_.machine.registry, *address, status) : 0;
    if (status != 0 || missing == 0) {
        return status;
    }
    const bool isWritten =
        record.write(ActionLogFormat::kRegistryKey, {std::to_string(missing), element.place, element.path});
    return isWritten ? 0 : kNotWritten;
}

// Nothing for a value that is going to be refused. As above.
int RegistryChange::recordValue(const Element& element, const Value& value, ChangeRecord& record) {
    const auto address = addressOf(value.key);
    if (!address || !canBeRecorded(*address, value.key.place, value.name)) {
        return 0;
    }
    RegistryValue present;
    const RegistryValue written = valueOf(value.type, value.data);
    int status =
        context_.machine.registry.readValue(address->root, address->path, kView, value.name, present);
    const bool isReplaced =
        status == platform::kRegOk && (present.type != written.type || present.data != written.data);
    status =
        status == platform::kRegNotFound || status == platform::kRegOk ? recordKey(element, record) : status;
    if (status != 0) {
        return status;
    }
    const bool isWritten =
        record.write(ActionLogFormat::kRegistryValue, {recordOf(value.key.place, element.path, value.name)},
                     isReplaced ? stateOf(present) : std::string());
    return isWritten ? 0 : kNotWritten;
}

bool RegistryChange::reportUnrecorded(const Element& element, int status) {
    const std::string subject = "FAILED to change " + element.place + '\\' + element.path;
    context_.debugLog.line("ERROR: " + subject);
    context_.report.addError(subject);
    if (status == kNotWritten) {
        context_.report.addReason(subject, kUnrecordedReason);
    } else {
        context_.report.addRegistryReason(subject, status);
    }
    return false;
}

bool RegistryChange::undo(const LogRecord& record) {
    const std::vector<std::string_view> fields = RecordText::splitAll(record.fields);
    const bool isKey = record.tag == ActionLogFormat::kRegistryKey;
    if (fields.size() == 3 && isKey) {
        createdKeys_.push_back(
            {std::string(fields[1]), std::string(fields[2]), OUtils::textToInteger(fields[0])});
    } else if (!isKey && (fields.size() == 3 || isDefaultValue(fields))) {
        const Key key = {fields[0], fields[1]};
        return holdsFormer(key, fields[2], record.former) || undoValue(key, fields[2]);
    } else {
        context_.debugLog.line("WARNING: (Dev) Wrong number of tokens in the install.log for " +
                               std::string(record.tag));
    }
    return true;
}

bool RegistryChange::holdsFormer(const Key& key, std::string_view name, std::string_view former) {
    const auto address = addressOf(key);
    RegistryValue present;
    return !former.empty() && address &&
           context_.machine.registry.readValue(address->root, address->path, kView, name, present) ==
               platform::kRegOk &&
           stateOf(present) == former;
}

// A value that has gone was taken away by an earlier walk or by the user; a hive that doesn't exist never
// held one.
bool RegistryChange::undoValue(const Key& key, std::string_view name) {
    const auto status = deleteValue(context_.machine.registry, key, name);
    return !status || status == platform::kRegOk || status == platform::kRegNotFound ||
           reportFailure("FAILED to delete the value ", key, name, status);
}

bool RegistryChange::finishUndo() {
    bool succeeded = true;
    for (auto key = createdKeys_.rbegin(); key != createdKeys_.rend(); ++key) {
        context_.report.pumpEvents();
        succeeded = removeCreatedKey(*key) && succeeded;
    }
    std::erase_if(createdKeys_, [](const CreatedKey& key) { return key.levels == 0; });
    return succeeded;
}

// Leaves the key the levels that are in use.
bool RegistryChange::removeCreatedKey(CreatedKey& key) {
    platform::Registry& registry = context_.machine.registry;
    const auto address = addressOf({key.place, key.path});
    const std::vector<std::string> all = address ? levelsIn(address->path) : std::vector<std::string>();
    const int levels = std::exchange(key.levels, 0);
    if (levels < 1 || all.size() < static_cast<std::size_t>(levels)) {
        return true;
    }
    for (auto level = all.rbegin(); level != all.rbegin() + levels; ++level) {
        const int status = registry.deleteKey(address->root, *level, kView);
        if (status == platform::kRegOk || status == platform::kRegNotFound) {
            continue;
        }
        // Also the status for missing rights is that of a key with subkeys.
        std::vector<std::string> subkeys;
        const bool isInUse =
            registry.listKeys(address->root, *level, kView, subkeys) == platform::kRegOk && !subkeys.empty();
        if (isInUse) {
            key.path = *level;
            key.levels = levels - static_cast<int>(level - all.rbegin());
            leaveToList(key);
        }
        return isInUse || reportFailure("FAILED to delete the key ", {key.place, *level}, "", status);
    }
    return true;
}

// An earlier version that goes leaves its entry in the list of applications to the new one.
void RegistryChange::leaveToList(CreatedKey& key) {
    const bool isMachines = registryRootOf(key.place) == RegistryRoot::kLocalMachine;
    if (isMachines && context_.system.leaveKeysToList(key.path, key.levels)) {
        key.levels = 0;
    }
}

RegistryChange::WriteResult RegistryChange::writeValue(platform::Registry& registry, const Value& value) {
    const auto address = addressOf(value.key);
    if (!address) {
        return {};
    }
    if (!canBeRecorded(*address, value.key.place, value.name)) {
        return {platform::kRegBadArgument, 0};
    }
    const RegistryValue written = valueOf(value.type, value.data);
    int status = registry.writeValue(address->root, address->path, kView, value.name, written);
    int created = 0;
    if (status == platform::kRegNotFound) {
        created = createKey(registry, value.key, &status);
        if (status == platform::kRegOk) {
            status = registry.writeValue(address->root, address->path, kView, value.name, written);
        }
    }
    if (status != platform::kRegOk) {
        deleteKeys(registry, value.key, created);
        created = 0;
    }
    return {status, created};
}

int RegistryChange::createKey(platform::Registry& registry, const Key& key, int* outStatus) {
    int unused = 0;
    int& status = outStatus != nullptr ? *outStatus : unused;
    const auto address = addressOf(key);
    if (!address || !canBeRecorded(*address)) {
        status = platform::kRegBadArgument;
        return 0;
    }
    // Where the key can't be looked at nothing is made.
    status = registry.testKey(address->root, address->path, kView);
    if (status != platform::kRegNotFound) {
        return 0;
    }
    int count = 0;
    std::string made;
    for (const std::string& level : levelsIn(address->path)) {
        int created = 0;
        status = registry.createKey(address->root, level, kView, created);
        if (status != platform::kRegOk) {
            deleteKeys(registry, {key.place, made}, count);
            return 0;
        }
        count += created;
        made = level;
    }
    return count;
}

std::optional<int> RegistryChange::deleteValue(platform::Registry& registry, const Key& key,
                                               std::string_view name) {
    const auto address = addressOf(key);
    if (!address) {
        return std::nullopt;
    }
    return registry.deleteValue(address->root, address->path, kView, name);
}

int RegistryChange::deleteKeys(platform::Registry& registry, const Key& key, int levels) {
    const auto address = addressOf(key);
    if (!address) {
        return 0;
    }
    const std::vector<std::string> all = levelsIn(address->path);
    if (levels < 1 || all.size() < static_cast<std::size_t>(levels)) {
        return 0;
    }
    int deleted = 0;
    for (auto level = all.rbegin(); level != all.rbegin() + levels; ++level) {
        // A key that stays keeps the ones above it, which then fail as well.
        deleted += registry.deleteKey(address->root, *level, kView) == platform::kRegOk ? 1 : 0;
    }
    return deleted;
}

std::vector<std::string> RegistryChange::levelsOf(const Key& key) {
    const auto address = addressOf(key);
    return address ? levelsIn(address->path) : std::vector<std::string>();
}

std::string RegistryChange::formerStateOf(const RegistryValue& value) {
    return stateOf(value);
}
