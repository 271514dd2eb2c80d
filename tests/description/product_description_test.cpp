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
};

constexpr char kVersions[] =
    "<MajorVersion>1</MajorVersion><MinorVersion>20</MinorVersion><MinestVersion>03</MinestVersion>";

TEST_F(ProductDescriptionTest, FindsTheElementAtAnyDepth) {
    parse("<Root><Level><ProductDesc/></Level></Root>");
    EXPECT_TRUE(description_.exists());
}

TEST_F(ProductDescriptionTest, DoesNotExistWithoutTheElement) {
    parse("<TandrelGroupInstallation/>");
    EXPECT_FALSE(description_.exists());
}

TEST_F(ProductDescriptionTest, GivesTheSingleTexts) {
    product(
        "<Fullname>Product</Fullname><Website>web</Website><Supportemail>mail</Supportemail>"
        "<InstallHelpURL>help</InstallHelpURL><MajorVersion>7</MajorVersion>");
    EXPECT_EQ(description_.fullName(), "Product");
    EXPECT_EQ(description_.website(), "web");
    EXPECT_EQ(description_.supportEmail(), "mail");
    EXPECT_EQ(description_.installHelpUrl(), "help");
    EXPECT_EQ(description_.majorVersion(), "7");
}

TEST_F(ProductDescriptionTest, GivesNothingForAMissingText) {
    product("");
    EXPECT_EQ(description_.fullName(), std::nullopt);
}

TEST_F(ProductDescriptionTest, JoinsTheVersion) {
    product(kVersions);
    EXPECT_EQ(description_.version(), "1.20.03");
}

TEST_F(ProductDescriptionTest, EndsAVersionWithAHoleInAPoint) {
    product("<Fullname>Product</Fullname><MajorVersion>1</MajorVersion><MinestVersion>3</MinestVersion>");
    EXPECT_EQ(description_.version(), std::nullopt);
    EXPECT_EQ(description_.versionSoFar(), "1.");
    EXPECT_EQ(description_.title(), "Product");
}

TEST_F(ProductDescriptionTest, PrefersATitleOfItsOwn) {
    product(std::string("<Title>My title</Title><Fullname>Product</Fullname>") + kVersions);
    EXPECT_EQ(description_.title(), "My title");
}

TEST_F(ProductDescriptionTest, MakesTheTitleOfNameAndVersion) {
    product(std::string("<Fullname>Product</Fullname>") + kVersions);
    EXPECT_EQ(description_.title(), "Product - ver. 1.20.03");
}

TEST_F(ProductDescriptionTest, HasNoTitleWithoutAName) {
    product(kVersions);
    EXPECT_EQ(description_.title(), std::nullopt);
}

TEST_F(ProductDescriptionTest, ExpandsThePathsOfUninstalling) {
    variables_.set("DIR", "/opt/p");
    uninstall(
        "<InstallLogFile>[DIR]/log</InstallLogFile><InstallBackupFile>[DIR]/backup</InstallBackupFile>"
        "<UninstallCmd>[DIR]/un</UninstallCmd><UninstallXmlFile>[DIR]/xml</UninstallXmlFile>");
    EXPECT_EQ(description_.installLogFile(), "/opt/p/log");
    EXPECT_EQ(description_.installBackupFile(), "/opt/p/backup");
    EXPECT_EQ(description_.uninstallCommand(), "/opt/p/un");
    EXPECT_EQ(description_.uninstallXmlFile(), "/opt/p/xml");
}

TEST_F(ProductDescriptionTest, GivesNothingForAPathThatIsMissingOrExpandsToNothing) {
    uninstall("<InstallLogFile></InstallLogFile>");
    EXPECT_EQ(description_.installLogFile(), std::nullopt);
    EXPECT_EQ(description_.uninstallCommand(), std::nullopt);
}

}  // namespace
