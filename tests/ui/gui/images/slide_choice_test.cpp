#include "ui/gui/images/slide_choice.h"

#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

// The numbers in turn, from the first again after the last.
SlideChoice::RandomNumbers numbers(std::vector<std::uint32_t> values) {
    return
        [values = std::move(values), at = std::size_t{0}]() mutable { return values[at++ % values.size()]; };
}

TEST(SlideChoice, AppendsTheNumberToTheName) {
    SlideChoice slides(numbers({5}));
    EXPECT_EQ(slides.next("ProgressImg", 3), "ProgressImg2");
}

TEST(SlideChoice, AlwaysTakesTheOnlySlide) {
    SlideChoice slides(numbers({0, 7, 3}));
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(slides.next("S", 1), "S0");
    }
}

TEST(SlideChoice, DrawsAgainWhenItIsTheSameSlide) {
    SlideChoice slides(numbers({4, 4, 9, 2}));
    EXPECT_EQ(slides.next("S", 5), "S4");
    EXPECT_EQ(slides.next("S", 5), "S2");
}

TEST(SlideChoice, NeverShowsTheSameTwiceInARow) {
    std::uint32_t state = 1;
    SlideChoice slides([&state] { return (state = state * 1664525 + 1013904223) >> 16; });
    std::set<std::string> shown;
    std::optional<std::string> last;
    for (int i = 0; i < 200; ++i) {
        const std::optional<std::string> next = slides.next("S", 3);
        EXPECT_NE(next, last);
        shown.insert(next.value());
        last = next;
    }
    EXPECT_EQ(shown, (std::set<std::string>{"S0", "S1", "S2"}));
}

TEST(SlideChoice, EndsWithNumbersThatNeverChange) {
    SlideChoice slides(numbers({4}));
    EXPECT_EQ(slides.next("S", 5), "S4");
    EXPECT_EQ(slides.next("S", 5), "S0");
}

TEST(SlideChoice, HasNoSlideWithoutANameOrACount) {
    SlideChoice slides(numbers({1}));
    EXPECT_EQ(slides.next("", 5), std::nullopt);
    EXPECT_EQ(slides.next("S", 0), std::nullopt);
    EXPECT_EQ(slides.next("S", -3), std::nullopt);
}

}  // namespace
