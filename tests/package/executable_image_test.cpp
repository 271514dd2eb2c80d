#include "package/executable_image.h"

#include <gtest/gtest.h>

#include <cstddef>

#include "package/image_bytes.h"

using namespace ImageBytes;

namespace {

TEST(ExecutableImage, EndsWithItsLastSectionInPe) {
    const std::string image = peImage("data");
    const ExecutableImage measured = measureExecutableImage(image);
    EXPECT_EQ(measured.kind, ImageKind::kPe);
    EXPECT_EQ(measured.problem, ImageProblem::kNone);
    EXPECT_EQ(measured.end, image.size());
}

TEST(ExecutableImage, EndsWithItsSectionTableInElf) {
    const std::string image = elfImage("data");
    const ExecutableImage measured = measureExecutableImage(image);
    EXPECT_EQ(measured.kind, ImageKind::kElf);
    EXPECT_EQ(measured.problem, ImageProblem::kNone);
    EXPECT_EQ(measured.end, image.size());
}

TEST(ExecutableImage, EndsWithItsSegmentsInElfWithoutSections) {
    std::string image = elfImage("data");
    image.resize(image.size() - 128);
    setNumber(image, 40, 0);
    setNumber16(image, 60, 0);
    EXPECT_EQ(measureExecutableImage(image).problem, ImageProblem::kNone);
    EXPECT_EQ(measureExecutableImage(image).end, image.size());
}

TEST(ExecutableImage, CountsTheSymbolsOfAnUnstrippedPe) {
    std::string image = peImage("data");
    const auto symbols = static_cast<std::uint32_t>(image.size());
    setNumber(image, 0x84 + 8, symbols);
    setNumber(image, 0x84 + 12, 3);
    image.resize(symbols + 3 * 18 + 10);
    setNumber(image, symbols + 3 * 18, 10);  // the strings' size, itself included
    EXPECT_EQ(measureExecutableImage(image).problem, ImageProblem::kNone);
    EXPECT_EQ(measureExecutableImage(image + "x").problem, ImageProblem::kDataAfter);
}

TEST(ExecutableImage, ReportsDataAfterTheImage) {
    for (const std::string& image : {peImage("data"), elfImage("data")}) {
        const ExecutableImage measured = measureExecutableImage(image + "x");
        EXPECT_EQ(measured.problem, ImageProblem::kDataAfter);
        EXPECT_EQ(measured.end, image.size());
    }
}

TEST(ExecutableImage, ReportsACutImageAtEveryLength) {
    for (const std::string& image : {peImage("data"), elfImage("data")}) {
        for (std::size_t size = 4; size < image.size(); ++size) {
            EXPECT_EQ(measureExecutableImage(image.substr(0, size)).problem, ImageProblem::kCut) << size;
        }
        for (std::size_t size = 0; size < 2; ++size) {
            EXPECT_EQ(measureExecutableImage(image.substr(0, size)).problem, ImageProblem::kNotExecutable);
        }
    }
}

TEST(ExecutableImage, RefusesWhatIsNotAProgram) {
    EXPECT_EQ(measureExecutableImage("#!/bin/sh\n").problem, ImageProblem::kNotExecutable);
    EXPECT_EQ(measureExecutableImage(std::string(4096, '\0')).problem, ImageProblem::kNotExecutable);
    EXPECT_EQ(measureExecutableImage("MZ" + std::string(4096, '\0')).problem, ImageProblem::kNotExecutable);
    std::string object = elfImage("data");
    setNumber16(object, 56, 0);  // no segments
    EXPECT_EQ(measureExecutableImage(object).problem, ImageProblem::kNotExecutable);
    std::string bigEndian = elfImage("data");
    bigEndian[5] = 2;
    EXPECT_EQ(measureExecutableImage(bigEndian).problem, ImageProblem::kNotExecutable);
}

TEST(ExecutableImage, SurvivesEveryChangedByte) {
    for (const std::string& image : {peImage("data"), elfImage("data")}) {
        for (std::size_t i = 0; i < image.size(); ++i) {
            for (const int flip : {0x01, 0x80, 0xFF}) {
                std::string changed = image;
                changed[i] = static_cast<char>(changed[i] ^ flip);
                const ExecutableImage measured = measureExecutableImage(changed);
                if (measured.problem == ImageProblem::kNone) {
                    EXPECT_EQ(measured.end, changed.size()) << i;
                }
            }
        }
    }
}

}  // namespace
