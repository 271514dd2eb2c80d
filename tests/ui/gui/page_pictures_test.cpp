#include "ui/gui/page_pictures.h"

#include "platform/memory/memory_file_system.h"
#include "ui/gui/page_fixture.h"
#include "ui/gui/test_pictures.h"

namespace {

class PagePicturesTest : public testing::Test {
protected:
    ImageSize sizeOf(const Image& image) { return {image.width(), image.height()}; }

    PageEngine session;
    MemoryFileSystem files;
    std::uint32_t random = 0;
    PagePictures pictures{session, files, [this] { return random; }, {}};
};

TEST_F(PagePicturesTest, APictureGrowsWithTheText) {
    session.resources["Header"] = rawPicture(100, 40, 0xFF);
    pictures.setScale(1.5, 1.0);
    EXPECT_EQ(sizeOf(pictures.picture("Header", {})), (ImageSize{150, 60}));
}

TEST_F(PagePicturesTest, APictureStaysWithinItsElement) {
    session.resources["Header"] = rawPicture(100, 40, 0xFF);
    EXPECT_EQ(sizeOf(pictures.picture("Header", {50, 0})), (ImageSize{50, 40}));
}

TEST_F(PagePicturesTest, ThereIsNoPictureWithoutOneInThePackage) {
    session.resources["Empty"] = "";
    session.resources["Broken"] = "not a picture";
    for (const char* name : {"Missing", "Empty", "Broken"}) {
        EXPECT_TRUE(pictures.picture(name, {}).isEmpty()) << name;
        EXPECT_EQ(pictures.describedSize(name), ImageSize{}) << name;
    }
}

TEST_F(PagePicturesTest, APictureThatGrowsIsMadeFromItsLargestForm) {
    session.resources["Logo"] = rawPicture(10, 10, 0x10);
    session.resources["Logo@2x"] = rawPicture(20, 20, 0x20);
    session.resources["Logo@3x"] = rawPicture(30, 30, 0x30);
    EXPECT_EQ(pictures.picture("Logo", {}).rgbRow(0)[0], 0x10);
    pictures.setScale(2.0, 1.0);
    const Image image = pictures.picture("Logo", {});
    EXPECT_EQ(sizeOf(image), (ImageSize{20, 20}));
    EXPECT_EQ(image.rgbRow(10)[30], 0x30);
}

TEST_F(PagePicturesTest, ALargerFormAloneHasTheSizeOfTheSmallOne) {
    session.resources["Logo@2x"] = rawPicture(20, 10, 0x20);
    EXPECT_EQ(pictures.describedSize("Logo"), (ImageSize{10, 5}));
    EXPECT_EQ(sizeOf(pictures.picture("Logo", {})), (ImageSize{10, 5}));
}

TEST_F(PagePicturesTest, ADenseScreenGetsMorePixelsInTheSameBounds) {
    session.resources["Logo"] = rawPicture(40, 40, 0x10);
    pictures.setScale(1.0, 2.0);
    EXPECT_EQ(sizeOf(pictures.picture("Logo", {30, 30})), (ImageSize{60, 60}));
}

TEST_F(PagePicturesTest, IconsHaveExactlyTheSizeThatIsAskedFor) {
    session.resources["Icon"] = rawPicture(16, 16, 0x10);
    EXPECT_EQ(sizeOf(pictures.icon("Icon", {17, 15})), (ImageSize{17, 15}));
    EXPECT_TRUE(pictures.icon("Missing", {16, 16}).isEmpty());
}

TEST_F(PagePicturesTest, TheIconOfAnUninstallationIsAFileOfTheProduct) {
    session.resources["AppIcon"] = rawPicture(16, 16, 1);
    EXPECT_EQ(sizeOf(pictures.applicationIcon()), (ImageSize{16, 16}));
    session.uninstalling = true;
    EXPECT_TRUE(pictures.applicationIcon().isEmpty());
    session.files["AppIcon"] = "/opt/icon";
    files.addFile("/opt/icon", rawPicture(32, 32, 1));
    EXPECT_EQ(sizeOf(pictures.applicationIcon()), (ImageSize{32, 32}));
}

TEST_F(PagePicturesTest, SlidesAreCountedFromZero) {
    EXPECT_EQ(pictures.nextSlide("ProgressImg", 1), "ProgressImg0");
    random = 2;
    EXPECT_EQ(pictures.nextSlide("ProgressImg", 3), "ProgressImg2");
    EXPECT_EQ(pictures.nextSlide("ProgressImg", 0), std::nullopt);
    EXPECT_EQ(pictures.nextSlide("", 3), std::nullopt);
}

}  // namespace
