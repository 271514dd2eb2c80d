#include "description/answers_file.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_file_system.h"

namespace {

struct AnswersFileTest : testing::Test {
    MemoryFileSystem files;
    AnswersFile answers{files};

    std::string valueIn(const AnswersFile& file) {
        const std::int32_t node = file.document().findByName("Value");
        return std::string(file.document().getText(node).value_or("(none)"));
    }
    static std::string withValue(const std::string& value) {
        return "<Root><DefValues><Value>" + value + "</Value></DefValues></Root>";
    }
};

TEST_F(AnswersFileTest, SeesWhetherTheFileExists) {
    files.addFile("/a.xml", "");
    EXPECT_TRUE(answers.exists("/a.xml"));
    EXPECT_FALSE(answers.exists("/b.xml"));
}

TEST_F(AnswersFileTest, ReadsThePathOnce) {
    files.addFile("/a.xml", withValue("first"));
    EXPECT_EQ(answers.load("/a.xml"), 0);
    files.addFile("/a.xml", withValue("second"));
    EXPECT_EQ(answers.load("/a.xml"), 0);
    EXPECT_EQ(valueIn(answers), "first");
}

TEST_F(AnswersFileTest, ReadsAnotherPathAnew) {
    files.addFile("/a.xml", withValue("first"));
    files.addFile("/b.xml", withValue("second"));
    answers.load("/a.xml");
    EXPECT_EQ(answers.load("/b.xml"), 0);
    EXPECT_EQ(valueIn(answers), "second");
}

TEST_F(AnswersFileTest, ReportsAFileThatCannotBeRead) {
    EXPECT_NE(answers.load("/missing.xml"), 0);
    EXPECT_FALSE(answers.hasValues());
    files.addFile("/missing.xml", withValue("late"));
    EXPECT_EQ(answers.load("/missing.xml"), 0);
    EXPECT_EQ(valueIn(answers), "late");
}

TEST_F(AnswersFileTest, KnowsWhetherThereAreValues) {
    EXPECT_FALSE(answers.hasValues());
    files.addFile("/a.xml", "<Root><Other/></Root>");
    answers.load("/a.xml");
    EXPECT_FALSE(answers.hasValues());
    files.addFile("/b.xml", withValue("x"));
    answers.load("/b.xml");
    EXPECT_TRUE(answers.hasValues());
}

}  // namespace
