#include "engine/uninstall_command.h"

#include <gmock/gmock.h>

#include <map>

#include "description/description_fixture.h"
#include "description/product_description.h"
#include "platform/written_path.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kArguments[] = "-uninstall=\"C:\\demo app\\install.log\" -uninstallApp=\"Demo 1\"";

TEST(UninstallCommandTest, NamesTheLogAndTheProduct) {
    const auto command = composeUninstallCommand("C:\\demo app\\installer.exe", "C:\\demo app\\install.log",
                                                 "Demo 1", ProgramQuotes::kDouble);
    ASSERT_TRUE(command);
    EXPECT_EQ(command->program, "\"C:\\demo app\\installer.exe\"");
    EXPECT_EQ(command->arguments, kArguments);
}

TEST(UninstallCommandTest, LeavesTheProgramUnquotedOnRequest) {
    const auto command = composeUninstallCommand("C:\\demo app\\installer.exe", "C:\\demo app\\install.log",
                                                 "Demo 1", ProgramQuotes::kNone);
    ASSERT_TRUE(command);
    EXPECT_EQ(command->program, "C:\\demo app\\installer.exe");
    EXPECT_EQ(command->arguments, kArguments);
}

TEST(UninstallCommandTest, RefusesAProgramThatIsTooLong) {
    const std::string longest(UninstallCommand::kProgramLimit, 'c');
    const auto isComposed = [](const std::string& program, ProgramQuotes quotes) {
        return composeUninstallCommand(program, "log", "name", quotes).has_value();
    };
    EXPECT_TRUE(isComposed(longest, ProgramQuotes::kNone));
    EXPECT_FALSE(isComposed(longest + 'c', ProgramQuotes::kNone));
    EXPECT_TRUE(isComposed(longest.substr(2), ProgramQuotes::kDouble));
    EXPECT_FALSE(isComposed(longest.substr(1), ProgramQuotes::kDouble));
    EXPECT_FALSE(isComposed(std::string(10000, 'c'), ProgramQuotes::kDouble));
}

TEST(UninstallCommandTest, RefusesPathsWithADoubleQuote) {
    EXPECT_FALSE(composeUninstallCommand("C:\\a\"b.exe", "log", "name", ProgramQuotes::kDouble));
    EXPECT_FALSE(
        composeUninstallCommand("C:\\a.exe", "/opt/a\" -gui=\"1/install.log", "name", ProgramQuotes::kNone));
}

// One would end the quoted text: what follows would be other options, or the command couldn't be parsed.
TEST(UninstallCommandTest, LeavesQuotesOutOfTheName) {
    const auto command =
        composeUninstallCommand("/a", "/log", "Big 12\" Screen\" -gui=\"1", ProgramQuotes::kNone);
    ASSERT_TRUE(command);
    EXPECT_EQ(command->arguments, "-uninstall=\"/log\" -uninstallApp=\"Big 12 Screen -gui=1\"");
}

// A product whose texts a test gives or leaves out.
class UninstallCommandOfProductTest : public DescriptionTest {
protected:
    std::map<std::string, std::string> texts_ = {{"Fullname", "Demo 1"},
                                                 {"MajorVersion", "1"},
                                                 {"Website", "http://example.com"},
                                                 {"InstallLogFile", "C:\\demo app\\install.log"},
                                                 {"UninstallCmd", "C:\\demo app\\installer.exe"}};

    std::string element(const std::string& name) const {
        const auto found = texts_.find(name);
        return found == texts_.end() ? "" : "<" + name + ">" + found->second + "</" + name + ">";
    }
    std::optional<ApplicationEntry> entry() {
        parse("<TandrelGroupInstallation><ProductDesc>" + element("Fullname") + element("MajorVersion") +
              "<MinorVersion>2</MinorVersion><MinestVersion>3</MinestVersion>" + element("Website") +
              element("Publisher") + "</ProductDesc><Installation><Uninstall>" + element("InstallLogFile") +
              element("UninstallCmd") + "</Uninstall></Installation></TandrelGroupInstallation>");
        log_.clear();
        return applicationEntryOf(product_, console_);
    }
    // Without one of the texts there is no entry, and the log says why.
    void expectMissing(const char* name, const char* message) {
        texts_.erase(name);
        EXPECT_FALSE(entry());
        EXPECT_THAT(log_.lines(), ElementsAre(message));
    }

    ProductDescription product_{document_, expressions_};
};

TEST_F(UninstallCommandOfProductTest, GivesWhatTheListOfApplicationsShows) {
    const auto found = entry();
    ASSERT_TRUE(found);
    EXPECT_EQ(found->name, "Demo 1");
    EXPECT_EQ(found->version, "1.2.3");
    EXPECT_EQ(found->website, "http://example.com");
    EXPECT_EQ(found->command, '"' + platform::writtenPath("C:\\demo app\\installer.exe") + '"');
    EXPECT_EQ(found->arguments, "-uninstall=\"" + platform::writtenPath("C:\\demo app\\install.log") +
                                    "\" -uninstallApp=\"Demo 1\"");
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(UninstallCommandOfProductTest, NamesNoPublisherByItself) {
    EXPECT_EQ(entry()->publisher, "");
}

TEST_F(UninstallCommandOfProductTest, NamesThePublisherOfTheProduct) {
    texts_["Publisher"] = "Demo Ltd" + std::string(2000, '.');
    EXPECT_EQ(entry()->publisher, "Demo Ltd" + std::string(1015, '.'));
}

TEST_F(UninstallCommandOfProductTest, ExpandsTheVariablesOfThePaths) {
    variables_.set("D", "/opt/demo");
    texts_["UninstallCmd"] = "[D]/installer";
    texts_["InstallLogFile"] = "[D]/log";
    const auto found = entry();
    ASSERT_TRUE(found);
    EXPECT_EQ(found->command, "\"/opt/demo/installer\"");
    EXPECT_EQ(found->arguments, "-uninstall=\"/opt/demo/log\" -uninstallApp=\"Demo 1\"");
}

TEST_F(UninstallCommandOfProductTest, LogsACommandThatWouldBeCutOrMisread) {
    texts_["UninstallCmd"] = std::string(10000, 'c');
    EXPECT_FALSE(entry());
    EXPECT_THAT(log_.lines(),
                ElementsAre("ERROR: The uninstall command is too long or holds a double quote!"));
}

TEST_F(UninstallCommandOfProductTest, TakesTheLongestCommand) {
    texts_["UninstallCmd"] = std::string(UninstallCommand::kProgramLimit - 2, 'c');
    EXPECT_TRUE(entry());
}

TEST_F(UninstallCommandOfProductTest, LogsAMissingCommand) {
    expectMissing("UninstallCmd", "ERROR: Could not obtain uninstall cmd! (check <UninstallCmd> tag)");
}

TEST_F(UninstallCommandOfProductTest, LogsAMissingLog) {
    expectMissing("InstallLogFile",
                  "ERROR: Could not obtain insatll log file location! (check <InstallLogFile> tag)");
}

TEST_F(UninstallCommandOfProductTest, LogsAMissingName) {
    expectMissing("Fullname", "ERROR: Could not obtain application name!");
}

TEST_F(UninstallCommandOfProductTest, LogsAMissingVersion) {
    expectMissing("MajorVersion",
                  "ERROR: Could not obtain application full version description! (check <ProductDesc> tag)");
}

TEST_F(UninstallCommandOfProductTest, LogsAMissingWebsite) {
    expectMissing("Website", "ERROR: Could not obtain application web site! (check <ProductDesc> tag)");
}

}  // namespace
