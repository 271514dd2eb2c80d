#include "description/recalculation_order.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <unordered_map>
#include <utility>

namespace {

using Places = std::vector<std::int32_t>;

// Which places of the list each expression refers to. Names are looked up by their lengths, so that the work
// grows with the expressions and not with the square of the list.
class References {
public:
    explicit References(const std::vector<Recalculated>& variables) : variables_(variables) {
        for (std::size_t place = 0; place < variables.size(); ++place) {
            byName_.emplace(variables[place].name, static_cast<std::int32_t>(place));
            lengths_.insert(variables[place].name.size());
        }
    }

    Places of(std::int32_t place) const {
        const std::string_view expression = variables_[static_cast<std::size_t>(place)].expression;
        Places found;
        for (std::size_t at = expression.find('$'); at != std::string_view::npos;
             at = expression.find('$', at + 1)) {
            addNamesAt(expression.substr(at + 1), place, found);
        }
        std::sort(found.begin(), found.end());
        found.erase(std::unique(found.begin(), found.end()), found.end());
        return found;
    }

private:
    void addNamesAt(std::string_view text, std::int32_t self, Places& found) const {
        for (const std::size_t length : lengths_) {
            if (length > text.size()) {
                return;
            }
            const auto name = byName_.find(text.substr(0, length));
            if (name != byName_.end() && name->second != self) {
                found.push_back(name->second);
            }
        }
    }

    const std::vector<Recalculated>& variables_;
    std::unordered_map<std::string_view, std::int32_t> byName_;
    std::set<std::size_t> lengths_;
};

}  // namespace

std::vector<std::int32_t> recalculationOrder(const std::vector<Recalculated>& variables) {
    const References names(variables);
    const auto count = static_cast<std::int32_t>(variables.size());
    std::vector<Places> references;
    references.reserve(variables.size());
    for (std::int32_t place = 0; place < count; ++place) {
        references.push_back(names.of(place));
    }
    Places order(variables.size());
    std::iota(order.begin(), order.end(), 0);
    Places position = order;  // the inverse of `order`

    for (std::int32_t here = 0; here < count; ++here) {
        std::int32_t bound = here;
        for (;;) {
            // The nearest one further back than the last exchange that the variable in this place refers to.
            const std::int32_t self = order[static_cast<std::size_t>(here)];
            std::int32_t next = count;
            for (const std::int32_t other : references[static_cast<std::size_t>(self)]) {
                const std::int32_t there = position[static_cast<std::size_t>(other)];
                next = there > bound ? std::min(next, there) : next;
            }
            if (next == count) {
                break;
            }
            const std::int32_t other = order[static_cast<std::size_t>(next)];
            std::swap(order[static_cast<std::size_t>(here)], order[static_cast<std::size_t>(next)]);
            std::swap(position[static_cast<std::size_t>(self)], position[static_cast<std::size_t>(other)]);
            bound = next;
        }
    }
    std::vector<std::int32_t> indices;
    indices.reserve(order.size());
    for (const std::int32_t place : order) {
        indices.push_back(variables[static_cast<std::size_t>(place)].index);
    }
    return indices;
}
