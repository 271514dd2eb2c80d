#include "description/version_order.h"

#include <algorithm>
#include <cstddef>

namespace {

constexpr char kPartEnd = '.';
constexpr char kTailStart = '-';

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string_view withoutBlanks(std::string_view text) {
    constexpr std::string_view kBlanks = " \t";
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

// Cuts what comes before the mark, and the mark, off the text.
std::string_view takeUntil(std::string_view& text, char mark) {
    const std::size_t end = std::min(text.find(mark), text.size());
    const std::string_view taken = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return taken;
}

// Takes the digits, or what isn't digits, from the beginning of the text.
std::string_view takeRun(std::string_view& text, bool ofDigits) {
    const auto end = std::find_if(text.begin(), text.end(), [&](char c) { return isDigit(c) != ofDigits; });
    const std::string_view run = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(run.size());
    return run;
}

std::weak_ordering compareNumbers(std::string_view left, std::string_view right) {
    left.remove_prefix(std::min(left.find_first_not_of('0'), left.size()));
    right.remove_prefix(std::min(right.find_first_not_of('0'), right.size()));
    return left.size() != right.size() ? left.size() <=> right.size() : left <=> right;
}

std::weak_ordering compareParts(std::string_view left, std::string_view right) {
    for (bool isNumber = true; !left.empty() || !right.empty(); isNumber = !isNumber) {
        const std::string_view leftRun = takeRun(left, isNumber);
        const std::string_view rightRun = takeRun(right, isNumber);
        const std::weak_ordering order =
            isNumber ? compareNumbers(leftRun, rightRun) : std::weak_ordering(leftRun <=> rightRun);
        if (std::is_neq(order)) {
            return order;
        }
    }
    return std::weak_ordering::equivalent;
}

std::weak_ordering compareAllParts(std::string_view left, std::string_view right) {
    while (!left.empty() || !right.empty()) {
        const std::weak_ordering order = compareParts(takeUntil(left, kPartEnd), takeUntil(right, kPartEnd));
        if (std::is_neq(order)) {
            return order;
        }
    }
    return std::weak_ordering::equivalent;
}

}  // namespace

std::weak_ordering compareVersions(std::string_view left, std::string_view right) {
    left = withoutBlanks(left);
    right = withoutBlanks(right);
    const bool leftHasTail = left.find(kTailStart) != std::string_view::npos;
    const bool rightHasTail = right.find(kTailStart) != std::string_view::npos;
    const std::weak_ordering order =
        compareAllParts(takeUntil(left, kTailStart), takeUntil(right, kTailStart));
    if (std::is_neq(order)) {
        return order;
    }
    // A tail makes a version earlier.
    return leftHasTail != rightHasTail ? rightHasTail <=> leftHasTail : compareAllParts(left, right);
}
