#include "packager/commands.h"

#include <gtest/gtest.h>

#include "checking/icon_bytes.h"
#include "packager/commands_fixture.h"
#include "packager/pe_bytes.h"
#include "packager/pe_image.h"
#include "packager/pe_resources.h"

using namespace PackageBytes;
using namespace ImageBytes;

namespace {

using Lines = std::vector<std::string>;
using BuildCommandTest = CommandsTest;

TEST_F(BuildCommandTest, BuildsWhatItVerifies) {
    ASSERT_EQ(build(), 0);
    EXPECT_EQ(output_.errors, Lines{});
    ASSERT_EQ(output_.lines.size(), 1U);
    EXPECT_TRUE(output_.lines[0].starts_with("/out/setup: 5 files, ")) << output_.lines[0];
    EXPECT_EQ(output_.lastProgress, "Compressing 100");
    EXPECT_EQ(run({"verify", "/out/setup"}), 0);
    EXPECT_EQ(output_.lines, (Lines{"checksum: right", "stream: right", "files: 5, all right"}));
}

TEST_F(BuildCommandTest, BuildsAndVerifiesAPackageWithoutAnImage) {
    ASSERT_EQ(build({"--bin"}), 0);
    EXPECT_EQ(files_.content("/out/setup").substr(0, 12), leadBlock().substr(0, 12));
    EXPECT_EQ(run({"verify", "/out/setup"}), 0);
    EXPECT_EQ(output_.lines.front(), "checksum: none in a package without image");
}

TEST_F(BuildCommandTest, BuildsWithTheOldChecksum) {
    ASSERT_EQ(build({"--old-checksum"}), 0);
    EXPECT_NE(files_.content("/out/setup").find("MD5SUM: "), std::string::npos);
    EXPECT_EQ(run({"verify", "/out/setup"}), 0);
}

TEST_F(BuildCommandTest, BuildsTheSameBytesFromOtherPaths) {
    ASSERT_EQ(build({"--stripes", "2"}), 0);
    const std::string first = files_.content("/out/setup");
    for (const char* name : {"install.xml", "a/read.me", "b/read.me", "banner.png"}) {
        files_.addFile(std::string("/other/place/") + name, files_.content(std::string("/in/") + name));
    }
    ASSERT_EQ(
        run(withAllAllowed({"build", "--description", "/other/place/install.xml", "--root", "/other/place/",
                            "--image", "/image", "--output", "/out/else", "--stripes", "2"})),
        0);
    EXPECT_EQ(files_.content("/out/else"), first);
}

TEST_F(BuildCommandTest, GivesASetupForWindowsTheResourcesOfTheProduct) {
    const std::string image = PeBytes::image(ImageBytes::installerData() + std::string(6000, 'c'));
    files_.addFile("/image", image);
    files_.addFile("/in/setup.ico", IconBytes::wholeIcon());
    const std::string rest =
        "</ProductDesc><FileSet Name=\"S\"><FN Alias=\"Icon\">setup.ico</FN>"
        "<FN>installer.exe</FN></FileSet></TandrelGroupInstallation>";
    files_.addFile("/in/install.xml", "<TandrelGroupInstallation><ProductDesc><Icon>Icon</Icon>" + rest);
    ASSERT_EQ(build(), 0);
    EXPECT_EQ(run({"verify", "/out/setup"}), 0);
    const std::string setup = files_.content("/out/setup");
    const PeImage program(setup);
    const std::vector<PeResource> resources = readPeResources(program);
    ASSERT_EQ(resources.size(), 6U);
    EXPECT_EQ(resources[0].data, IconBytes::bitmap(16, 32));
    EXPECT_EQ(run({"extract", "/out/setup", "--to", "/new"}), 0);
    EXPECT_EQ(files_.content("/new/installer.exe"), image);

    files_.addFile("/in/install.xml", "<TandrelGroupInstallation><ProductDesc>" + rest);
    ASSERT_EQ(build(), 0);
    EXPECT_EQ(readPeResources(PeImage(files_.content("/out/setup"))), std::vector<PeResource>());
}

TEST_F(BuildCommandTest, RefusesAnIconThatCanNotBeRead) {
    files_.addFile("/image", PeBytes::image(ImageBytes::installerData() + std::string(6000, 'c')));
    files_.addFile("/in/setup.ico", "GIF89a");
    files_.addFile("/in/install.xml",
                   "<TandrelGroupInstallation><ProductDesc><Icon>Icon</Icon></ProductDesc>"
                   "<FileSet Name=\"S\"><FN Alias=\"Icon\">setup.ico</FN></FileSet>"
                   "</TandrelGroupInstallation>");
    EXPECT_EQ(build(), 1);
    EXPECT_EQ(output_.errors,
              (Lines{"packager: the icon \"Icon\" is neither a file of icons (ICO) nor a PNG"}));
    EXPECT_FALSE(files_.hasFile("/out/setup"));
}

TEST_F(BuildCommandTest, FailsWithOneLineAndLeavesNoOutput) {
    files_.removeFile("/in/b/read.me");
    EXPECT_EQ(build(), 1);
    EXPECT_EQ(output_.errors, (Lines{"packager: /in/b/read.me: no such file"}));
    EXPECT_FALSE(files_.hasFile("/out/setup"));
    EXPECT_EQ(run({"list", "/none"}), 1);
    EXPECT_EQ(output_.errors.size(), 1U);
}

TEST_F(BuildCommandTest, WarnsOfWhatASetupLeavesOutOfItsDocuments) {
    files_.addFile("/in/install.xml",
                   "<R><ProductDesc/><Dialogs><A><RichEditText>Rich</RichEditText>"
                   "<RichEditText Format=\"tandrelMARKDOWN\">mark</RichEditText>"
                   "<PlainEditText Format=\"TandrelMarkdown\">mark</PlainEditText>"
                   "<PlainEditText>Rich</PlainEditText><RichEditText>none</RichEditText></A></Dialogs>"
                   "<FileSet Name=\"S\"><FN Alias=\"Rich\">r</FN><FN>mark</FN><FN>other</FN></FileSet></R>");
    files_.addFile("/in/r", "{\\rtf1 \n\\'e9}");
    files_.addFile("/in/mark", "7. seven\n");
    files_.addFile("/in/other", "7. seven\n");
    EXPECT_EQ(build(), 0);
    EXPECT_EQ(output_.errors,
              (Lines{"packager: warning: /in/r: line 2: left out: \\'e9: write the letter itself, in UTF-8",
                     "packager: warning: /in/mark: line 1: this item isn't shown with its own number: a list "
                     "is numbered anew from its beginning"}));
}

TEST_F(BuildCommandTest, WarnsOfADocumentThatWillNotBeShown) {
    files_.addFile(
        "/in/install.xml",
        "<R><ProductDesc/><RichEditText>r</RichEditText><FileSet Name=\"S\"><FN>r</FN></FileSet></R>");
    files_.addFile("/in/r", "{\\rtf1}\n}");
    EXPECT_EQ(build(), 0);
    EXPECT_EQ(
        output_.errors,
        Lines{"packager: warning: /in/r: a setup won't show it: line 2: this } closes nothing: remove it, "
              "or write \\} for a brace of the text"});
}

TEST_F(BuildCommandTest, AVerbatimTextHasNoMistakesButItsEncoding) {
    files_.addFile("/in/install.xml",
                   "<R><ProductDesc/><Dialogs><A><RichEditText Format=\"TandrelText\">a</RichEditText>"
                   "<PlainEditText Format=\"tandrelTEXT\">b</PlainEditText>"
                   "<HtmlEditText Format=\"TandrelText\">c</HtmlEditText>"
                   "<HtmlEditText Format=\"TandrelMarkdown\">d</HtmlEditText></A></Dialogs>"
                   "<FileSet Name=\"S\"><FN>a</FN><FN>b</FN><FN>c</FN><FN>d</FN></FileSet></R>");
    files_.addFile("/in/a", "7. seven a**\n{\\rtf }}");
    files_.addFile("/in/b", "\xFF");
    files_.addFile("/in/c", std::string("c\n\0", 3));
    files_.addFile("/in/d", "7. seven\n");
    EXPECT_EQ(build(), 0);
    EXPECT_EQ(output_.errors,
              (Lines{"packager: warning: /in/b: line 1: there are bytes that aren't UTF-8: save it as UTF-8",
                     "packager: warning: /in/c: line 2: the document ends here at a zero byte: save it as "
                     "UTF-8"}));
}

TEST_F(BuildCommandTest, WarnsAndGoesOn) {
    files_.addFile("/in/install.xml", "<R><FileSet Name=\"S\"></FileSet></R>");
    EXPECT_EQ(build(), 0);
    EXPECT_EQ(output_.errors,
              (Lines{"packager: warning: /in/install.xml: without a ProductDesc section the installer "
                     "will end at once"}));
}

}  // namespace
