#include "checking/finding.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace {

std::tuple<SourcePlace, std::string_view, std::string_view> orderOf(const Finding& finding) {
    return std::tuple(finding.place, finding.code.name(), std::string_view(finding.message));
}

}  // namespace

void Findings::add(FindingCode code, std::size_t offset, std::string message, std::string hint) {
    if (hint.empty()) {
        hint = code.hint();
    }
    found_.push_back({code, lines_.placeOf(offset), std::move(message), std::move(hint)});
}

std::vector<Finding> Findings::sorted() const {
    std::vector<Finding> sorted = found_;
    std::ranges::stable_sort(sorted,
                             [](const Finding& a, const Finding& b) { return orderOf(a) < orderOf(b); });
    const auto last = std::unique(sorted.begin(), sorted.end(), [](const Finding& a, const Finding& b) {
        return orderOf(a) == orderOf(b);
    });
    sorted.erase(last, sorted.end());
    return sorted;
}
