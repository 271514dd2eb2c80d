#include "description/file_sets.h"

#include "description/description_fixture.h"

namespace {

class FileSetsTest : public DescriptionTest {
protected:
    void read(const std::string& text, const SizeOfAlias& sizes = {}) {
        parse("<TandrelGroupInstallation>" + text + "</TandrelGroupInstallation>");
        sets_.readFileSets(sizes);
    }
    // The one file of a set with these attributes and this text.
    FileEntry file(const std::string& attributes, const std::string& text) {
        read("<FileSet Name=\"A\"><FN " + attributes + ">" + text + "</FN></FileSet>");
        return sets_.getFiles().empty() ? FileEntry() : sets_.getFiles().back();
    }

    FileSets sets_{document_, expressions_};
};

TEST_F(FileSetsTest, ASetKeepsNameDescriptionAndCondition) {
    read("<FileSet name=\"Core\" Desc=\"All\" Condition=\"[X]==1\"/>");
    ASSERT_EQ(sets_.getFileSets().size(), 1U);
    EXPECT_STREQ(sets_.getFileSets()[0].name.c_str(), "Core");
    EXPECT_STREQ(sets_.getFileSets()[0].description.c_str(), "All");
    EXPECT_STREQ(sets_.getFileSets()[0].condition.c_str(), "[X]==1");
}

TEST_F(FileSetsTest, ASetWithoutNameIsSkippedWithItsFiles) {
    read("<FileSet><FN>a</FN></FileSet><FileSet Name=\"B\"><FN>b</FN></FileSet>");
    EXPECT_EQ(sets_.getFileSets().size(), 1U);
    ASSERT_EQ(sets_.getFiles().size(), 1U);
    EXPECT_EQ(sets_.getFiles()[0].fileName, "b");
    EXPECT_EQ(sets_.getFiles()[0].fileSet, 0);
}

TEST_F(FileSetsTest, WithinASetTheLastFileStandsFirst) {
    read(
        "<FileSet Name=\"A\"><FN>1</FN><FN>2</FN></FileSet><FileSet "
        "Name=\"B\"><FN>3</FN><FN>4</FN></FileSet>");
    std::string order;
    for (const FileEntry& entry : sets_.getFiles()) {
        order += entry.fileName;
    }
    EXPECT_EQ(order, "2143");
    EXPECT_EQ(sets_.getFiles()[2].fileSet, 1);
}

TEST_F(FileSetsTest, SetsAreFoundAtAnyLevel) {
    read("<Dialogs><Welcome><FileSet Name=\"A\"><FN>a</FN></FileSet></Welcome></Dialogs>");
    EXPECT_EQ(sets_.getFiles().size(), 1U);
}

TEST_F(FileSetsTest, TheAliasIsThePathWithoutSeparators) {
    const FileEntry entry = file("", "a/b\\c.txt");
    EXPECT_EQ(entry.alias, "abc.txt");
    EXPECT_EQ(entry.fileName, "c.txt");
}

TEST_F(FileSetsTest, APathWithoutSeparatorIsBoth) {
    const FileEntry entry = file("", "c.txt");
    EXPECT_EQ(entry.alias, "c.txt");
    EXPECT_EQ(entry.fileName, "c.txt");
}

TEST_F(FileSetsTest, AnOwnAliasWins) {
    EXPECT_EQ(file("Alias=\"Banner\"", "gui/banner.png").alias, "Banner");
}

TEST_F(FileSetsTest, FlagsCountByTheirPresence) {
    const FileEntry entry = file(
        "Executable=\"0\" ExpandVarsInFile=\"0\" OkIfMissing=\"\" BackupExisting=\"0\" Dest=\"[D]/x\" "
        "Condition=\"1\"",
        "a");
    EXPECT_TRUE(entry.executable);
    EXPECT_TRUE(entry.expandVars);
    EXPECT_TRUE(entry.okIfMissing);
    EXPECT_TRUE(entry.backupExisting);
    EXPECT_EQ(entry.dest, "[D]/x");
    EXPECT_EQ(entry.condition, "1");
    const FileEntry plain = file("", "a");
    EXPECT_FALSE(plain.executable || plain.expandVars || plain.okIfMissing || plain.backupExisting);
}

TEST_F(FileSetsTest, TheEndingIsOnlyStrippedFromPrograms) {
    EXPECT_FALSE(file("StripExeExt=\"1\"", "a").stripExeExt);
    EXPECT_TRUE(file("StripExeExt=\"1\" Executable=\"1\"", "a").stripExeExt);
    EXPECT_FALSE(file("StripExeExt=\"0\" Executable=\"1\"", "a").stripExeExt);
}

TEST_F(FileSetsTest, TheSizeComesFromTheCabinetByAlias) {
    read("<FileSet Name=\"A\"><FN Alias=\"X\">a/b</FN><FN>c</FN></FileSet>",
         [](const std::string& alias) { return alias == "X" ? 42 : 0; });
    ASSERT_EQ(sets_.getFiles().size(), 2U);
    EXPECT_EQ(sets_.getFiles()[0].size, 0);
    EXPECT_EQ(sets_.getFiles()[1].size, 42);
}

TEST_F(FileSetsTest, AFileWithoutTextIsSkipped) {
    read("<FileSet Name=\"A\"><FN/><FN></FN><FN>a</FN><Other>b</Other></FileSet>");
    EXPECT_EQ(sets_.getFiles().size(), 1U);
}

TEST_F(FileSetsTest, TextsAreCutAtTheirLimits) {
    const std::string text(2000, 'x');
    const FileEntry entry = file("Dest=\"" + text + "\" Condition=\"" + text + "\"", text);
    EXPECT_EQ(entry.dest.size(), 1558U);
    EXPECT_EQ(entry.condition.size(), 510U);
    EXPECT_EQ(entry.alias.size(), 258U);
    EXPECT_EQ(entry.fileName.size(), 258U);
    read("<FileSet Name=\"" + text + "\" Desc=\"" + text + "\" Condition=\"" + text + "\"/>");
    EXPECT_EQ(sets_.getFileSets().back().name.view().size(), 198U);
    EXPECT_EQ(sets_.getFileSets().back().description.view().size(), 1022U);
    EXPECT_EQ(sets_.getFileSets().back().condition.view().size(), 510U);
}

TEST_F(FileSetsTest, AnInstallTypeIsOnlyDefaultWithEditFileSets) {
    read(
        "<InstallType Name=\"A\" Default=\"1\"><Desc>About</Desc></InstallType>"
        "<InstallType Name=\"B\" Default=\"1\" EditFileSets=\"2\"/>");
    ASSERT_EQ(sets_.getInstallTypes().size(), 2U);
    EXPECT_STREQ(sets_.getInstallTypes()[0].description.c_str(), "About");
    EXPECT_EQ(sets_.getInstallTypes()[0].isDefault, 0);
    EXPECT_EQ(sets_.getInstallTypes()[0].editFileSets, 0);
    EXPECT_EQ(sets_.getInstallTypes()[1].isDefault, 1);
    EXPECT_EQ(sets_.getInstallTypes()[1].editFileSets, 2);
}

TEST_F(FileSetsTest, StartsAnewWhenItReadsAgain) {
    read("<FileSet Name=\"A\"><FN>a</FN></FileSet>");
    sets_.readFileSets({});
    EXPECT_EQ(sets_.getFileSets().size(), 1U);
    EXPECT_EQ(sets_.getFiles().size(), 1U);
}

TEST_F(FileSetsTest, ReadsAHundredThousandFiles) {
    std::string text = "<FileSet Name=\"A\">";
    for (int i = 0; i < 100000; ++i) {
        text += "<FN Dest=\"[D]\">f" + std::to_string(i) + "</FN>";
    }
    read(text + "</FileSet>");
    ASSERT_EQ(sets_.getFiles().size(), 100000U);
    EXPECT_EQ(sets_.getFiles()[0].fileName, "f99999");
}

TEST_F(FileSetsTest, JoinsDestinationAndNameToThePathOfAnAlias) {
    variables_.set("D", "/opt/p");
    read("<FileSet Name=\"A\"><FN Alias=\"X\" Dest=\"[D]/bin\">a/b.txt</FN></FileSet>");
    EXPECT_EQ(sets_.pathOfAlias("X"), "\\opt\\p\\bin\\b.txt");
}

TEST_F(FileSetsTest, GivesNoPathForAnUnknownAlias) {
    read("<FileSet Name=\"A\"><FN Alias=\"X\">a</FN></FileSet>");
    EXPECT_EQ(sets_.pathOfAlias("Y"), std::nullopt);
    EXPECT_EQ(sets_.pathOfAlias("X"), std::nullopt);
}

TEST_F(FileSetsTest, TakesTheLastOfEqualAliasesInTheFirstSet) {
    read(
        "<FileSet Name=\"A\"><FN Alias=\"X\" Dest=\"1\">a</FN><FN Alias=\"X\" Dest=\"2\">b</FN></FileSet>"
        "<FileSet Name=\"B\"><FN Alias=\"X\" Dest=\"3\">c</FN></FileSet>");
    EXPECT_EQ(sets_.pathOfAlias("X"), "2\\b");
}

TEST_F(FileSetsTest, GivesNoPathForAnAliasWithoutAFileName) {
    read("<FileSet Name=\"A\"><FN Alias=\"X\" Dest=\"1\"></FN></FileSet>");
    EXPECT_EQ(sets_.pathOfAlias("X"), std::nullopt);
}

}  // namespace
