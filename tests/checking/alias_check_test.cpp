#include "checking/alias_check.h"

#include "checking/check_bench.h"

namespace {

class AliasCheckTest : public testing::Test {
protected:
    static std::string set(const std::string& files) { return "<FileSet Name='S'>" + files + "</FileSet>"; }

    CheckBench bench_{[](const CheckedParts& parts) { checkAliases(parts.context, parts.files); }};
};

TEST_F(AliasCheckTest, FindsDocumentsAndPicturesThatNothingPacks) {
    EXPECT_EQ(bench_.find(
                  "<Dialogs><P>\n<RichEditText>Licence</RichEditText>\n<Image> Banner</Image></P></Dialogs>" +
                  set("<FN Alias='licence'>l.md</FN>")),
              (Found{"alias-unknown 3:15", "alias-unknown 4:9", "file-unused 4:55"}));
    EXPECT_EQ(bench_
                  .findings("<Dialogs><P><Image>Baner</Image></P></Dialogs>" +
                            set("<FN Alias='Banner' Dest='/x'>b.png</FN>"))[0]
                  .hint,
              "Write \"Banner\" if that is what is meant.");
}

TEST_F(AliasCheckTest, IsContentWithALargerFormOfAPicture) {
    EXPECT_EQ(bench_.find("<Dialogs><P><Image>B</Image></P></Dialogs>" + set("<FN Alias='B@2x'>b.png</FN>")),
              Found());
}

TEST_F(AliasCheckTest, FindsTheFirstSlideThatIsMissing) {
    const std::string page = "<Dialogs><P><SlideShow Name='S'>3</SlideShow></P></Dialogs>";
    EXPECT_EQ(bench_.messages(page + set("<FN Alias='S0'>a</FN><FN Alias='S2'>b</FN>")),
              (Found{"no file has the alias \"S1\" of this slide show"}));
    EXPECT_EQ(bench_.find(page + set("<FN Alias='S0'>a</FN><FN Alias='S1'>b</FN><FN Alias='S2@2x'>c</FN>")),
              Found());
    EXPECT_EQ(bench_.find("<Dialogs><P><SlideShow Name='S'>2000000000</SlideShow></P></Dialogs>"),
              (Found{"alias-unknown 2:33"}));
}

TEST_F(AliasCheckTest, FindsActionsThatCreateWhatIsNotPacked) {
    const std::string action = "<PreUninstall><CreateFile Dest='/x'>A</CreateFile></PreUninstall>";
    EXPECT_EQ(bench_.find(action), (Found{"alias-unknown 2:37"}));
    EXPECT_EQ(bench_.find(action + set("<FN Alias='A'>a</FN>")), Found());
    EXPECT_EQ(bench_.find("<PreUninstall><CreateFile Dest='/x'>install.xml</CreateFile></PreUninstall>"),
              Found());
}

TEST_F(AliasCheckTest, SaysNothingOfAnUninstallationAndOfWhatItDoesNotKnow) {
    EXPECT_EQ(bench_.find("<UninstallDialogs><P><Image>B</Image></P></UninstallDialogs>"), Found());
    EXPECT_EQ(bench_.find("<Dialogs><P><Image>B</Image></P></Dialogs>" + set("<Other/>")), Found());
}

TEST_F(AliasCheckTest, FindsTwoFilesOfOneAlias) {
    EXPECT_EQ(bench_.find(set("<FN Dest='/x' Alias='A'>a</FN>\n<FN Dest='/y' Alias='A'>b</FN>"
                              "<FN Dest='/z' Alias='A'>a</FN>")),
              (Found{"alias-repeated 3:1"}));
    EXPECT_EQ(bench_.find(set("<FN Dest='/x'>a/b</FN><FN Dest='/x'>ab</FN>")),
              (Found{"alias-repeated 2:41"}));
    EXPECT_EQ(bench_.find(set("<FN Dest='/x' Alias='install.xml'>a</FN>")), (Found{"alias-repeated 2:19"}));
}

TEST_F(AliasCheckTest, LetsTheImageHaveOneAliasUnderBothOfItsNames) {
    const std::string images =
        set("<FN Dest='/x' Alias='U'>installer</FN><FN Dest='/x' Alias='U'>installer.exe</FN>");
    EXPECT_EQ(bench_.find(images), Found());
    bench_.root = "/root";
    bench_.files.addFile("/root/installer", "image");
    EXPECT_EQ(bench_.find(images), (Found{"alias-repeated 2:57"}));
}

TEST_F(AliasCheckTest, LetsFilesThatMayBeMissingShareAnAlias) {
    const std::string files =
        set("<FN Dest='/x' OkIfMissing='1' Alias='A'>a</FN><FN Dest='/x' Alias='A'>b</FN>");
    EXPECT_EQ(bench_.find(files), Found());
    bench_.root = "/root";
    bench_.files.addFile("/root/b", "");
    EXPECT_EQ(bench_.find(files), Found());
    bench_.files.addFile("/root/a", "");
    EXPECT_EQ(bench_.find(files), (Found{"alias-repeated 2:65"}));
}

TEST_F(AliasCheckTest, FindsPackedFilesThatNothingUses) {
    EXPECT_EQ(bench_.find(set("<FN>a</FN>\n<FN Dest=''>b</FN><FN Dest='/x'>c</FN>")),
              (Found{"file-unused 2:19", "file-unused 3:1"}));
}

TEST_F(AliasCheckTest, KnowsThePicturesThatTheWindowLooksFor) {
    EXPECT_EQ(
        bench_.find("<Dialogs><P><Image>I</Image><SlideShow Name='S'>1</SlideShow></P></Dialogs>" +
                    set("<FN Alias='AppIcon'>a</FN><FN Alias='icon_current@3x'>b</FN><FN Alias='I'>c</FN>"
                        "<FN Alias='I@2x'>d</FN><FN Alias='S0'>e</FN><FN Alias='S0@2x'>f</FN>")),
        Found());
}

TEST_F(AliasCheckTest, SaysNothingOfUnusedFilesWhereAnActionMayUseAny) {
    EXPECT_EQ(bench_.find("<PreUninstall><CreateFile Dest='/x'>[A]</CreateFile></PreUninstall>" +
                          set("<FN>a</FN>")),
              Found());
}

}  // namespace
