#include "previewer/preview_run.h"

#include <gtest/gtest.h>

#include "fakes/recording_toolkit.h"
#include "platform/memory/memory_platform.h"
#include "previewer/small_product.h"

namespace {

class FakeDisplay : public platform::VirtualDisplay {
public:
    std::string name() const override { return ":7"; }
};

class PreviewRunTest : public testing::Test {
protected:
    PreviewRunTest() {
        machine.files.addFile("/package", "image" + SmallProduct::payload(SmallProduct::description()));
        machine.environment.program = "/bin/previewer";
        // The walk in a window, which a process of its own does.
        machine.processes.onStart = [this](const std::string& commandLine) {
            commandLines.push_back(commandLine);
            machine.files.addFile("/out/default-" + nextSize + "/walk.txt", walk);
        };
    }

    int run(std::vector<std::string> more = {}) {
        std::vector<std::string> arguments = {"--package", "/package", "--offset", "5",
                                              "--system",  "windows",  "--to",     "/out"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const auto startDisplay = [this](int, int, std::string& outReason) {
            outReason = hasDisplay ? "" : "no server";
            return hasDisplay ? std::make_unique<FakeDisplay>() : nullptr;
        };
        const auto openToolkit = [this](std::string&) -> Toolkit* { return &window; };
        const auto setLetterSize = [this](platform::Environment&, int percent) {
            letterSize = percent;
            return hasLetterSizes;
        };
        return PreviewRun({machine.bundle(), openToolkit, startDisplay, setLetterSize},
                          readPreviewOptions(arguments))
            .run();
    }
    bool says(const std::string& line) const {
        return machine.console.output.find(line) != std::string::npos;
    }

    MemoryPlatform machine;
    RecordingToolkit window;
    bool hasDisplay = true;
    bool hasLetterSizes = true;
    int letterSize = 0;
    std::string nextSize = "100";
    std::string walk = "page\tinstall-01-Welcome\t300\t200\ncut\t1\t2\t3\t4\tHello.\n";
    std::vector<std::string> commandLines;
};

TEST_F(PreviewRunTest, WritesTheConsolesPagesAndAnIndex) {
    EXPECT_EQ(run(), 0) << machine.console.errors;
    EXPECT_NE(machine.files.content("/out/default-console/install-01-Welcome.txt").find("Hello."),
              std::string::npos);
    EXPECT_NE(machine.files.content("/out/index.html").find("install-01-Welcome.png"), std::string::npos);
    EXPECT_TRUE(says("default-100/install-01-Welcome.png: cut: Hello.\n"));
    EXPECT_TRUE(says("/out/index.html: 0 pictures, 1 fault\n"));
}

TEST_F(PreviewRunTest, StartsAProcessForTheLettersOfASize) {
    nextSize = "150";
    EXPECT_EQ(run({"--sizes", "150"}), 0);
    EXPECT_EQ(commandLines,
              std::vector<std::string>{
                  "\"/bin/previewer\" \"--package\" \"/package\" \"--offset\" \"5\" "
                  "\"--system\" \"windows\" \"--to\" \"/out\" \"--sizes\" \"150\" \"--window-set\" \"0\""});
    EXPECT_EQ(machine.environment.variables["DISPLAY"], ":7");
    EXPECT_EQ(letterSize, 150);
    EXPECT_TRUE(machine.files.hasFile("/out/gtk-3.0/settings.ini"));
}

TEST_F(PreviewRunTest, CallsNoPictureWhatItIsNot) {
    hasLetterSizes = false;
    EXPECT_EQ(run({"--sizes", "150"}), 1);
    EXPECT_NE(machine.console.errors.find("letters of 150 % can't be had"), std::string::npos);
    EXPECT_TRUE(commandLines.empty());
}

TEST_F(PreviewRunTest, FailsOverFaultsOnlyIfItIsStrict) {
    EXPECT_EQ(run({"--strict"}), 1);
    walk = "page\tinstall-01-Welcome\t300\t200\n";
    EXPECT_EQ(run({"--strict"}), 0);
}

TEST_F(PreviewRunTest, ShowsTheConsoleAloneWhereThereIsNoDisplay) {
    hasDisplay = false;
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(machine.console.errors, "previewer: no pictures: no server\n");
    EXPECT_TRUE(machine.files.hasFile("/out/default-console/install-01-Welcome.txt"));
    EXPECT_TRUE(commandLines.empty());
    EXPECT_EQ(run({"--strict"}), 1);
}

TEST_F(PreviewRunTest, FailsWhenAWalkFails) {
    machine.processes.exitCodes = {1};
    EXPECT_EQ(run(), 1);
    EXPECT_EQ(machine.console.errors, "previewer: the pages in letters of 100 % couldn't be drawn\n");
}

TEST_F(PreviewRunTest, RefusesWhatItCantReadBeforeItWritesAnything) {
    machine.files.addFile("/empty.xml", "");
    for (const std::vector<std::string>& more : {std::vector<std::string>{"--answers", "/none.xml"},
                                                 {"--answers", "/empty.xml"},
                                                 {"--compare", "/none"},
                                                 {"--offset", "999999"}}) {
        EXPECT_EQ(run(more), 1);
        EXPECT_FALSE(machine.files.hasDirectory("/out"));
    }
    EXPECT_EQ(run({"--what"}), 2);
}

TEST_F(PreviewRunTest, ComparesWithAnEarlierPreview) {
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(run({"--compare", "/out"}), 1);
    machine.files.addFile("/package",
                          "image" + SmallProduct::payload(SmallProduct::description("Good morning.")));
    const auto pages = [this](const std::string& commandLine) {
        commandLines.push_back(commandLine);
        machine.files.addFile("/new/default-100/walk.txt", walk);
    };
    machine.processes.onStart = pages;
    EXPECT_EQ(run({"--to", "/new", "--compare", "/out"}), 0) << machine.console.errors;
    EXPECT_TRUE(says("compared with /out: 1 changed, 0 new, 0 gone\n"));
}

TEST_F(PreviewRunTest, WalksInAWindowItself) {
    PreviewDirectory(machine.files, "/out").begin();
    window.script = [this] {
        for (int i = 0; i < 500 && !window.isClosed; ++i) {
            window.events->onIdle();
        }
    };
    EXPECT_EQ(run({"--window-set", "0"}), 0) << machine.console.errors;
    EXPECT_TRUE(machine.files.hasFile("/out/default-100/install-01-Welcome.png"));
    EXPECT_TRUE(machine.files.content("/out/default-100/walk.txt").starts_with("page\tinstall-01-Welcome\t"));
}

}  // namespace
