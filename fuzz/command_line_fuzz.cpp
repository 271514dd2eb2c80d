// The command line: the input is cut into words at zero bytes, as the system hands them over.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "fuzz_target.h"
#include "installer/run_options.h"
#include "session/command_line_parameters.h"

bool accepts(std::string_view input) {
    std::vector<std::string> tokens(1);
    for (const char c : input) {
        if (c == 0) {
            tokens.emplace_back();
        } else {
            tokens.back() += c;
        }
    }
    CommandLineParameters parameters;
    const bool isParsed = parameters.parse(tokens) == 0;
    for (int i = 0; i < parameters.getCount(); ++i) {
        // The first option of a name is the one that is found.
        const auto found = parameters.find(parameters.name(i));
        require(found && (i > 0 || found == parameters.value(i)));
    }
    if (isParsed) {
        const RunOptions options = readRunOptions(parameters);
        require(!options.autoMode || options.gui == 0);
    }
    return isParsed && parameters.getCount() > 0;
}
