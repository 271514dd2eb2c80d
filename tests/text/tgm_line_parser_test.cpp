#include "text/tgm_line_parser.h"

#include <gtest/gtest.h>

#include "text/tgm_test_support.h"

namespace {

std::string logOf(const std::string& text, TGMParseOptions options = {}) {
    std::string log;
    options.debugLog = &log;
    parseText(text, options);
    return log;
}

TEST(TGMLineParser, WritesTheLinesAndBothTrees) {
    EXPECT_EQ(
        "   0 : [ H1 ] (   0) Title\n"
        "   1 : [PLN ] (   2) a *b*\n"
        "   2 : [BLNK] (   2)\n"
        "   3 : [UNLI] (   4) c\n"
        "\n\n============ Topology Tree: ============\n\n"
        "+[DOC ]\n|     +[ H1 ] : Title\n|     +[PAR ] : a *b*\n|     +[UNLI]\n|     |     +[ LI ]\n"
        "|     |     |     +[PLN ] : c\n"
        "\n\n\n\n============ Finalized Tree: ============\n\n"
        "+[DOC ]\n|     +[ H1 ] : Title\n|     +[PAR ]\n|     |     +[PLN ] : a \n|     |     +[ITAL] : b\n"
        "|     +[UNLI]\n|     |     +[ LI ]\n|     |     |     +[PLN ] : c\n"
        "\n\n",
        logOf("# Title\na *b*\n\n- c"));
}

}  // namespace
