#include "engine/file_planner.h"

#include "engine_fixture.h"

namespace {

class FilePlannerTest : public EngineTest {
protected:
    const FileEntry& file(std::size_t index) { return fileSets_.getFiles()[index]; }

    FilePlanner planner_{fileSets_, expressions_, console_};
};

TEST_F(FilePlannerTest, SelectsByDestinationAndBothConditions) {
    variables_.set("YES", "1");
    variables_.set("NO", "0");
    describe(
        "<FileSet Name='On' Condition='[YES]==1'>"
        "<FN Dest='/a' Condition='broken('>d</FN>"
        "<FN Dest='/a' Condition='[NO]==1'>c</FN><FN>b</FN><FN Dest='/a'>a</FN></FileSet>"
        "<FileSet Name='Off' Condition='[NO]==1'><FN Dest='/a'>e</FN></FileSet>");
    EXPECT_TRUE(planner_.isSelected(file(0)));
    EXPECT_FALSE(planner_.isSelected(file(1)));  // no destination
    EXPECT_FALSE(planner_.isSelected(file(2)));  // its own condition
    EXPECT_TRUE(planner_.isSelected(file(3)));   // a broken condition counts as true
    EXPECT_FALSE(planner_.isSelected(file(4)));  // its file set's condition
}

TEST_F(FilePlannerTest, ExpandsAndCollapsesTheDirectory) {
    variables_.set("ROOT", "C:\\apps");
    describe("<FileSet Name='S'><FN Dest='[ROOT]//bin/'>x/tool.exe</FN></FileSet>");
    std::string directory;
    EXPECT_TRUE(planner_.findDirectory(file(0), directory));
    EXPECT_EQ(directory, "C:\\apps/bin\\");
    EXPECT_EQ(FilePlanner::pathIn(directory, file(0)), "C:\\apps/bin\\tool.exe");
}

TEST_F(FilePlannerTest, CutsADirectoryAtTheCapacityOfAPath) {
    describe("<FileSet Name='S'><FN Dest='/" + std::string(1600, 'd') + "'>f</FN></FileSet>");
    std::string directory;
    EXPECT_TRUE(planner_.findDirectory(file(0), directory));
    EXPECT_LE(directory.size(), 1559U);
    EXPECT_LE(FilePlanner::pathIn(directory, file(0)).size(), 1559U);
}

TEST_F(FilePlannerTest, KeepsItsAnswersForOneInstallation) {
    variables_.set("ON", "1");
    variables_.set("ROOT", "/a");
    describe("<FileSet Name='S' Condition='[ON]==1'><FN Dest='[ROOT]'>f</FN></FileSet>");
    std::string directory;
    EXPECT_TRUE(planner_.isSelected(file(0)));
    EXPECT_TRUE(planner_.findDirectory(file(0), directory));
    variables_.set("ON", "0");
    variables_.set("ROOT", "/b");
    EXPECT_TRUE(planner_.isSelected(file(0)));
    FilePlanner next(fileSets_, expressions_, console_);
    EXPECT_FALSE(next.isSelected(file(0)));
    EXPECT_TRUE(next.findDirectory(file(0), directory));
    EXPECT_EQ(directory, "/b\\");
}

}  // namespace
