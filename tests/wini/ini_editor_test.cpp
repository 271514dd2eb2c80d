#include "wini/ini_editor.h"

#include <gtest/gtest.h>

namespace {

struct Case {
    const char* name;
    IniEdit edit;
    std::vector<std::string> lines;
    std::vector<std::string> edited;
    std::vector<std::string> lost;
};

// Each step of the walk, and where two of them meet.
const Case kCases[] = {
    {"AnEmptyFileGetsSectionAndKey", {"S", "k", "v", nullptr}, {}, {"[S]", "k=v"}, {}},
    {"AMissingSectionGoesToTheEnd",
     {"S", "k", "v", nullptr},
     {"[A]", "a=1", ""},
     {"[A]", "a=1", "", "[S]", "k=v"},
     {}},
    {"AKeyInTheLastSectionIsAppended",
     {"S", "k", "v", nullptr},
     {"[S]", "a=1", "", "; end"},
     {"[S]", "a=1", "", "; end", "k=v"},
     {}},
    {"AKeyGoesBehindTheLastKeyOfItsSection",
     {"S", "k", "v", nullptr},
     {"[S]", "a=1", "b=2", "", "; of B", "[B]", "c=3"},
     {"[S]", "a=1", "b=2", "k=v", "", "; of B", "[B]", "c=3"},
     {}},
    {"AKeyOfAnEmptySectionGoesBehindTheHeader",
     {"S", "k", "v", nullptr},
     {"; top", "", "[S]", "", "[B]", "c=3"},
     {"; top", "", "[S]", "k=v", "", "[B]", "c=3"},
     {}},
    {"AKeyGoesInFrontOfAnother",
     {"S", "k", "v", "b"},
     {"[S]", "a=1", "b=2", "c=3", "[B]"},
     {"[S]", "a=1", "k=v", "b=2", "c=3", "[B]"},
     {}},
    {"AKeyGoesInFrontOfAnotherInTheLastSection",
     {"S", "k", "v", "b"},
     {"[S]", "a=1", "b=2", "c=3"},
     {"[S]", "a=1", "k=v", "b=2", "c=3"},
     {}},
    {"AMissingBeforeKeyMeansTheSectionsEnd",
     {"S", "k", "v", "x"},
     {"[S]", "a=1", "", "[B]", "x=2"},
     {"[S]", "a=1", "k=v", "", "[B]", "x=2"},
     {}},
    {"ABeforeKeyOfAnotherSectionDoesNotCount",
     {"S", "k", "v", "x"},
     {"[B]", "x=2", "[S]", "a=1"},
     {"[B]", "x=2", "[S]", "a=1", "k=v"},
     {}},
    {"AValueIsReplacedInItsPlace",
     {"S", "k", "v", nullptr},
     {"[S]", "a=1", "k= old ", "b=2", "k=second"},
     {"[S]", "a=1", "k=v", "b=2", "k=second"},
     {" old "}},
    {"AValueMovesInFrontOfALaterKey",
     {"S", "k", "v", "b"},
     {"[S]", "k=old", "a=1", "b=2", "[B]"},
     {"[S]", "a=1", "k=v", "b=2", "[B]"},
     {"old"}},
    {"AValueMovesInFrontOfAnEarlierKey",
     {"S", "k", "v", "b"},
     {"[S]", "b=2", "a=1", "k=old", "[B]"},
     {"[S]", "k=v", "b=2", "a=1", "[B]"},
     {"old"}},
    {"AValueMovesToTheSectionsEndWithoutTheBeforeKey",
     {"S", "k", "v", "x"},
     {"[S]", "k=old", "a=1", "", "[B]"},
     {"[S]", "a=1", "k=v", "", "[B]"},
     {"old"}},
    {"AllOfAKeyGoWhenItMoves",
     {"S", "k", "v", "b"},
     {"[S]", "k=1", "k=2", "b=2"},
     {"[S]", "k=v", "b=2"},
     {"1", "2"}},
    {"AKeyInFrontOfItselfIsAddedOnceMore",
     {"S", "k", "v", "k"},
     {"[S]", "k=old", "[B]"},
     {"[S]", "k=v", "k=old", "[B]"},
     {}},
    {"TheFirstHeaderBehindTheSectionEndsTheWalk",
     {"S", "k", "v", nullptr},
     {"[S]", "[S]", "k=old"},
     {"[S]", "k=v", "[S]", "k=old"},
     {}},
    {"NamesMatchInTheirCase",
     {"S", "k", "v", nullptr},
     {"[s]", "k=1", "[S]", "K=2"},
     {"[s]", "k=1", "[S]", "K=2", "k=v"},
     {}},
    {"BlanksBelongToNames",
     {"S", "k", "v", nullptr},
     {"[S]", "k =1", " k=2"},
     {"[S]", "k =1", " k=2", "k=v"},
     {}},
    {"AKeyInFrontOfAnySectionIsNotMet", {"S", "k", "v", nullptr}, {"k=1", "[S]"}, {"k=1", "[S]", "k=v"}, {}},
    {"HeadersNeedBothBrackets",
     {"S", "k", "v", nullptr},
     {"[S]", "a=1", "[B", "k=old"},
     {"[S]", "a=1", "[B", "k=v"},
     {"old"}},
    {"ASectionsNameEndsAtTheLastBracket",
     {"a]b", "k", "v", nullptr},
     {"[a]b] x", "k=old"},
     {"[a]b] x", "k=v"},
     {"old"}},
    {"CommentsAreNoKeys", {"S", ";k", "v", nullptr}, {"[S]", ";k=1"}, {"[S]", ";k=1", ";k=v"}, {}},
    {"AReturnThatIsPartOfALineStays",
     {"S", "k", "v", nullptr},
     {"[S]\r", "k=old\r", "a=1\r"},
     {"[S]\r", "k=v\r", "a=1\r"},
     {"old\r"}},
    {"TheFirstLineOfAKeyIsDeleted",
     {"S", "k", nullptr, nullptr},
     {"[A]", "k=0", "[S]", "k=1", "k=2"},
     {"[A]", "k=0", "[S]", "k=2"},
     {"1"}},
    {"ADeletionLooksThroughAllSectionsOfTheName",
     {"S", "k", nullptr, nullptr},
     {"[S]", "a=1", "[B]", "k=0", "[S]", "k=1"},
     {"[S]", "a=1", "[B]", "k=0", "[S]"},
     {"1"}},
    {"AMissingKeyIsNotDeleted", {"S", "k", nullptr, nullptr}, {"[S]", "a=1"}, {"[S]", "a=1"}, {}},
    {"ASectionIsDeletedWithItsKeys",
     {"S", nullptr, nullptr, nullptr},
     {"[A]", "a=1", "[S]", "b=2", "; stays", "word", "c=3", "[B]", "d=4", "[S]", "e=5"},
     {"[A]", "a=1", "; stays", "word", "[B]", "d=4"},
     {}},
};

class IniEditorTest : public testing::TestWithParam<Case> {};

TEST_P(IniEditorTest, EditsAsTold) {
    const Case& test = GetParam();
    const std::vector<std::string_view> lines(test.lines.begin(), test.lines.end());
    IniEditor editor(test.edit);
    editor.run(lines);
    EXPECT_EQ(std::vector<std::string>(editor.lines().begin(), editor.lines().end()), test.edited);
    EXPECT_EQ(std::vector<std::string>(editor.lostValues().begin(), editor.lostValues().end()), test.lost);
}

INSTANTIATE_TEST_SUITE_P(Steps, IniEditorTest, testing::ValuesIn(kCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(IniEditorSizeTest, WalksOverManyLinesOnce) {
    std::vector<std::string_view> lines(2000000, "a=1");
    lines[0] = "[S]";
    IniEditor deletion({"S", nullptr, nullptr, nullptr});
    deletion.run(lines);
    EXPECT_TRUE(deletion.lines().empty());
    IniEditor move({"S", "a", "v", "x"});
    move.run(lines);
    EXPECT_EQ(move.lines().size(), 2U);
    EXPECT_EQ(move.lostValues().size(), 1999999U);
}

}  // namespace
