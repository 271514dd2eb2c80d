#include "packager/commands.h"

#include <gtest/gtest.h>

#include "packager/commands_fixture.h"

namespace {

using Lines = std::vector<std::string>;

constexpr const char* kRichText =
    "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\pard one two three four five\\par\\par end\\par}\r\n";

class TextCommandTest : public CommandsTest {
protected:
    int show(const std::string& name, const std::string& content, const Lines& options = {}) {
        files_.addFile("/in/" + name, content);
        Lines arguments = {"text", "/in/" + name};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return run(arguments);
    }
};

TEST_F(TextCommandTest, ShowsMarkdownAsPlainText) {
    ASSERT_EQ(show("a.md", "# Title\n\nSome *text*.\n\n- one\n- two\n"), 0);
    EXPECT_EQ(output_.errors, Lines{});
    EXPECT_EQ(output_.lines.front(), "Title");
    EXPECT_NE(std::find(output_.lines.begin(), output_.lines.end(), "Some text."), output_.lines.end());
}

TEST_F(TextCommandTest, ShowsPlainTextByDefault) {
    ASSERT_EQ(show("a.md", "# Title\n\nSome *text*.\n"), 0);
    const Lines lines = output_.lines;
    ASSERT_EQ(show("a.md", "# Title\n\nSome *text*.\n", {"--plain"}), 0);
    EXPECT_EQ(output_.lines, lines);
    ASSERT_EQ(show("a.md", "# Title\n\nSome *text*.\n", {"--width", "80"}), 0);
    EXPECT_EQ(output_.lines, lines);
}

TEST_F(TextCommandTest, TakesTheWidthOfTheConsole) {
    ASSERT_EQ(show("a.md", "aaaa bbbb cccc dddd\n\n", {"--width", "12"}), 0);
    for (const std::string& line : output_.lines) {
        EXPECT_LE(line.size(), 10U) << line;
    }
    EXPECT_EQ(output_.lines.front(), "aaaa bbbb");
    ASSERT_EQ(show("a.rtf", kRichText, {"--width", "11"}), 0);
    EXPECT_EQ(output_.lines, (Lines{"one   two", "three", "four five", "", "end"}));
}

TEST_F(TextCommandTest, ShowsRichTextAsPlainText) {
    ASSERT_EQ(show("a.rtf", kRichText), 0);
    EXPECT_EQ(output_.lines, (Lines{"one two three four five", "", "end"}));
}

TEST_F(TextCommandTest, WarnsOfWhatIsLeftOutAndShowsTheSame) {
    ASSERT_EQ(show("a.rtf", "{\\rtf1 a{\\b so}b}"), 0);
    EXPECT_EQ(output_.lines, Lines{"ab"});
    EXPECT_EQ(output_.errors,
              Lines{"packager: warning: /in/a.rtf: line 1: left out: {\\b so}: write its text without braces "
                    "around it"});
    ASSERT_EQ(show("a.md", "5. five\n\n"), 0);
    EXPECT_EQ(output_.lines.front(), "1. five");
    EXPECT_EQ(output_.errors.size(), 1U);
}

TEST_F(TextCommandTest, RecognisesRichTextByItsNameOrItsStart) {
    ASSERT_EQ(show("a.RTF", "*plain* \\b text\\par"), 0);
    EXPECT_EQ(output_.lines, Lines{"*plain* text"});
    ASSERT_EQ(show("agreement", kRichText), 0);
    EXPECT_EQ(output_.lines.front(), "one two three four five");
    ASSERT_EQ(show("rtf", "{\\rt no rich text}"), 0);
    EXPECT_EQ(output_.lines.front(), "{\\rt no rich text}");
}

TEST_F(TextCommandTest, ShowsMarkdownAsHtml) {
    ASSERT_EQ(show("a.md", "# Title\n\nSome *text* & more.\n\n", {"--html"}), 0);
    EXPECT_EQ(output_.lines.front(), "<!DOCTYPE html>");
    EXPECT_EQ(output_.lines.back(), "</html>");
    std::string all;
    for (const std::string& line : output_.lines) {
        all += line + "\n";
    }
    EXPECT_NE(all.find("<h1>Title</h1>"), std::string::npos);
    EXPECT_NE(all.find("<em>text</em> &amp; more."), std::string::npos);
}

TEST_F(TextCommandTest, ShowsBothTrees) {
    ASSERT_EQ(show("a.md", "# Title\n\nSome *text*.\n\n", {"--tree"}), 0);
    const auto has = [this](const std::string& line) {
        return std::find(output_.lines.begin(), output_.lines.end(), line) != output_.lines.end();
    };
    EXPECT_TRUE(has("============ Topology Tree: ============"));
    EXPECT_TRUE(has("|     +[PAR ] : Some *text*."));
    EXPECT_TRUE(has("============ Finalized Tree: ============"));
    EXPECT_TRUE(has("|     |     +[ITAL] : text"));
}

TEST_F(TextCommandTest, RefusesHtmlAndTreeForRichText) {
    for (const char* option : {"--html", "--tree"}) {
        EXPECT_EQ(show("a.rtf", kRichText, {option}), 1);
        EXPECT_EQ(output_.lines, Lines{});
        EXPECT_EQ(output_.errors, Lines{"packager: /in/a.rtf: this is rich text, which has no --html and no "
                                        "--tree: use --plain"});
    }
}

TEST_F(TextCommandTest, ReportsABrokenDocumentWithItsLine) {
    EXPECT_EQ(show("a.md", "Good.\n\nBad ** text.\n"), 1);
    EXPECT_EQ(output_.lines, Lines{});
    ASSERT_EQ(output_.errors.size(), 1U);
    EXPECT_TRUE(output_.errors[0].starts_with("packager: /in/a.md: line 3: the emphasis in "));
    EXPECT_EQ(show("a.md", "Good.\n\nBad ** text.\n", {"--html"}), 1);
    EXPECT_TRUE(output_.errors[0].starts_with("packager: /in/a.md: line 3: the emphasis in "));
    EXPECT_EQ(show("a.rtf", "{\\rtf1\n}}"), 1);
    EXPECT_EQ(output_.errors, Lines{"packager: /in/a.rtf: line 2: this } closes nothing: remove it, or write "
                                    "\\} for a brace of the text"});
}

TEST_F(TextCommandTest, ShowsTheTreeOfABrokenDocumentBeforeTheMessage) {
    EXPECT_EQ(show("a.md", "Good.\n\nBad ** text.\n", {"--tree"}), 1);
    EXPECT_FALSE(output_.lines.empty());
    ASSERT_EQ(output_.errors.size(), 1U);
    EXPECT_TRUE(output_.errors[0].starts_with("packager: /in/a.md: line 3: the emphasis in "));
}

TEST_F(TextCommandTest, ShowsAnyFileAsItIsWrittenIfAsked) {
    for (const char* name : {"a.txt", "a.md", "a.rtf"}) {
        ASSERT_EQ(show(name, "{\\rtf1 7. *a*\r\n> b\n\n  one two", {"--verbatim", "--width=10"}), 0);
        EXPECT_EQ(output_.lines, (Lines{"{\\rtf1", "7. *a*", "> b", "", "  one", "  two"})) << name;
        EXPECT_EQ(output_.errors, Lines{});
    }
    ASSERT_EQ(show("a.txt", "", {"--verbatim", "--plain"}), 0);
    EXPECT_EQ(output_.lines, Lines{});
}

TEST_F(TextCommandTest, WarnsOfBytesOfAVerbatimTextThatAreNotUtf8) {
    ASSERT_EQ(show("a.txt", "a\nb\xE9\n", {"--verbatim"}), 0);
    EXPECT_EQ(output_.lines, (Lines{"a", "b\xEF\xBF\xBD"}));
    EXPECT_EQ(output_.errors,
              Lines{"packager: warning: /in/a.txt: line 2: there are bytes that aren't UTF-8: "
                    "save it as UTF-8"});
}

TEST_F(TextCommandTest, TreatsAnEmptyDocumentAsBroken) {
    for (const Lines& options : {Lines{}, Lines{"--html"}, Lines{"--tree"}}) {
        EXPECT_EQ(show("a.md", "", options), 1);
        EXPECT_EQ(output_.errors, Lines{"packager: /in/a.md: the document is empty: a setup shows nothing"});
    }
}

TEST_F(TextCommandTest, ReportsAnUnreadableDocument) {
    EXPECT_EQ(run({"text", "/in/nowhere.md"}), 1);
    EXPECT_EQ(output_.errors, Lines{"packager: /in/nowhere.md: the document can't be read: " +
                                    platform::errorText(MemoryFileSystem::kNotFound)});
}

TEST_F(TextCommandTest, WarnsAboutAZeroByte) {
    ASSERT_EQ(show("a.md", std::string("one\n\ntwo\0three\n", 14)), 0);
    EXPECT_EQ(output_.errors, Lines{"packager: warning: /in/a.md: line 3: the document ends here at a zero "
                                    "byte: save it as UTF-8"});
}

TEST_F(TextCommandTest, WarnsAboutAByteOrderMark) {
    ASSERT_EQ(show("a.md", "\xEF\xBB\xBF# Title\n\n"), 0);
    EXPECT_EQ(output_.errors,
              Lines{"packager: warning: /in/a.md: there is a byte order mark before the first "
                    "line: save it without one"});
    EXPECT_EQ(output_.lines.front(), "\xEF\xBB\xBF# Title");
}

TEST_F(TextCommandTest, ReportsWrongUseWithTheHelp) {
    EXPECT_EQ(run({"text", "/in/a.md", "--tree", "--html"}), 2);
    EXPECT_EQ(output_.errors.front(), "packager: --html, --plain and --tree exclude each other");
    EXPECT_TRUE(output_.errors.back().starts_with("packager text FILE"));
}

}  // namespace
