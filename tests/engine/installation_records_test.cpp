#include "engine/installation_records.h"

#include "installation_fixture.h"

namespace {

class InstallationRecordsTest : public InstallationTest {};

TEST_F(InstallationRecordsTest, opensBothUnderTemporaryNamesAndPublishesThem) {
    files_.addDirectory("/app");
    describe(kUninstall);
    variables_.setVariable("A", "1");
    ASSERT_TRUE(records_.open());
    EXPECT_TRUE(files_.hasFile("/tmp/orinstall1"));
    EXPECT_TRUE(files_.hasFile("/tmp/orinstall2"));
    EXPECT_FALSE(files_.hasFile("/app/install.log"));
    writer_.writeFile(false, "/x");
    EXPECT_TRUE(records_.publish());
    EXPECT_EQ(files_.allFiles(), (std::vector<std::string>{"/app/backup.bin", "/app/install.log"}));
    EXPECT_EQ(installLog(),
              "/app/product.xml\r\n/app/backup.bin\r\nNUMVARS\t1\r\nVAR\tA\t1\r\nFILE\tCREATE\t/x\r\n");
}

TEST_F(InstallationRecordsTest, expandsTheFinalNamesAtTheEnd) {
    files_.addDirectory("/late");
    describe(
        "<Installation><Uninstall><InstallLogFile>[WHERE]/install.log</InstallLogFile></Uninstall>"
        "</Installation>");
    variables_.setVariable("WHERE", "/early");
    ASSERT_TRUE(records_.open());
    variables_.setVariable("WHERE", "/late");
    EXPECT_TRUE(records_.publish());
    EXPECT_TRUE(files_.hasFile("/late/install.log"));
}

TEST_F(InstallationRecordsTest, leavesNothingWhenTheLogCannotBeOpened) {
    files_.setReadOnly("/tmp");
    describe(kUninstall);
    EXPECT_FALSE(records_.open());
    EXPECT_EQ(log_.lines(), std::vector<std::string>{"ERROR: Obtaining temp filename for install temp log!"});
    EXPECT_TRUE(files_.allFiles().empty());
}

}  // namespace
