// The command line: the input is cut into words at zero bytes, as the system hands them over.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "installer/run_options.h"
#include "session/command_line_parameters.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::string> tokens(1);
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] == 0) {
            tokens.emplace_back();
        } else {
            tokens.back() += static_cast<char>(data[i]);
        }
    }
    CommandLineParameters parameters;
    const int result = parameters.parse(tokens);
    for (int i = 0; i < parameters.getCount(); ++i) {
        // The first option of a name is the one that is found.
        if (parameters.name(i) == nullptr || parameters.value(i) == nullptr ||
            parameters.find(parameters.name(i)) == nullptr) {
            std::abort();
        }
    }
    if (result == 0) {
        const RunOptions options = readRunOptions(parameters);
        if (options.autoMode && options.gui != 0) {
            std::abort();
        }
    }
    return 0;
}
