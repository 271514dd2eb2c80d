#include "base/json_text.h"

#include <gtest/gtest.h>

namespace {

using OUtils::jsonString;

TEST(JsonText, QuotesText) {
    EXPECT_EQ(jsonString(""), R"("")");
    EXPECT_EQ(jsonString("plain \xC3\xA4 \xF0\x9F\x98\x80"), "\"plain \xC3\xA4 \xF0\x9F\x98\x80\"");
}

TEST(JsonText, EscapesQuotesAndBackslashes) {
    EXPECT_EQ(jsonString(R"(C:\a "b")"), R"("C:\\a \"b\"")");
}

TEST(JsonText, EscapesWhatATerminalObeys) {
    EXPECT_EQ(jsonString(std::string("\0\x01\t\r\n\x1b\x7f", 7)),
              R"("\u0000\u0001\u0009\u000d\u000a\u001b\u007f")");
    EXPECT_EQ(jsonString("\xC2\x9B\xE2\x80\xAE"), R"("\u009b\u202e")");
}

TEST(JsonText, ReplacesWhatIsNotUtf8) {
    EXPECT_EQ(jsonString("a\xFF\xC3"), "\"a\xEF\xBF\xBD\xEF\xBF\xBD\"");
    EXPECT_EQ(jsonString("\xED\xA0\x80"), "\"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\"")
        << "half of a surrogate";
}

}  // namespace
