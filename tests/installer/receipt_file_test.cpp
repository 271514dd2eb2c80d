#include "installer/receipt_file.h"

#include <gtest/gtest.h>

#include "installer/record_list.h"
#include "platform/memory/memory_platform.h"
#include "platform/path_identity.h"

namespace {

class ReceiptFileTest : public testing::Test {
protected:
    ReceiptFileTest() { machine_.files.addDirectory("/receipts"); }

    std::string absolute(const std::string& path) {
        return ReceiptFile::absolutePath(path, machine_.environment);
    }
    std::string problem(const std::string& path) {
        return ReceiptFile::problemOf(path, "/app/install.log", machine_.files).value_or("");
    }
    std::string among(const std::string& path) {
        return ReceiptFile::directoryAmong({platform::pathIdentity("/app")}, path, machine_.files);
    }

    MemoryPlatform machine_;
    RecordList list_{"verification", "/log", true, {"complete"}, {}, {}};
};

TEST_F(ReceiptFileTest, ARelativePathCountsFromTheCurrentDirectory) {
    EXPECT_EQ(absolute("r.txt"), "/current/r.txt");
    EXPECT_EQ(absolute("/r.txt"), "/r.txt");
    EXPECT_EQ(absolute("C:\\r.txt"), "C:\\r.txt");
    EXPECT_EQ(absolute(""), "");
    machine_.environment.current = "/";
    EXPECT_EQ(absolute("r.txt"), "/r.txt");
    machine_.environment.current = "D:\\work";
    EXPECT_EQ(absolute("\\r.txt"), "D:\\r.txt");
    EXPECT_EQ(absolute("\\\\server\\r.txt"), "\\\\server\\r.txt");
    machine_.environment.current = "";
    EXPECT_EQ(absolute("r.txt"), "r.txt") << "nobody knows from where";
}

TEST_F(ReceiptFileTest, SaysWhyThereCanBeNone) {
    EXPECT_EQ(problem("/receipts/r.txt"), "");
    EXPECT_EQ(problem("/r.txt"), "");
    EXPECT_EQ(problem(""), "the option -receipt names no file");
    EXPECT_EQ(problem("/receipts"), "the receipt /receipts would be a directory");
    EXPECT_EQ(problem("/receipts/r/"), "the receipt /receipts/r/ would be a directory");
    EXPECT_EQ(problem("/none/r.txt"), "there is no directory /none for the receipt");
    EXPECT_EQ(problem("/receipts/a\"b"), "the name of the receipt holds a double quote or a line break");
    EXPECT_EQ(problem("/receipts/a\nb"), "the name of the receipt holds a double quote or a line break");
    EXPECT_EQ(problem("/app//install.log"), "the receipt would take the place of the action log");
}

TEST_F(ReceiptFileTest, FindsTheDirectoryThatWouldTakeItAlong) {
    EXPECT_EQ(among("/app/sub/r.txt"), "/app");
    EXPECT_EQ(among("/app/r.txt"), "/app");
    EXPECT_EQ(among("/apps/r.txt"), "");
    EXPECT_EQ(among("/app"), "");
    EXPECT_EQ(among("r.txt"), "");
}

TEST_F(ReceiptFileTest, FindsThatDirectoryBehindALink) {
    machine_.files.addDirectory("/app/sub");
    machine_.files.addLink("/receipts/link", "/app/sub");
    EXPECT_NE(among("/receipts/link/r.txt"), "");
    EXPECT_EQ(among("/receipts/r.txt"), "");
}

TEST_F(ReceiptFileTest, IsJsonWhereItsNameSaysSo) {
    for (const std::string& path : std::vector<std::string>{"/receipts/r.json", "/receipts/r.JSON"}) {
        EXPECT_EQ(ReceiptFile::write(list_, path, machine_.files), 0);
        EXPECT_EQ(machine_.files.content(path), listAsJson(list_));
    }
    for (const std::string& path :
         std::vector<std::string>{"/receipts/r.txt", "/receipts/json", "/receipts/r.json.txt"}) {
        EXPECT_EQ(ReceiptFile::write(list_, path, machine_.files), 0);
        EXPECT_EQ(machine_.files.content(path), listAsText(list_));
    }
}

TEST_F(ReceiptFileTest, ReplacesALinkAndDoesNotFollowIt) {
    machine_.files.addFile("/home/precious", "mine");
    machine_.files.addLink("/receipts/r.txt", "/home/precious");
    EXPECT_EQ(ReceiptFile::write(list_, "/receipts/r.txt", machine_.files), 0);
    EXPECT_EQ(machine_.files.content("/home/precious"), "mine");
    EXPECT_TRUE(machine_.files.hasFile("/receipts/r.txt"));
}

TEST_F(ReceiptFileTest, AFailureLeavesTheFileBefore) {
    machine_.files.addFile("/receipts/r.txt", "before");
    machine_.files.setFreeSpace(3);
    EXPECT_EQ(ReceiptFile::write(list_, "/receipts/r.txt", machine_.files), MemoryFileSystem::kDiskFull);
    EXPECT_EQ(machine_.files.content("/receipts/r.txt"), "before");
    EXPECT_EQ(machine_.files.allFiles().size(), 1U);
}

TEST_F(ReceiptFileTest, SaysWhatTheSystemSaid) {
    EXPECT_EQ(ReceiptFile::failureText("/r", -1),
              "ERROR: The receipt /r can't be written: no file can be in its place");
    EXPECT_TRUE(ReceiptFile::failureText("/r", 5).starts_with("ERROR: The receipt /r can't be written: "));
}

}  // namespace
