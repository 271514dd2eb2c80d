#include "installer/removal_receipt.h"

#include <gtest/gtest.h>

#include "installer/record_list.h"
#include "installer/run_options.h"
#include "installer/start_messages.h"
#include "platform/memory/memory_platform.h"

namespace {

constexpr char kHead[] = "/app/install.xml\r\n\r\nNUMVARS\t0\r\n";

class RemovalReceiptTest : public testing::Test {
protected:
    RemovalReceiptTest() {
        machine_.files.addFile("/app/a", "a");
        machine_.files.addFile("/app/b", "b");
        machine_.files.addFile(
            "/copy.log",
            std::string(kHead) + "DIR\t1\t/app/\r\nFILE\tCREATE\t/app/a\r\nFILE\tCREATE\t/app/b\r\n");
    }
    bool holds(const std::string& text) const {
        return machine_.files.content("/r.txt").find(text) != std::string::npos;
    }

    MemoryPlatform machine_;
    StartMessages messages_{machine_.console, platform::showMessage};
    RemovalReceipt receipt_{machine_.bundle(), messages_, "/r.txt"};
};

TEST_F(RemovalReceiptTest, SaysWhatBecameOfEachRecord) {
    receipt_.begin("/copy.log", "/app/install.log");
    machine_.files.removeFile("/app/a");
    machine_.files.removeFile("/copy.log");
    EXPECT_TRUE(receipt_.finish(false, false));
    const std::string summary =
        "uninstallation: 1 gone, 0 put back, 0 changed and left, 0 foreign and left, 2 failed\n";
    EXPECT_EQ(machine_.console.output, summary);
    EXPECT_TRUE(machine_.files.content("/r.txt").starts_with(summary + "log: /app/install.log\n"));
    EXPECT_TRUE(holds("gone    file       "));
    EXPECT_TRUE(holds("failed  directory  "));
}

TEST_F(RemovalReceiptTest, PrintsNothingWhenItIsToBeQuiet) {
    receipt_.begin("/copy.log", "/app/install.log");
    EXPECT_TRUE(receipt_.finish(true, true));
    EXPECT_EQ(machine_.console.output, "");
    EXPECT_TRUE(machine_.files.hasFile("/r.txt"));
}

TEST_F(RemovalReceiptTest, IsWrittenWithoutALogThatCanBeRead) {
    receipt_.begin("/none.log", "/app/install.log");
    EXPECT_TRUE(receipt_.finish(false, true));
    EXPECT_TRUE(holds("note: /app/install.log: there is no such file"));
}

TEST_F(RemovalReceiptTest, BeginsAgainWithTheLogThatCameBack) {
    receipt_.begin("/none.log", "/app/install.log");
    receipt_.begin("/copy.log", "/app/install.log");
    EXPECT_TRUE(receipt_.finish(true, true));
    EXPECT_TRUE(holds("3 failed"));
    EXPECT_FALSE(holds("no such file"));
}

TEST_F(RemovalReceiptTest, IsPrintedWhereItCanNotBeWritten) {
    receipt_.begin("/copy.log", "/app/install.log");
    machine_.files.setFreeSpace(1);
    EXPECT_FALSE(receipt_.finish(true, true));
    EXPECT_TRUE(machine_.console.errors.starts_with("ERROR: The receipt /r.txt can't be written: "));
    EXPECT_NE(machine_.console.output.find("failed  file"), std::string::npos) << machine_.console.output;
}

TEST_F(RemovalReceiptTest, IsRefusedWhereItWouldGoWithTheProduct) {
    const auto problem = [&](const std::string& path) {
        return RemovalReceipt::problemOf(path, "/copy.log", machine_.bundle()).value_or("");
    };
    EXPECT_EQ(problem("/r.txt"), "");
    EXPECT_EQ(problem("/app/r.txt"), "the receipt /app/r.txt would lie in /app, which is to be removed");
    EXPECT_EQ(problem("/none/r.txt"), "there is no directory /none for the receipt");
    EXPECT_EQ(RemovalReceipt::problemOf("/app/r.txt", "/none.log", machine_.bundle()), std::nullopt)
        << "the log is for the uninstallation to judge";
}

TEST_F(RemovalReceiptTest, BothPathsAreCompletedForTheSecondStage) {
    RunOptions options;
    options.uninstallLog = "un/install.log";
    completeReceiptOptions(options, machine_.environment);
    EXPECT_EQ(options.receiptLog, "");
    options.receipt = "r.txt";
    completeReceiptOptions(options, machine_.environment);
    EXPECT_EQ(options.receipt, "/current/r.txt");
    EXPECT_EQ(options.receiptLog, "/current/un/install.log");
    options.receiptLog = "/given.log";
    completeReceiptOptions(options, machine_.environment);
    EXPECT_EQ(options.receiptLog, "/given.log");
}

}  // namespace
