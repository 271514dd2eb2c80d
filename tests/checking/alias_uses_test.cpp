#include "checking/alias_uses.h"

#include "checking/check_bench.h"

namespace {

// "kind alias" of each use.
std::vector<std::string> usesOf(const std::string& sections) {
    std::vector<std::string> found;
    CheckBench bench([&](const CheckedParts& parts) {
        for (const AliasUse& use : aliasUsesOf(parts.context)) {
            found.push_back(std::to_string(static_cast<int>(use.kind)) + " " + use.alias);
        }
    });
    bench.findings(sections);
    return found;
}

TEST(AliasUses, AreInDialogsAndActions) {
    EXPECT_EQ(usesOf("<Dialogs><P><richedittext>A</richedittext><Image>B</Image><Text>C</Text>"
                     "<SlideShow Name='D'>2</SlideShow><PlainEditText>E</PlainEditText>"
                     "<HtmlEditText>F</HtmlEditText><Image/></P></Dialogs>"
                     "<UninstallDialogs><P><Image>G</Image></P></UninstallDialogs>"
                     "<Installation><AdditionalInstall><CreateFile Dest='/x'>H</CreateFile>"
                     "</AdditionalInstall></Installation>"),
              (std::vector<std::string>{"0 A", "1 B", "2 D", "0 E", "0 F", "3 H"}));
}

TEST(AliasUses, AreReadAsPathsInActions) {
    EXPECT_EQ(usesOf("<PreUninstall><CreateFile Dest='/x'>a/b</CreateFile>"
                     "<CreateFile Dest='/x' Details='NoPathCorrection'>c/d</CreateFile></PreUninstall>"),
              (std::vector<std::string>{"3 a\\b", "3 c/d"}));
}

TEST(AliasUses, AreLeftOutWhereOnlyARunKnowsThem) {
    const std::string sections = "<PreUninstall><CreateFile Dest='/x'>a[B]</CreateFile></PreUninstall>";
    EXPECT_EQ(usesOf(sections), std::vector<std::string>());
    bool isOpen = false;
    CheckBench bench([&](const CheckedParts& parts) { isOpen = hasOpenAlias(parts.context); });
    bench.findings(sections);
    EXPECT_TRUE(isOpen);
}

TEST(AliasUses, OfPicturesHaveLargerForms) {
    EXPECT_EQ(formsOf("P"), (std::vector<std::string>{"P", "P@2x", "P@3x"}));
    EXPECT_EQ(withoutForm("P@3x"), "P");
    EXPECT_EQ(withoutForm("P@4x"), "P@4x");
}

TEST(UsedAliases, AreThoseOfElementsAndOfTheWindow) {
    const std::vector<AliasUse> uses = {{AliasUse::Kind::kPicture, 0, "P"},
                                        {AliasUse::Kind::kDocument, 0, "D"}};
    const UsedAliases used(uses, UsedAliases::Which::kAll);
    for (const std::string_view alias : {"P", "P@2x", "D", "AppIcon", "icon_current@3x"}) {
        EXPECT_TRUE(used.contains(alias)) << alias;
    }
    for (const std::string_view alias : {"p", "P@4x", "appicon", "", "@2x"}) {
        EXPECT_FALSE(used.contains(alias)) << alias;
    }
    EXPECT_FALSE(UsedAliases(uses, UsedAliases::Which::kPictures).contains("D"));
}

TEST(UsedAliases, AreAsManySlidesAsAShowHas) {
    const UsedAliases used({{AliasUse::Kind::kSlides, 0, "S", 12}, {AliasUse::Kind::kSlides, 0, "S1", 3}},
                           UsedAliases::Which::kPictures);
    for (const std::string_view alias : {"S0", "S9", "S11", "S12", "S0@2x"}) {
        EXPECT_TRUE(used.contains(alias)) << alias;
    }
    for (const std::string_view alias : {"S", "S13", "S00", "S01", "T0", "S99999999999999999999", "0"}) {
        EXPECT_FALSE(used.contains(alias)) << alias;
    }
}

}  // namespace
