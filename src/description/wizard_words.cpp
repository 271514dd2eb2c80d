#include "description/wizard_words.h"

#include <cstddef>
#include <cstdint>

#include "description/pxml.h"
#include "description/vocabulary_lookup.h"

namespace {

// The first one that isn't empty; empty when there is none.
std::string_view ownText(const PXML& description, std::string_view name) {
    const std::int32_t words = vocabulary::findElement(description, "Words");
    if (words < 0) {
        return {};
    }
    for (const std::int32_t child : description.childrenOf(words)) {
        const std::string_view text = description.getText(child).value_or("");
        if (!text.empty() && description.getName(child) == vocabulary::ElementName("Word") &&
            vocabulary::attributeOf(description, child, "Name").value_or("") == name) {
            return text;
        }
    }
    return {};
}

}  // namespace

std::string WizardWords::text(WordKey key, std::initializer_list<std::string_view> values) const {
    const std::string_view own =
        description_ == nullptr ? std::string_view() : ownText(*description_, key.name());
    return fillPlaces(own.empty() ? key.text() : own, values);
}

const WizardWords& defaultWords() {
    static const WizardWords kWords;
    return kWords;
}

std::string fillPlaces(std::string_view text, std::initializer_list<std::string_view> values) {
    std::string filled;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::size_t place =
            text[i] == '%' && i + 1 < text.size() ? static_cast<std::size_t>(text[i + 1]) - '0' : 0;
        if (place >= 1 && place <= values.size()) {
            filled += values.begin()[place - 1];
            ++i;
        } else {
            filled += text[i];
        }
    }
    return filled;
}
