#include "packager/setup_identity.h"

#include <gtest/gtest.h>

#include "description/pxml.h"

namespace {

std::optional<SetupIdentity> identityOf(const std::string& elements) {
    PXML description;
    description.parseText("<TandrelGroupInstallation><ProductDesc>" + elements +
                          "</ProductDesc></TandrelGroupInstallation>");
    return setupIdentityOf(description);
}

const std::string kProduct =
    "<Fullname>Demo</Fullname><MajorVersion>1</MajorVersion><MinorVersion>2</MinorVersion>"
    "<MinestVersion>3</MinestVersion>";

TEST(SetupIdentity, IsThereWhereTheDescriptionAsksForIt) {
    EXPECT_FALSE(identityOf(kProduct));
    EXPECT_FALSE(identityOf(kProduct + "<Publisher></Publisher>"));
    EXPECT_TRUE(identityOf(kProduct + "<Copyright>c</Copyright>"));
    EXPECT_TRUE(identityOf(kProduct + "<Icon>i</Icon>"));
    const auto identity = identityOf(kProduct + "<Publisher>A &amp; B</Publisher>");
    ASSERT_TRUE(identity);
    EXPECT_EQ(identity->publisher, "A & B");
    EXPECT_EQ(identity->fullName, "Demo");
    EXPECT_EQ(identity->title, "Demo");
    EXPECT_EQ(identity->version, "1.2.3");
    EXPECT_EQ(identity->copyright + identity->icon, "");
}

TEST(SetupIdentity, TakesTheTitleOfTheDescription) {
    EXPECT_EQ(identityOf(kProduct + "<Title>Setup of Demo</Title><Icon>i</Icon>")->title, "Setup of Demo");
}

}  // namespace
