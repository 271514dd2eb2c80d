#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "fuzz_target.h"

// The entry points of libFuzzer, the same for all targets. With --check-seeds=DIRECTORY a target only looks
// at its seeds: one whose name begins with "good-" must be accepted and one with "bad-" refused, and there
// must be a good one. What isn't so is printed, and the exit code is 1.
namespace {

constexpr std::string_view kCheckSeeds = "--check-seeds=";

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

bool checkSeeds(const std::string& directory) {
    int goodOnes = 0;
    int faults = 0;
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
        const std::string name = entry.path().filename().string();
        const bool isGood = name.starts_with("good-");
        goodOnes += isGood ? 1 : 0;
        if ((isGood || name.starts_with("bad-")) && accepts(contentOf(entry.path())) != isGood) {
            std::printf("%s is %s\n", name.c_str(), isGood ? "refused" : "accepted");
            ++faults;
        }
    }
    if (goodOnes == 0) {
        std::puts("there is no good seed");
    }
    return faults == 0 && goodOnes > 0;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* count, char*** arguments) {
    for (int i = 1; i < *count; ++i) {
        const std::string_view argument = (*arguments)[i];
        if (argument.starts_with(kCheckSeeds)) {
            std::exit(checkSeeds(std::string(argument.substr(kCheckSeeds.size()))) ? 0 : 1);
        }
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    accepts({reinterpret_cast<const char*>(data), size});
    return 0;
}
