#include "description/variable_store.h"

#include <cstring>
#include <optional>
#include <string_view>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "description/environment_access.h"
#include "description/predefined_variables.h"
#include "description/recalculation_order.h"
#include "description/variable_expansion.h"
#include "support/debug_log.h"

namespace {

constexpr int kUnknown = -1;
constexpr int kOutside = -2;
constexpr std::size_t kEnvironmentCapacity = 2048;  // of the text NAME=VALUE, with its terminator
constexpr int kRecalculationSize = 1024;
constexpr std::size_t kAssignmentLimit = 1024;

// The key that makes two spellings one variable.
std::string keyOf(const char* name) {
    return OUtils::toLowerAscii(std::string_view(name, strnlen(name, InstallVariable::kNameCapacity - 1)));
}

std::string cutTo(const char* text, std::size_t capacity) {
    return std::string(text, strnlen(text, capacity - 1));
}

std::optional<std::string> storedText(const char* text) {
    if (text == nullptr) {
        return std::nullopt;
    }
    std::string stored = cutTo(text, InstallVariable::kTextCapacity);
    OUtils::collapseSeparators(stored.data());
    stored.resize(std::strlen(stored.c_str()));
    return stored;
}

bool isEmpty(const char* text) {
    return text == nullptr || *text == '\0';
}

// What stands between the first `open` and the next `close` behind it.
std::optional<std::string> firstBetween(std::string_view text, char open, char close) {
    const std::size_t start = text.find(open);
    if (start == std::string_view::npos) {
        return std::nullopt;
    }
    const std::size_t end = text.find(close, start + 1);
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    return std::string(text.substr(start + 1, std::min(end - start - 1, kAssignmentLimit)));
}

}  // namespace

VariableStore::VariableStore(PredefinedVariables& predefined, EnvironmentAccess& environment,
                             DebugLog debugLog)
    : predefined_(predefined), environment_(environment), debugLog_(debugLog) {}

int VariableStore::getVariable(const char* name, char* buffer, int size) {
    if (isEmpty(name)) {
        return kUnknown;
    }
    if (isOutside(name)) {
        return readOutside(name, buffer, size);
    }
    const std::int32_t index = findStored(name);
    if (index >= 0) {
        OUtils::copyText(buffer, at(index).value.c_str(), size);
    }
    return index;
}

int VariableStore::getDefaultValue(const char* name, char* buffer, int size) {
    if (isEmpty(name) || buffer == nullptr) {
        return kUnknown;
    }
    if (isOutside(name)) {
        return readOutside(name, buffer, size);
    }
    const std::int32_t index = findStored(name);
    if (index >= 0) {
        OUtils::copyText(buffer, at(index).defaultValue.c_str(), size);
    }
    return index;
}

bool VariableStore::isOutside(const char* name) {
    return *name == '$' || PredefinedVariables::isPredefined(name);
}

int VariableStore::readOutside(const char* name, char* buffer, int size) {
    return *name == '$' ? readEnvironment(name + 1, buffer, size) : predefined_.read(name, buffer, size);
}

int VariableStore::readEnvironment(const char* name, char* buffer, int size) {
    std::string value;
    if (!environment_.getEnvironment(name, value)) {
        debugLog_.print("WARNING: Environment variable \"%s\" is not defined!", name);
        OUtils::copyText(buffer, "", size);
        return kUnknown;
    }
    if (buffer != nullptr && value.size() >= static_cast<std::size_t>(std::max(size, 0))) {
        debugLog_.print("WARNING: Environment variable \"%s\" is cut to %d bytes!", name, size - 1);
    }
    OUtils::copyText(buffer, value.c_str(), size);
    return kOutside;
}

std::int32_t VariableStore::findStored(const char* name) const {
    if (isEmpty(name)) {
        return kUnknown;
    }
    const auto found = byName_.find(keyOf(name));
    return found == byName_.end() ? kUnknown : found->second;
}

int VariableStore::setVariable(const char* name, const char* value) {
    return storeVariable(name, value, nullptr, false, nullptr);
}

int VariableStore::setDefaultValue(const char* name, const char* value) {
    return storeVariable(name, nullptr, nullptr, false, value);
}

int VariableStore::storeVariable(const char* name, const char* value, const char* expression,
                                 bool recalculate, const char* defaultValue) {
    if (isEmpty(name)) {
        return kUnknown;
    }
    if (*name == '$') {
        storeEnvironment(name + 1, value != nullptr ? value : defaultValue);
        return kUnknown;
    }
    if (PredefinedVariables::isPredefined(name)) {
        return kUnknown;
    }
    // The texts may lie in the records that are about to change, so they are copied first.
    const std::string ownName = cutTo(name, InstallVariable::kNameCapacity);
    StoredTexts texts{storedText(value), storedText(expression), storedText(defaultValue)};
    const std::int32_t index = findStored(name);
    if (index < 0) {
        addRecord(ownName, std::move(texts), recalculate);
    } else {
        changeRecord(index, ownName, std::move(texts), recalculate);
    }
    return 0;
}

void VariableStore::storeEnvironment(const char* name, const char* text) {
    const char* value = text == nullptr ? "" : text;
    if (std::strlen(name) + 1 + std::strlen(value) >= kEnvironmentCapacity) {
        debugLog_.print("WARNING: The value of environment variable \"%s\" is too long. It is not set!",
                        name);
    } else if (!environment_.setEnvironment(name, value)) {
        debugLog_.print("WARNING: Environment variable \"%s\" could not be set!", name);
    }
}

void VariableStore::addRecord(const std::string& name, StoredTexts texts, bool recalculate) {
    const std::int32_t index = getCount();
    InstallVariable& record = variables_.emplace_back();
    record.name = name;
    record.defaultValue = std::move(texts.defaultValue).value_or("");
    record.value = texts.value.has_value() ? std::move(*texts.value) : record.defaultValue;
    record.expression = std::move(texts.expression).value_or("");
    byName_.emplace(keyOf(name.c_str()), index);
    setRecalculate(index, recalculate);
}

void VariableStore::changeRecord(std::int32_t index, const std::string& name, StoredTexts texts,
                                 bool recalculate) {
    InstallVariable& record = recordAt(index);
    record.name = name;
    if (texts.defaultValue.has_value()) {
        record.defaultValue = std::move(*texts.defaultValue);
    }
    if (texts.value.has_value()) {
        record.value = std::move(*texts.value);
    }
    if (texts.expression.has_value()) {
        record.expression = std::move(*texts.expression);
    }
    setRecalculate(index, recalculate);
    recalculateVariables(index);
}

void VariableStore::setRecalculate(std::int32_t index, bool recalculate) {
    recordAt(index).recalculate = recalculate;
    if (recalculate) {
        recalculated_.insert(index);
    } else {
        recalculated_.erase(index);
    }
}

int VariableStore::resetVariable(const char* name, int mode) {
    const std::int32_t index = findStored(name);
    if (index < 0 || isOutside(name)) {
        return kUnknown;
    }
    InstallVariable& record = recordAt(index);
    if (mode == kResetToDefault) {
        record.value = record.defaultValue;
        return 0;
    }
    derive(record, static_cast<int>(InstallVariable::kTextCapacity));
    setRecalculate(index, mode == kResetToExpressionAndFollow);
    return 0;
}

int VariableStore::applyAssignment(const char* text) {
    if (text == nullptr) {
        return kUnknown;
    }
    const std::optional<std::string> name = firstBetween(text, '[', ']');
    const std::optional<std::string> value = firstBetween(text, '\'', '\'');
    if (!name.has_value() || !value.has_value()) {
        return kUnknown;
    }
    return setVariable(name->c_str(), value->c_str());
}

void VariableStore::recalculateVariables(std::int32_t changedIndex) {
    if (initializingDefaults_ || recalculated_.empty()) {
        return;
    }
    std::vector<Recalculated> records;
    for (auto at = recalculated_.rbegin(); at != recalculated_.rend(); ++at) {
        if (*at != changedIndex) {
            const InstallVariable& record = recordAt(*at);
            records.push_back({*at, record.name, record.expression});
        }
    }
    for (const std::int32_t index : recalculationOrder(records)) {
        derive(recordAt(index), kRecalculationSize);
    }
}

// What was produced ahead of a fault is the value then.
void VariableStore::derive(InstallVariable& record, int size) {
    char text[InstallVariable::kTextCapacity];
    expandDollarVariables(*this, record.expression.c_str(), text, size);
    record.value = text;
}
