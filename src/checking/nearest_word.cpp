#include "checking/nearest_word.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

#include "base/text_functions.h"

namespace {

// What is longer isn't a word that somebody misspelt.
constexpr std::size_t kLongest = 64;
using Row = std::array<std::size_t, kLongest + 1>;

std::size_t distanceOf(std::string_view a, std::string_view b) {
    std::array<Row, 3> rows{};
    for (std::size_t j = 0; j <= b.size(); ++j) {
        rows[0][j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        Row& row = rows[i % 3];
        const Row& above = rows[(i + 2) % 3];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t change = a[i - 1] == b[j - 1] ? 0 : 1;
            row[j] = std::min({above[j] + 1, row[j - 1] + 1, above[j - 1] + change});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                row[j] = std::min(row[j], rows[(i + 1) % 3][j - 2] + 1);
            }
        }
    }
    return rows[a.size() % 3][b.size()];
}

}  // namespace

std::string_view nearestWord(std::string_view word, const std::vector<std::string_view>& words) {
    if (word.empty() || word.size() > kLongest) {
        return {};
    }
    const std::string wanted = OUtils::toLowerAscii(word);
    std::string_view nearest;
    std::size_t least = std::max<std::size_t>(1, word.size() / 3) + 1;
    for (const std::string_view candidate : words) {
        if (candidate.size() > kLongest || candidate.size() + least < wanted.size() ||
            wanted.size() + least < candidate.size()) {
            continue;
        }
        const std::size_t distance = distanceOf(wanted, OUtils::toLowerAscii(candidate));
        if (distance < least) {
            least = distance;
            nearest = candidate;
        }
    }
    return nearest;
}
