#include "description/variable_store.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "description/predefined_variables.h"
#include "description/recalculation_order.h"
#include "description/variable_expansion.h"
#include "platform/environment.h"
#include "support/debug_log.h"

namespace {

constexpr std::size_t kEnvironmentLimit = 2047;    // bytes of the text NAME=VALUE
constexpr std::size_t kRecalculationLimit = 1023;  // shorter than that of a store, and kept so
constexpr std::size_t kAssignmentLimit = 1024;

std::string_view cutTo(std::string_view text, std::size_t limit) {
    return text.substr(0, std::min(limit, text.find('\0')));
}

// The key that makes two spellings one variable.
std::string keyOf(std::string_view name) {
    return OUtils::toLowerAscii(cutTo(name, InstallVariable::kNameLimit));
}

std::optional<std::string> storedText(std::optional<std::string_view> text) {
    if (!text) {
        return std::nullopt;
    }
    std::string stored(cutTo(*text, InstallVariable::kTextLimit));
    OUtils::collapseSeparators(stored.data());
    stored.resize(std::strlen(stored.c_str()));
    return stored;
}

// The text between the first `open` and the next `close` after it.
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

VariableStore::VariableStore(PredefinedVariables& predefined, platform::Environment& environment,
                             DebugLog debugLog)
    : predefined_(predefined), environment_(environment), debugLog_(debugLog) {}

std::optional<VariableReading> VariableStore::read(std::string_view name, std::size_t limit) {
    return readText(name, &InstallVariable::value, limit);
}

std::optional<VariableReading> VariableStore::readDefault(std::string_view name, std::size_t limit) {
    return readText(name, &InstallVariable::defaultValue, limit);
}

std::optional<VariableReading> VariableStore::readText(std::string_view name,
                                                       std::string InstallVariable::*text,
                                                       std::size_t limit) {
    if (isOutside(name)) {
        std::optional<std::string> value = readOutside(name, limit);
        return value ? std::optional(VariableReading{std::move(*value), std::nullopt}) : std::nullopt;
    }
    const std::optional<std::int32_t> index = find(name);
    if (!index) {
        return std::nullopt;
    }
    return VariableReading{(at(*index).*text).substr(0, limit), index};
}

bool VariableStore::isOutside(std::string_view name) {
    return name.starts_with('$') || PredefinedVariables::isPredefined(name);
}

std::optional<std::string> VariableStore::readOutside(std::string_view name, std::size_t limit) {
    if (name.starts_with('$')) {
        return readEnvironment(name.substr(1), limit);
    }
    std::optional<std::string> value = predefined_.get(name);
    return value ? std::optional(value->substr(0, limit)) : std::nullopt;
}

std::optional<std::string> VariableStore::readEnvironment(std::string_view name, std::size_t limit) {
    std::optional<std::string> value = environment_.get(name);
    if (!value) {
        debugLog_.line("WARNING: Environment variable \"" + std::string(name) + "\" is not defined!");
        return std::nullopt;
    }
    if (value->size() > limit) {
        debugLog_.line("WARNING: Environment variable \"" + std::string(name) + "\" is cut to " +
                       std::to_string(limit) + " bytes!");
        value->resize(limit);
    }
    return value;
}

std::optional<std::int32_t> VariableStore::find(std::string_view name) const {
    const auto found = name.empty() ? byName_.end() : byName_.find(keyOf(name));
    return found == byName_.end() ? std::nullopt : std::optional(found->second);
}

bool VariableStore::set(std::string_view name, std::string_view value) {
    return store(name, {value, std::nullopt, std::nullopt}, false);
}

bool VariableStore::setDefault(std::string_view name, std::string_view value) {
    return store(name, {std::nullopt, std::nullopt, value}, false);
}

bool VariableStore::store(std::string_view name, const VariableTexts& texts, bool recalculate) {
    if (name.empty() || PredefinedVariables::isPredefined(name)) {
        return false;
    }
    if (name.starts_with('$')) {
        storeEnvironment(name.substr(1),
                         texts.value.value_or(texts.defaultValue.value_or(std::string_view())));
        return false;
    }
    // The texts may lie in the records that are about to change, so they are copied first.
    std::string ownName(cutTo(name, InstallVariable::kNameLimit));
    StoredTexts own{storedText(texts.value), storedText(texts.expression), storedText(texts.defaultValue)};
    if (const std::optional<std::int32_t> index = find(ownName)) {
        changeRecord(*index, std::move(ownName), std::move(own), recalculate);
    } else {
        addRecord(std::move(ownName), std::move(own), recalculate);
    }
    return true;
}

void VariableStore::storeEnvironment(std::string_view name, std::string_view value) {
    const std::string ownName(name);
    if (name.size() + 1 + value.size() > kEnvironmentLimit) {
        debugLog_.line("WARNING: The value of environment variable \"" + ownName +
                       "\" is too long. It is not set!");
    } else if (!environment_.set(name, value)) {
        debugLog_.line("WARNING: Environment variable \"" + ownName + "\" could not be set!");
    }
}

void VariableStore::addRecord(std::string name, StoredTexts texts, bool recalculate) {
    const std::int32_t index = getCount();
    byName_.emplace(keyOf(name), index);
    InstallVariable& record = variables_.emplace_back();
    record.name = std::move(name);
    record.defaultValue = std::move(texts.defaultValue).value_or("");
    record.value = texts.value.has_value() ? std::move(*texts.value) : record.defaultValue;
    record.expression = std::move(texts.expression).value_or("");
    setRecalculate(index, recalculate);
}

void VariableStore::changeRecord(std::int32_t index, std::string name, StoredTexts texts, bool recalculate) {
    const auto replace = [](std::string& text, std::optional<std::string>& with) {
        if (with.has_value()) {
            text = std::move(*with);
        }
    };
    InstallVariable& record = recordAt(index);
    record.name = std::move(name);
    replace(record.defaultValue, texts.defaultValue);
    replace(record.value, texts.value);
    replace(record.expression, texts.expression);
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

bool VariableStore::reset(std::string_view name, ResetMode mode) {
    const std::optional<std::int32_t> index = isOutside(name) ? std::nullopt : find(name);
    if (!index) {
        return false;
    }
    InstallVariable& record = recordAt(*index);
    if (mode == kResetToDefault) {
        record.value = record.defaultValue;
        return true;
    }
    derive(record, InstallVariable::kTextLimit);
    setRecalculate(*index, mode == kResetToExpressionAndFollow);
    return true;
}

bool VariableStore::assign(std::string_view text) {
    const std::optional<std::string> name = firstBetween(text, '[', ']');
    const std::optional<std::string> value = firstBetween(text, '\'', '\'');
    return name && value && set(*name, *value);
}

void VariableStore::noteOrigin(std::string_view name, VariableOrigin origin, std::string_view originValue) {
    if (const std::optional<std::int32_t> index = isOutside(name) ? std::nullopt : find(name)) {
        recordAt(*index).origin = origin;
        recordAt(*index).originValue = originValue;
    }
}

// A field stores what it shows even where the user changed nothing, and one for a directory cleans it first.
bool VariableStore::isFromItsOrigin(std::int32_t index) {
    const InstallVariable& record = at(index);
    std::string expected = record.originValue;
    if (record.origin == VariableOrigin::kFollowing) {
        expected.clear();
        if (!expandDollarVariables(*this, record.expression, kRecalculationLimit, expected)) {
            return false;
        }
    } else if (record.origin != VariableOrigin::kDetected && record.origin != VariableOrigin::kExpression) {
        return false;
    }
    return record.value == expected || record.value == OUtils::normalizedPath(expected);
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
        derive(recordAt(index), kRecalculationLimit);
    }
}

// After a fault the value is what was produced before it. The expression may refer to its own variable, so
// the old value is read until the new one is complete.
void VariableStore::derive(InstallVariable& record, std::size_t limit) {
    std::string value;
    expandDollarVariables(*this, record.expression, limit, value);
    record.value = std::move(value);
}
