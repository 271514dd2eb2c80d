#include "text/rtf_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "fakes/recording_rich_text.h"
#include "text/rtf_control_words.h"

namespace {

using Calls = std::vector<std::string>;

// As a word processor would write it.
constexpr std::string_view kSample =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss\\fcharset0 Arial;}}\r\n"
    "{\\colortbl ;\\red0\\green0\\blue255;}\r\n"
    "{\\*\\generator Word Pad 5.4;}\\viewkind4\\uc1\\pard\\qc\\b\\fs28 Title\\b0\\fs20\\par\r\n"
    "\\pard\\par\r\n"
    "\\qj It isn\\rquote t \\ldblquote much\\rdblquote , \\i but\\i0  it \\ul says\\ulnone  "
    "all.\\~\\'a9\\par\r\n"
    "\\pard\\li720 One\\tab two \\endash  three \\\\ \\{four\\}\\par\r\n"
    "}\r\n";

constexpr std::string_view kSampleText =
    "Title\n\nIt isn't \"much\", but it says all. (c)\nOne\ttwo - three \\ {four}\n";

std::optional<std::string> read(std::string_view document, RtfMode mode = RtfMode::kPlain, int width = 0) {
    return RtfReader().read(document, mode, width);
}

std::string plain(std::string_view document) {
    return read(document).value_or("FAILED");
}

// The text for a terminal without the attribute that ends every document.
std::string onTerminal(std::string_view document) {
    const std::string text = read(document, RtfMode::kTerminal).value_or("FAILED");
    constexpr std::string_view kEnd = "\033[0m";
    EXPECT_TRUE(text.ends_with(kEnd));
    return text.substr(0, text.size() - std::min(text.size(), kEnd.size()));
}

Calls callsOf(std::string_view document, RtfMode mode = RtfMode::kControl) {
    RecordingRichText recording;
    RtfReader reader;
    reader.setCallback(&recording);
    reader.read(document, mode, 0);
    return recording.calls;
}

// The calls before the two that end every document.
Calls bodyOf(std::string_view document) {
    Calls calls = callsOf(document);
    const Calls end = {"resetStyles", "endDocument"};
    EXPECT_TRUE(calls.size() >= 2 && std::equal(end.begin(), end.end(), calls.end() - 2));
    calls.resize(calls.size() - std::min<std::size_t>(calls.size(), 2));
    return calls;
}

std::string hidden(std::string_view content) {
    return "{{" + std::string(content) + "}}";
}

struct WordCase {
    std::string_view word;
    std::string_view terminal;
    std::string_view plain;
    Calls calls;
};

const std::vector<WordCase>& wordCases() {
    static const std::vector<WordCase> cases = {
        {"tab", "\t", "\t", {"addChar \t"}},
        {"endash", "-", "-", {"addChar -"}},
        {"pard", "", "", {"resetStyles"}},
        {"par", "\n", "\n", {"addChar \n", "paragraph"}},
        {"qc", "", "", {"setAlignment 1"}},
        {"ql", "", "", {"setAlignment 0"}},
        {"qr", "", "", {"setAlignment 2"}},
        {"qj", "", "", {"setAlignment 3"}},
        {"b0", "\033[0m", "", {"setStyle 0 0"}},
        {"b", "\033[1m", "", {"setStyle 0 1"}},
        {"i0", "", "", {"setStyle 1 0"}},
        {"i", "", "", {"setStyle 1 1"}},
        {"ulnone", "\033[0m", "", {"setStyle 2 0"}},
        {"ul", "\033[4m", "", {"setStyle 2 1"}},
        {"li", "", "", {"setLeftIndent 0"}},
        {"rquote", "'", "'", {"addChar '"}},
        {"ldblquote", "\"", "\"", {"addChar \""}},
        {"rdblquote", "\"", "\"", {"addChar \""}},
        {"restorenormaltextmode", "\033[0m", "", {"resetStyles"}},
    };
    return cases;
}

TEST(RtfReader, TheCasesCoverTheTableOfWords) {
    const auto words = rtfControlWords();
    ASSERT_EQ(wordCases().size(), words.size());
    for (std::size_t row = 0; row < words.size(); ++row) {
        EXPECT_EQ(wordCases()[row].word, words[row].word);
    }
}

TEST(RtfReader, EachWordWritesItsTextForTerminals) {
    for (const WordCase& one : wordCases()) {
        EXPECT_EQ(onTerminal("\\" + std::string(one.word)), one.terminal) << one.word;
    }
}

TEST(RtfReader, EachWordWritesNoAttributesInTheOtherModes) {
    for (const WordCase& one : wordCases()) {
        const std::string document = "\\" + std::string(one.word);
        EXPECT_EQ(read(document, RtfMode::kControl), one.plain) << one.word;
        EXPECT_EQ(read(document, RtfMode::kPlain), one.plain) << one.word;
    }
}

TEST(RtfReader, EachWordCallsTheCallback) {
    for (const WordCase& one : wordCases()) {
        EXPECT_EQ(bodyOf("\\" + std::string(one.word)), one.calls) << one.word;
    }
}

TEST(RtfReader, EachWordWritesNothingInHiddenGroups) {
    for (const WordCase& one : wordCases()) {
        const std::string document = hidden("\\" + std::string(one.word));
        EXPECT_EQ(onTerminal(document), "") << one.word;
        EXPECT_EQ(plain(document), "") << one.word;
    }
}

TEST(RtfReader, EachWordMatchesLongerWordsToo) {
    for (const WordCase& one : wordCases()) {
        EXPECT_EQ(onTerminal("\\" + std::string(one.word) + "xyz7 !"), std::string(one.terminal) + "!")
            << one.word;
    }
}

TEST(RtfReader, StylesInHiddenGroupsStillReachTheCallback) {
    EXPECT_EQ(bodyOf(hidden("\\b\\qc\\pard\\par")),
              (Calls{"setStyle 0 1", "setAlignment 1", "resetStyles", "paragraph"}));
}

TEST(RtfReader, AttributesThatAreTextReachTheCallback) {
    EXPECT_EQ(callsOf("\\b", RtfMode::kTerminal),
              (Calls{"addChar \033[1m", "setStyle 0 1", "addChar \033[0m", "resetStyles", "endDocument"}));
}

TEST(RtfReader, OtherWordsAreSkipped) {
    EXPECT_EQ(plain("\\rtf1\\ansi\\deff0 a\\fs20 b\\cf1 c"), "abc");
    EXPECT_EQ(bodyOf("\\rtf1\\ansi\\deff0\\fs20"), Calls{});
}

TEST(RtfReader, OneBlankAfterAWordBelongsToIt) {
    EXPECT_EQ(plain("a\\par b"), "a\nb");
    EXPECT_EQ(plain("a\\par  b"), "a\n b");
    EXPECT_EQ(plain("a\\par\tb"), "a\nb");
    EXPECT_EQ(plain("a\\par{b}"), "a\nb");
    EXPECT_EQ(plain("a\\par"), "a\n");
    EXPECT_EQ(plain("a\\par "), "a\n");
}

TEST(RtfReader, AWordGoesAsFarAsLettersDigitsAndHyphens) {
    EXPECT_EQ(plain("\\tab-9Zz0x.y"), "\t.y");
    EXPECT_EQ(plain("\\tab_y"), "\t_y");
    EXPECT_EQ(plain("\\tab\xE9y"), "\t\xE9y");
    EXPECT_EQ(plain("soft\\-hyphen x"), "softx");
}

TEST(RtfReader, TheLeftIndentIsInTenthsOfAMillimetre) {
    EXPECT_EQ(bodyOf("\\li720"), Calls{"setLeftIndent 127"});
    EXPECT_EQ(bodyOf("\\li-720 "), Calls{"setLeftIndent -127"});
    EXPECT_EQ(bodyOf("\\li99999999999999999999"), Calls{"setLeftIndent 378792254"});
    EXPECT_EQ(bodyOf("\\li-99999999999999999999"), Calls{"setLeftIndent -378792254"});
    EXPECT_EQ(bodyOf("\\li 720"), (Calls{"setLeftIndent 0", "addChar 7", "addChar 2", "addChar 0"}));
}

TEST(RtfReader, LineEndsAndTabsOfTheFileAreNotText) {
    EXPECT_EQ(plain("a\r\nb\tc\rd\ne"), "abcde");
}

TEST(RtfReader, AnythingElseIsText) {
    std::string all;
    for (int byte = 1; byte < 256; ++byte) {
        if (std::string_view("\r\n\t{}\\").find(static_cast<char>(byte)) == std::string_view::npos) {
            all += static_cast<char>(byte);
        }
    }
    EXPECT_EQ(plain(all), all);
    EXPECT_EQ(plain("{" + all + "}"), all);
    EXPECT_EQ(plain(hidden(all)), "");
}

TEST(RtfReader, EachCharacterIsOneCall) {
    EXPECT_EQ(bodyOf("{ab\\{}"), (Calls{"addChar a", "addChar b", "addChar {"}));
}

TEST(RtfReader, EscapedBracesAndBackslashesAreText) {
    EXPECT_EQ(plain("{a\\{b\\}c\\\\d}"), "a{b}c\\d");
    EXPECT_EQ(plain(hidden("\\{\\}\\\\")), "");
}

TEST(RtfReader, TheTwoSignsAreWrittenInBrackets) {
    EXPECT_EQ(plain("\\'a9\\'A9 1"), "(c)(c) 1");
    EXPECT_EQ(plain("\\'ae\\'AE 1"), "(r)(r) 1");
    EXPECT_EQ(plain(hidden("\\'a9\\'ae")), "");
}

TEST(RtfReader, AWholeTextIsOneCall) {
    EXPECT_EQ(bodyOf("\\'a9x\\'ae"), (Calls{"addChar (c)", "addChar x", "addChar (r)"}));
    EXPECT_EQ(bodyOf(hidden("\\'a9\\endash")), Calls{});
}

TEST(RtfReader, OtherBytesInHexAreDropped) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    EXPECT_EQ(plain("x\\'e9y"), "xy");
    for (unsigned value = 0; value < 256; ++value) {
        const std::string digits = {kDigits[value / 16], kDigits[value % 16]};
        const std::string_view text = value == 0xA9 ? "(c)" : value == 0xAE ? "(r)" : "";
        EXPECT_EQ(plain("\\'" + digits + "|"), std::string(text) + "|") << digits;
    }
}

TEST(RtfReader, AnInvalidHexDigitCountsAsZero) {
    EXPECT_EQ(plain("\\'axb"), "b");
    EXPECT_EQ(plain("\\'g9b"), "b");
    EXPECT_EQ(plain("\\'@9b\\'`9b"), "bb");
    EXPECT_EQ(plain("{\\'a}b}"), "b");
}

TEST(RtfReader, HexDigitsMayBeCutOff) {
    EXPECT_EQ(plain("x\\'"), "x");
    EXPECT_EQ(plain("x\\'a"), "x");
    EXPECT_EQ(plain("x\\'a9"), "x(c)");
}

TEST(RtfReader, TheHardBlankAndTheHardHyphenAreText) {
    EXPECT_EQ(plain("a\\~b\\_c"), "a b-c");
    EXPECT_EQ(plain(hidden("\\~\\_")), "");
    EXPECT_EQ(bodyOf("\\~\\_"), (Calls{"addChar  ", "addChar -"}));
}

TEST(RtfReader, OtherSymbolsAreSkipped) {
    EXPECT_EQ(plain("a\\*b\\:c\\|d\\\re\\\nf\\ g\\\xE9h"), "abcdefgh");
}

TEST(RtfReader, ABackslashMayBeTheLastByte) {
    EXPECT_EQ(plain("a\\"), "a");
    EXPECT_EQ(plain("\\"), "");
    EXPECT_EQ(read("{a\\"), std::nullopt);
}

TEST(RtfReader, TextIsVisibleOutsideGroupsAndInTheFirstLevel) {
    EXPECT_EQ(plain("a{b{c{d}e}f}g"), "abfg");
    EXPECT_EQ(plain("{a}{b}"), "ab");
}

TEST(RtfReader, AFontTableIsNotShown) {
    const std::string_view document =
        "{\\rtf1{\\fonttbl{\\f0\\froman Times;}{\\f1\\fswiss Arial\\tab\\endash\\'a9\\~\\rquote;}}text}";
    EXPECT_EQ(plain(document), "text");
    EXPECT_EQ(bodyOf(document), (Calls{"addChar t", "addChar e", "addChar x", "addChar t"}));
}

TEST(RtfReader, ByteE9GivesNothing) {
    EXPECT_EQ(plain("{\\'e9}"), "");
    EXPECT_EQ(bodyOf("{\\'e9}"), Calls{});
}

TEST(RtfReader, TwoParagraphEndsGiveAnEmptyLine) {
    EXPECT_EQ(plain("a\\par\\par b"), "a\n\nb");
    EXPECT_EQ(read("a\\par\\par b", RtfMode::kPlain, 20), "a\n\nb\n");
}

TEST(RtfReader, TheWordBinIsTakenAsBold) {
    EXPECT_EQ(onTerminal("\\bin4 data"), "\033[1mdata");
    EXPECT_EQ(bodyOf("\\bin4"), Calls{"setStyle 0 1"});
}

TEST(RtfReader, AWordWiderThanTheWidthIsNotBroken) {
    EXPECT_EQ(read("{a 0123456789 b}", RtfMode::kPlain, 5), "a\n0123456789\nb\n");
}

TEST(RtfReader, TheEndRestoresTheStyles) {
    EXPECT_EQ(read("", RtfMode::kTerminal), "\033[0m");
    EXPECT_EQ(read("{a}", RtfMode::kTerminal), "a\033[0m");
    EXPECT_EQ(read("", RtfMode::kControl), "");
    EXPECT_EQ(callsOf(""), (Calls{"resetStyles", "endDocument"}));
}

TEST(RtfReader, ASurplusClosingBraceFails) {
    EXPECT_EQ(read("}"), std::nullopt);
    EXPECT_EQ(read("{a}}b{"), std::nullopt);
    EXPECT_EQ(read("}{"), std::nullopt);
    EXPECT_EQ(callsOf("a}b"), Calls{"addChar a"});
}

TEST(RtfReader, AnOpenGroupAtTheEndFails) {
    EXPECT_EQ(read("{"), std::nullopt);
    EXPECT_EQ(read("{{a}"), std::nullopt);
    EXPECT_EQ(callsOf("{a"), Calls{"addChar a"});
}

TEST(RtfReader, TheFaultIsTheBraceThatClosesNothing) {
    RtfReader reader;
    EXPECT_EQ(reader.read("{a}\n\\}}b{", RtfMode::kPlain, 0), std::nullopt);
    EXPECT_EQ(reader.getFault().offset, 6U);
    EXPECT_EQ(reader.getFault().openGroups, 0U);
}

TEST(RtfReader, TheFaultIsTheEndOfADocumentWithOpenGroups) {
    using namespace std::string_view_literals;
    RtfReader reader;
    EXPECT_EQ(reader.read("{{{a}b\0}}"sv, RtfMode::kPlain, 0), std::nullopt);
    EXPECT_EQ(reader.getFault().offset, 6U);
    EXPECT_EQ(reader.getFault().openGroups, 2U);
}

TEST(RtfReader, TheDocumentEndsAtAZeroByte) {
    using namespace std::string_view_literals;
    EXPECT_EQ(plain("{a}\r\n\0}}"sv), "a");
    EXPECT_EQ(plain("{a\0}"sv), "FAILED");
    EXPECT_EQ(plain("\\\0x"sv), "");
    EXPECT_EQ(plain("\\'a\0009x"sv), "");
}

TEST(RtfReader, TheTextIsWrappedToTheWidth) {
    const std::string_view document = "{\\rtf1 aa bb cc dd\\par ee}";
    EXPECT_EQ(read(document, RtfMode::kPlain, 10), "aa  bb  cc\ndd\nee\n");
    EXPECT_EQ(read(document, RtfMode::kPlain, 0), "aa bb cc dd\nee");
    EXPECT_EQ(read(document, RtfMode::kPlain, -5), "aa bb cc dd\nee");
}

TEST(RtfReader, AWrappedTextThatEndsWithAParagraphGetsNoOtherLineFeed) {
    EXPECT_EQ(read("{a\\par}", RtfMode::kPlain, 10), "a\n");
    EXPECT_EQ(read("{a}", RtfMode::kPlain, 10), "a\n");
    EXPECT_EQ(read("{}", RtfMode::kPlain, 10), "");
}

TEST(RtfReader, TheCallbackGetsTheTextUnwrapped) {
    RecordingRichText recording;
    RtfReader reader;
    reader.setCallback(&recording);
    EXPECT_EQ(reader.read("aa b", RtfMode::kControl, 2), "aa\nb\n");
    EXPECT_EQ(recording.calls,
              (Calls{"addChar a", "addChar a", "addChar  ", "addChar b", "resetStyles", "endDocument"}));
}

TEST(RtfReader, ACallbackCanBeRemoved) {
    RecordingRichText recording;
    RtfReader reader;
    reader.setCallback(&recording);
    reader.setCallback(nullptr);
    EXPECT_EQ(reader.read("a\\b\\qc\\li3\\par", RtfMode::kControl, 0), "a\n");
    EXPECT_EQ(recording.calls, Calls{});
}

TEST(RtfReader, ARealDocumentIsRead) {
    EXPECT_EQ(read(kSample), kSampleText);
    EXPECT_EQ(onTerminal(kSample),
              "\033[1mTitle\033[0m\n\nIt isn't \"much\", but it \033[4msays\033[0m all. "
              "(c)\nOne\ttwo - three \\ {four}\n");
}

TEST(RtfReader, MillionsOfOpenGroupsAreCounted) {
    constexpr std::size_t kGroups = 5000000;
    const std::string open(kGroups, '{');
    const std::string closed(kGroups, '}');
    EXPECT_EQ(read(open), std::nullopt);
    EXPECT_EQ(read(closed), std::nullopt);
    EXPECT_EQ(read(open + "a" + closed + "b"), "b");
}

TEST(RtfReader, AWordOfMillionsOfLettersIsOneWord) {
    EXPECT_EQ(plain("x\\" + std::string(5000000, 'z') + " y"), "xy");
    EXPECT_EQ(bodyOf("\\" + std::string(5000000, 'b')), Calls{"setStyle 0 1"});
}

std::string joinedText(const Calls& calls) {
    constexpr std::string_view kName = "addChar ";
    std::string text;
    for (const std::string& call : calls) {
        if (call.starts_with(kName)) {
            text += call.substr(kName.size());
        }
    }
    return text;
}

// For any document, all modes must agree on whether it is whole and on its text, and the callback must
// receive the same text.
void checkDocument(const std::string& document) {
    RecordingRichText recording;
    RtfReader reader;
    reader.setCallback(&recording);
    const auto control = reader.read(document, RtfMode::kControl, 0);
    const auto terminal = read(document, RtfMode::kTerminal);
    ASSERT_EQ(read(document), control) << document;
    ASSERT_EQ(terminal.has_value(), control.has_value()) << document;
    ASSERT_EQ(read(document, RtfMode::kPlain, 7).has_value(), control.has_value()) << document;
    const bool ended = !recording.calls.empty() && recording.calls.back() == "endDocument";
    ASSERT_EQ(ended, control.has_value()) << document;
    if (control) {
        ASSERT_EQ(joinedText(recording.calls), *control) << document;
        ASSERT_TRUE(terminal->ends_with("\033[0m")) << document;
        ASSERT_LE(control->size(), document.size()) << document;
    }
}

TEST(RtfReader, ADocumentCutAtAnyLengthIsWholeOrRefused) {
    const std::size_t end = kSample.rfind('}');
    for (std::size_t length = 0; length <= kSample.size(); ++length) {
        const std::string cut(kSample.substr(0, length));
        checkDocument(cut);
        EXPECT_EQ(read(cut).has_value(), length == 0 || length > end) << length;
    }
}

TEST(RtfReader, AnyByteMayBeWrong) {
    constexpr std::string_view kWrong = "{}\\'\n a0-\xFF";
    for (std::size_t place = 0; place < kSample.size(); ++place) {
        for (const char wrong : kWrong) {
            std::string document(kSample);
            document[place] = wrong;
            checkDocument(document);
        }
        std::string document(kSample);
        document[place] = '\0';
        checkDocument(document);
    }
}

TEST(RtfReader, RandomDocumentsAreReadOrRefused) {
    const std::vector<std::string> pieces = {"{",        "}",      "\\",    "\\'",    "a9",  " ",  "word",
                                             "\\b",      "\\par ", "\\li7", "\\tab ", "\n",  "\t", "\\~",
                                             "\\endash", "{}",     "{x}",   "\\{",    "\\*", "}}", "\xE9"};
    std::mt19937 random(11);
    for (int round = 0; round < 5000; ++round) {
        std::string document;
        for (auto left = random() % 40; left > 0; --left) {
            document += pieces[random() % pieces.size()];
        }
        checkDocument(document);
    }
}

// Makes documents of visible and hidden pieces; the text must be the visible ones and nothing else.
TEST(RtfReader, RandomDocumentsShowWhatIsVisibleAndNothingElse) {
    std::mt19937 random(13);
    for (int round = 0; round < 2000; ++round) {
        std::string document = "{";
        std::string visible;
        for (auto left = random() % 30; left > 0; --left) {
            const std::string letter(1, static_cast<char>('a' + random() % 26));
            const bool hide = random() % 2 == 0;
            document += hide ? "{\\*\\f0 " + letter + "{\\'a9}\\par}" : "\\cf1 " + letter;
            visible += hide ? "" : letter;
        }
        ASSERT_EQ(plain(document + "}"), visible);
    }
}

}  // namespace
