#include "base/wildcard.h"

#include <gtest/gtest.h>

namespace {

TEST(WildcardTest, FitsNamesAsPatternsDo) {
    struct Case {
        const char* pattern;
        const char* name;
        bool fits;
    };
    const Case cases[] = {{"*", "", true},
                          {"*", "a.b", true},
                          {"*.*", "none", true},
                          {"a?c", "abc", true},
                          {"a?c", "ac", false},
                          {"*.log", "x.LOG", true},
                          {"*.log", "x.logs", false},
                          {"a*b*c", "aXbYc", true},
                          {"a*b*c", "acb", false},
                          {"", "", true},
                          {"", "a", false},
                          {"a**", "a", true},
                          {"?", "", false},
                          {"*a", "aaab", false}};
    for (const Case& c : cases) {
        EXPECT_EQ(matchesWildcard(c.pattern, c.name), c.fits) << c.pattern << " " << c.name;
    }
}

}  // namespace
