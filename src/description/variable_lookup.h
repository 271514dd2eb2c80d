#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// What a look-up found.
struct VariableReading {
    std::string value;
    // The variable's place in the store; none for a predefined variable and one of the environment.
    std::optional<std::int32_t> index;

    bool isStored() const { return index.has_value(); }
};

// Reading a variable: all that expansions and conditions need of the variable store.
class VariableLookup {
public:
    // The longest text that a variable holds, in bytes.
    static constexpr std::size_t kTextLimit = 1559;

    virtual ~VariableLookup() = default;

    // The value is cut to `limit` bytes. Nothing when there is no such variable, also for an empty name.
    // Names ignore ASCII case; a leading `$` means the environment.
    virtual std::optional<VariableReading> read(std::string_view name, std::size_t limit) = 0;

    // The value alone, of at most kTextLimit bytes.
    std::optional<std::string> get(std::string_view name);
};
