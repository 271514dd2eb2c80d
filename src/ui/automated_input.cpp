#include "ui/automated_input.h"

#include "base/fixed_text.h"
#include "base/text_functions.h"
#include "description/answers_file.h"

namespace {

constexpr std::size_t kPathLimit = PathText::capacity() - 1;

}  // namespace

Automated::Automated(platform::ConsoleDevice& terminal, AnswersFile& answers, std::string_view configPath,
                     bool uninstall)
    : terminal_(terminal),
      answers_(answers),
      configPath_(configPath.substr(0, kPathLimit)),
      uninstall_(uninstall) {}

int Automated::init() {
    if (configPath_.empty()) {
        return 1;
    }
    if (!answers_.exists(configPath_)) {
        print("The file \"" + configPath_ + "\" does not exist! Please specify existing file!\n");
        return 0;
    }
    // The values stay where they are: the session reads them when its variables are ready.
    if (answers_.load(configPath_) != 0 || !answers_.hasValues()) {
        print("The file \"" + configPath_ +
              "\" is not a propper XML installation config file. The installation can not continue!\n");
        return 0;
    }
    return 1;
}

int Automated::askText(const char*, char* buffer, int size, const char* value, const char*, bool) {
    OUtils::copyText(buffer, value, size);
    return 1;
}

int Automated::askChoice(const char*, int defaultIndex, std::string_view, std::string_view, bool, bool) {
    return defaultIndex;
}

int Automated::askList(const char*, int defaultIndex, const std::vector<std::string>&,
                       const std::vector<bool>&) {
    return defaultIndex;
}

void Automated::tell(const char* text) {
    print(text == nullptr ? std::string_view() : std::string_view(text));
}

void Automated::pause(std::string_view) {}

int Automated::finish(bool failed) {
    const WizardWords& words = words_();
    if (failed) {
        print(words.text(uninstall_ ? WordKey("UninstallAutomaticFailed") : WordKey("AutomaticFailed")) +
              "\n");
    } else {
        print(words.text(uninstall_ ? WordKey("UninstallAutomaticDone") : WordKey("AutomaticDone")) + "\n");
    }
    return 1;
}

void Automated::abort() {}

void Automated::print(std::string_view text) {
    terminal_.write(text);
    terminal_.flush();
}
