#include "previewer/comparison.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_file_system.h"
#include "previewer/png_file.h"

namespace {

using Kind = ChangedFile::Kind;

class ComparisonTest : public testing::Test {
protected:
    ComparisonTest() {
        for (PreviewDirectory* const directory : {&now, &earlier}) {
            directory->begin();
        }
    }
    static std::string picture(int width, std::uint8_t firstByte) {
        Image image(width, 2, false);
        image.rgbRow(0)[0] = firstByte;
        return pngFileOf(image);
    }

    MemoryFileSystem files;
    PreviewDirectory now{files, "/now"};
    PreviewDirectory earlier{files, "/earlier"};
};

TEST_F(ComparisonTest, KnowsPagesAgainWhenTheirNumbersHaveChanged) {
    earlier.write({{"default-100/install-01-A.png", picture(3, 1)}});
    earlier.write({{"default-100/install-02-End.png", picture(3, 2)}});
    now.write({{"default-100/install-01-New.png", picture(3, 7)}});
    now.write({{"default-100/install-02-A.png", picture(3, 1)}});
    now.write({{"default-100/install-03-End.png", picture(3, 9)}});
    const std::vector<ChangedFile> changes = comparePreviews(now, earlier);
    ASSERT_EQ(changes.size(), 2U);
    EXPECT_EQ(changes[0], (ChangedFile{Kind::kChanged, "default-100/install-03-End.png",
                                       "default-100/install-02-End.png", 1}));
    EXPECT_EQ(changes[1].kind, Kind::kNew);
    EXPECT_EQ(changes[1].name, "default-100/install-01-New.png");
}

TEST_F(ComparisonTest, FindsPagesThatAreGoneAndTextsThatChanged) {
    earlier.write({{"default-console/install-01-A.txt", "old"}});
    earlier.write({{"default-console/uninstall-01-A.txt", "gone"}});
    now.write({{"default-console/install-01-A.txt", "new"}});
    const std::vector<ChangedFile> changes = comparePreviews(now, earlier);
    ASSERT_EQ(changes.size(), 2U);
    EXPECT_EQ(changes[0].kind, Kind::kChanged);
    EXPECT_EQ(changes[1].kind, Kind::kGone);
    EXPECT_EQ(changes[1].name, "default-console/uninstall-01-A.txt");
}

TEST_F(ComparisonTest, LeavesOutSizesThatOnlyOneOfThemHas) {
    earlier.write({{"default-100/install-01-A.png", picture(3, 1)}});
    earlier.write({{"default-150/install-01-A.png", picture(3, 1)}});
    now.write({{"default-100/install-01-A.png", picture(3, 1)}});
    now.write({{"default-200/install-01-A.png", picture(3, 1)}});
    EXPECT_TRUE(comparePreviews(now, earlier).empty());
}

TEST_F(ComparisonTest, CallsADamagedEarlierPictureChanged) {
    earlier.write({{"default-100/install-01-A.png", "no picture"}});
    now.write({{"default-100/install-01-A.png", picture(3, 1)}});
    const std::vector<ChangedFile> changes = comparePreviews(now, earlier);
    ASSERT_EQ(changes.size(), 1U);
    EXPECT_EQ(changes[0].kind, Kind::kChanged);
    EXPECT_EQ(changes[0].changedPixels, 0);
}

TEST(DifferenceOf, ShowsWhatIsOtherInRed) {
    Image one(2, 1, false);
    Image other(3, 1, false);
    other.rgbRow(0)[3] = 1;
    int changed = 0;
    const std::optional<Image> difference = differenceOf(one, other, changed);
    ASSERT_TRUE(difference);
    EXPECT_EQ(difference->width(), 3);
    EXPECT_EQ(changed, 2);
    const std::uint8_t* const row = difference->rgbRow(0);
    EXPECT_EQ(std::vector<int>(row, row + 9), (std::vector<int>{191, 191, 191, 255, 0, 0, 255, 0, 0}));
    EXPECT_FALSE(differenceOf(Image(), one, changed));
}

}  // namespace
