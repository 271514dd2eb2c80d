#include "ui/field_values.h"

#include <algorithm>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "contracts/install_exchange_info.h"

namespace {

constexpr std::size_t kNetworkPathStart = 2;
constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

std::string_view trimEnd(std::string_view text, std::string_view characters) {
    return text.substr(0, text.find_last_not_of(characters) + 1);
}

}  // namespace

std::string_view trimmedAnswer(std::string_view answer) {
    const std::size_t start = answer.find_first_not_of(kWhiteSpace);
    return start == std::string_view::npos ? std::string_view() : trimEnd(answer.substr(start), kWhiteSpace);
}

std::string cleanDirectory(std::string_view answer) {
    std::string path(trimmedAnswer(answer));
    OUtils::setSeparators(path.data());
    std::string clean;
    const std::size_t body = std::min(path.find_first_not_of('\\'), path.size());
    clean.append(path, 0, std::min(body, kNetworkPathStart));
    for (std::size_t i = body; i < path.size(); ++i) {
        if (path[i] != '\\' || clean.back() != '\\') {
            clean += path[i];
        }
    }
    return std::string(trimEnd(trimEnd(trimEnd(clean, "\\"), kWhiteSpace), "\\"));
}

std::optional<std::string> readVariable(std::string_view variable, InstallExchangeInfo& engine,
                                        std::size_t capacity) {
    std::string value(capacity, '\0');
    if (engine.getVariable(std::string(variable).c_str(), value.data(), static_cast<int>(capacity)) == -1) {
        return std::nullopt;
    }
    value.resize(value.find('\0'));
    return value;
}

std::string valueOfVariable(std::string_view variable, InstallExchangeInfo& engine, std::size_t capacity) {
    return readVariable(variable, engine, capacity).value_or("");
}

void storeVariable(std::string_view variable, std::string_view value, InstallExchangeInfo& engine) {
    engine.setVariable(std::string(variable).c_str(), std::string(value).c_str());
}

bool conditionHolds(std::string_view condition, InstallExchangeInfo& engine) {
    return condition.empty() || engine.evaluateCondition(std::string(condition).c_str()) != 0;
}

std::vector<bool> enabledItems(std::string_view conditions, std::size_t count, InstallExchangeInfo& engine) {
    const std::vector<std::string> pieces = OUtils::splitText(conditions, '|');
    std::vector<bool> enabled(count, true);
    for (std::size_t i = 0; i < count && i < pieces.size(); ++i) {
        enabled[i] = conditionHolds(pieces[i], engine);
    }
    return enabled;
}
