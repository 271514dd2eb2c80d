#include "text/tgm_span_scan.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Plain pieces in quotation marks, italic ones after "i", bold ones after "b".
std::string scan(std::string_view text) {
    std::vector<TGMPiece> pieces{{"left over", kTgmBold}};
    scanTgmSpans(text, pieces);
    std::string all;
    for (const TGMPiece& piece : pieces) {
        all += piece.type == kTgmPlain ? "" : piece.type == kTgmItalic ? "i" : "b";
        all += "'" + std::string(piece.text) + "'";
    }
    return all;
}

struct Case {
    const char* text;
    const char* pieces;
};

class TGMSpanScan : public testing::TestWithParam<Case> {};

TEST_P(TGMSpanScan, CutsIntoPieces) {
    EXPECT_EQ(GetParam().pieces, scan(GetParam().text)) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(Plain, TGMSpanScan,
                         testing::Values(Case{"", ""}, Case{"abc", "'abc'"}, Case{"a\\", "'a\\'"},
                                         Case{"\\*a\\*", "'\\*a\\*'"}, Case{"\\\\*a*", "'\\\\'i'a'"}));

INSTANTIATE_TEST_SUITE_P(
    Opening, TGMSpanScan,
    testing::Values(Case{"*a*", "i'a'"}, Case{"_a_", "i'a'"}, Case{"**a**", "b'a'"}, Case{"__a__", "b'a'"},
                    // The character after the delimiters must exist and differ from them.
                    Case{"a*", "'a*'"}, Case{"a**", "'a**'"}, Case{"***", "'***'"},
                    // Of three the first is plain.
                    Case{"***a**", "'*'b'a'"},
                    // Delimiters don't mix.
                    Case{"*a_", "'*a_'"}, Case{"*_a*", "i'_a'"}, Case{"a_b_c", "'a'i'b''c'"},
                    Case{"2 * 3 * 4", "'2 'i' 3 '' 4'"}));

INSTANTIATE_TEST_SUITE_P(
    Closing, TGMSpanScan,
    testing::Values(
        // A single span doesn't close at the first of two, but at the last of a row.
        Case{"*a**b*", "i'a*''b*'"}, Case{"*a***", "i'a**'"},
        // The character before the close may be the last of an escape, the close itself may not.
        Case{"*a\\**", "i'a\\*'"}, Case{"*\\**", "i'\\*'"}, Case{"*a\\*", "'*a\\*'"}, Case{"*a\\", "'*a\\'"},
        // The second delimiter of a double span may be anything that isn't followed by one.
        Case{"**ab*c", "b'ab'"}, Case{"**ab*cd", "b'ab''d'"}, Case{"**ab*", "'**ab*'"},
        Case{"**ab*c*", "'**ab*c*'"}, Case{"**a*b*c*d", "b'a*b*c'"}));

INSTANTIATE_TEST_SUITE_P(Unclosed, TGMSpanScan,
                         testing::Values(Case{"*abc", "'*abc'"}, Case{"x *a", "'x *a'"},
                                         // The rest is plain, other delimiters included.
                                         Case{"**a _b_", "'**a _b_'"},
                                         Case{"*a* **b _c_", "i'a'' **b _c_'"}));

INSTANTIATE_TEST_SUITE_P(AfterASpan, TGMSpanScan,
                         testing::Values(Case{"*a*_b_", "i'a''_b_'"}, Case{"*a* _b_", "i'a'' 'i'b'"},
                                         Case{"*a*\\_b_", "i'a''\\'i'b'"}, Case{"**a***b*", "b'a*''b*'"}));

TEST(TGMSpanScanTime, HostileTextsAreReadOnce) {
    const std::size_t megabyte = 1 << 20;
    for (const std::string part : {"*", "_", "*a", "**a", "_*", "**", "*a\\", "\\*", "**__a", "*a*b"}) {
        std::string text;
        while (text.size() < megabyte) {
            text += part;
        }
        std::vector<TGMPiece> pieces;
        scanTgmSpans(text, pieces);
        std::size_t bytes = 0;
        for (const TGMPiece& piece : pieces) {
            bytes += piece.text.size();
        }
        EXPECT_LE(bytes, text.size()) << part;
        EXPECT_GE(bytes, text.size() / 4) << part;
    }
}

}  // namespace
