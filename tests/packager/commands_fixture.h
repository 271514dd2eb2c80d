#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "checking/finding_codes.h"
#include "package/image_bytes.h"
#include "packager/commands.h"
#include "packager/recorded_output.h"
#include "platform/error_text.h"
#include "platform/memory/memory_environment.h"
#include "platform/memory/memory_file_system.h"
#include "platform/memory/memory_processes.h"

// A small product in memory and the tool to try on it.
class CommandsTest : public testing::Test {
protected:
    CommandsTest() {
        files_.addFile("/in/install.xml",
                       "<R><ProductDesc/><FileSet Name=\"S\"><FN Dest=\"x\">a/read.me</FN>"
                       "<FN>b/read.me</FN><FN Alias=\"Banner\">banner.png</FN>"
                       "<FN>installer.exe</FN></FileSet></R>");
        files_.addFile("/in/a/read.me", "first");
        files_.addFile("/in/b/read.me", "second");
        files_.addFile("/in/banner.png", "image");
        files_.addFile("/image", ImageBytes::elfImage(ImageBytes::installerData() + std::string(6000, 'c')));
        files_.addDirectory("/out");
    }
    int run(const std::vector<std::string>& arguments) {
        output_.lines.clear();
        output_.errors.clear();
        const int exitCode = runPackager(arguments, output_, files_, environment_, processes_);
        EXPECT_EQ(files_.openFileCount(), 0);
        return exitCode;
    }
    // With what is wrong in the small descriptions of the tests allowed, and without the lines about it.
    int build(const std::vector<std::string>& more = {}) {
        std::vector<std::string> arguments = {"build",  "--description", "/in/install.xml",
                                              "--root", "/in",           "--image",
                                              "/image", "--output",      "/out/setup"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const int exitCode = run(withAllAllowed(arguments));
        std::erase_if(output_.errors, [](const std::string& line) {
            return line.starts_with("/in/install.xml:") || line.starts_with("    ");
        });
        return exitCode;
    }
    static std::vector<std::string> withAllAllowed(std::vector<std::string> arguments) {
        for (const FindingKind& kind : finding_kinds::kAll) {
            arguments.push_back("--allow=" + std::string(kind.name));
        }
        return arguments;
    }
    // The package with one thing changed.
    void change(std::size_t place) {
        std::string package = files_.content("/out/setup");
        package[place] ^= 1;
        files_.addFile("/out/setup", package);
    }

    MemoryFileSystem files_;
    MemoryEnvironment environment_;
    MemoryProcesses processes_;
    RecordedOutput output_;
};
