#include "packager/command_line.h"

#include <gtest/gtest.h>

namespace {

using Words = std::vector<std::string>;

TEST(CommandLine, ReadsABuild) {
    const CommandLine line =
        parseCommandLine({"build", "--description", "d.xml", "--root=r", "--image", "i", "--output", "o",
                          "--stripes", "2", "--level=1", "--old-checksum", "--bin"});
    EXPECT_EQ(line.problem, "");
    EXPECT_EQ(line.command, PackagerCommand::kBuild);
    EXPECT_EQ(line.description, "d.xml");
    EXPECT_EQ(line.root, "r");
    EXPECT_EQ(line.image, "i");
    EXPECT_EQ(line.output, "o");
    EXPECT_EQ(line.stripes, 2);
    EXPECT_EQ(line.level, 1);
    EXPECT_TRUE(line.oldChecksum);
    EXPECT_TRUE(line.bin);
}

TEST(CommandLine, ReadsThePackageCommands) {
    EXPECT_EQ(parseCommandLine({"list", "p"}).package, "p");
    EXPECT_EQ(parseCommandLine({"verify", "p"}).command, PackagerCommand::kVerify);
    const CommandLine extract = parseCommandLine({"extract", "p", "--to", "dir", "a", "--", "--b"});
    EXPECT_EQ(extract.problem, "");
    EXPECT_EQ(extract.target, "dir");
    EXPECT_EQ(extract.aliases, (Words{"a", "--b"}));
    EXPECT_FALSE(extract.tree);
    EXPECT_TRUE(parseCommandLine({"extract", "p", "--tree", "--to", "dir"}).tree);
}

TEST(CommandLine, ReadsTheTextCommand) {
    const CommandLine text = parseCommandLine({"text", "agreement.md"});
    EXPECT_EQ(text.problem, "");
    EXPECT_EQ(text.command, PackagerCommand::kText);
    EXPECT_EQ(text.document, "agreement.md");
    EXPECT_EQ(text.width, 0);
    EXPECT_FALSE(text.html || text.plain || text.tree || text.verbatim);
    EXPECT_EQ(parseCommandLine({"text", "a", "--plain", "--width=10"}).width, 10);
    EXPECT_EQ(parseCommandLine({"text", "--width", "1000", "a"}).width, 1000);
    EXPECT_TRUE(parseCommandLine({"text", "a", "--plain"}).plain);
    EXPECT_TRUE(parseCommandLine({"text", "--html", "a"}).html);
    EXPECT_TRUE(parseCommandLine({"text", "a", "--tree"}).tree);
    EXPECT_TRUE(parseCommandLine({"text", "a", "--verbatim", "--width", "40"}).verbatim);
}

TEST(CommandLine, AsksForTheVersionAheadOfACommand) {
    EXPECT_TRUE(parseCommandLine({"--version"}).version);
    EXPECT_EQ(parseCommandLine({"--version", "paint"}).problem, "");
    EXPECT_EQ(parseCommandLine({"list", "p", "--version"}).problem, "unknown option \"--version\"");
    EXPECT_EQ(parseCommandLine({"--", "--version"}).problem, "unknown command \"--version\"");
}

TEST(CommandLine, ReadsTheCheckCommand) {
    const CommandLine plain = parseCommandLine({"check", "install.xml"});
    EXPECT_EQ(plain.problem, "");
    EXPECT_EQ(plain.command, PackagerCommand::kCheck);
    EXPECT_EQ(plain.checked, "install.xml");
    EXPECT_EQ(plain.root + plain.systems + plain.format, "");
    EXPECT_FALSE(plain.strict);
    const CommandLine full = parseCommandLine(
        {"check", "--root", "files", "--target=windows", "--format", "sarif", "--strict", "i.xml"});
    EXPECT_EQ(full.problem, "");
    EXPECT_EQ(full.root, "files");
    EXPECT_EQ(full.systems, "windows");
    EXPECT_EQ(full.format, "sarif");
    EXPECT_TRUE(full.strict);
    EXPECT_EQ(full.checked, "i.xml");
}

TEST(CommandLine, ReadsFindingsThatABuildAllows) {
    const CommandLine line = parseCommandLine({"build", "--description", "d", "--root", "r", "--output", "o",
                                               "--bin", "--allow", "element-unknown", "--allow=switch-on"});
    EXPECT_EQ(line.problem, "");
    EXPECT_EQ(line.allowed, (Words{"element-unknown", "switch-on"}));
}

TEST(CommandLine, ReportsWhatIsWrong) {
    const struct {
        Words words;
        const char* problem;
    } cases[] = {
        {{}, "a command is missing"},
        {{"paint"}, "unknown command \"paint\""},
        {{"list"}, "the package is missing"},
        {{"list", "p", "q"}, "unexpected word \"q\""},
        {{"build", "p"}, "unexpected word \"p\""},
        {{"build", "--root", "r"}, "--description is missing"},
        {{"build", "--description", "d"}, "--root is missing"},
        {{"build", "--description", "d", "--root", "r"}, "--output is missing"},
        {{"build", "--description", "d", "--root", "r", "--output", "o"}, "--image is missing"},
        {{"extract", "p"}, "--to is missing"},
        {{"text"}, "the document is missing"},
        {{"text", "a", "b"}, "unexpected word \"b\""},
        {{"text", "a", "--bin"}, "unknown option \"--bin\""},
        {{"list", "p", "--tree"}, "unknown option \"--tree\""},
        {{"text", "a", "--tree", "--html"}, "--html, --plain and --tree exclude each other"},
        {{"text", "a", "--plain", "--html"}, "--html, --plain and --tree exclude each other"},
        {{"text", "a", "--plain", "--tree"}, "--html, --plain and --tree exclude each other"},
        {{"text", "a", "--verbatim", "--html"},
         "--verbatim is for plain text, it goes with neither --html nor --tree"},
        {{"text", "a", "--tree", "--verbatim"},
         "--verbatim is for plain text, it goes with neither --html nor --tree"},
        {{"text", "a", "--html", "--width", "80"},
         "--width is for plain text, it goes with neither --html nor --tree"},
        {{"text", "a", "--tree", "--width", "80"},
         "--width is for plain text, it goes with neither --html nor --tree"},
        {{"text", "a", "--width", "9"}, "the option --width needs a number from 10 to 1000"},
        {{"text", "a", "--width", "1001"}, "the option --width needs a number from 10 to 1000"},
        {{"text", "a", "--width", "-1"}, "the option --width needs a number from 10 to 1000"},
        {{"text", "a", "--width", "wide"}, "the option --width needs a number from 10 to 1000"},
        {{"build", "--to", "x"}, "unknown option \"--to\""},
        {{"list", "--bin"}, "unknown option \"--bin\""},
        {{"check"}, "the description is missing"},
        {{"check", "a", "b"}, "unexpected word \"b\""},
        {{"check", "a", "--target", "mac"}, "the option --target needs one of: windows, linux, both"},
        {{"check", "a", "--format", "xml"}, "the option --format needs one of: text, json, sarif"},
        {{"check", "a", "--strict=1"}, "the option --strict takes no value"},
        {{"check", "a", "--allow", "switch-on"}, "unknown option \"--allow\""},
        {{"build", "--description", "d", "--root", "r", "--output", "o", "--bin", "--allow", "all"},
         "--allow: there is no finding with the code \"all\""},
        {{"build", "--bin=1"}, "the option --bin takes no value"},
        {{"build", "--root"}, "the option --root needs a value"},
        {{"build", "--root="}, "the option --root needs a value"},
        {{"build", "--stripes", "0"}, "the option --stripes needs a number from 1 to 256"},
        {{"build", "--stripes", "257"}, "the option --stripes needs a number from 1 to 256"},
        {{"build", "--stripes", "2x"}, "the option --stripes needs a number from 1 to 256"},
        {{"build", "--level", "10"}, "the option --level needs a number from 1 to 9"},
        {{"build", "--level", "99999999999999"}, "the option --level needs a number from 1 to 9"},
    };
    for (const auto& test : cases) {
        EXPECT_EQ(parseCommandLine(test.words).problem, test.problem);
    }
}

TEST(CommandLine, NeedsNoImageForASeparatePackage) {
    EXPECT_EQ(
        parseCommandLine({"build", "--description", "d", "--root", "r", "--output", "o", "--bin"}).problem,
        "");
}

TEST(CommandLine, GivesHelpForEachCommand) {
    for (const char* command : {"build", "list", "extract", "verify", "text", "check", "schema"}) {
        const CommandLine line = parseCommandLine({command, "--help"});
        EXPECT_TRUE(line.help);
        EXPECT_EQ(line.problem, "");
        EXPECT_TRUE(helpText(line.command).starts_with(std::string("packager ") + command + " "));
        EXPECT_NE(helpText(PackagerCommand::kNone).find(std::string("packager ") + command),
                  std::string::npos);
    }
    EXPECT_EQ(parseCommandLine({"-h"}).command, PackagerCommand::kNone);
}

}  // namespace
