#include "ui/generic_ui.h"

#include <utility>

#include "description/wizard_words.h"
#include "ui/automated_input.h"

namespace {

struct Mode {
    std::string_view word;
    bool isAutomated;
    bool isUninstall;
};

constexpr Mode kModes[] = {
    {"uninstall", false, true},
    {"autoUninstall", true, true},
    {"autoInstall", true, false},
    {"", false, false},
};

}  // namespace

const WizardWords& GenericUI::words() const {
    return engine() == nullptr ? defaultWords() : engine()->getWords();
}

// A mode that is no word of the table is the path of an answers file.
int GenericUI::createInputProvider(const char* mode, bool& outAutomated) {
    const std::string_view word = mode == nullptr ? std::string_view() : std::string_view(mode);
    for (const Mode& known : kModes) {
        if (word == known.word) {
            return known.isAutomated ? takeAutomated("", known.isUninstall, outAutomated)
                                     : takeProvider(makeUser(known.isUninstall));
        }
    }
    if (takeAutomated(word, false, outAutomated) == 0) {
        return 0;
    }
    return takeProvider(makeUser(false));
}

int GenericUI::takeAutomated(std::string_view configPath, bool uninstall, bool& outAutomated) {
    auto automated = std::make_unique<Automated>(terminal_, answers_, configPath, uninstall);
    automated->takeWordsFrom([this]() -> const WizardWords& { return words(); });
    const int result = takeProvider(std::move(automated));
    if (result == 0) {
        outAutomated = true;
    }
    return result;
}

// A provider that refuses is dropped, and the earlier one stays.
int GenericUI::takeProvider(std::unique_ptr<InputProvider> provider) {
    if (provider == nullptr || provider->init() == 0) {
        return -1;
    }
    input_ = provider.get();
    ownedInput_ = std::move(provider);
    return 0;
}
