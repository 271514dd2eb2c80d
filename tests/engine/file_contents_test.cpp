#include "engine/file_contents.h"

#include "engine_fixture.h"

namespace {

class FileContentsTest : public EngineTest {
protected:
    std::string expanded(const std::string& content, std::size_t limit = FileContents::kInstalledFileLimit) {
        FileContent file;
        file.bytes = content;
        contents_.expandVariables(file, limit, "file");
        return std::string(file.bytes);
    }

    FileContents contents_{cabinet_, expressions_, console_};
};

TEST_F(FileContentsTest, ReadsContentAndDigestByAlias) {
    pack({{"a", "a.txt", "first"}, {"b", "b.txt", ""}});
    FileContent content;
    ASSERT_TRUE(contents_.read("a", content));
    EXPECT_EQ(content.bytes, "first");
    EXPECT_EQ(content.digest, md5Of("first", 5));
    FileContent empty;
    ASSERT_TRUE(contents_.read("b", empty));
    EXPECT_EQ(empty.bytes, "");
}

TEST_F(FileContentsTest, DoesNotFindAMissingAlias) {
    pack({{"a", "a.txt", "first"}});
    FileContent content;
    EXPECT_FALSE(contents_.read("A", content));
    EXPECT_FALSE(contents_.read("", content));
}

TEST_F(FileContentsTest, PutsValuesInThePlaceOfReferences) {
    variables_.set("NAME", "value");
    EXPECT_EQ(expanded("a=[NAME]\r\nb=[1]"), "a=value\r\nb=[1]");
    EXPECT_EQ(expanded(""), "");
}

TEST_F(FileContentsTest, EndsTheContentAtAZeroByte) {
    EXPECT_EQ(expanded(std::string("ab\0cd", 5)), "ab");
}

TEST_F(FileContentsTest, LeavesContentOfTheLimitAndAboveAlone) {
    variables_.set("NAME", "v");
    const std::string small = "[NAME]" + std::string(8185, 'x');
    EXPECT_EQ(expanded(small), "v" + std::string(8185, 'x'));
    const std::string large = "[NAME]" + std::string(8186, 'x');
    EXPECT_EQ(expanded(large), large);
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(FileContentsTest, CutsAndSaysSoWhenTheExpansionDoesNotFit) {
    variables_.set("NAME", std::string(100, 'v'));
    const std::string result = expanded("[NAME]" + std::string(8180, 'x'));
    EXPECT_EQ(result, std::string(100, 'v') + std::string(8091, 'x'));
    EXPECT_EQ(log_.lines(),
              std::vector<std::string>{
                  "WARNING: The content of file is cut to 8191 bytes by the expansion of its variables"});
}

TEST_F(FileContentsTest, TakesAnExpansionThatJustFits) {
    EXPECT_EQ(expanded(std::string(8191, 'x')), std::string(8191, 'x'));
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(FileContentsTest, WritesPathsAsTheSystemDoesAndKeepsEverythingElse) {
    variables_.set("DIR", "\\opt\\demo");
    variables_.set("RE", "\\d");
    describe("<FN Dest='[DIR]'>f</FN>");
    EXPECT_EQ(expanded("dir=[DIR] re=[RE] \\n \\\\server\\share"),
              "dir=" + writtenPath("\\opt\\demo") + " re=\\d \\n \\\\server\\share");
    EXPECT_EQ(variables_.get("DIR"), "\\opt\\demo");
}

}  // namespace
