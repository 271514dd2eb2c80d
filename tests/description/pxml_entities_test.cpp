#include "description/pxml_entities.h"

#include <gtest/gtest.h>

namespace {

std::string decoded(std::string_view text) {
    std::string out(text.size(), '?');
    out.resize(PXMLEntities::decode(text, out.data()));
    return out;
}

std::string escaped(std::string_view text) {
    std::string out;
    PXMLEntities::appendEscaped(out, text);
    return out;
}

TEST(PXMLEntities, DecodeReplacesTheFiveNamesInOnePass) {
    EXPECT_EQ(decoded("&amp;&lt;&apos;&quot;&gt;"), "&<'\">");
    EXPECT_EQ(decoded("&amp;lt;"), "&lt;");
    EXPECT_EQ(decoded("&AMP; &lt &#38; &"), "&AMP; &lt &#38; &");
    EXPECT_EQ(decoded(""), "");
}

TEST(PXMLEntities, DecodeStopsAtTheEndOfAViewThatGoesOn) {
    EXPECT_EQ(decoded(std::string_view("&amp;").substr(0, 4)), "&amp");
}

TEST(PXMLEntities, EscapeReplacesTheFiveCharacters) {
    EXPECT_EQ(escaped("a&b<c'd\"e>f"), "a&amp;b&lt;c&apos;d&quot;e&gt;f");
    EXPECT_EQ(escaped("plain"), "plain");
    EXPECT_EQ(escaped("&&"), "&amp;&amp;");
}

TEST(PXMLEntities, DecodeUndoesEscape) {
    std::string all;
    for (int c = 1; c < 256; ++c) {
        all += static_cast<char>(c);
    }
    EXPECT_EQ(decoded(escaped(all)), all);
}

}  // namespace
