#include "packager/commands_fixture.h"

namespace {

class PreviewCommandTest : public CommandsTest {
protected:
    PreviewCommandTest() {
        environment_.program = "/tools/packager";
        files_.addDirectory("/tmp");
    }
    std::string started() const {
        return processes_.started.empty() ? "nothing" : processes_.started.back().commandLine;
    }
};

TEST_F(PreviewCommandTest, HandsAPackageToThePreviewerBesideThePackager) {
    files_.addProgram("/tools/previewer", "previewer");
    ASSERT_EQ(build({"--bin"}), 0);
    EXPECT_EQ(run({"preview", "/out/setup", "--to", "/out/pages", "--sizes", "100,150", "--answers", "/a.xml",
                   "--answers", "/b.xml", "--compare", "/old", "--strict", "--display"}),
              0);
    EXPECT_EQ(started(),
              "\"/tools/previewer\" \"--package\" \"/out/setup\" \"--offset\" \"0\" \"--system\" \"linux\" "
              "\"--title\" \"setup\" "
              "\"--to\" \"/out/pages\" \"--answers\" \"/a.xml\" \"--answers\" \"/b.xml\" \"--sizes\" "
              "\"100,150\" \"--compare\" \"/old\" \"--strict\" \"--display\"");
}

TEST_F(PreviewCommandTest, PacksADescriptionAndLeavesNothingOfIt) {
    files_.addProgram("/tools/previewer", "previewer");
    std::string packed;
    processes_.onStart = [&](const std::string&) {
        for (const std::string& path : files_.allFiles()) {
            packed = path.starts_with("/tmp/") ? path : packed;
        }
    };
    EXPECT_EQ(run({"preview", "/in/install.xml", "--root", "/in", "--image", "/image", "--to", "/out/pages"}),
              0);
    EXPECT_NE(packed, "");
    EXPECT_NE(started().find("\"" + packed +
                             "\" \"--offset\" \"0\" \"--system\" \"linux\" \"--title\" \"install.xml\""),
              std::string::npos)
        << started();
    EXPECT_FALSE(files_.hasFile(packed));
}

TEST_F(PreviewCommandTest, ShowsAPackageOnAMachineOfItsImagesSystem) {
    const auto shows = [this](const std::string& system) {
        return started().find("\"--system\" \"" + system + "\"") != std::string::npos;
    };
    files_.addProgram("/tools/previewer", "previewer");
    files_.addProgram("/tools/previewer.exe", "previewer");
    files_.addFile("/image.exe", ImageBytes::peImage(ImageBytes::installerData() + std::string(6000, 'c')));
    EXPECT_EQ(run({"preview", "/in/install.xml", "--root", "/in", "--image", "/image.exe", "--to", "/out/p"}),
              0);
    EXPECT_TRUE(shows("windows")) << started();
    environment_.program = "/tools/packager.exe";
    ASSERT_EQ(build(), 0);
    EXPECT_EQ(run({"preview", "/out/setup", "--to", "/out/pages"}), 0);
    EXPECT_TRUE(shows("linux")) << started();
    ASSERT_EQ(build({"--bin"}), 0);
    EXPECT_EQ(run({"preview", "/out/setup", "--to", "/out/pages"}), 0);
    EXPECT_TRUE(shows("windows")) << started();
}

TEST_F(PreviewCommandTest, FailsAsThePreviewerDoes) {
    files_.addProgram("/tools/previewer", "previewer");
    ASSERT_EQ(build({"--bin"}), 0);
    processes_.exitCodes = {1};
    EXPECT_EQ(run({"preview", "/out/setup", "--to", "/out/pages"}), 1);
    processes_.startError = 5;
    EXPECT_EQ(run({"preview", "/out/setup", "--to", "/out/pages"}), 1);
    EXPECT_EQ(output_.errors, std::vector<std::string>{"packager: /tools/previewer: can't be started"});
}

TEST_F(PreviewCommandTest, SaysThatThePreviewerIsMissing) {
    ASSERT_EQ(build({"--bin"}), 0);
    EXPECT_EQ(run({"preview", "/out/setup", "--to", "/out/pages"}), 1);
    EXPECT_EQ(
        output_.errors,
        std::vector<std::string>{"packager: /tools/previewer: the program that draws the pages isn't there"});
    environment_.program = "/tools/packager.exe";
    EXPECT_EQ(run({"preview", "/out/setup", "--to", "/out/pages"}), 1);
    EXPECT_NE(output_.errors[0].find("/tools/previewer.exe: "), std::string::npos);
}

TEST_F(PreviewCommandTest, RefusesWhatIsNoPackage) {
    files_.addProgram("/tools/previewer", "previewer");
    EXPECT_EQ(run({"preview", "/in/install.xml", "--to", "/out/pages"}), 1);
    EXPECT_EQ(started(), "nothing");
    EXPECT_EQ(run({"preview", "/in/install.xml", "--image", "/image", "--to", "/out/pages"}), 2);
    EXPECT_EQ(run({"preview", "/in/install.xml"}), 2);
    EXPECT_EQ(run({"preview", "--to", "/out/pages"}), 2);
}

TEST_F(PreviewCommandTest, RefusesANameThatCantBeHandedOn) {
    files_.addProgram("/tools/previewer", "previewer");
    ASSERT_EQ(build({"--bin"}), 0);
    EXPECT_EQ(run({"preview", "/out/setup", "--to", "/out/a\"b"}), 1);
    EXPECT_EQ(started(), "nothing");
}

}  // namespace
