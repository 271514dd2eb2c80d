#include "description/product_description.h"

#include "description/description_fixture.h"

namespace {

class ProductDescriptionTest : public DescriptionTest {
protected:
    void product(const std::string& children) {
        parse("<TandrelGroupInstallation><ProductDesc>" + children +
              "</ProductDesc></TandrelGroupInstallation>");
    }
    void uninstall(const std::string& children) {
        parse("<TandrelGroupInstallation><Installation><Uninstall>" + children +
              "</Uninstall></Installation></TandrelGroupInstallation>");
    }

    ProductDescription description_{document_, expressions_};
    char buffer_[200] = "old";
};

constexpr char kVersions[] =
    "<MajorVersion>1</MajorVersion><MinorVersion>20</MinorVersion><MinestVersion>03</MinestVersion>";

TEST_F(ProductDescriptionTest, IsReadWhereverItStands) {
    parse("<Root><Level><ProductDesc/></Level></Root>");
    EXPECT_EQ(description_.readProductDescription(), 0);
}

TEST_F(ProductDescriptionTest, FailsWithoutTheElement) {
    parse("<TandrelGroupInstallation/>");
    EXPECT_EQ(description_.readProductDescription(), -1);
}

TEST_F(ProductDescriptionTest, GivesTheSingleTexts) {
    product(
        "<Fullname>Product</Fullname><Website>web</Website><Supportemail>mail</Supportemail>"
        "<InstallHelpURL>help</InstallHelpURL><MajorVersion>7</MajorVersion>");
    EXPECT_EQ(description_.getFullName(buffer_, sizeof buffer_), 0);
    EXPECT_STREQ(buffer_, "Product");
    EXPECT_EQ(description_.getWebsite(buffer_, sizeof buffer_), 0);
    EXPECT_STREQ(buffer_, "web");
    EXPECT_EQ(description_.getSupportEmail(buffer_, sizeof buffer_), 0);
    EXPECT_STREQ(buffer_, "mail");
    EXPECT_EQ(description_.getInstallHelpUrl(buffer_, sizeof buffer_), 0);
    EXPECT_STREQ(buffer_, "help");
    EXPECT_EQ(description_.getMajorVersion(buffer_, sizeof buffer_), 0);
    EXPECT_STREQ(buffer_, "7");
}

TEST_F(ProductDescriptionTest, AMissingTextEmptiesTheBuffer) {
    product("");
    EXPECT_EQ(description_.getFullName(buffer_, sizeof buffer_), -1);
    EXPECT_STREQ(buffer_, "");
    EXPECT_EQ(description_.getFullName(nullptr, 10), -1);
}

TEST_F(ProductDescriptionTest, CutsALongTextAtTheBuffer) {
    product("<Fullname>0123456789</Fullname>");
    EXPECT_EQ(description_.getFullName(buffer_, 5), 0);
    EXPECT_STREQ(buffer_, "0123");
}

TEST_F(ProductDescriptionTest, JoinsTheVersion) {
    product(kVersions);
    EXPECT_EQ(description_.getVersion(buffer_, sizeof buffer_), 0);
    EXPECT_STREQ(buffer_, "1.20.03");
}

TEST_F(ProductDescriptionTest, AVersionWithAHoleEndsInAPoint) {
    product("<Fullname>Product</Fullname><MajorVersion>1</MajorVersion><MinestVersion>3</MinestVersion>");
    EXPECT_LT(description_.getVersion(buffer_, sizeof buffer_), 0);
    EXPECT_STREQ(buffer_, "1.");
    EXPECT_EQ(description_.getTitle(buffer_, sizeof buffer_), 0);
    EXPECT_STREQ(buffer_, "Product");
}

TEST_F(ProductDescriptionTest, AnOwnTitleWins) {
    product(std::string("<Title>My title</Title><Fullname>Product</Fullname>") + kVersions);
    EXPECT_EQ(description_.getTitle(buffer_, sizeof buffer_), 0);
    EXPECT_STREQ(buffer_, "My title");
}

TEST_F(ProductDescriptionTest, TheTitleIsMadeOfNameAndVersion) {
    product(std::string("<Fullname>Product</Fullname>") + kVersions);
    EXPECT_EQ(description_.getTitle(buffer_, sizeof buffer_), 0);
    EXPECT_STREQ(buffer_, "Product - ver. 1.20.03");
}

TEST_F(ProductDescriptionTest, WithoutANameTheTitleIsUnknown) {
    product(kVersions);
    EXPECT_EQ(description_.getTitle(buffer_, sizeof buffer_), -1);
    EXPECT_STREQ(buffer_, "Unknown title");
}

TEST_F(ProductDescriptionTest, ExpandsThePathsOfUninstalling) {
    variables_.setVariable("DIR", "/opt/p");
    uninstall(
        "<InstallLogFile>[DIR]/log</InstallLogFile><InstallBackupFile>[DIR]/backup</InstallBackupFile>"
        "<UninstallCmd>[DIR]/un</UninstallCmd><UninstallXmlFile>[DIR]/xml</UninstallXmlFile>");
    EXPECT_EQ(description_.getInstallLogFile(buffer_, sizeof buffer_), 0);
    EXPECT_STREQ(buffer_, "/opt/p/log");
    EXPECT_EQ(description_.getInstallBackupFile(buffer_, sizeof buffer_), 0);
    EXPECT_STREQ(buffer_, "/opt/p/backup");
    EXPECT_EQ(description_.getUninstallCmd(buffer_, sizeof buffer_), 0);
    EXPECT_STREQ(buffer_, "/opt/p/un");
    EXPECT_EQ(description_.getUninstallXmlFile(buffer_, sizeof buffer_), 0);
    EXPECT_STREQ(buffer_, "/opt/p/xml");
}

TEST_F(ProductDescriptionTest, APathThatIsMissingOrExpandsToNothingIsTold) {
    uninstall("<InstallLogFile></InstallLogFile>");
    EXPECT_EQ(description_.getInstallLogFile(buffer_, sizeof buffer_), 1);
    EXPECT_STREQ(buffer_, "");
    EXPECT_EQ(description_.getUninstallCmd(buffer_, sizeof buffer_), -1);
    EXPECT_STREQ(buffer_, "");
}

}  // namespace
