#include "packager/image_resources.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/errors.h"
#include "checking/icon_bytes.h"
#include "package/executable_image.h"
#include "package/little_endian.h"
#include "packager/pe_bytes.h"
#include "packager/pe_image.h"
#include "packager/version_resource.h"

namespace {

using testing::HasSubstr;

const PeResource kManifest = {{{}, 24}, {{}, 1}, 0x409, 0, "<assembly/>"};

class ImageResourcesTest : public testing::Test {
protected:
    std::vector<PeResource> resources(const std::string& icon = "") {
        const std::string image = PeBytes::imageWith({{{{}, 3}, {{}, 7}, 0, 0, "old icon"},
                                                      {{u"MAIN", 0}, {{}, 7}, 0, 0, "other"},
                                                      {{{}, 16}, {{}, 1}, 0x407, 0, "old version"},
                                                      kManifest});
        const PeImage result(withResources(image, identity_, icon, "setup.exe"));
        EXPECT_EQ(measureExecutableImage(result.bytes()).problem, ImageProblem::kNone);
        return readPeResources(result);
    }

    SetupIdentity identity_{"Demo", "Demo setup", "1.2.3", "Publisher", "(c)", ""};
};

TEST_F(ImageResourcesTest, ReplaceTheVersionAndKeepEverythingElse) {
    const std::vector<PeResource> found = resources();
    ASSERT_EQ(found.size(), 4U);
    EXPECT_EQ(found[0].data, "other");
    EXPECT_EQ(found[1].data, "old icon");
    EXPECT_EQ(found[2].data, versionResource({{1, 2, 3, 0},
                                              {{"CompanyName", "Publisher"},
                                               {"FileDescription", "Demo setup"},
                                               {"FileVersion", "1.2.3"},
                                               {"LegalCopyright", "(c)"},
                                               {"OriginalFilename", "setup.exe"},
                                               {"ProductName", "Demo"},
                                               {"ProductVersion", "1.2.3"}}}));
    EXPECT_EQ(found[3], kManifest);
}

TEST_F(ImageResourcesTest, ReplaceTheIconByThatOfTheProduct) {
    identity_.icon = "Icon";
    const std::vector<PeResource> found =
        resources(IconBytes::icon({{16, IconBytes::bitmap(16, 4)}, {0, IconBytes::png(256, 256)}}));
    ASSERT_EQ(found.size(), 6U);
    EXPECT_EQ(found[1], (PeResource{{{}, 3}, {{}, 1}, 0, 0, IconBytes::bitmap(16, 4)}));
    EXPECT_EQ(found[2], (PeResource{{{}, 3}, {{}, 2}, 0, 0, IconBytes::png(256, 256)}));
    std::string group;
    for (const std::uint32_t number : {0U, 1U, 2U, 0x1010U, 16U, 1U, 4U}) {
        LittleEndian::append16(group, number);
    }
    LittleEndian::append32(group, static_cast<std::uint32_t>(IconBytes::bitmap(16, 4).size()));
    for (const std::uint32_t number : {1U, 0U, 0U, 1U, 32U}) {
        LittleEndian::append16(group, number);
    }
    LittleEndian::append32(group, static_cast<std::uint32_t>(IconBytes::png(256, 256).size()));
    LittleEndian::append16(group, 2);
    EXPECT_EQ(found[3], (PeResource{{{}, 14}, {{}, 1}, 0, 0, group}));
}

TEST_F(ImageResourcesTest, LeaveTextsOutThatAreNotGiven) {
    identity_ = {"Demo", "Demo", "1.2.3", "", "", "Icon"};
    const std::vector<PeResource> found = resources(IconBytes::png(16, 16));
    ASSERT_EQ(found.size(), 5U);
    EXPECT_EQ(found[3].data, versionResource({{1, 2, 3, 0},
                                              {{"FileDescription", "Demo"},
                                               {"FileVersion", "1.2.3"},
                                               {"OriginalFilename", "setup.exe"},
                                               {"ProductName", "Demo"},
                                               {"ProductVersion", "1.2.3"}}}));
}

TEST_F(ImageResourcesTest, RefuseAnIconThatCanNotBeRead) {
    identity_.icon = "Icon";
    try {
        resources("GIF89a");
        ADD_FAILURE() << "it wasn't refused";
    } catch (const InstallerError& error) {
        EXPECT_THAT(error.what(), HasSubstr("\"Icon\" is neither"));
    }
}

TEST_F(ImageResourcesTest, LeaveAnImageForLinuxAsItIs) {
    const std::string image = ImageBytes::elfImage(ImageBytes::installerData());
    EXPECT_EQ(withResources(image, identity_, "", "setup"), image);
}

TEST_F(ImageResourcesTest, HaveTheSameBytesEachTime) {
    EXPECT_EQ(withResources(PeBytes::image(), identity_, "", "setup.exe"),
              withResources(PeBytes::image(), identity_, "", "setup.exe"));
}

}  // namespace
