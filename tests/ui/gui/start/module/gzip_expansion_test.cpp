#include "ui/gui/start/module/gzip_expansion.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <string>

namespace {

constexpr int kGzip = 16 + MAX_WBITS;

std::string compressed(const std::string& content) {
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, 9, Z_DEFLATED, kGzip, 8, Z_DEFAULT_STRATEGY), Z_OK);
    std::string file(deflateBound(&stream, content.size()), '\0');
    std::string source = content;
    stream.next_in = reinterpret_cast<Bytef*>(source.data());
    stream.avail_in = static_cast<uInt>(source.size());
    stream.next_out = reinterpret_cast<Bytef*>(file.data());
    stream.avail_out = static_cast<uInt>(file.size());
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    file.resize(stream.total_out);
    deflateEnd(&stream);
    return file;
}

std::string someContent() {
    std::string content;
    for (int i = 0; i < 2000; ++i) {
        content += std::to_string(i * i) + ' ';
    }
    return content;
}

TEST(GzipExpansion, GivesTheContentBack) {
    for (const std::string& content : {std::string(), std::string("a"), someContent()}) {
        std::string expanded = "old";
        EXPECT_TRUE(expandGzip(compressed(content), expanded));
        EXPECT_EQ(expanded, content);
    }
}

TEST(GzipExpansion, RefusesAFileCutAtAnyLength) {
    const std::string file = compressed(someContent());
    for (std::size_t length = 0; length < file.size(); ++length) {
        std::string expanded = "old";
        ASSERT_FALSE(expandGzip(std::string_view(file).substr(0, length), expanded)) << length;
        ASSERT_EQ(expanded, "") << length;
    }
}

// Some bits of the format mean nothing, such as the time in the header.
TEST(GzipExpansion, NeverTakesADamagedContent) {
    const std::string content = someContent();
    const std::string file = compressed(content);
    std::size_t refused = 0;
    for (std::size_t i = 0; i < file.size(); ++i) {
        std::string broken = file;
        broken[i] = static_cast<char>(broken[i] ^ 0x41);
        std::string expanded;
        if (!expandGzip(broken, expanded)) {
            ++refused;
            ASSERT_EQ(expanded, "") << i;
        } else {
            ASSERT_EQ(expanded, content) << i;
        }
    }
    constexpr std::size_t kMeaningless = 10;
    EXPECT_GE(refused, file.size() - kMeaningless);
}

TEST(GzipExpansion, RefusesBytesBehindTheEnd) {
    const std::string file = compressed("content");
    std::string expanded;
    EXPECT_FALSE(expandGzip(file + file.substr(file.size() - 4), expanded));
}

}  // namespace
