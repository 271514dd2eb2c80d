#include <gtest/gtest.h>

#include <random>

#include "tgm_oracle.h"
#include "tgm_test_support.h"

// Generated texts, read by the parser and by the simplest implementation of the same rules.
namespace {

class TextGenerator {
public:
    explicit TextGenerator(std::uint32_t seed) : random_(seed) {}

    // Lines with markers, in few levels so that blocks meet.
    std::string makeLines(int maxLines) {
        static const char* const kIndents[] = {"",   "",     "",     "\t",       "\t", " ",
                                               "  ", "    ", "\t\t", "        ", " \t"};
        static const char* const kMarkers[] = {"- ", "- ",   "* ",      "1. ", "23.\t", "a. ",  "b.",
                                               "# ", "####", "#######", "> ",  "> ",    "> > ", "> - ",
                                               ">",  "",     "",        "",    "",      "-"};
        std::string text;
        for (int lines = pick(maxLines) + 1; lines > 0; --lines) {
            if (pick(4) != 0) {
                text += choose(kIndents);
                text += choose(kMarkers);
                text += makeWords(3);
            }
            text += pick(40) == 0 ? "\r\n" : "\n";
        }
        if (pick(2) == 0) {
            text.pop_back();
        }
        return text;
    }

    std::string makeWords(int maxWords) {
        static const char* const kWords[] = {"x", "y",   "word", "*i*", "**b**", "_",
                                             "*", "\\*", "\\",   "_u_", " "};
        std::string text;
        for (int words = pick(maxWords); words > 0; --words) {
            // Emphasis that can't be resolved would end most texts early.
            text += pick(6) == 0 ? choose(kWords) : kWords[pick(3)];
        }
        return text;
    }

    std::string makeBytes(const char* alphabet, int maxLength) {
        const int letters = static_cast<int>(std::char_traits<char>::length(alphabet));
        std::string text;
        for (int length = pick(maxLength) + 1; length > 0; --length) {
            text += alphabet[pick(letters)];
        }
        return text;
    }

    int pick(int count) { return static_cast<int>(random_() % static_cast<std::uint32_t>(count)); }

private:
    template <std::size_t count>
    const char* choose(const char* const (&list)[count]) {
        return list[pick(static_cast<int>(count))];
    }

    std::mt19937 random_;
};

TGMParseOptions pickOptions(TextGenerator& generator) {
    TGMParseOptions options;
    options.keepGoing = generator.pick(3) == 0;
    options.lazyLists = generator.pick(3) != 0;
    options.alphaLists = generator.pick(5) != 0;
    options.joinChar = generator.pick(2) == 0 ? ' ' : '\n';
    options.tabWidth = static_cast<std::uint32_t>(generator.pick(5) == 0 ? 1 + generator.pick(3) : 4);
    return options;
}

struct Tally {
    int good = 0;
    int bad = 0;
};

// Trees, errors and logs are the same.
void compare(const std::string& text, TGMParseOptions options, Tally& tally) {
    TGMOracle oracle(options);
    const int errors = oracle.parse(text);
    const ParsedText silent = parseText(text, options);
    std::string log;
    options.debugLog = &log;
    const ParsedText logged = parseText(text, options);
    ASSERT_EQ(errors, logged.result.errors) << text;
    ASSERT_EQ(oracle.tree(), logged.tree) << text;
    ASSERT_EQ(oracle.log(), log) << text;
    ASSERT_EQ(errors, silent.result.errors) << text;
    ASSERT_EQ(oracle.tree(), silent.tree) << text;
    ++(errors == 0 ? tally.good : tally.bad);
}

TEST(TGMParserOracle, LinesWithMarkersGiveTheSameTrees) {
    TextGenerator generator(20260107);
    Tally tally;
    for (int i = 0; i < 6000 && !HasFatalFailure(); ++i) {
        const TGMParseOptions options = pickOptions(generator);
        compare(generator.makeLines(12), options, tally);
    }
    EXPECT_GT(tally.good, 1500);
    EXPECT_GT(tally.bad, 500);
}

TEST(TGMParserOracle, LongerTextsGiveTheSameTrees) {
    TextGenerator generator(4711);
    Tally tally;
    for (int i = 0; i < 600 && !HasFatalFailure(); ++i) {
        TGMParseOptions options = pickOptions(generator);
        options.keepGoing = i % 4 != 0;
        compare(generator.makeLines(35), options, tally);
    }
    EXPECT_GT(tally.good, 0);
}

TEST(TGMParserOracle, BytesOfMarkupGiveTheSameTrees) {
    TextGenerator generator(99);
    Tally tally;
    for (int i = 0; i < 6000 && !HasFatalFailure(); ++i) {
        const TGMParseOptions options = pickOptions(generator);
        compare(generator.makeBytes("->#*_1.a \t\n\n\\x", 60), options, tally);
    }
    EXPECT_GT(tally.good, 500);
}

TEST(TGMParserOracle, EmphasisGivesTheSameTrees) {
    TextGenerator generator(5);
    Tally tally;
    for (int i = 0; i < 20000 && !HasFatalFailure(); ++i) {
        // After a letter nothing is a marker; the blank lines make it a paragraph.
        const std::string tail = generator.pick(2) == 0 ? "\n\n" : "";
        compare("x" + generator.makeBytes("**__\\ab ", 24) + tail, {}, tally);
        compare("# " + generator.makeBytes("**__\\ab ", 24), {}, tally);
    }
    EXPECT_GT(tally.good, 1000);
    EXPECT_GT(tally.bad, 1000);
}

}  // namespace
