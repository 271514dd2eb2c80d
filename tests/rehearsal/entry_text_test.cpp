#include "rehearsal/entry_text.h"

#include <gtest/gtest.h>

#include "base/errors.h"

namespace {

std::string readAll(std::string_view line) {
    return EntryReader(line, 7).takeText({});
}

std::string faultOf(std::string_view line) {
    try {
        readAll(line);
    } catch (const GenericError& error) {
        return error.what();
    }
    return "";
}

TEST(EntryTextTest, StaysPlainWhereItReadsBack) {
    for (const char* text : {"a", "C:\\a b\\c", "Grüße", "a # b", "x=y"}) {
        EXPECT_EQ(entryText(text, " = "), text);
        EXPECT_EQ(readAll(text), text);
    }
}

TEST(EntryTextTest, IsQuotedWhereItWouldBeReadAsSomethingElse) {
    EXPECT_EQ(entryText("", ""), "\"\"");
    EXPECT_EQ(entryText(" a", ""), "\" a\"");
    EXPECT_EQ(entryText("#a", ""), "\"#a\"");
    EXPECT_EQ(entryText("[a]", ""), "\"[a]\"");
    EXPECT_EQ(entryText("a = b", " = "), "\"a = b\"");
    EXPECT_EQ(entryText("a =", " = "), "\"a =\"");
    EXPECT_EQ(entryText("a = b", ""), "a = b");
}

TEST(EntryTextTest, ShowsWhatNobodyWouldSee) {
    EXPECT_EQ(quotedText(std::string_view("\n\r\t\0\x1B\"\\", 7)), "\"\\n\\r\\t\\0\\x1b\\\"\\\\\"");
    EXPECT_EQ(quotedText("\xE2\x80\xAE"), "\"\\xe2\\x80\\xae\"");  // turns the direction of reading
    EXPECT_EQ(quotedText("\xFF"), "\"\\xff\"");
    EXPECT_EQ(entryText("a\tb", ""), "\"a\\tb\"");
}

TEST(EntryTextTest, ReadsBackWhateverItIs) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    EXPECT_EQ(readAll(quotedText(all)), all);
    EXPECT_EQ(readAll(entryText(all, "")), all);
}

TEST(EntryReaderTest, StopsAtTheFirstOfTheStops) {
    EntryReader reader("a : \"b = c\" = d = e", 1);
    EXPECT_EQ(reader.takeText({" : ", " = "}), "a");
    EXPECT_FALSE(reader.take(" = "));
    EXPECT_TRUE(reader.take(" : "));
    EXPECT_EQ(reader.takeText({" = "}), "b = c");
    EXPECT_TRUE(reader.take(" = "));
    EXPECT_EQ(reader.takeText({}), "d = e");
    EXPECT_TRUE(reader.isAtEnd());
}

TEST(EntryReaderTest, SaysInWhichLineSomethingIsWrong) {
    EXPECT_EQ(faultOf("\"a"), "line 7: the closing quote is missing");
    EXPECT_EQ(faultOf("\"a\" b"), "line 7: something follows the closing quote");
    for (const char* text : {"\"\\q\"", "\"\\x1\"", "\"\\xg0\"", "\"\\", "\"\\x"}) {
        EXPECT_NE(faultOf(text), "") << text;
    }
}

}  // namespace
