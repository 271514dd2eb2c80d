#include <string>
#include <vector>

#include "platform/program.h"
#include "platform/windows/library_search.h"
#include "platform/windows/wide_text.h"

extern "C" {
// The start-up code of the C library would otherwise replace arguments with wildcards by file names.
int _dowildcard = 0;

int wmain(int count, wchar_t** arguments);
}

int wmain(int count, wchar_t** arguments) {
    platform::searchLibrariesInSystemOnly();  // before anything can load one
    std::vector<std::string> texts;
    texts.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; i++) {
        texts.push_back(platform::utf8Of(arguments[i]));
    }
    return programMain(texts);
}
