#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "description/path_variables.h"
#include "description/variable_expansion.h"
#include "support/debug_log.h"

class VariableLookup;

// The two forms of references to variables and the language of conditions.
class Expressions {
public:
    // The bytes of a whole expansion; what is longer is cut.
    static constexpr std::size_t kWholeLimit = 1024 * 1024 - 1;

    // `variables` outlives this object.
    Expressions(VariableLookup& variables, DebugLog debugLog) : variables_(variables), debugLog_(debugLog) {}

    // Replaces [NAME] by the value; the result is cut to `capacity` - 1 bytes. Nothing for an empty text and,
    // with `stopOnMissing`, where a variable is missing; otherwise a missing variable stays as it is written,
    // and that is logged.
    std::optional<std::string> expand(std::string_view text, std::size_t capacity,
                                      bool stopOnMissing = false);
    // The same with room for kWholeLimit bytes, and empty for nothing.
    std::string expandWhole(std::string_view text, bool stopOnMissing = false);
    // Both for a text that leaves the program, for a file, another program or the screen: the values of path
    // variables are written as the system writes paths. Nothing else of the text changes.
    std::optional<std::string> expandForSystem(std::string_view text, std::size_t capacity,
                                               bool stopOnMissing = false);
    std::string expandWholeForSystem(std::string_view text, bool stopOnMissing = false);
    // Until this is called no variable counts as one of a path.
    void setPathVariables(PathVariables paths) { paths_ = std::move(paths); }
    // The same with at most `limit` bytes, and the length that the result would have had.
    std::optional<Expansion> expandMeasured(std::string_view text, std::size_t limit, bool stopOnMissing);

    // Replaces $NAME by the value. Nothing when a variable is missing or the result needs `capacity` bytes or
    // more.
    std::optional<std::string> expandDollars(std::string_view text, std::size_t capacity);
    // The same, but `outText` keeps what was produced before a fault. False after a fault.
    bool expandDollarsUpToFault(std::string_view text, std::size_t capacity, std::string& outText);

    // Whether the condition is true, after its variables were put in. Nothing when it can't be evaluated. An
    // empty text is true. Only the first 2,047 bytes of the expanded text count.
    std::optional<bool> evaluate(std::string_view condition);
    // True unless the condition is evaluated to false. A broken condition holds, so that a mistake in a
    // description leaves nothing out; so does a missing one.
    bool holds(std::optional<std::string_view> condition) {
        return evaluate(condition.value_or(std::string_view())).value_or(true);
    }
    bool holds(std::nullptr_t) = delete;  // not a text

private:
    VariableLookup& variables_;
    PathVariables paths_;
    DebugLog debugLog_;
};
