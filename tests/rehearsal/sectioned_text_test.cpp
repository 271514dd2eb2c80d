#include "rehearsal/sectioned_text.h"

#include <gtest/gtest.h>

#include "rehearsal/fault_text.h"
#include "rehearsal/machine_format.h"

namespace {

std::string readingFault(const std::string& text) {
    return faultOf([&] { readSections(text); });
}

TEST(SectionedTextTest, HasSectionsLinesAndComments) {
    const SectionedText text = readSections("\xEF\xBB\xBF# head\r\n\r\n[a b]\n# of a\n  one  \n\ntwo\n[c]\n");
    EXPECT_EQ(text.comments, std::vector<std::string>{"# head"});
    ASSERT_EQ(text.sections.size(), 2U);
    EXPECT_EQ(text.sections[0].name, "a b");
    EXPECT_EQ(text.sections[0].line, 3);
    EXPECT_EQ(text.sections[0].comments, std::vector<std::string>{"# of a"});
    ASSERT_EQ(text.sections[0].lines.size(), 2U);
    EXPECT_EQ(text.sections[0].lines[0].text, "one");
    EXPECT_EQ(text.sections[0].lines[1].number, 7);
    EXPECT_TRUE(text.sections[1].lines.empty());
}

TEST(SectionedTextTest, NamesTheLineThatIsWrong) {
    EXPECT_EQ(readingFault("\nx\n"), "line 2: this is before the first section");
    EXPECT_EQ(readingFault("[a"), "line 1: the name of a section ends with ]");
    EXPECT_EQ(readingFault("[a]\n[ a ]"), "line 2: the section [a] is there already");
    EXPECT_EQ(readingFault("[a]\n\xFF"), "line 2: this isn't UTF-8");
    EXPECT_TRUE(readingFault("[a]\na\tb").starts_with("line 2: a control character"));
    EXPECT_TRUE(readingFault(std::string("[a]\n\0", 5)).starts_with("line 2: a control character"));
}

TEST(SectionedTextTest, HasALimitForBytesAndLines) {
    EXPECT_NE(readingFault(std::string(MachineFormat::kMostBytes + 1, ' ')), "");
    EXPECT_EQ(readingFault(std::string(MachineFormat::kMostLines, '\n')), "");
    EXPECT_NE(readingFault(std::string(MachineFormat::kMostLines + 1, '\n')), "");
}

}  // namespace
