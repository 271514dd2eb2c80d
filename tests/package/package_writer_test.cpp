#include "package/package_writer.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "base/errors.h"
#include "fakes/temporary_directory.h"
#include "package/cabinet.h"
#include "package/image_bytes.h"
#include "package/package_stamp.h"
#include "platform/error_text.h"
#include "platform/memory/memory_file_system.h"

using namespace PackageBytes;
using namespace ImageBytes;

namespace {

constexpr const char* kOutput = "/out/setup";
constexpr const char* kImage = "/in/installer";

class PackageWriterTest : public testing::Test {
protected:
    PackageWriterTest() {
        files_.addDirectory("/out");
        files_.addFile("/in/install.xml", "<x/>");
        files_.addFile("/in/empty", "");
        files_.addFile("/in/banner.PNG", "image");
        files_.addFile(kImage, elfImage(installerData()));
        options_.imagePath = kImage;
        entries_ = {{"/in/install.xml", "install.xml", "install.xml"},
                    {"/in/empty", "empty", "empty"},
                    {"/in/banner.PNG", "banner.PNG", "Banner"}};
    }
    PackageTotals write() { return PackageWriter(files_).write(entries_, options_, kOutput); }
    std::string failure() {
        try {
            write();
        } catch (const InstallerError& error) {
            EXPECT_EQ(files_.openFileCount(), 0);
            return error.what();
        }
        return "<none>";
    }
    // The files in the directory of the output.
    std::vector<std::string> leftOver() const {
        std::vector<std::string> found;
        for (const std::string& path : files_.allFiles()) {
            if (path.starts_with("/out/")) {
                found.push_back(path);
            }
        }
        return found;
    }

    MemoryFileSystem files_;
    PackageOptions options_;
    std::vector<PackageFile> entries_;
};

TEST_F(PackageWriterTest, WritesImageLeadBlockStreamAndTrailer) {
    const std::string image = elfImage(installerData());
    const PackageTotals totals = write();
    const std::string package = files_.content(kOutput);
    std::string stamped = image;
    ASSERT_EQ(stampPackageOffset(stamped, static_cast<std::uint32_t>(image.size())), StampResult::kStamped);
    EXPECT_EQ(package.substr(0, image.size()), stamped);
    EXPECT_EQ(package.substr(image.size(), 64), leadBlock(4 + 5, 3));
    const std::string cabinet = [] {
        std::string text =
            entry("install.xml", "<x/>") + entry("empty", "") + entry("Banner", "image") + endRecord();
        const std::size_t third = 608 + 4 + 608;
        text.replace(third + 32, 10, "banner.PNG");
        setNumber(text, third + 12, 1);  // an image file
        return text;
    }();
    const std::string stream = solidStream({cabinet});
    EXPECT_EQ(package.substr(image.size() + 64, stream.size()), stream);
    EXPECT_EQ(package.substr(image.size() + 64 + stream.size(), 7), "v2sum: ");
    EXPECT_EQ(package.size(), image.size() + 64 + stream.size() + 23);
    EXPECT_EQ(totals.fileCount, 3);
    EXPECT_EQ(totals.payloadSize, 9);
    EXPECT_EQ(totals.packageSize, static_cast<std::int64_t>(package.size()));
    EXPECT_EQ(totals.stripes, 1);
    EXPECT_TRUE(files_.isExecutable(kOutput));
    EXPECT_EQ(leftOver(), (std::vector<std::string>{kOutput}));
}

TEST_F(PackageWriterTest, WritesWhatTheCabinetReads) {
    files_.addFile(kImage, peImage(installerData() + std::string(6000, 'c')));
    write();
    EXPECT_TRUE(verifyInstallerChecksum(kOutput, files_));
    const std::optional<std::uint32_t> offset = findStampedOffset(files_.content(kOutput));
    ASSERT_TRUE(offset);
    Cabinet cabinet(files_, DebugLog());
    ASSERT_EQ(cabinet.load(kOutput, *offset), Cabinet::LoadResult::kLoaded);
    EXPECT_EQ(cabinet.getCount(), 3);
    EXPECT_EQ(cabinet.findAlias("install.xml"), 0);
    EXPECT_EQ(cabinet.entry(2).flags(), 1U);
    EXPECT_EQ(cabinet.entry(2).digest(), md5Of("image", 5));
}

TEST_F(PackageWriterTest, PacksAGivenContentInsteadOfTheFile) {
    entries_[0].content = std::make_shared<const std::string>("another text");
    entries_[0].size = 3;  // of the file
    EXPECT_EQ(write().payloadSize, 12 + 5);
    Cabinet cabinet(files_, DebugLog());
    ASSERT_EQ(cabinet.load(kOutput, *findStampedOffset(files_.content(kOutput))),
              Cabinet::LoadResult::kLoaded);
    EXPECT_EQ(cabinet.entry(0).digest(), md5Of("another text", 12));
    EXPECT_FALSE(files_.didOperation("open /in/install.xml"));
    entries_[0].content = std::make_shared<const std::string>();
    EXPECT_EQ(write().payloadSize, 5);
}

TEST_F(PackageWriterTest, WritesNeitherImageNorTrailerIntoASeparatePackage) {
    options_.imagePath.clear();
    write();
    const std::string package = files_.content(kOutput);
    EXPECT_EQ(package.substr(0, 64), leadBlock(9, 3));
    EXPECT_EQ(package.find("v2sum: "), std::string::npos);
    EXPECT_FALSE(files_.isExecutable(kOutput));
    Cabinet cabinet(files_, DebugLog());
    EXPECT_EQ(cabinet.load(kOutput, 0), Cabinet::LoadResult::kLoaded);
}

TEST_F(PackageWriterTest, WritesTheOldTrailerWhenAskedFor) {
    options_.checksum = ChecksumVersion::kVersion1;
    write();
    EXPECT_NE(files_.content(kOutput).find("MD5SUM: "), std::string::npos);
    EXPECT_TRUE(verifyInstallerChecksum(kOutput, files_));
}

TEST_F(PackageWriterTest, WritesTheOldTrailerForAnImageThatKnowsNoOther) {
    std::string data = installerData();
    data[data.find("SupportsSigned")] = 'x';
    files_.addFile(kImage, elfImage(data));
    options_.checksum = ChecksumVersion::kVersion2;
    write();
    EXPECT_TRUE(files_.content(kOutput).ends_with(
        "MD5SUM: " + files_.content(kOutput).substr(files_.content(kOutput).size() - 16)));
}

TEST_F(PackageWriterTest, GivesTheSameBytesEachTime) {
    options_.stripes = 3;
    std::string large;
    while (large.size() < 500000) {
        large += std::to_string(large.size() * 7);
    }
    files_.addFile("/in/large", large);
    entries_.push_back({"/in/large", "large", "large"});
    write();
    const std::string first = files_.content(kOutput);
    write();
    EXPECT_EQ(files_.content(kOutput), first);
    Cabinet cabinet(files_, DebugLog());
    const std::optional<std::uint32_t> offset = findStampedOffset(first);
    ASSERT_TRUE(offset);
    EXPECT_EQ(getNumber(first, *offset + 64 + 16), 3U);
    ASSERT_EQ(cabinet.load(kOutput, *offset), Cabinet::LoadResult::kLoaded);
    EXPECT_EQ(cabinet.entryContent(3), large);
}

TEST_F(PackageWriterTest, WritesAPackageWithoutFiles) {
    entries_.clear();
    write();
    const std::optional<std::uint32_t> offset = findStampedOffset(files_.content(kOutput));
    ASSERT_TRUE(offset);
    Cabinet cabinet(files_, DebugLog());
    EXPECT_EQ(cabinet.load(kOutput, *offset), Cabinet::LoadResult::kLoaded);
    EXPECT_EQ(cabinet.getCount(), 0);
}

TEST_F(PackageWriterTest, AcceptsNamesAndAliasesOfFullLength) {
    const std::string name(299, 'n');
    const std::string alias = "\xC3\xBC" + std::string(273, 'a');
    entries_.push_back({"/in/empty", name, alias});
    write();
    const std::optional<std::uint32_t> offset = findStampedOffset(files_.content(kOutput));
    ASSERT_TRUE(offset);
    Cabinet cabinet(files_, DebugLog());
    ASSERT_EQ(cabinet.load(kOutput, *offset), Cabinet::LoadResult::kLoaded);
    EXPECT_EQ(cabinet.entry(3).name(), name);
    EXPECT_EQ(cabinet.findAlias(alias), 3);
}

TEST_F(PackageWriterTest, RefusesEachStepOverALimitBeforeAnythingIsWritten) {
    const auto refuses = [&](const PackageFile& bad, const std::string& text) {
        files_.clearOperations();
        entries_.push_back(bad);
        EXPECT_EQ(failure(), text);
        entries_.pop_back();
        EXPECT_EQ(files_.operations(), std::vector<std::string>{});
        EXPECT_TRUE(leftOver().empty());
    };
    refuses({"/in/empty", std::string(300, 'n'), "x"},
            "/in/empty: the file name has 300 bytes, at most 299 are possible: shorten it");
    refuses({"/in/empty", "n", std::string(276, 'a')},
            "/in/empty: the alias has 276 bytes, at most 275 are possible: give the file an Alias");
    refuses({"/in/empty", "", "x"}, "/in/empty: a file needs a name and an alias");
    refuses({"/in/empty", "x", ""}, "/in/empty: a file needs a name and an alias");
    refuses({"/in/none", "none", "none"}, "/in/none: no such file");
    refuses({"/in", "in", "in"}, "/in: no such file");
    refuses({"/in/install.xml", "x", "Banner"},
            "the alias \"Banner\" stands for both /in/banner.PNG and "
            "/in/install.xml: give one of them another Alias");
    refuses({kOutput, "x", "y"}, std::string(kOutput) + " is to be packed itself: choose another output");
}

// A file system that reports a large size for a small file.
class LargeFiles : public MemoryFileSystem {
public:
    std::int64_t fileSize(std::string_view path) override {
        return std::string_view(path) == "/in/large" ? largeSize : MemoryFileSystem::fileSize(path);
    }
    std::int64_t largeSize = 0;
};

TEST(PackageWriterLimits, RefusesMoreThanACabinetHolds) {
    LargeFiles files;
    files.addDirectory("/out");
    files.addFile("/in/large", "x");
    const std::vector<PackageFile> entries = {{"/in/large", "large", "large"}};
    const std::int64_t most = 0x40000000 - 2 * 608;
    for (const std::int64_t size : {most + 1, std::int64_t{1} << 32, INT64_MAX}) {
        files.largeSize = size;
        try {
            PackageWriter(files).write(entries, {}, kOutput);
            ADD_FAILURE() << size;
        } catch (const InstallerError& error) {
            EXPECT_STREQ(error.what(),
                         "/in/large: with this file the package holds more than 1073741824 bytes, which "
                         "is the limit: leave files out or make two packages");
        }
    }
    files.largeSize = most;  // fits, but the file itself has another size
    try {
        PackageWriter(files).write(entries, {}, kOutput);
        ADD_FAILURE();
    } catch (const InstallerError& error) {
        EXPECT_STREQ(error.what(), "/in/large: the file changed while it was read: try again");
    }
    EXPECT_EQ(files.allFiles(), (std::vector<std::string>{"/in/large"}));
    files.largeSize = 0;  // has grown since
    EXPECT_THROW(PackageWriter(files).write(entries, {}, kOutput), InstallerError);
}

TEST_F(PackageWriterTest, RefusesImagesThatAreNotBare) {
    const std::string good = elfImage(installerData());
    const auto refuses = [&](const std::string& image, const std::string& text) {
        files_.addFile(kImage, image);
        EXPECT_EQ(failure(), std::string(kImage) + text);
        EXPECT_TRUE(leftOver().empty());
    };
    refuses("text", ": this is not an executable image: give the bare installer");
    refuses(good.substr(0, good.size() - 1), ": this image is incomplete: build it or copy it again");
    refuses(good + "x",
            ": there is data after this image, so it is a package or signed: give the bare, unsigned "
            "installer");
    refuses(elfImage("nothing"), ": this program can't install such packages: give the bare installer");
    const std::string place =
        ": this image has no place, or several, for the package's offset: give the bare installer";
    refuses(elfImage(installerData().substr(20)), place);
    refuses(elfImage(installerData() + packageOffsetMarkerText()), place);
    options_.imagePath = "/in/none";
    EXPECT_EQ(failure(),
              "/in/none: the image can't be read: " + platform::errorText(MemoryFileSystem::kNotFound));
    options_.imagePath = kOutput;
    EXPECT_EQ(failure(), "/out/setup is the image: choose another output");
}

TEST_F(PackageWriterTest, RefusesAPackageAsImage) {
    write();
    files_.addFile("/in/package", files_.content(kOutput));
    options_.imagePath = "/in/package";
    EXPECT_EQ(failure(),
              "/in/package: there is data after this image, so it is a package or signed: give the bare, "
              "unsigned installer");
}

TEST_F(PackageWriterTest, RefusesOptionsOutsideTheirLimits) {
    for (const std::int32_t stripes : {-1, 257}) {
        options_.stripes = stripes;
        EXPECT_EQ(failure(), std::to_string(stripes) + " stripes are not possible: give 1 to 256");
    }
    options_.stripes = 256;
    EXPECT_EQ(failure(), "<none>");
    for (const std::int32_t level : {0, 10}) {
        options_.level = level;
        EXPECT_EQ(failure(), "level " + std::to_string(level) + " is not possible: give 1 to 9");
    }
}

TEST_F(PackageWriterTest, LeavesAnEarlierOutputAloneWhenItFails) {
    files_.addFile(kOutput, "earlier");
    files_.addFile("/out/setup.part", "the user's own");
    using Operation = MemoryFileSystem::Operation;
    const auto failsAt = [&](Operation operation, std::string_view path, int n) {
        files_.failAt(operation, path, n);
        const std::string text = failure();
        EXPECT_NE(text, "<none>") << static_cast<int>(operation) << ' ' << n;
        EXPECT_EQ(text.find('\n'), std::string::npos);
        files_.clearFaults();
        EXPECT_EQ(files_.content(kOutput), "earlier");
        EXPECT_EQ(leftOver(), (std::vector<std::string>{"/out/setup", "/out/setup.part"})) << text;
    };
    failsAt(Operation::kOpen, "/out/setup.part1", 1);
    failsAt(Operation::kOpen, "/out/setup.part1", 2);
    failsAt(Operation::kOpen, "/in/empty", 1);
    failsAt(Operation::kRead, "/in/banner.PNG", 1);
    failsAt(Operation::kRead, kImage, 1);
    for (int n = 1; n <= 5; ++n) {
        failsAt(Operation::kWrite, "/out/setup.part1", n);
    }
    failsAt(Operation::kClose, "/out/setup.part1", 2);
    failsAt(Operation::kMakeExecutable, "", 1);
    failsAt(Operation::kReplaceFile, "", 1);
    EXPECT_EQ(failure(), "<none>");
    EXPECT_EQ(files_.content("/out/setup.part"), "the user's own");
    EXPECT_NE(files_.content(kOutput), "earlier");
}

TEST_F(PackageWriterTest, WritesThroughNoLinkAndReplacesNoDevice) {
    files_.addFile("/victim", "precious");
    files_.addLink("/out/setup.part", "/victim");
    files_.addLink(kOutput, "/victim");
    EXPECT_EQ(failure(), "<none>");
    EXPECT_EQ(files_.content("/victim"), "precious");
    EXPECT_TRUE(files_.hasFile(kOutput));
    files_.addDevice(kOutput);
    EXPECT_NE(failure(), "<none>");
    EXPECT_EQ(files_.kindOf(kOutput), platform::PathKind::kOther);
}

TEST_F(PackageWriterTest, ReportsAFullDiskWhateverSpaceIsLeft) {
    write();
    const auto needed = static_cast<std::int64_t>(files_.content(kOutput).size());
    files_.removeFile(kOutput);
    for (std::int64_t space = 0; space < needed; space += 97) {
        files_.setFreeSpace(space);
        EXPECT_NE(failure(), "<none>") << space;
        files_.setFreeSpace(-1);
        EXPECT_TRUE(leftOver().empty());
    }
}

TEST_F(PackageWriterTest, DoesNotWriteOverADirectory) {
    files_.addDirectory(kOutput);
    EXPECT_NE(failure(), "<none>");
    EXPECT_TRUE(leftOver().empty());
}

TEST_F(PackageWriterTest, ReportsProgressUpToTheEnd) {
    std::vector<std::string> reports;
    PackageWriter writer(files_);
    writer.setProgress([&](std::string_view step, int percent) {
        reports.push_back(std::string(step) + " " + std::to_string(percent));
    });
    writer.write(entries_, options_, kOutput);
    ASSERT_FALSE(reports.empty());
    EXPECT_EQ(reports.front(), "Reading files 0");
    EXPECT_EQ(reports.back(), "Compressing 100");
}

TEST(PackageWriter, ChoosesStripesBySizeAlone) {
    EXPECT_EQ(PackageWriter::defaultStripes(608), 1);
    EXPECT_EQ(PackageWriter::defaultStripes(8 * 1024 * 1024 - 1), 1);
    EXPECT_EQ(PackageWriter::defaultStripes(8 * 1024 * 1024), 2);
    EXPECT_EQ(PackageWriter::defaultStripes(0x40000000), 32);
}

TEST(PackageWriter, KnowsImageNames) {
    for (const char* name : {"a.png", "a.PNG", "a.jpg", "a.JPEG", "a.b.jpeg"}) {
        EXPECT_TRUE(PackageWriter::isImageName(name)) << name;
    }
    for (const char* name : {"png", "a.gif", "a.png.txt", ""}) {
        EXPECT_FALSE(PackageWriter::isImageName(name)) << name;
    }
}

TEST(PackageWriter, WritesToARealDisk) {
    const TemporaryDirectory directory;
    writeTestFile(directory.file("installer"), elfImage(installerData() + std::string(6000, 'c')));
    writeTestFile(directory.file("f\xC3\xBC.txt"), "text");
    PackageOptions options;
    options.imagePath = directory.file("installer");
    const std::string output = directory.file("setup");
    writeTestFile(output, "earlier");
    PackageWriter(platform::systemFileSystem())
        .write({{directory.file("f\xC3\xBC.txt"), "f\xC3\xBC.txt", "text"}}, options, output);
    EXPECT_TRUE(verifyInstallerChecksum(output, platform::systemFileSystem()));
    EXPECT_FALSE(testFileExists(output + ".part"));
}

// Takes minutes and gigabytes: only when TANDREL_BIG_TESTS is set.
TEST(PackageWriterBig, PacksTheLargestFileAndVeryManyFiles) {
    if (std::getenv("TANDREL_BIG_TESTS") == nullptr) {
        GTEST_SKIP() << "set TANDREL_BIG_TESTS to run it";
    }
    const TemporaryDirectory directory;
    const std::string output = directory.file("setup");
    PackageOptions options;
    options.level = 1;
    {
        std::string content(0x40000000 - 2 * 608, 'x');
        for (std::size_t i = 0; i < content.size(); i += 4096) {
            setNumber(content, i, static_cast<std::uint32_t>(i * 2654435761U));
        }
        writeTestFile(directory.file("large"), content);
        PackageWriter(platform::systemFileSystem())
            .write({{directory.file("large"), "large", "large"}}, options, output);
        Cabinet cabinet(platform::systemFileSystem(), DebugLog());
        ASSERT_EQ(cabinet.load(output, 0), Cabinet::LoadResult::kLoaded);
        EXPECT_EQ(cabinet.entryContent(0), content);
    }
    writeTestFile(directory.file("small"), std::string(1024, 's'));
    std::vector<PackageFile> entries;
    entries.reserve(100000);
    for (int i = 0; i < 100000; ++i) {
        entries.push_back({directory.file("small"), "small", "alias" + std::to_string(i)});
    }
    PackageWriter(platform::systemFileSystem()).write(entries, options, output);
    Cabinet cabinet(platform::systemFileSystem(), DebugLog());
    ASSERT_EQ(cabinet.load(output, 0), Cabinet::LoadResult::kLoaded);
    EXPECT_EQ(cabinet.getCount(), 100000);
    EXPECT_EQ(cabinet.findAlias("alias99999"), 99999);
}

}  // namespace
