#include "ui/automated_input.h"

#include "base/text_functions.h"
#include "description/pxml.h"
#include "support/utilities.h"

namespace {

std::string_view viewOf(const char* text) {
    return text == nullptr ? std::string_view() : std::string_view(text);
}

bool isAnswersFile(const char* path) {
    PXML document;
    return document.loadFile(path) == 0 && document.findByName("DefValues", -1) >= 0;
}

}  // namespace

Automated::Automated(platform::ConsoleDevice& terminal, const char* configPath, bool uninstall)
    : terminal_(terminal), configPath_(viewOf(configPath)), uninstall_(uninstall) {}

int Automated::init() {
    if (configPath_.isEmpty()) {
        return 1;
    }
    const std::string path(configPath_.view());
    if (!OUtils::pathExists(path.c_str())) {
        print("The file \"" + path + "\" does not exist! Please specify existing file!\n");
        return 0;
    }
    if (!isAnswersFile(path.c_str())) {
        print("The file \"" + path +
              "\" is not a propper XML installation config file. The installation can not continue!\n");
        return 0;
    }
    return 1;
}

int Automated::askText(const char*, char* buffer, int size, const char* value, const char*, bool) {
    OUtils::copyText(buffer, value, size);
    return 1;
}

int Automated::askChoice(const char*, int defaultIndex, const char*, const char*, bool, bool) {
    return defaultIndex;
}

int Automated::askList(const char*, int defaultIndex, const std::vector<std::string>&,
                       const std::vector<bool>&) {
    return defaultIndex;
}

void Automated::tell(const char* text) {
    print(std::string(viewOf(text)));
}

void Automated::pause(const char*) {}

int Automated::finish(bool failed) {
    const std::string prefix = uninstall_ ? "un" : "";
    print(failed ? "The automatic " + prefix + "installer has encountered an ERROR!\n"
                 : "Automatic " + prefix + "installation was successful!\n");
    return 1;
}

void Automated::abort() {}

void Automated::print(const std::string& text) {
    terminal_.write(text);
    terminal_.flush();
}
