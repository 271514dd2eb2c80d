#include "ui/generic_ui.h"

#include <string_view>
#include <utility>

#include "ui/automated_input.h"

int GenericUI::createInputProvider(const char* mode, bool& outAutomated) {
    const std::string_view word = mode == nullptr ? std::string_view() : std::string_view(mode);
    if (word == "uninstall") {
        return takeProvider(makeUser(true));
    }
    if (word == "autoUninstall") {
        return takeAutomated("", true, outAutomated);
    }
    if (word == "autoInstall") {
        return takeAutomated("", false, outAutomated);
    }
    if (!word.empty() && takeAutomated(mode, false, outAutomated) == 0) {
        return 0;
    }
    return takeProvider(makeUser(false));
}

int GenericUI::takeAutomated(const char* configPath, bool uninstall, bool& outAutomated) {
    const int result = takeProvider(std::make_unique<Automated>(terminal_, configPath, uninstall));
    if (result == 0) {
        outAutomated = true;
    }
    return result;
}

// A provider that refuses is gone again, and the earlier one stays.
int GenericUI::takeProvider(std::unique_ptr<InputProvider> provider) {
    if (provider == nullptr || provider->init() == 0) {
        return -1;
    }
    input_ = provider.get();
    ownedInput_ = std::move(provider);
    return 0;
}
