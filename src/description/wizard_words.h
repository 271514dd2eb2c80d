#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

#include "description/wizard_word_table.h"

class PXML;

// The words of the wizard, as the description has them. Any thread may ask while nobody changes the
// description.
class WizardWords {
public:
    // All as they are without a description.
    WizardWords() = default;
    // The description is borrowed and may be read later.
    explicit WizardWords(const PXML& description) : description_(&description) {}

    // The description's own text of a word, or the word's. The values take the places of %1, %2 and so on;
    // a value isn't searched for places.
    std::string text(WordKey key, std::initializer_list<std::string_view> values = {}) const;

private:
    const PXML* description_ = nullptr;
};

// Where to get the words when they are needed: the description may be read later than their user is made.
using WordSource = std::function<const WizardWords&()>;

// The words without a description.
const WizardWords& defaultWords();

// The text with values in its places; a place without a value stays.
std::string fillPlaces(std::string_view text, std::initializer_list<std::string_view> values);
