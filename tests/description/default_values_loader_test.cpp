#include "description/default_values_loader.h"

#include "description/default_values_fixture.h"
#include "description/default_values_reader.h"
#include "description/variable_exclusions.h"

namespace {

class DefaultValuesLoaderTest : public DefaultValuesFixture {
protected:
    DefaultsOutcome load(std::string_view configFile = "") {
        parse("<Root><DefValues><Value Name=\"A\" DataType=\"value\">one</Value></DefValues></Root>");
        AnswersFile answers(files_);  // a new one sees the file as it is now
        return DefaultValuesLoader(reader_, variables_, exclusions_, answers, console_)
            .load(document_, configFile, commandLine_, message_);
    }

    VariableExclusions exclusions_;
    DefaultValuesReader reader_{variables_, expressions_, sources_, console_};
    std::string message_;
};

TEST_F(DefaultValuesLoaderTest, FailsWithoutTheSection) {
    parse("<Root/>");
    DefaultValuesLoader loader(reader_, variables_, exclusions_, answers_, console_);
    EXPECT_EQ(loader.load(document_, "", commandLine_, message_), DefaultsOutcome::kNoDefaults);
}

TEST_F(DefaultValuesLoaderTest, PrefersTheValuesOfAConfigurationFile) {
    files_.addFile("/c.xml", "<DefValues><Value Name=\"A\" DataType=\"value\">two</Value></DefValues>");
    EXPECT_EQ(load("/c.xml"), DefaultsOutcome::kLoaded);
    EXPECT_EQ(valueOf("A"), "two");
}

TEST_F(DefaultValuesLoaderTest, AcceptsAConfigurationFileWithoutValues) {
    files_.addFile("/c.xml", "<Other/>");
    EXPECT_EQ(load("/c.xml"), DefaultsOutcome::kLoaded);
    EXPECT_EQ(valueOf("A"), "one");
}

// As a run by hand leaves it.
constexpr std::string_view kAnswers =
    "<DefValues>\n"
    " <Value Name=\"A\" DataType=\"value\">two</Value>\n"
    " <Value Name=\"B\" DataType=\"value\">x &lt; y</Value>\n"
    "</DefValues>\n";

TEST_F(DefaultValuesLoaderTest, TakesTheWholeValuesOfAConfigurationFileThatIsCut) {
    for (std::size_t length = 0; length <= kAnswers.size(); ++length) {
        files_.addFile("/c.xml", std::string(kAnswers.substr(0, length)));
        EXPECT_EQ(load("/c.xml"), DefaultsOutcome::kLoaded) << length;
        const bool isClosed = length >= kAnswers.find("</Value>") + std::string_view("</Value>").size();
        EXPECT_EQ(valueOf("A"), isClosed ? "two" : "one") << length;
    }
    EXPECT_EQ(valueOf("B"), "x < y");
    EXPECT_EQ(message_, "");
}

TEST_F(DefaultValuesLoaderTest, SurvivesAnyWrongByteInAConfigurationFile) {
    for (std::size_t place = 0; place < kAnswers.size(); ++place) {
        for (const char wrong : {'<', '>', '"', '/', '&', '$', '\0', '\xFF', 'x'}) {
            std::string answers(kAnswers);
            answers[place] = wrong;
            files_.addFile("/c.xml", answers);
            ASSERT_EQ(load("/c.xml"), DefaultsOutcome::kLoaded) << place << wrong;
            ASSERT_EQ(valueOf("WX_PORT"), "win");
            for (std::int32_t index = 0; index < variables_.getCount(); ++index) {
                ASSERT_LE(variables_.at(index).value.size(), InstallVariable::kTextLimit);
                ASSERT_FALSE(variables_.at(index).name.empty());
            }
        }
    }
    EXPECT_EQ(message_, "");
}

TEST_F(DefaultValuesLoaderTest, ReportsAMissingConfigurationFile) {
    files_.addDirectory("/d");
    EXPECT_EQ(load("/d/missing.xml"), DefaultsOutcome::kBadConfiguration);
    const std::string message =
        "Error loading configuration file \"/d/missing.xml\" (2). Installation can not continue.";
    EXPECT_EQ(log_.lines(), std::vector<std::string>{"ERROR: " + message});
    EXPECT_EQ(message_, message);
}

TEST_F(DefaultValuesLoaderTest, FailsWhenAConfigurationFileCannotBeRead) {
    files_.addFile("/c.xml", "<DefValues><Value Name=\"A\" DataType=\"value\">two</Value></DefValues>");
    files_.failAt(MemoryFileSystem::Operation::kRead, "/c.xml", 1);
    EXPECT_EQ(load("/c.xml"), DefaultsOutcome::kBadConfiguration);
    EXPECT_EQ(valueOf("A"), "one");
    EXPECT_EQ(files_.openFileCount(), 0);
}

TEST_F(DefaultValuesLoaderTest, TakesTheFirstOfEqualCommandLineVariables) {
    arguments_.list = {{"VARIABLE_A", "1"}, {"variable_a", "2"}};
    load();
    EXPECT_EQ(valueOf("A"), "1");
}

TEST_F(DefaultValuesLoaderTest, GivesACommandLineVariableWithoutValueOne) {
    arguments_.list = {{"VARIABLE_FOO", ""}, {"VARIABLE_", "x"}};
    load();
    EXPECT_EQ(valueOf("FOO"), "1");
    EXPECT_EQ(variables_.getCount(), 2);
}

TEST_F(DefaultValuesLoaderTest, KeepsAnUnknownCommandLineVariableOutOfLogAndConfiguration) {
    arguments_.list = {{"VARIABLE_FOO", "x"}, {"VARIABLE_A", "y"}};
    load();
    EXPECT_FALSE(exclusions_.isVariableExported("FOO", kExcludeFromLog));
    EXPECT_FALSE(exclusions_.isVariableExported("FOO", kExcludeFromConfig));
    EXPECT_TRUE(exclusions_.isVariableExported("A", kExcludeFromLog));
}

TEST_F(DefaultValuesLoaderTest, KeepsPredefinedVariables) {
    arguments_.list = {{"VARIABLE_WX_PORT", "x"}};
    load();
    EXPECT_EQ(valueOf("WX_PORT"), "win");
    EXPECT_TRUE(exclusions_.isVariableExported("WX_PORT", kExcludeFromLog));
}

TEST_F(DefaultValuesLoaderTest, WorksWithoutACommandLine) {
    commandLine_ = nullptr;
    EXPECT_EQ(load(), DefaultsOutcome::kLoaded);
}

TEST_F(DefaultValuesLoaderTest, ListsTheVariablesFromLevelTwoOn) {
    arguments_.list = {{"VARIABLE_A", "two"}, {"VARIABLE_B", "b"}};
    load();
    EXPECT_EQ(log_.text(), "");
    console_.setTarget(&log_, 2);
    arguments_.list.pop_back();
    load();
    EXPECT_EQ(log_.lines(), (std::vector<std::string>{"Installation variables used (2):",
                                                      "  [A] = \"two\" (one)", "  [B] = \"b\" ()"}));
}

TEST_F(DefaultValuesLoaderTest, LetsAVariableFollowTheAnswers) {
    parse(
        "<Root><DefValues><Value Name=\"DIR\" DataType=\"value\">/opt</Value>"
        "<Value Name=\"DOC\" DataType=\"value\" Recalculate=\"1\">$DIR/doc</Value>"
        "<Value Name=\"ONCE\" DataType=\"value\">$DIR/once</Value></DefValues></Root>");
    files_.addFile("/c.xml", "<DefValues><Value Name=\"DIR\" DataType=\"value\">/srv</Value></DefValues>");
    DefaultValuesLoader loader(reader_, variables_, exclusions_, answers_, console_);
    EXPECT_EQ(loader.load(document_, "/c.xml", commandLine_, message_), DefaultsOutcome::kLoaded);
    EXPECT_EQ(valueOf("DOC"), "/srv/doc");
    EXPECT_EQ(valueOf("ONCE"), "/opt/once");
}

}  // namespace
