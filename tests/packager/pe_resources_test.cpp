#include "packager/pe_resources.h"

#include <gtest/gtest.h>

#include "base/errors.h"
#include "packager/pe_bytes.h"
#include "packager/pe_image.h"

namespace {

const std::vector<PeResource> kSorted = {
    {{u"DATA", 0}, {u"first", 0}, 0, 1252, "named"},
    {{u"DATA", 0}, {{}, 2}, 0x409, 0, ""},
    {{{}, 3}, {{}, 1}, 0, 0, "icon"},
    {{{}, 3}, {{}, 2}, 0, 0, std::string(1000, 'i')},
    {{{}, 24}, {{}, 1}, 0x407, 0, "german"},
    {{{}, 24}, {{}, 1}, 0x409, 0, "english"},
};

std::vector<PeResource> readOf(const std::string& bytes) {
    const PeImage image(bytes);
    return readPeResources(image);
}

TEST(PeResources, ComeBackInTheirOrder) {
    EXPECT_EQ(readOf(PeBytes::imageWith(kSorted)), kSorted);
    EXPECT_EQ(readOf(PeBytes::image()), std::vector<PeResource>());
    EXPECT_EQ(readOf(PeBytes::imageWith({})), std::vector<PeResource>());
}

TEST(PeResources, HaveTheSameBytesInWhicheverOrderTheyAreGiven) {
    const std::vector<PeResource> reversed(kSorted.rbegin(), kSorted.rend());
    EXPECT_EQ(peResourceSection(reversed, 0x5000), peResourceSection(kSorted, 0x5000));
}

TEST(PeResources, TakeTheLaterOneOfTwo) {
    std::vector<PeResource> resources = kSorted;
    resources.push_back({{{}, 3}, {{}, 1}, 0, 0, "other"});
    EXPECT_EQ(readOf(PeBytes::imageWith(resources))[2].data, "other");
}

TEST(PeResources, AreRefusedWhereTheirTablesAreCut) {
    const std::string table = peResourceSection(kSorted, PeBytes::kDataAddress);
    const std::string whole = PeBytes::imageWith(kSorted);
    // What lies behind the cut counts as missing, because it is outside of the section.
    for (std::size_t size = 0; size < table.size() - 8; ++size) {
        std::string bytes = whole;
        PeBytes::setNumber(bytes, PeBytes::kSection + 16, static_cast<std::uint32_t>(size));
        EXPECT_THROW(readOf(bytes), InstallerError) << size;
    }
}

TEST(PeResources, SurviveEveryWrongBitOfTheirTables) {
    const std::string whole = PeBytes::imageWith(kSorted);
    int refused = 0;
    for (std::size_t i = 1024 * 8; i < (1024 + 0x200) * 8; ++i) {
        std::string bytes = whole;
        bytes[i / 8] = static_cast<char>(bytes[i / 8] ^ (1 << (i % 8)));
        try {
            readOf(bytes);
        } catch (const InstallerError&) {
            ++refused;
        }
    }
    EXPECT_GT(refused, 0);
}

TEST(PeResources, DoNotMultiplyByTablesThatAllEntriesShare) {
    // Each of two entries leads to one table, on three levels; with enough of them nothing would end.
    std::string table(16, '\0');
    PeBytes::setNumber16(table, 14, 0x7FFF);
    for (int i = 0; i < 0x7FFF; ++i) {
        std::string entry(8, '\0');
        PeBytes::setNumber(entry, 4, 0x80000000);
        table += entry;
    }
    std::string bytes = PeBytes::image(table);
    PeBytes::setNumber(bytes, PeBytes::kDirectory, PeBytes::kDataAddress);
    EXPECT_THROW(readOf(bytes), InstallerError);
}

}  // namespace
