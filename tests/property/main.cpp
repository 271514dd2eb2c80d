#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "chain_walk.h"
#include "round_trip.h"
#include "version_chain.h"

namespace {

constexpr const char* kUsage =
    "property_test [--cases N] [--chains N] [--seed S] [--count 1]\n"
    "\n"
    "Installs random products on random machines in memory, uninstalls them and compares all that is there; "
    "then\n"
    "takes products with several versions through chains of installations, failures and uninstallations.\n"
    "\n"
    "  --cases N   how many products, 10000 by default\n"
    "  --chains N  how many chains, 10000 by default\n"
    "  --seed S    of the first case and the first chain; each further one has the next number. Without it "
    "another\n"
    "              one each time\n"
    "  --count 1   goes on after failures, names each, and counts them for each course of events\n"
    "\n"
    "Exit code 0: all is as it was; 1: a case fails, and is shown with its seed and made as small as it "
    "goes;\n"
    "2: wrong use.\n";

struct Options {
    std::uint64_t cases = 10000;
    std::uint64_t chains = 10000;
    std::uint64_t count = 0;
    std::uint64_t seed =
        static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
};

bool readNumber(const char* text, std::uint64_t& outNumber) {
    char* end = nullptr;
    outNumber = text == nullptr ? 0 : std::strtoull(text, &end, 10);
    return text != nullptr && end != text && *end == '\0';
}

bool readOptions(int count, char** words, Options& outOptions) {
    for (int i = 1; i < count; i += 2) {
        const char* value = i + 1 < count ? words[i + 1] : nullptr;
        std::uint64_t* number = std::strcmp(words[i], "--cases") == 0    ? &outOptions.cases
                                : std::strcmp(words[i], "--chains") == 0 ? &outOptions.chains
                                : std::strcmp(words[i], "--seed") == 0   ? &outOptions.seed
                                : std::strcmp(words[i], "--count") == 0  ? &outOptions.count
                                                                         : nullptr;
        if (number == nullptr || !readNumber(value, *number)) {
            return false;
        }
    }
    return true;
}

void report(std::uint64_t seed, const ProductCase& failing) {
    const ProductCase small = shrink(failing);
    std::printf("FAILED: the case of seed %llu. Made small:\n%s", static_cast<unsigned long long>(seed),
                summarize(small).c_str());
    for (const std::string& line : runRoundTrip(small)) {
        std::printf("  -> %s\n", line.c_str());
    }
    std::printf("Its description:\n%s\nTo repeat it: property_test --cases 1 --chains 0 --seed %llu\n",
                describe(small).c_str(), static_cast<unsigned long long>(seed));
}

void report(std::uint64_t seed, const VersionChain& failing) {
    const VersionChain small = shrink(failing);
    std::printf("FAILED: the chain of seed %llu. Made small:\n%s", static_cast<unsigned long long>(seed),
                summarize(small).c_str());
    for (const std::string& line : walkChain(small)) {
        std::printf("  -> %s\n", line.c_str());
    }
    std::printf("To repeat it: property_test --cases 0 --chains 1 --seed %llu\n",
                static_cast<unsigned long long>(seed));
}

// False after the first chain that fails, which is shown; with `count` all are tried, and named by one line.
bool walkChains(const Options& options) {
    std::uint64_t failures = 0;
    for (std::uint64_t i = 0; i < options.chains; ++i) {
        RandomNumbers random(options.seed + i);
        const VersionChain chain = randomChain(random);
        const std::vector<std::string> found = walkChain(chain);
        if (found.empty()) {
            continue;
        }
        ++failures;
        if (options.count == 0) {
            report(options.seed + i, chain);
            return false;
        }
        std::printf("chain of seed %llu: %s\n", static_cast<unsigned long long>(options.seed + i),
                    found.front().c_str());
    }
    if (options.count != 0) {
        std::printf("chains: %llu of %llu fail\n", static_cast<unsigned long long>(failures),
                    static_cast<unsigned long long>(options.chains));
    }
    return failures == 0;
}

// The failing cases of one course.
struct Tally {
    std::uint64_t cases = 0;
    std::uint64_t failures = 0;
};

bool countFailures(const Options& options) {
    std::array<Tally, kCourseCount> tallies;
    for (std::uint64_t i = 0; i < options.cases; ++i) {
        RandomNumbers random(options.seed + i);
        const ProductCase product = randomCase(random);
        const std::vector<std::string> found = runRoundTrip(product);
        Tally& tally = tallies[static_cast<std::size_t>(product.course)];
        ++tally.cases;
        if (!found.empty()) {
            ++tally.failures;
            std::printf("seed %llu, %s: %s\n", static_cast<unsigned long long>(options.seed + i),
                        nameOf(product.course), found.front().c_str());
            std::fflush(stdout);
        }
    }
    bool passed = true;
    for (int i = 0; i < kCourseCount; ++i) {
        const Tally& tally = tallies[static_cast<std::size_t>(i)];
        std::printf("%s: %llu of %llu fail\n", nameOf(static_cast<Course>(i)),
                    static_cast<unsigned long long>(tally.failures),
                    static_cast<unsigned long long>(tally.cases));
        passed = passed && tally.failures == 0;
    }
    return passed;
}

}  // namespace

int main(int count, char** words) {
    Options options;
    if (!readOptions(count, words, options)) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    std::printf("%llu cases, %llu chains from seed %llu\n", static_cast<unsigned long long>(options.cases),
                static_cast<unsigned long long>(options.chains),
                static_cast<unsigned long long>(options.seed));
    std::fflush(stdout);
    if (options.count != 0) {
        const bool casesPassed = options.cases == 0 || countFailures(options);
        return walkChains(options) && casesPassed ? 0 : 1;
    }
    for (std::uint64_t i = 0; i < options.cases; ++i) {
        RandomNumbers random(options.seed + i);
        const ProductCase product = randomCase(random);
        if (!runRoundTrip(product).empty()) {
            report(options.seed + i, product);
            return 1;
        }
    }
    if (!walkChains(options)) {
        return 1;
    }
    std::printf("passed\n");
    return 0;
}
