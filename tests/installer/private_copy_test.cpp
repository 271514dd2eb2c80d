#include "installer/private_copy.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_file_system.h"

namespace {

using Failure = PrivateCopy::Failure;
using Operation = MemoryFileSystem::Operation;

class PrivateCopyTest : public testing::Test {
protected:
    PrivateCopyTest() {
        files_.addFile("/product/uninstall", "the program");
        files_.addFile("/product/install.log", "the log");
    }
    Failure make(PrivateCopy& copy, const std::string& place = "/tmp") {
        return copy.make(place, "/product/uninstall", "/product/install.log");
    }
    // Makes it in vain, and nothing stays.
    std::string reasonOf(Failure expected, const std::string& place = "/tmp") {
        std::string why;
        {
            PrivateCopy copy(files_);
            EXPECT_EQ(make(copy, place), expected);
            why = copy.why();
        }
        EXPECT_EQ(files_.allFiles(),
                  (std::vector<std::string>{"/product/install.log", "/product/uninstall"}));
        EXPECT_FALSE(files_.hasDirectory("/tmp/ormeluninst-1"));
        EXPECT_EQ(files_.openFileCount(), 0);
        return why;
    }

    MemoryFileSystem files_;
};

TEST_F(PrivateCopyTest, CopiesBothIntoAPrivateDirectoryUnderTheirNames) {
    PrivateCopy copy(files_);
    EXPECT_EQ(make(copy), Failure::kNone);
    EXPECT_TRUE(files_.isPrivate("/tmp/ormeluninst-1"));
    EXPECT_EQ(copy.image(), "/tmp/ormeluninst-1\\ormeluninst.dll");
    EXPECT_EQ(copy.log(), "/tmp/ormeluninst-1\\ormeluninst.log");
    EXPECT_EQ(files_.content(copy.image()), "the program");
    EXPECT_EQ(files_.content(copy.log()), "the log");
    EXPECT_TRUE(files_.isExecutable(copy.image()));
    EXPECT_FALSE(files_.isExecutable(copy.log()));
    EXPECT_TRUE(files_.isPrivate(copy.image()));
    EXPECT_TRUE(files_.isPrivate(copy.log()));
}

TEST_F(PrivateCopyTest, HoldsTheImageUntilItIsKept) {
    PrivateCopy copy(files_);
    EXPECT_EQ(make(copy), Failure::kNone);
    EXPECT_EQ(files_.openFileCount(), 1);
    copy.keep();
    EXPECT_EQ(files_.openFileCount(), 0);
}

TEST_F(PrivateCopyTest, WhatIsKeptStaysAndWhatIsNotGoes) {
    {
        PrivateCopy kept(files_);
        EXPECT_EQ(make(kept), Failure::kNone);
        kept.keep();
        PrivateCopy dropped(files_);
        EXPECT_EQ(make(dropped), Failure::kNone);
    }
    EXPECT_TRUE(files_.hasFile("/tmp/ormeluninst-1/ormeluninst.dll"));
    EXPECT_TRUE(files_.hasFile("/tmp/ormeluninst-1/ormeluninst.log"));
    EXPECT_FALSE(files_.hasDirectory("/tmp/ormeluninst-2"));
}

TEST_F(PrivateCopyTest, SaysWhatFails) {
    EXPECT_TRUE(reasonOf(Failure::kLog, "/none").starts_with("no directory can be made in \"/none\": "));
    files_.failAt(Operation::kOpen, "/product/install.log", 1);
    EXPECT_TRUE(reasonOf(Failure::kLog).starts_with("\"/product/install.log\" can't be read: "));
    files_.failAt(Operation::kRead, "/product/uninstall", 1);
    EXPECT_TRUE(reasonOf(Failure::kImage).starts_with("\"/product/uninstall\" can't be read: "));
    files_.setFreeSpace(10);
    EXPECT_NE(reasonOf(Failure::kImage).find("ormeluninst.dll\" can't be written: "), std::string::npos);
}

TEST_F(PrivateCopyTest, FailsForAnyFailedStepWithoutARest) {
    // The images and their directories have the numbers of the attempts.
    int attempt = 0;
    const auto failing = [&](Operation operation, const char* name, int n, Failure expected) {
        const std::string path = "/tmp/ormeluninst-" + std::to_string(++attempt) + name;
        files_.failAt(operation, path, n);
        EXPECT_NE(reasonOf(expected), "") << path;
        EXPECT_FALSE(files_.hasDirectory("/tmp/ormeluninst-" + std::to_string(attempt)));
    };
    failing(Operation::kCreateDirectory, "", 1, Failure::kLog);
    for (const auto& [name, failure] :
         {std::pair("/ormeluninst.log", Failure::kLog), std::pair("/ormeluninst.dll", Failure::kImage)}) {
        failing(Operation::kOpen, name, 1, failure);
        failing(Operation::kWrite, name, 1, failure);
        failing(Operation::kClose, name, 1, failure);
    }
    failing(Operation::kOpen, "/ormeluninst.dll", 2, Failure::kImage);
    failing(Operation::kRead, "/ormeluninst.dll", 1, Failure::kImage);
    failing(Operation::kMakeExecutable, "/ormeluninst.dll", 1, Failure::kImage);
}

// Somebody puts another program in the place of the copy before it is held.
class SpoiltFiles : public MemoryFileSystem {
public:
    int open(std::string_view path, const platform::OpenOptions& options,
             std::unique_ptr<platform::File>& outFile) override {
        if (path.ends_with("ormeluninst.dll") && options.access == platform::kRead) {
            addFile(path, "the PROGRAM");
        }
        return MemoryFileSystem::open(path, options, outFile);
    }
};

TEST(PrivateCopySpoiltTest, RefusesAnImageThatIsNotWhatWasCopied) {
    SpoiltFiles files;
    files.addFile("/product/uninstall", "the program");
    files.addFile("/product/install.log", "the log");
    PrivateCopy copy(files);
    EXPECT_EQ(copy.make("/tmp", "/product/uninstall", "/product/install.log"), Failure::kImage);
    EXPECT_NE(copy.why().find("is not what was copied there"), std::string::npos) << copy.why();
}

TEST_F(PrivateCopyTest, RefusesAPlaceThatOthersCanChange) {
    files_.setUnprotected("/tmp");
    EXPECT_EQ(reasonOf(Failure::kImage), "others can change what lies in \"/tmp\"");
}

TEST_F(PrivateCopyTest, RefusesAPlaceThatNoCommandLineCanName) {
    files_.addDirectory("/t\"mp");
    EXPECT_EQ(reasonOf(Failure::kLog, "/t\"mp"), "\"/t\"mp\" has a double quote in its name");
}

TEST_F(PrivateCopyTest, OnlyAWholeCopyInAProtectedPlaceIsTakenForOne) {
    const auto isCopy = [&](const char* image, const char* log) {
        files_.addFile(image, "");
        files_.addFile(log, "");
        return PrivateCopy::isCopy(image, log, files_);
    };
    EXPECT_TRUE(isCopy("/tmp/ormeluninst-1/ormeluninst.dll", "/tmp/ormeluninst-1\\ormeluninst.log"));
    EXPECT_TRUE(isCopy("C:\\T\\ormeluninst-1\\ormeluninst.dll", "C:/T/ormeluninst-1\\ormeluninst.log"));
    // The names of the files alone belong to anybody.
    EXPECT_FALSE(isCopy("/tmp/ormeluninst.dll", "/tmp/ormeluninst.log"));
    EXPECT_FALSE(isCopy("/home/ormeluninst-/../bob/ormeluninst.dll", "/home/bob/ormeluninst.log"));
    EXPECT_FALSE(isCopy("/tmp/ormeluninst-1/ormeluninst.dll", "/tmp/ormeluninst-2/ormeluninst.log"));
    EXPECT_FALSE(isCopy("/tmp/ormeluninst-1/setup", "/tmp/ormeluninst-1/ormeluninst.log"));
    EXPECT_FALSE(isCopy("/tmp/ormeluninst-1/ormeluninst.dll", "/tmp/ormeluninst-1/other.log"));
    files_.setUnprotected("/tmp/ormeluninst-1");
    EXPECT_FALSE(isCopy("/tmp/ormeluninst-1/ormeluninst.dll", "/tmp/ormeluninst-1/ormeluninst.log"));
}

TEST_F(PrivateCopyTest, RemovesImageAndDirectory) {
    files_.addFile("/tmp/ormeluninst-1/ormeluninst.dll", "");
    PrivateCopy::removeImage("/tmp/ormeluninst-1/ormeluninst.dll", files_);
    EXPECT_FALSE(files_.hasDirectory("/tmp/ormeluninst-1"));
    EXPECT_TRUE(files_.removedAtRestart().empty());
}

TEST_F(PrivateCopyTest, WhatTheSystemKeepsGoesAtItsNextStart) {
    files_.addFile("/tmp/ormeluninst-1/ormeluninst.dll", "");
    files_.failAt(Operation::kRemoveFile, "/tmp/ormeluninst-1/ormeluninst.dll", 1);
    PrivateCopy::removeImage("/tmp/ormeluninst-1/ormeluninst.dll", files_);
    EXPECT_EQ(files_.removedAtRestart(),
              (std::vector<std::string>{"/tmp/ormeluninst-1/ormeluninst.dll", "/tmp/ormeluninst-1"}));
}

}  // namespace
