#include "checking/wizard_word_check.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <string_view>

#include "checking/check_context.h"
#include "checking/quoted_text.h"
#include "description/wizard_word_table.h"

namespace {

// The places of values in a text, `%1` to `%9`.
std::set<char> placesIn(std::string_view text) {
    std::set<char> places;
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        if (text[i] == '%' && text[i + 1] >= '1' && text[i + 1] <= '9') {
            places.insert(text[i + 1]);
        }
    }
    return places;
}

std::string listOf(const std::set<char>& places) {
    std::string list;
    for (const char place : places) {
        list += (list.empty() ? "%" : ", %") + std::string(1, place);
    }
    return list.empty() ? "none" : list;
}

}  // namespace

void checkWizardWords(const CheckContext& context) {
    std::set<std::string_view> seen;
    for (const std::int32_t node : context.nodesOf("Word")) {
        const std::string_view name = context.attribute(node, "Name").value_or("");
        const auto* const word = std::ranges::find(kWizardWords, name, &WizardWord::name);
        if (word == std::end(kWizardWords) || context.text(node).empty()) {
            continue;
        }
        if (!seen.insert(name).second) {
            context.addAtElement("word-repeated", node,
                                 inQuotes(name) + " has a text already, and only the first one counts");
        }
        const std::set<char> wanted = placesIn(word->text);
        if (const std::set<char> found = placesIn(context.text(node)); found != wanted) {
            context.addAtText("word-places", node,
                              "the places of values in " + inQuotes(name) + " are " + listOf(wanted) +
                                  ", here " + listOf(found));
        }
    }
}
