#include "installer/verify_option.h"

#include <gtest/gtest.h>

#include "engine/product_state.h"
#include "installer/start_messages.h"
#include "platform/memory/memory_platform.h"
#include "platform/system_environment.h"
#include "platform/written_path.h"

namespace {

using platform::writtenPath;

constexpr char kHead[] = "/app/install.xml\r\n\r\nNUMVARS\t0\r\n";
constexpr int kNotDone = -1;

class VerifyOptionTest : public testing::Test {
protected:
    VerifyOptionTest() {
        machine_.files.addFile("/app/a", "as installed");
        machine_.files.addFile("/app/install.log", std::string(kHead) + "FILE\tCREATE\t/app/a\r\n");
        WrittenSums sums;
        sums.add("/app/a", md5Of("as installed", 12));
        ProductState(machine_.files, machine_.environment).save("/app/install.log", sums);
    }

    int verify(const std::string& log = "/app/install.log", const std::optional<std::string>& receipt = {},
               bool isQuiet = false) {
        machine_.console.output.clear();
        machine_.console.errors.clear();
        platform::Platform bundle = machine_.bundle();
        StartMessages messages(machine_.console, platform::showMessage);
        return verifyInstallation({log, receipt, isQuiet}, bundle, messages);
    }
    std::string summary() const {
        return machine_.console.output.substr(0, machine_.console.output.find('\n'));
    }

    MemoryPlatform machine_;
};

TEST_F(VerifyOptionTest, AProductAsItWasInstalledIsComplete) {
    EXPECT_EQ(verify(), 0);
    EXPECT_EQ(machine_.console.output,
              "verification: 1 complete, 0 changed, 0 missing, 0 unknown\n"
              "log: /app/install.log\ncomplete  file  " +
                  writtenPath("/app/a") + "\n");
    EXPECT_EQ(machine_.console.errors, "");
}

TEST_F(VerifyOptionTest, WhatDiffersIsNamedAndCounts) {
    machine_.files.addFile("/app/a", "as damaged");
    EXPECT_EQ(verify(), 1);
    EXPECT_EQ(summary(), "verification: 0 complete, 1 changed, 0 missing, 0 unknown");
    machine_.files.removeFile("/app/a");
    EXPECT_EQ(verify(), 1);
    EXPECT_EQ(summary(), "verification: 0 complete, 0 changed, 1 missing, 0 unknown");
    machine_.files.addDevice("/app/a");
    EXPECT_EQ(verify(), 1);
    EXPECT_EQ(summary(), "verification: 0 complete, 0 changed, 0 missing, 1 unknown");
}

TEST_F(VerifyOptionTest, SaysWhatIsAsBeforeTheInstallation) {
    machine_.registry.addText(platform::RegistryRoot::kLocalMachine, platform::kSystemEnvironmentKey, "NAME",
                              "old");
    machine_.files.addFile("/app/install.log", std::string(kHead) + "ENV\tREPLACE\tNAME\told\r\n");
    EXPECT_EQ(verify(), 1);
    EXPECT_NE(machine_.console.output.find("changed  environment  NAME  (as it was before the installation)"),
              std::string::npos)
        << machine_.console.output;
}

TEST_F(VerifyOptionTest, ALogThatIsDamagedInPartsIsNotComplete) {
    machine_.files.addFile("/app/install.log", std::string(kHead) + "FILE\tCREATE\t/app/a\r\nFILE\tCR");
    EXPECT_EQ(verify(), 1);
    EXPECT_NE(machine_.console.output.find("note: The last record of the install log is not complete."),
              std::string::npos);
}

TEST_F(VerifyOptionTest, ARelativePathCountsFromTheCurrentDirectory) {
    machine_.environment.current = "/app";
    EXPECT_EQ(verify("install.log", "r.txt"), 0);
    EXPECT_TRUE(machine_.files.hasFile("/app/r.txt"));
}

TEST_F(VerifyOptionTest, WhatIsNoLogIsRefused) {
    machine_.files.addFile("/garbage", std::string("\x7f\x45\x00\xff\n\n", 6));
    for (const std::string& log : std::vector<std::string>{"", "/none", "/app", "/garbage"}) {
        EXPECT_EQ(verify(log), kNotDone) << log;
        EXPECT_EQ(machine_.console.output, "");
        EXPECT_TRUE(machine_.console.errors.starts_with("ERROR: The installation can't be verified: " + log))
            << machine_.console.errors;
    }
    EXPECT_EQ(machine_.console.errors,
              "ERROR: The installation can't be verified: /garbage: it is no action log\n");
}

TEST_F(VerifyOptionTest, WritesTheListWhereItIsWanted) {
    EXPECT_EQ(verify("/app/install.log", "/r.txt"), 0);
    EXPECT_EQ(machine_.files.content("/r.txt"), machine_.console.output);
    machine_.files.addFile("/app/a", "as damaged");
    EXPECT_EQ(verify("/app/install.log", "/r.json", true), 1);
    EXPECT_EQ(machine_.console.output, "") << "quiet";
    EXPECT_NE(machine_.files.content("/r.json").find(R"("summary": {"complete": 0, "changed": 1,)"),
              std::string::npos);
}

TEST_F(VerifyOptionTest, AReceiptThatCanNotBeIsSaid) {
    EXPECT_EQ(verify("/app/install.log", "/none/r.txt"), kNotDone);
    EXPECT_EQ(machine_.console.errors,
              "ERROR: The installation can't be verified: there is no directory /none for the receipt\n");
    machine_.files.setReadOnly("/app");
    EXPECT_EQ(verify("/app/install.log", "/app/r.txt"), kNotDone);
    EXPECT_TRUE(machine_.console.errors.starts_with("ERROR: The receipt /app/r.txt can't be written: "));
}

TEST_F(VerifyOptionTest, ChangesNothing) {
    const auto files = machine_.files.everything();
    const auto registry = machine_.registry.everything();
    verify();
    EXPECT_EQ(machine_.files.everything(), files);
    EXPECT_EQ(machine_.registry.everything(), registry);
    EXPECT_EQ(machine_.files.openFileCount(), 0);
}

}  // namespace
