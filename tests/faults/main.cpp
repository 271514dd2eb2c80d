#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "allowed_losses.h"
#include "tables.h"

namespace {

constexpr const char* kUsage =
    "faults_test [--every N | --full] [--only OPERATION] [--error ERROR] [--call N]\n"
    "\n"
    "Has the sample product installed, upgraded, reverted and uninstalled on a machine in memory, and lets "
    "call\n"
    "after call fail, or end the program there; then looks at what the run says, what is left, and what the\n"
    "next run makes of it.\n"
    "\n"
    "  --full       all errors at all calls; without it each call once with one error, and ends at each "
    "call\n"
    "  --every N    each N-th call only, 1 by default\n"
    "  --only O     install, upgrade, revert or uninstall\n"
    "  --error E    no-space, no-access or sharing, with \",lasting\" for the call and all after it, or\n"
    "               \",reading\" for calls that change nothing; kill: the program ends before the call; "
    "torn:\n"
    "               in the middle of a write\n"
    "  --call N     that call alone, with all that the run says\n"
    "\n"
    "Exit code 0: all is well; 1: findings, each with its options; 2: wrong use.\n";

struct Options {
    bool isFull = false;
    int every = 1;
    int call = 0;
    std::string only;
    std::string error;
};

bool readNumber(const std::string& text, int& outNumber) {
    char* end = nullptr;
    const long number = std::strtol(text.c_str(), &end, 10);
    outNumber = static_cast<int>(number);
    return !text.empty() && *end == '\0' && number > 0;
}

bool readOption(std::string_view name, const std::string& value, Options& outOptions) {
    if (name == "--every") {
        return readNumber(value, outOptions.every);
    }
    if (name == "--call") {
        return readNumber(value, outOptions.call);
    }
    std::string& text = name == "--only" ? outOptions.only : outOptions.error;
    text = value;
    return (name == "--only" || name == "--error") && !value.empty();
}

bool readOptions(int count, char** words, Options& outOptions) {
    for (int i = 1; i < count; ++i) {
        const std::string_view name = words[i];
        if (name == "--full") {
            outOptions.isFull = true;
        } else if (++i >= count || !readOption(name, words[i], outOptions)) {
            return false;
        }
    }
    return true;
}

// One error of each sort is enough to find what nobody looks at.
bool isInShortForm(const Row& row) {
    return row.isKill || (row.plan.kind.fileStatus == kFaultKinds[1].fileStatus);
}

int runRows(const Options& options, Tables& tables) {
    int rows = 0;
    for (Row& row : allRows()) {
        const bool isNamed = !options.error.empty() || options.call > 0;
        if ((!options.only.empty() && options.only != nameOf(row.operation)) ||
            (!options.error.empty() && options.error != errorWord(row)) ||
            (!isNamed && !options.isFull && !isInShortForm(row))) {
            continue;
        }
        row.every = options.every;
        tables.run(row, options.call);
        ++rows;
    }
    return rows;
}

// What is allowed and never happens isn't true any more.
bool reportStaleLosses(const Tables& tables) {
    bool isAnyStale = false;
    for (const AllowedLoss& loss : allowedLosses()) {
        if (!tables.losses().contains(loss.name)) {
            std::printf("FINDING: the loss \"%s\" is allowed and doesn't occur\n", loss.name);
            isAnyStale = true;
        }
    }
    return isAnyStale;
}

bool reportUndocumentedLosses() {
    const std::vector<std::string> names = lossesWithoutWords();
    for (const std::string& name : names) {
        std::printf("FINDING: the manual doesn't have the words of the loss \"%s\"\n", name.c_str());
    }
    return !names.empty();
}

}  // namespace

int main(int count, char** words) {
    Options options;
    if (count == 2 && std::string_view(words[1]) == "--help") {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if (!readOptions(count, words, options)) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    const Operations operations;
    Tables tables(operations);
    tables.printHead();
    if (runRows(options, tables) == 0) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    tables.printEnd();
    const bool isWhole =
        options.isFull && options.every == 1 && options.only.empty() && options.error.empty();
    const bool isStale = isWhole && reportStaleLosses(tables);
    const bool isUndocumented = reportUndocumentedLosses();
    return tables.findings() > 0 || isStale || isUndocumented ? 1 : 0;
}
