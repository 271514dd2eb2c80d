#include "platform/posix/command_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using platform::splitCommandLine;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(SplitCommandLineTest, BlanksSeparateWords) {
    EXPECT_THAT(splitCommandLine("  a  bc\td "), ElementsAre("a", "bc", "d"));
    EXPECT_THAT(splitCommandLine(" \t "), IsEmpty());
    EXPECT_THAT(splitCommandLine(""), IsEmpty());
}

TEST(SplitCommandLineTest, QuotesKeepBlanksTogether) {
    EXPECT_THAT(splitCommandLine("\"a b\" c"), ElementsAre("a b", "c"));
    EXPECT_THAT(splitCommandLine("-x=\"a b\"c d"), ElementsAre("-x=a bc", "d"));
    EXPECT_THAT(splitCommandLine("a \"\" b"), ElementsAre("a", "", "b"));
}

TEST(SplitCommandLineTest, BackslashesAreOrdinary) {
    EXPECT_THAT(splitCommandLine("\"C:\\dir\\\" x"), ElementsAre("C:\\dir\\", "x"));
}

TEST(SplitCommandLineTest, AnOpenQuoteReachesToTheEnd) {
    EXPECT_THAT(splitCommandLine("a \"b c "), ElementsAre("a", "b c "));
}

}  // namespace
