#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "base/text_functions.h"
#include "description/condition_parser.h"
#include "description/expressions.h"
#include "description/variable_lookup.h"

// The condition language and both expansions, with the same text as condition, source and value.
namespace {

class TextVariables : public VariableLookup {
public:
    explicit TextVariables(const std::string& text) : text_(text) {}

    // Names that begin with a letter up to M have the input as their value, `_` the empty text.
    int getVariable(const char* name, char* buffer, int size) override {
        const char first = static_cast<char>(*name & ~0x20);
        if (first >= 'A' && first <= 'M') {
            OUtils::copyText(buffer, text_.c_str(), size);
            return 0;
        }
        if (*name == '_') {
            OUtils::copyText(buffer, "", size);
            return 1;
        }
        return -1;
    }

private:
    const std::string& text_;
};

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

void expandInto(Expressions& expressions, const char* source, int size) {
    std::string buffer(static_cast<std::size_t>(size) + 1, '#');
    const int measured = expressions.expandVariables(source, nullptr, 0, false);
    const int needed = expressions.expandVariables(source, buffer.data(), size, false);
    require(needed <= measured || *source == '\0');
    require(buffer.back() == '#' && std::strlen(buffer.c_str()) < static_cast<std::size_t>(size));
    if (needed == measured && needed > 0 && needed <= size) {
        require(std::strlen(buffer.c_str()) + 1 == static_cast<std::size_t>(needed));
    }
    expressions.expandDollarVariables(source, buffer.data(), size);
    require(buffer.back() == '#' && std::strlen(buffer.c_str()) < static_cast<std::size_t>(size));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const int result = ConditionParser(text).evaluate();
    require(result >= -1 && result <= 1);

    TextVariables variables(text);
    DebugLog noLog;
    Expressions expressions(variables, noLog);
    const int expanded = expressions.evaluateCondition(text.c_str());
    require(expanded >= -1 && expanded <= 1);
    for (const int capacity : {1, 2, 16, 1024, 1560}) {
        expandInto(expressions, text.c_str(), capacity);
    }
    return 0;
}
