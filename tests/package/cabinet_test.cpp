#include "package/cabinet.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "fakes/fake_console.h"
#include "package/package_bytes.h"
#include "platform/memory/memory_file_system.h"

using namespace PackageBytes;

namespace {

constexpr const char* kPath = "/p/setup.bin";

class CabinetTest : public testing::Test {
protected:
    int load(const std::string& file, std::int64_t offset = 0) {
        files_.addFile(kPath, file);
        return static_cast<int>(cabinet_.load(kPath, offset));
    }
    std::string read(std::string_view alias) {
        const std::optional<CabinetFile> file = cabinet_.readAlias(alias);
        if (!file) {
            return "<none>";
        }
        const auto size = static_cast<std::size_t>(file->content.size());
        EXPECT_EQ(file->content.data()[size], 0);
        return std::string(file->content.text(), size);
    }
    static std::string twoFiles() {
        return entry("install.xml", "<x/>") + entry("b.txt", "content") + endRecord();
    }

    MemoryFileSystem files_;
    FakeConsole console_;
    Cabinet cabinet_{files_, DebugLog(console_)};
};

TEST_F(CabinetTest, ReadsEntriesByAliasAndIndex) {
    ASSERT_EQ(load(package(twoFiles())), 0);
    EXPECT_TRUE(cabinet_.isSolid());
    EXPECT_EQ(cabinet_.getCount(), 2);
    EXPECT_EQ(cabinet_.findAlias("b.txt"), 1);
    EXPECT_EQ(read("install.xml"), "<x/>");
    EXPECT_EQ(read("b.txt"), "content");
    const CabinetEntry& second = cabinet_.entry(1);
    EXPECT_EQ(second.name(), "b.txt");
    EXPECT_EQ(second.fileSize(), 7U);
    EXPECT_EQ(second.storedSize(), 7U);
    EXPECT_EQ(second.flags(), 0U);
    EXPECT_EQ(second.headerOffset(), 608 + 4);
    EXPECT_EQ(second.digest(), md5Of("content", 7));
}

TEST_F(CabinetTest, LogsEachStep) {
    const std::string file = package(twoFiles());
    ASSERT_EQ(load("image" + file, 5), 0);
    const std::string size = std::to_string(file.size());
    EXPECT_EQ(console_.lines(),
              (std::vector<std::string>{"Allocating memory for the compressed cabinet (" + size + " B)",
                                        "Seeking file offset 5", "Reading compressed cabinet into memory",
                                        "Checking compressed cabinet version compatibility",
                                        "Starting decompression of data ...",
                                        "Decompressor: Allocating memory for uncompressed cabinet (" +
                                            std::to_string(twoFiles().size()) + " B)",
                                        "Decompressor: Starting decompression ... (1 chunks)",
                                        "Finished decompression. Initializing file headers ...",
                                        "Finished file headers initialization."}));
}

TEST_F(CabinetTest, WorksWithALogWithoutATarget) {
    Cabinet silent(files_, DebugLog());
    files_.addFile(kPath, package(twoFiles()));
    EXPECT_EQ(silent.load(kPath, 0), Cabinet::LoadResult::kLoaded);
    files_.addFile(kPath, "x");
    EXPECT_EQ(silent.load(kPath, 0), Cabinet::LoadResult::kBadMagic0);
    EXPECT_EQ(silent.load("/p/none", 0), Cabinet::LoadResult::kNotOpened);
    files_.addFile(kPath, leadBlock() + solidHeader(1));
    EXPECT_EQ(static_cast<int>(silent.load(kPath, 0)), -11);
}

TEST_F(CabinetTest, HasNoEntriesWhenTheEndRecordComesFirst) {
    EXPECT_EQ(load(package(endRecord())), 0);
    EXPECT_EQ(cabinet_.getCount(), 0);
    EXPECT_EQ(cabinet_.findAlias(""), std::nullopt);
}

TEST_F(CabinetTest, FindsTheLaterOfTwoEntriesWithOneAlias) {
    ASSERT_EQ(load(package(entry("a", "first") + entry("b", "other") + entry("a", "second") + endRecord())),
              0);
    EXPECT_EQ(read("a"), "second");
    EXPECT_EQ(cabinet_.findAlias("a"), 2);
}

TEST_F(CabinetTest, ComparesAliasesExactly) {
    ASSERT_EQ(load(package(twoFiles())), 0);
    EXPECT_EQ(read("Install.xml"), "<none>");
    EXPECT_EQ(read("install.xm"), "<none>");
    EXPECT_EQ(read("install.xml "), "<none>");
}

TEST_F(CabinetTest, RefusesIndicesOutsideTheCatalogue) {
    ASSERT_EQ(load(package(twoFiles())), 0);
    for (const std::int32_t index : {2, -1, INT32_MAX, INT32_MIN}) {
        EXPECT_FALSE(cabinet_.readEntry(index)) << index;
        EXPECT_FALSE(cabinet_.entryContent(index)) << index;
    }
}

TEST_F(CabinetTest, ReadsTheStoredDigest) {
    ASSERT_EQ(load(package(twoFiles())), 0);
    const std::optional<CabinetFile> file = cabinet_.readAlias("b.txt");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->digest, md5Of("content", 7));
}

TEST_F(CabinetTest, ShowsContentInPlace) {
    ASSERT_EQ(load(package(twoFiles())), 0);
    const std::optional<std::string_view> content = cabinet_.entryContent(1);
    ASSERT_EQ(content, "content");
    EXPECT_EQ(content->data(), cabinet_.entryContent(1)->data());
}

TEST_F(CabinetTest, ReadsAnEmptyFileAsAnEmptyText) {
    ASSERT_EQ(load(package(entry("empty", "") + endRecord())), 0);
    EXPECT_EQ(read("empty"), "");
    EXPECT_EQ(cabinet_.entryContent(0), "");
}

TEST_F(CabinetTest, KeepsCopiesValidWithoutTheCabinet) {
    ASSERT_EQ(load(package(twoFiles())), 0);
    const std::optional<CabinetFile> file = cabinet_.readAlias("b.txt");
    ASSERT_TRUE(file);
    cabinet_.clear();
    EXPECT_EQ(cabinet_.getCount(), 0);
    EXPECT_FALSE(cabinet_.isSolid());
    EXPECT_EQ(cabinet_.findAlias("b.txt"), std::nullopt);
    EXPECT_STREQ(file->content.text(), "content");
}

TEST_F(CabinetTest, ForgetsTheEarlierCabinetEvenIfLoadingFails) {
    ASSERT_EQ(load(package(twoFiles())), 0);
    EXPECT_EQ(load("x"), -5);
    EXPECT_EQ(cabinet_.getCount(), 0);
    EXPECT_EQ(read("b.txt"), "<none>");
}

TEST_F(CabinetTest, ReportsAPackageThatCannotBeOpened) {
    EXPECT_EQ(static_cast<int>(cabinet_.load("/p/none", 0)), -2);
    EXPECT_EQ(cabinet_.systemStatus(), MemoryFileSystem::kNotFound);
    EXPECT_EQ(console_.lines(),
              (std::vector<std::string>{"ERROR: Failed to open /p/none for decompressing!"}));
}

TEST_F(CabinetTest, FailsForAnOffsetOutsideTheFile) {
    EXPECT_EQ(load("abc", 4), -3);
    EXPECT_EQ(load("abc", -1), -3);
    EXPECT_EQ(load("abc", INT64_MAX), -3);
}

TEST_F(CabinetTest, FailsWhenSeekingOrReadingFails) {
    files_.failAt(MemoryFileSystem::Operation::kSeek, "", 1);
    const std::string file = package(twoFiles());
    EXPECT_EQ(load("image" + file, 5), -3);
    files_.clearFaults();
    files_.failAt(MemoryFileSystem::Operation::kRead, "", 1);
    EXPECT_EQ(load(file), -4);
    EXPECT_EQ(cabinet_.systemStatus(), MemoryFileSystem::kAccessDenied);
    EXPECT_EQ(files_.openFileCount(), 0);
    files_.clearFaults();
    EXPECT_EQ(load(file), 0);
    EXPECT_EQ(cabinet_.systemStatus(), 0);
}

TEST_F(CabinetTest, NamesTheMagicWordThatDiffers) {
    const std::string good = package(twoFiles());
    for (std::size_t i = 0; i < 12; ++i) {
        std::string changed = good;
        changed[i] = static_cast<char>(changed[i] ^ 1);
        EXPECT_EQ(load(changed), -5 - static_cast<int>(i / 4)) << i;
    }
}

TEST_F(CabinetTest, DoesNotLookAtTheOtherFieldsOfTheLeadBlock) {
    std::string changed = package(twoFiles());
    std::fill(changed.begin() + 12, changed.begin() + 64, '\x77');
    EXPECT_EQ(load(changed), 0);
}

TEST_F(CabinetTest, FailsForAHeaderOfNeitherMagic) {
    EXPECT_EQ(load(package(entryHeader("a", "a", 0, 0, "", 0x63270011))), -8);
    EXPECT_EQ(load(package(entry("a", "1") + std::string(608, 'x'))), -8);
}

TEST_F(CabinetTest, FailsForAWalkThatLeavesTheBlock) {
    EXPECT_EQ(load(package(entry("a", "1"))), -9);  // no end record
    EXPECT_EQ(load(package(endRecord().substr(0, 607))), -9);
    EXPECT_EQ(load(package(entryHeader("a", "a", 5, 5) + "1234")), -9);
    EXPECT_EQ(load(package(entryHeader("a", "a", 5, 0xFFFFFFFF) + "12345" + endRecord())), -9);
    EXPECT_EQ(load(package(entryHeader("a", "a", 5, 0x80000000) + "12345" + endRecord())), -9);
    EXPECT_EQ(load(package("x")), -9);
    EXPECT_EQ(cabinet_.getCount(), 0);
}

TEST_F(CabinetTest, FailsTheEntryWhoseSizesDisagree) {
    ASSERT_EQ(load(package(entryHeader("less", "less", 2, 5) + "12345" + entryHeader("more", "more", 9, 5) +
                           "12345" + entryHeader("huge", "huge", 0xFFFFFFFF, 5) + "12345" +
                           entry("good", "text") + endRecord())),
              0);
    EXPECT_EQ(read("less"), "<none>");
    EXPECT_EQ(read("more"), "<none>");
    EXPECT_EQ(read("huge"), "<none>");
    EXPECT_EQ(read("good"), "text");
}

TEST_F(CabinetTest, ReadsNamesThatFillTheirFields) {
    const std::string name(300, 'n');
    const std::string alias(276, 'a');
    ASSERT_EQ(load(package(entryHeader(name, alias, 1, 1) + "x" + endRecord())), 0);
    EXPECT_EQ(cabinet_.entry(0).name(), name);
    EXPECT_EQ(cabinet_.entry(0).alias(), alias);
    EXPECT_EQ(read(alias), "x");
}

TEST_F(CabinetTest, PassesOnTheResultOfTheDecompressor) {
    std::string file = package(twoFiles());
    EXPECT_EQ(load(file.substr(0, file.size() - 1)), -28);
    EXPECT_EQ(console_.lines().back(), "ERROR: The solid decompressor failed decompressing the data (-28)!");
    setNumber(file, 64 + 20 + 8, 19);
    EXPECT_EQ(load(file), -22);
    EXPECT_FALSE(cabinet_.isSolid());
}

TEST_F(CabinetTest, IgnoresWhatFollowsTheStream) {
    EXPECT_EQ(load(package(twoFiles()) + "MD5SUM: 0123456789abcdef and a signature"), 0);
    EXPECT_EQ(read("b.txt"), "content");
}

TEST_F(CabinetTest, ReadsThePlainFormAndFailsItsEntriesWithContent) {
    const std::string zlibFile = deflated("content");
    const std::string emptyFile = deflated("");
    ASSERT_EQ(load(leadBlock() + entryHeader("a", "a", 7, static_cast<std::uint32_t>(zlibFile.size())) +
                   zlibFile + entryHeader("e", "e", 0, static_cast<std::uint32_t>(emptyFile.size())) +
                   emptyFile + endRecord()),
              0);
    EXPECT_FALSE(cabinet_.isSolid());
    EXPECT_EQ(cabinet_.getCount(), 2);
    EXPECT_EQ(cabinet_.entry(0).headerOffset(), 64);
    EXPECT_EQ(read("a"), "<none>");
    EXPECT_EQ(read("e"), "");
}

TEST_F(CabinetTest, ReadsABadNumberOfChunksAsThePlainForm) {
    // The header of the stream is then taken for that of the first entry, and refused.
    EXPECT_EQ(load(leadBlock() + solidHeader(0) + std::string(700, '\0')), -8);
    EXPECT_EQ(load(leadBlock() + solidHeader(257) + std::string(700, '\0')), -8);
    EXPECT_EQ(load(leadBlock() + solidHeader(257)), -9);
    EXPECT_EQ(load(leadBlock()), -9);
}

TEST_F(CabinetTest, SurvivesACutAtEveryLength) {
    const std::string file = package(twoFiles());
    for (std::size_t size = 0; size < file.size(); ++size) {
        const int expected = size < 4     ? -5
                             : size < 8   ? -6
                             : size < 12  ? -7
                             : size < 84  ? -9   // too short for a solid header: a plain form without an end
                             : size < 100 ? -11  // the chunk's record
                                          : -28;
        EXPECT_EQ(load(file.substr(0, size)), expected) << size;
        EXPECT_EQ(cabinet_.getCount(), 0);
    }
}

TEST_F(CabinetTest, SurvivesEveryChangedByteOfTheCatalogue) {
    const std::string cabinet = twoFiles();
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < 40; ++i) {
        places.insert(places.end(), {i, 612 + i, 612 + 608 + 7 + i});
    }
    for (const std::size_t place : places) {
        for (const int flip : {0x01, 0x80, 0xFF}) {
            std::string changed = cabinet;
            changed[place] = static_cast<char>(changed[place] ^ flip);
            const int result = load(package(changed));
            EXPECT_TRUE(result == 0 || result == -8 || result == -9) << place << ": " << result;
            for (std::int32_t i = 0; i < cabinet_.getCount(); ++i) {
                cabinet_.readEntry(i);
            }
        }
    }
}

}  // namespace
