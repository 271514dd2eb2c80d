// The examples of the page about findings, changed at random, go through the checks; and where these find
// no error, the product is packed, installed and uninstalled on a machine in memory.

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "checking/description_check.h"
#include "checking/grammar.h"
#include "checking/references.h"
#include "manual/check_examples.h"
#include "manual/manual_text.h"
#include "packager/commands.h"
#include "packager/recorded_output.h"
#include "platform/memory/memory_environment.h"
#include "platform/memory/memory_file_system.h"
#include "platform/memory/memory_processes.h"
#include "property/random_numbers.h"
#include "rehearsal/rehearsal.h"

namespace {

constexpr int kCases = 10'000;
constexpr std::string_view kSigns[] = {
    "<",  ">",   "/>",   "</", "\"", "'",  "=",           "==",       "[",    "]",
    "$",  "&",   ";",    ",",  "(",  ")",  "\\",          "*",        "..",   "\n",
    "\r", "-->", "<!--", "0",  "1",  "-1", "99999999999", "\xC3\xA4", "\xFF", "[INSTALL_DIR]"};

std::vector<CheckExample> examples() {
    for (const ManualPage& page : manualPages()) {
        if (page.name == "check.md") {
            return checkExamples(page.text);
        }
    }
    return {};
}

// Changes descriptions; the same for a seed everywhere.
class Mutation {
public:
    Mutation(const std::vector<CheckExample>& examples, std::uint64_t seed)
        : examples_(examples), random_(seed) {}

    const CheckExample& start() { return examples_[random_.below(examples_.size())]; }

    std::string change(std::string text) {
        for (std::size_t changes = 1 + random_.below(6); changes > 0 && !text.empty(); --changes) {
            changeOnce(text);
        }
        return text;
    }

private:
    void changeOnce(std::string& text) {
        const std::size_t at = random_.below(text.size());
        const std::size_t length = random_.below(random_.oneIn(4) ? 200 : 8);
        switch (random_.below(6)) {
            case 0:
                text.erase(at, length);
                break;
            case 1:
                text.insert(at, text.substr(random_.below(text.size()), length));
                break;
            case 2:
                text.insert(at, kSigns[random_.below(std::size(kSigns))]);
                break;
            case 3:
                text.replace(at, 1, 1, static_cast<char>(random_.below(256)));
                break;
            case 4:
                replaceWord(text, at);
                break;
            default:
                insertPart(text, at, length);
        }
    }

    // A name or a word of the grammar in the place of another.
    void replaceWord(std::string& text, std::size_t at) {
        constexpr std::string_view kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
        const std::size_t begin = text.find_first_of(kLetters, at);
        if (begin == std::string::npos) {
            return;
        }
        const std::size_t end = std::min(text.find_first_not_of(kLetters, begin), text.size());
        const auto rules = grammar::attributeRules();
        const vocabulary::WordList& list =
            vocabulary::kWordLists[random_.below(std::size(vocabulary::kWordLists))];
        const std::string_view words[] = {
            vocabulary::kElements[random_.below(std::size(vocabulary::kElements))].name,
            rules[random_.below(rules.size())].name, list.words[random_.below(list.words.size())]};
        text.replace(begin, end - begin, words[random_.below(std::size(words))]);
    }

    // Lines of another example.
    void insertPart(std::string& text, std::size_t at, std::size_t length) {
        const std::string& other = start().description;
        const std::size_t line = text.find('\n', at);
        const std::size_t from = other.find('\n', random_.below(other.size()));
        if (line != std::string::npos && from != std::string::npos) {
            text.insert(line, other.substr(from, 10 * length));
        }
    }

    const std::vector<CheckExample>& examples_;
    RandomNumbers random_;
};

void expectSound(const std::vector<Finding>& findings, const std::string& text) {
    const SourcePlace end = SourceLines(text).placeOf(text.size());
    SourcePlace earlier;
    for (const Finding& finding : findings) {
        ASSERT_GE(finding.place.column, 1);
        ASSERT_LE(finding.place, end) << finding.code.name();
        ASSERT_LE(earlier, finding.place) << finding.code.name();
        ASSERT_FALSE(finding.message.empty() || finding.hint.empty()) << finding.code.name();
        earlier = finding.place;
    }
}

// The changed description of an example and the files that it names.
struct MutatedProduct {
    MutatedProduct(const std::vector<CheckExample>& all, int seed) {
        Mutation mutation(all, static_cast<std::uint64_t>(seed));
        const CheckExample& example = mutation.start();
        files.addFile("/root/greet.sh", "#!/bin/sh\n");
        for (const auto& [name, content] : example.files) {
            files.addFile("/root/" + name, content);
        }
        text = mutation.change(example.description);
    }

    MemoryFileSystem files;
    std::string text;
};

TEST(MutatedExamples, AreCheckedToTheirEnd) {
    const std::vector<CheckExample> all = examples();
    ASSERT_FALSE(all.empty());
    int wellFormed = 0;
    for (int seed = 0; seed < kCases; ++seed) {
        MutatedProduct product(all, seed);
        const std::string& text = product.text;
        MemoryFileSystem& files = product.files;
        const std::vector<Finding> findings = checkDescription(text, {.targets = {}, .root = "/root"}, files);
        expectSound(findings, text);
        ASSERT_FALSE(testing::Test::HasFatalFailure()) << "seed " << seed << ":\n" << text;
        wellFormed += findings.empty() || !findings.front().code.name().starts_with("form-") ? 1 : 0;
    }
    // Otherwise only the reader of the form would have been tried.
    EXPECT_GT(wellFormed, kCases / 20);
}

// Why the product can't be installed or uninstalled; empty when it can. Nothing when it can't be packed.
std::optional<std::string> tryProduct(MutatedProduct& product, const std::string& system) {
    product.files.addFile("/install.xml", product.text);
    product.files.addFile("/image", "image");
    MemoryEnvironment environment;
    MemoryProcesses processes;
    RecordedOutput output;
    if (runPackager({"build", "--bin", "--description", "/install.xml", "--root", "/root", "--image",
                     "/image", "--output", "/package"},
                    output, product.files, environment, processes) != 0) {
        return std::nullopt;
    }
    const MachineDescription machine =
        readMachine("[machine]\nsystem = " + system + "\n[steps]\ninstall\nuninstall\n");
    return rehearse(machine, {product.files.content("/package"), 0, std::nullopt}, {}).failure;
}

bool isError(const Finding& finding) {
    return finding.code.severity() == Severity::kError;
}

// What is only warned of is odd, and yet works.
TEST(MutatedExamples, WorkWhereNoErrorIsFound) {
    const std::vector<CheckExample> all = examples();
    ASSERT_FALSE(all.empty());
    const std::vector<CheckExample> right = {all.front()};
    int worked = 0;
    for (int seed = 0; seed < kCases; ++seed) {
        MutatedProduct product(seed % 2 == 0 ? all : right, seed);
        const std::vector<Finding> findings =
            checkDescription(product.text, {.targets = {}, .root = "/root"}, product.files);
        if (std::ranges::any_of(findings, isError)) {
            continue;
        }
        const std::optional<std::string> failure = tryProduct(product, seed % 4 < 2 ? "linux" : "windows");
        EXPECT_EQ(failure.value_or("it can't be packed"), "") << "seed " << seed << ":\n" << product.text;
        worked += failure == "" ? 1 : 0;
    }
    RecordProperty("worked", worked);
    EXPECT_GT(worked, kCases / 200);
}

}  // namespace
