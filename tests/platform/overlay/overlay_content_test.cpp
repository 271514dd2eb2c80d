#include "platform/overlay/overlay_content.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "property/random_numbers.h"

namespace {

class OverlayContentTest : public testing::Test {
protected:
    std::string read(const OverlayContent& content, std::int64_t position, std::uint32_t size) {
        std::string text(size, '?');
        std::uint32_t done = 0;
        EXPECT_EQ(
            content.read(position, text.data(), size, done,
                         [this](std::int64_t at, char* buffer, std::uint32_t part, std::uint32_t& outDone) {
                             EXPECT_LE(static_cast<std::size_t>(at) + part, base_.size());
                             base_.copy(buffer, part, static_cast<std::size_t>(at));
                             outDone = part;
                             return 0;
                         }),
            0);
        text.resize(done);
        return text;
    }

    std::string base_;
    ContentMemory memory_{1 << 20};
};

TEST_F(OverlayContentTest, IsWhatAFileWouldBeAfterRandomWrites) {
    for (std::uint64_t seed = 0; seed < 200; ++seed) {
        RandomNumbers random(seed);
        base_ = std::string(random.below(300), 'b');
        std::string expected = base_;
        OverlayContent content(memory_, static_cast<std::int64_t>(base_.size()));
        for (int step = 0; step < 40; ++step) {
            const std::size_t position = random.below(400);
            const std::string text(random.below(60), static_cast<char>('c' + random.below(20)));
            if (random.oneIn(6)) {
                expected.resize(position);
                content.resize(static_cast<std::int64_t>(position));
            } else if (!text.empty()) {
                expected.resize(std::max(expected.size(), position + text.size()));
                expected.replace(position, text.size(), text);
                content.write(static_cast<std::int64_t>(position), text.data(),
                              static_cast<std::uint32_t>(text.size()));
            }
            ASSERT_EQ(content.size(), static_cast<std::int64_t>(expected.size())) << seed;
            ASSERT_EQ(read(content, 0, 1000), expected) << seed;
            const std::size_t start = random.below(500);
            ASSERT_EQ(read(content, static_cast<std::int64_t>(start), 70),
                      start < expected.size() ? expected.substr(start, 70) : "")
                << seed;
        }
        ASSERT_EQ(memory_.used(), content.keptBytes());
        ASSERT_LE(content.keptBytes(), 460);
    }
    EXPECT_EQ(memory_.used(), 0);
}

TEST_F(OverlayContentTest, AStatusOfTheBaseEndsTheReading) {
    OverlayContent content(memory_, 10);
    content.write(2, "xy", 2);
    char buffer[10];
    std::uint32_t done = 0;
    const auto failing = [](std::int64_t position, char*, std::uint32_t size, std::uint32_t& outDone) {
        outDone = position < 4 ? size : 0;
        return position < 4 ? 0 : 77;
    };
    EXPECT_EQ(content.read(0, buffer, 10, done, failing), 77);
    EXPECT_EQ(done, 4U);
}

TEST_F(OverlayContentTest, TheLargestAreForgottenWhenMemoryRunsShort) {
    const std::string block(100000, 'x');
    OverlayContent log(memory_, 0);
    log.write(0, "what is read again", 18);
    std::vector<std::unique_ptr<OverlayContent>> files;
    for (int i = 0; i < 5; ++i) {
        files.push_back(std::make_unique<OverlayContent>(memory_, 0));
        for (int part = 0; part < 3 + 20 * (i % 2); ++part) {
            files.back()->write(part * 100000, block.data(), 100000);
        }
    }
    EXPECT_LE(memory_.used(), 1 << 20);
    EXPECT_EQ(read(log, 0, 100), "what is read again");
    EXPECT_TRUE(files[1]->isForgotten());
    EXPECT_TRUE(files[3]->isForgotten());
    EXPECT_FALSE(files[4]->isForgotten());
    EXPECT_EQ(files[3]->size(), 2300000);
    files[3]->write(2300000, "end", 3);
    EXPECT_EQ(files[3]->size(), 2300003);
    files[3]->resize(0);
    EXPECT_FALSE(files[3]->isForgotten());
    files[3]->write(0, "new", 3);
    EXPECT_EQ(read(*files[3], 0, 10), "new");
}

}  // namespace
