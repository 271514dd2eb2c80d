#include "fakes/temporary_directory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

namespace {

std::filesystem::path pathOf(const std::string& utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string utf8Of(const std::filesystem::path& path) {
    const std::u8string text = path.generic_u8string();
    return std::string(text.begin(), text.end());
}

}  // namespace

TemporaryDirectory::TemporaryDirectory() {
    std::random_device random;
    const std::filesystem::path base = std::filesystem::temp_directory_path();
    for (;;) {
        const std::filesystem::path candidate = base / ("tandrel-test-" + std::to_string(random()));
        if (std::filesystem::create_directory(candidate)) {
            path_ = utf8Of(candidate);
            return;
        }
    }
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(pathOf(path_), ignored);
}

std::string TemporaryDirectory::file(std::string_view name) const {
    return path_ + "/" + std::string(name);
}

void writeTestFile(const std::string& path, std::string_view content) {
    std::ofstream out(pathOf(path), std::ios::binary | std::ios::trunc);
    out.write(content.data(), static_cast<std::streamsize>(content.size()));
    out.close();
    ASSERT_TRUE(out.good()) << path;
}

std::string readTestFile(const std::string& path) {
    std::ifstream in(pathOf(path), std::ios::binary);
    EXPECT_TRUE(in.good()) << path;
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

bool testFileExists(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::exists(std::filesystem::symlink_status(pathOf(path), ignored));
}
