#include "engine/alias_extractor.h"

#include "base/errors.h"
#include "engine/file_contents.h"
#include "engine_fixture.h"

namespace {

class AliasExtractorTest : public EngineTest {
protected:
    AliasExtractorTest() { files_.addDirectory("/dest"); }

    std::string errorOf(const char* alias, const char* directory) {
        try {
            extractor_.extractAlias(alias, directory, false, false);
        } catch (const InstallerError& error) {
            return error.what();
        }
        return "no error";
    }

    FileContents contents_{cabinet_, expressions_, console_};
    AliasExtractor extractor_{cabinet_, contents_, files_};
};

TEST_F(AliasExtractorTest, WritesTheEntryUnderItsOwnName) {
    pack({{"tool", "real.exe", "content"}});
    EXPECT_EQ(extractor_.extractAlias("tool", "/dest", false, false), "/dest\\real.exe");
    EXPECT_EQ(files_.content("/dest/real.exe"), "content");
}

TEST_F(AliasExtractorTest, ExpandsVariablesWhenAsked) {
    variables_.set("NAME", "value");
    pack({{"a", "a.txt", "[NAME]"}});
    extractor_.extractAlias("a", "/dest/", true, false);
    EXPECT_EQ(files_.content("/dest/a.txt"), "value");
    extractor_.extractAlias("a", "/dest/", false, false);
    EXPECT_EQ(files_.content("/dest/a.txt"), "[NAME]");
}

TEST_F(AliasExtractorTest, DoesNotExpandContentFromOneMebibyteOn) {
    variables_.set("NAME", "v");
    const std::string large = "[NAME]" + std::string(0x100000 - 6, 'x');
    pack({{"large", "large", large}, {"small", "small", large.substr(0, large.size() - 1)}});
    extractor_.extractAlias("large", "/dest", true, false);
    EXPECT_EQ(files_.content("/dest/large"), large);
    extractor_.extractAlias("small", "/dest", true, false);
    EXPECT_EQ(files_.content("/dest/small").substr(0, 2), "vx");
}

TEST_F(AliasExtractorTest, StripsTheLastExtensionOfAnyKind) {
    pack({{"a", "a.tar.gz", ""}, {"b", "noext", ""}, {"c", ".hidden", ""}, {"d", "x..exe", ""}});
    files_.addDirectory("/de.st");
    EXPECT_EQ(extractor_.extractAlias("a", "/dest", false, true), "/dest\\a.tar");
    EXPECT_EQ(extractor_.extractAlias("b", "/de.st", false, true), "/de.st\\noext");
    EXPECT_EQ(extractor_.extractAlias("c", "/dest", false, true), "/dest\\.hidden");
    EXPECT_EQ(extractor_.extractAlias("d", "/dest", false, true), "/dest\\x..exe");
}

TEST_F(AliasExtractorTest, ThrowsForEachFailure) {
    pack({{"a", "a.txt", "x"}});
    EXPECT_EQ(errorOf("", "/dest"), "ERROR: Alias and/or destingation are not specified!");
    EXPECT_EQ(errorOf("", "/dest"), "ERROR: Alias and/or destingation are not specified!");
    EXPECT_EQ(errorOf("a", ""), "ERROR: Alias and/or destingation are not specified!");
    EXPECT_EQ(errorOf("a", ""), "ERROR: Alias and/or destingation are not specified!");
    EXPECT_EQ(errorOf("none", "/dest"), "WARNING: Alias \"none\" is not included in the installation");
    EXPECT_EQ(errorOf("a", "/none"), "ERROR: Destination directory does NOT exist (/none)!");
    files_.setReadOnly("/dest");
    EXPECT_EQ(errorOf("a", "/dest"), "ERROR: Could not create file (/dest\\a.txt)!");
}

TEST_F(AliasExtractorTest, NoticesAFullDisk) {
    pack({{"a", "a.txt", "content"}});
    files_.setFreeSpace(3);
    EXPECT_EQ(errorOf("a", "/dest"), "ERROR: Could not create file (/dest\\a.txt)!");
}

}  // namespace
