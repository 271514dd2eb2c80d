#include "previewer/preview_options.h"

#include <charconv>

#include "base/text_functions.h"
#include "rehearsal/machine_format.h"

namespace {

constexpr int kLeastSize = 50;
constexpr int kMostSize = 400;
constexpr std::size_t kMostSizes = 8;

template <typename Number>
bool readNumber(std::string_view text, Number& outNumber) {
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, outNumber);
    return error == std::errc() && stop == end;
}

bool readSystem(std::string_view text, PreviewOptions& options) {
    for (const auto system : {MemoryManner::System::kLinux, MemoryManner::System::kWindows}) {
        if (text == systemWord(system)) {
            options.system = system;
            return true;
        }
    }
    return false;
}

bool takeFlag(std::string_view name, PreviewOptions& options) {
    options.isStrict = options.isStrict || name == "--strict";
    options.usesDisplay = options.usesDisplay || name == "--display";
    return name == "--strict" || name == "--display";
}

bool takeValue(std::string_view name, const std::string& value, PreviewOptions& options) {
    if (name == "--package") {
        options.package = value;
    } else if (name == "--to") {
        options.directory = value;
    } else if (name == "--title") {
        options.title = value;
    } else if (name == "--compare") {
        options.earlier = value;
    } else if (name == "--answers") {
        options.answers.push_back(value);
    } else if (name == "--system") {
        return readSystem(value, options);
    } else if (name == "--sizes") {
        options.sizes = readSizes(value);
        return !options.sizes.empty();
    } else if (name == "--offset") {
        return readNumber(value, options.offset) && options.offset >= 0;
    } else if (name == "--window-set") {
        return readNumber(value, options.windowSet) && options.windowSet >= 0;
    } else {
        return false;
    }
    return !value.empty();
}

}  // namespace

std::string_view systemWord(MemoryManner::System system) {
    return system == MemoryManner::System::kWindows ? MachineFormat::kWindows : MachineFormat::kLinux;
}

std::vector<int> readSizes(std::string_view text) {
    std::vector<int> sizes;
    for (const std::string& word : OUtils::splitText(text, ',')) {
        int size = 0;
        if (!readNumber(word, size) || size < kLeastSize || size > kMostSize || sizes.size() == kMostSizes) {
            return {};
        }
        sizes.push_back(size);
    }
    return sizes;
}

PreviewOptions readPreviewOptions(const std::vector<std::string>& arguments) {
    PreviewOptions options;
    for (std::size_t i = 0; i < arguments.size() && options.problem.empty(); ++i) {
        const std::string& name = arguments[i];
        if (takeFlag(name, options)) {
            continue;
        }
        const std::string value = i + 1 < arguments.size() ? arguments[++i] : std::string();
        if (!takeValue(name, value, options)) {
            options.problem = "the option " + name + " is unknown or has a wrong value";
        }
    }
    if (options.problem.empty() &&
        (options.package.empty() || options.directory.empty() || !options.system)) {
        options.problem = "the package, the directory or the system is missing";
    }
    if (options.sizes.empty()) {
        options.sizes = {100};
    }
    if (options.windowSet > static_cast<int>(options.answers.size())) {
        options.problem = "there is no such set of answers";
    }
    return options;
}
