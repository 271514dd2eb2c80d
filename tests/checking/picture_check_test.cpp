#include "checking/picture_check.h"

#include "checking/check_bench.h"

namespace {

class PictureCheckTest : public testing::Test {
protected:
    PictureCheckTest() {
        bench_.root = "/root";
        bench_.files.addFile("/root/bad", "GIF89a, and so on");
        bench_.files.addFile("/root/good", std::string("\x01\0\0\0\x01\0\0\0", 8) + "rgba");
    }
    static std::string set(const std::string& files) { return "<FileSet Name='S'>\n" + files + "</FileSet>"; }

    CheckBench bench_{[](const CheckedParts& parts) { checkPictures(parts.context, parts.files); }};
};

TEST_F(PictureCheckTest, FindsPicturesThatCanNotBeShown) {
    const std::string page = "<Dialogs><P><Image>I</Image><SlideShow Name='S'>2</SlideShow></P></Dialogs>";
    EXPECT_EQ(
        bench_.find(page + set("<FN Alias='I'>bad</FN>\n<FN Alias='I@2x'>bad</FN>\n<FN Alias='S1'>bad</FN>\n"
                               "<FN Alias='AppIcon'>bad</FN>\n<FN Alias='icon_current@3x'>bad</FN>")),
        (Found{"image-unreadable 3:15", "image-unreadable 4:18", "image-unreadable 5:16",
               "image-unreadable 6:21", "image-unreadable 7:29"}));
    EXPECT_EQ(bench_.messages(page + set("<FN Alias='I'>bad</FN>")),
              (Found{"\"bad\" is neither a PNG nor a JPEG nor a raw picture"}));
}

TEST_F(PictureCheckTest, IsContentWithPicturesAndLooksAtNothingElse) {
    EXPECT_EQ(bench_.find("<Dialogs><P><Image>I</Image><RichEditText>D</RichEditText></P></Dialogs>" +
                          set("<FN Alias='I'>good</FN><FN Alias='D'>bad</FN><FN Dest='/x'>bad</FN>")),
              Found());
}

TEST_F(PictureCheckTest, SaysNothingWithoutTheFile) {
    const std::string sections =
        "<Dialogs><P><Image>I</Image></P></Dialogs>" + set("<FN Alias='I'>none</FN>");
    EXPECT_EQ(bench_.find(sections), Found());
    bench_.root.reset();
    EXPECT_EQ(bench_.find(sections), Found());
}

}  // namespace
