#include "description/variable_expansion.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "description/variable_lookup.h"
#include "support/debug_log.h"

namespace {

constexpr std::size_t kNameLimit = 1023;
constexpr std::size_t kNameWarningLimit = 1024;
constexpr int kBracketValueSize = 1560;
constexpr int kDollarValueSize = 1024;

bool isNameCharacter(char c) {
    return c == '_' || c == '$' || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// The end of the text counts as the start of a name, too: a last `[` is a reference without a name.
bool beginsReference(const char* at) {
    return *at == '[' && (at[1] == '\0' || isNameCharacter(at[1]));
}

// A buffer of a fixed size that is always terminated, and the count of what would have gone into it.
class Output {
public:
    Output(char* buffer, int size)
        : buffer_(size > 0 ? buffer : nullptr), size_(size > 0 ? static_cast<std::size_t>(size) : 0) {
        clear();
    }

    void clear() {
        if (buffer_ != nullptr) {
            buffer_[0] = '\0';
        }
    }
    void append(std::string_view text) {
        if (buffer_ != nullptr && length_ + 1 < size_) {
            const std::size_t fitting = std::min(text.size(), size_ - length_ - 1);
            std::memcpy(buffer_ + length_, text.data(), fitting);
            buffer_[length_ + fitting] = '\0';
        }
        length_ += text.size();
    }
    std::size_t length() const { return length_; }
    bool isFull() const { return length_ + 1 >= size_; }

private:
    char* buffer_;
    std::size_t size_;
    std::size_t length_ = 0;
};

class BracketExpansion {
public:
    BracketExpansion(VariableLookup& variables, DebugLog debugLog, const char* source)
        : variables_(variables), debugLog_(debugLog), source_(source) {}

    int run(Output& output, bool isBounded, bool stopOnMissing) {
        const char* at = source_;
        do {
            if (!beginsReference(at)) {
                at = copyPlain(at, output, isBounded);
            } else if (!expandReference(at, output) && stopOnMissing) {
                output.clear();
                return 0;
            }
        } while (*at != '\0' && !(isBounded && output.isFull()));
        return static_cast<int>(output.length()) + 1;
    }

private:
    static const char* copyPlain(const char* at, Output& output, bool isBounded) {
        do {
            output.append(std::string_view(at, 1));
            ++at;
        } while (*at != '\0' && !beginsReference(at) && !(isBounded && output.isFull()));
        return at;
    }

    // Moves `at` behind the reference. False when there is no such variable; the reference stands as it is
    // then.
    bool expandReference(const char*& at, Output& output) {
        const char* start = at + 1;
        const std::size_t length = std::strcspn(start, "]");
        at = start + length + (start[length] == ']' ? 1 : 0);
        const std::string name(start, std::min(length, kNameLimit));
        if (length > kNameWarningLimit) {
            debugLog_.print("WARNING: Variable [%s] is too long in the expression \"%.1023s\"", name.c_str(),
                            source_);
        }
        char value[kBracketValueSize] = "";
        if (variables_.getVariable(name.c_str(), value, kBracketValueSize) != -1) {
            output.append(value);
            return true;
        }
        debugLog_.print("WARNING: Variable [%s] is not initialized in the expression: \"%.1023s\"",
                        name.c_str(), source_);
        output.append("[" + name + "]");
        return false;
    }

    VariableLookup& variables_;
    DebugLog debugLog_;
    const char* source_;
};

}  // namespace

int expandBracketVariables(VariableLookup& variables, DebugLog debugLog, const char* source,
                           char* destination, int size, bool stopOnMissing) {
    Output output(destination, size);
    if (source == nullptr || *source == '\0') {
        return 0;
    }
    return BracketExpansion(variables, debugLog, source).run(output, destination != nullptr, stopOnMissing);
}

int expandDollarVariables(VariableLookup& variables, const char* source, char* destination, int size) {
    Output output(destination, size);
    if (source == nullptr || destination == nullptr || size < 1) {
        return 0;
    }
    const auto limit = static_cast<std::size_t>(size);
    const char* at = source;
    while (*at != '\0') {
        if (*at != '$') {
            const std::string_view plain(at, std::strcspn(at, "$"));
            output.append(plain);
            at += plain.size();
        } else {
            const char* start = ++at;
            while (isNameCharacter(*at)) {
                ++at;
            }
            const std::string name(start, std::min(static_cast<std::size_t>(at - start), kNameLimit));
            char value[kDollarValueSize] = "";
            if (variables.getVariable(name.c_str(), value, kDollarValueSize) == -1) {
                return 0;
            }
            if (std::strlen(value) + output.length() >= limit) {
                return 0;
            }
            output.append(value);
        }
        if (output.length() >= limit) {
            return 0;
        }
    }
    return 1;
}
