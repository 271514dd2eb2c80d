#include "support/debug_output.h"

#include <gtest/gtest.h>

#include <string>

#include "fakes/debug_lines.h"

namespace {

TEST(DebugOutputTest, GoesToTheSinkOnly) {
    OUtils::debugOutput("nobody hears %i\n", 1);
    const DebugLines lines;
    OUtils::debugOutput("heard %i\n", 2);
    EXPECT_EQ(0, DebugLines::count("nobody hears 1\n"));
    EXPECT_EQ(1, DebugLines::count("heard 2\n"));
    OUtils::debugOutput("%s", std::string(2000, 'x').c_str());
    EXPECT_EQ(1, DebugLines::count(std::string(1023, 'x')));
}

TEST(DebugOutputTest, GivesTheEarlierSinkBack) {
    const OUtils::DebugSink sink = [](const char*) {};
    EXPECT_EQ(nullptr, OUtils::setDebugSink(sink));
    EXPECT_EQ(sink, OUtils::setDebugSink(nullptr));
}

}  // namespace
