#include "previewer/layout_check.h"

#include <gtest/gtest.h>

namespace {

constexpr Extent kPage{300, 200};
using Kind = LayoutFault::Kind;
using Kinds = std::vector<Kind>;

Kinds kindsOf(const std::vector<PlacedControl>& controls) {
    Kinds kinds;
    for (const LayoutFault& fault : findLayoutFaults(kPage, controls)) {
        kinds.push_back(fault.kind);
    }
    return kinds;
}

TEST(LayoutCheck, FindsNothingOnAPageThatIsInOrder) {
    EXPECT_EQ(kindsOf({{ControlKind::kText, {10, 10, 280, 20}, {100, 20}, "words"},
                       {ControlKind::kButton, {10, 40, 80, 30}, {60, 20}, "Next"}}),
              Kinds());
}

TEST(LayoutCheck, FindsWordsThatAreWiderOrHigherThanTheirControl) {
    const PlacedControl wide{ControlKind::kButton, {10, 40, 80, 30}, {90, 20}, "Next"};
    const std::vector<LayoutFault> faults = findLayoutFaults(kPage, {wide});
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0], (LayoutFault{Kind::kCut, {10, 40, 80, 30}, "Next"}));
    EXPECT_EQ(kindsOf({{ControlKind::kText, {10, 10, 80, 20}, {80, 40}, "two lines"}}), Kinds{Kind::kCut});
}

TEST(LayoutCheck, TakesNoOffenceAtAPixelOrTwo) {
    EXPECT_EQ(kindsOf({{ControlKind::kLabel, {10, 10, 80, 20}, {82, 22}, "words"},
                       {ControlKind::kCheckBox, {10, 30, 291, 20}, {}, ""}}),
              Kinds());
}

TEST(LayoutCheck, FindsWhatLiesBeyondThePage) {
    EXPECT_EQ(kindsOf({{ControlKind::kButton, {250, 40, 80, 30}, {60, 20}, "Next"}}), Kinds{Kind::kOutside});
    EXPECT_EQ(kindsOf({{ControlKind::kButton, {10, 180, 80, 30}, {60, 20}, "Next"}}), Kinds{Kind::kOutside});
    EXPECT_EQ(kindsOf({{ControlKind::kButton, {-10, 40, 80, 30}, {60, 20}, "Next"}}), Kinds{Kind::kOutside});
}

TEST(LayoutCheck, CountsOfATextOnlyWhatItsWordsCover) {
    EXPECT_EQ(kindsOf({{ControlKind::kText, {10, 10, 400, 300}, {100, 20}, "words"},
                       {ControlKind::kButton, {120, 10, 80, 30}, {60, 20}, "Next"}}),
              Kinds());
}

TEST(LayoutCheck, FindsControlsOnOneAnother) {
    const std::vector<LayoutFault> faults =
        findLayoutFaults(kPage, {{ControlKind::kText, {10, 10, 280, 20}, {100, 20}, "words"},
                                 {ControlKind::kButton, {50, 20, 80, 30}, {60, 20}, "Next"}});
    ASSERT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults[0], (LayoutFault{Kind::kOverlap, {10, 10, 120, 40}, "words / Next"}));
}

TEST(LayoutCheck, LetsPicturesLinesAndFramesLieUnderAnything) {
    for (const ControlKind kind : {ControlKind::kPicture, ControlKind::kLine, ControlKind::kFrame}) {
        EXPECT_EQ(kindsOf({{kind, {0, 0, 500, 500}, {}, ""},
                           {ControlKind::kButton, {10, 40, 80, 30}, {60, 20}, "Next"}}),
                  Kinds());
    }
}

}  // namespace
