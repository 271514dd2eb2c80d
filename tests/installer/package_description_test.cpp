#include "installer/package_description.h"

#include <gtest/gtest.h>

#include "description/pxml.h"
#include "package/package_writer.h"
#include "platform/memory/memory_platform.h"

namespace {

class PackageDescriptionTest : public testing::Test {
protected:
    PackageKind read(const std::string& binFile) {
        platform::Platform platform = machine_.bundle();
        return readPackageDescription(binFile, platform, description_);
    }
    void addPackage(const std::string& alias) {
        machine_.files.addFile("/src/install.xml", "<A><Hello>there</Hello></A>");
        PackageOptions options;
        options.stripes = 1;
        options.level = 1;
        PackageWriter(machine_.files)
            .write({{"/src/install.xml", "install.xml", alias}}, options, "/payload.bin");
    }

    MemoryPlatform machine_;
    PXML description_;
};

TEST_F(PackageDescriptionTest, ReadsTheDescriptionOfASeparateFile) {
    addPackage("install.xml");
    EXPECT_EQ(read("/payload.bin"), PackageKind::kReadable);
    EXPECT_EQ(description_.getText(description_.findByName("Hello")), "there");
}

TEST_F(PackageDescriptionTest, APackageWithoutADescriptionIsUnreadable) {
    addPackage("other.xml");
    EXPECT_EQ(read("/payload.bin"), PackageKind::kUnreadable);
    EXPECT_EQ(description_.getNodeCount(), 0);
}

TEST_F(PackageDescriptionTest, WhatIsNoPackageIsUnreadable) {
    machine_.files.addFile("/payload.bin", "no package");
    EXPECT_EQ(read("/payload.bin"), PackageKind::kUnreadable);
    EXPECT_EQ(read("/missing.bin"), PackageKind::kUnreadable);
}

TEST_F(PackageDescriptionTest, AnUnstampedProgramHasNone) {
    EXPECT_EQ(read(""), PackageKind::kNone);
}

}  // namespace
