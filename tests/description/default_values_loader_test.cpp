#include "description/default_values_loader.h"

#include "description/command_line_arguments.h"
#include "description/default_values_reader.h"
#include "description/description_fixture.h"
#include "description/log_variable_source.h"
#include "description/variable_exclusions.h"
#include "fakes/fake_system_operations.h"
#include "fakes/memory_file_system.h"
#include "fakes/recording_ui.h"

namespace {

class Arguments : public CommandLineArguments {
public:
    std::vector<std::pair<std::string, std::string>> list;

    int getArgumentCount() const override { return static_cast<int>(list.size()); }
    const char* getArgumentName(int index) const override {
        return list[static_cast<std::size_t>(index)].first.c_str();
    }
    const char* getArgumentValue(int index) const override {
        return list[static_cast<std::size_t>(index)].second.c_str();
    }
};

class NoLogs : public LogVariableSource {
public:
    bool findVariableInLog(const char*, const char*, std::string&) override { return false; }
};

class DefaultValuesLoaderTest : public DescriptionTest {
protected:
    int load(const char* configFile = nullptr) {
        parse("<Root><DefValues><Value Name=\"A\" DataType=\"value\">one</Value></DefValues></Root>");
        return loader_.loadDefaultValues(document_, configFile, &ui_);
    }

    MemoryFileSystem files_;
    FakeSystemOperations system_;
    NoLogs logs_;
    Arguments arguments_;
    const CommandLineArguments* commandLine_ = &arguments_;
    VariableExclusions exclusions_;
    DefaultValuesReader reader_{
        variables_, expressions_, {system_, environment_, logs_, commandLine_}, console_};
    DefaultValuesLoader loader_{reader_, variables_, exclusions_, {files_, commandLine_}, console_};
    RecordingUI ui_;
};

TEST_F(DefaultValuesLoaderTest, WithoutTheSectionItFails) {
    parse("<Root/>");
    EXPECT_EQ(loader_.loadDefaultValues(document_, nullptr, &ui_), -1);
}

TEST_F(DefaultValuesLoaderTest, AConfigurationFileLaysItsValuesOver) {
    files_.addFile("/c.xml", "<DefValues><Value Name=\"A\" DataType=\"value\">two</Value></DefValues>");
    EXPECT_EQ(load("/c.xml"), 0);
    EXPECT_EQ(valueOf("A"), "two");
}

TEST_F(DefaultValuesLoaderTest, AConfigurationFileWithoutValuesChangesNothing) {
    files_.addFile("/c.xml", "<Other/>");
    EXPECT_EQ(load("/c.xml"), 0);
    EXPECT_EQ(valueOf("A"), "one");
}

// As a run by hand leaves it.
constexpr std::string_view kAnswers =
    "<DefValues>\n"
    " <Value Name=\"A\" DataType=\"value\">two</Value>\n"
    " <Value Name=\"B\" DataType=\"value\">x &lt; y</Value>\n"
    "</DefValues>\n";

TEST_F(DefaultValuesLoaderTest, AConfigurationFileCutAtAnyLengthGivesTheValuesThatAreWhole) {
    for (std::size_t length = 0; length <= kAnswers.size(); ++length) {
        files_.addFile("/c.xml", std::string(kAnswers.substr(0, length)));
        EXPECT_EQ(load("/c.xml"), 0) << length;
        const bool isClosed = length >= kAnswers.find("</Value>") + std::string_view("</Value>").size();
        EXPECT_EQ(valueOf("A"), isClosed ? "two" : "one") << length;
    }
    EXPECT_EQ(valueOf("B"), "x < y");
    EXPECT_TRUE(ui_.calls.empty());
}

TEST_F(DefaultValuesLoaderTest, AnyByteOfAConfigurationFileMayBeWrong) {
    for (std::size_t place = 0; place < kAnswers.size(); ++place) {
        for (const char wrong : {'<', '>', '"', '/', '&', '$', '\0', '\xFF', 'x'}) {
            std::string answers(kAnswers);
            answers[place] = wrong;
            files_.addFile("/c.xml", answers);
            ASSERT_EQ(load("/c.xml"), 0) << place << wrong;
            ASSERT_EQ(valueOf("WX_PORT"), "win");
            for (std::int32_t index = 0; index < variables_.getCount(); ++index) {
                ASSERT_LT(variables_.at(index).value.size(), InstallVariable::kTextCapacity);
                ASSERT_FALSE(variables_.at(index).name.empty());
            }
        }
    }
    EXPECT_TRUE(ui_.calls.empty());
}

TEST_F(DefaultValuesLoaderTest, AMissingConfigurationFileIsShownAndFails) {
    files_.addDirectory("/d");
    EXPECT_EQ(load("/d/missing.xml"), -1);
    const std::string message =
        "Error loading configuration file \"/d/missing.xml\" (2). Installation can not continue.";
    EXPECT_EQ(log_.lines(), std::vector<std::string>{"ERROR: " + message});
    EXPECT_EQ(ui_.countOf("messageBox(\"" + message + "\""), 1);
}

TEST_F(DefaultValuesLoaderTest, AConfigurationFileThatFailsWhileItIsReadFails) {
    files_.addFile("/c.xml", "<DefValues><Value Name=\"A\" DataType=\"value\">two</Value></DefValues>");
    files_.failAt(MemoryFileSystem::Operation::kRead, "/c.xml", 1);
    EXPECT_EQ(load("/c.xml"), -1);
    EXPECT_EQ(valueOf("A"), "one");
    EXPECT_EQ(files_.openFileCount(), 0);
}

TEST_F(DefaultValuesLoaderTest, OfACommandLineVariableTheFirstCounts) {
    arguments_.list = {{"VARIABLE_A", "1"}, {"variable_a", "2"}};
    load();
    EXPECT_EQ(valueOf("A"), "1");
}

TEST_F(DefaultValuesLoaderTest, ACommandLineVariableWithoutValueIsOne) {
    arguments_.list = {{"VARIABLE_FOO", ""}, {"VARIABLE_", "x"}};
    load();
    EXPECT_EQ(valueOf("FOO"), "1");
    EXPECT_EQ(variables_.getCount(), 2);
}

TEST_F(DefaultValuesLoaderTest, AnUnknownCommandLineVariableStaysOutOfLogAndConfiguration) {
    arguments_.list = {{"VARIABLE_FOO", "x"}, {"VARIABLE_A", "y"}};
    load();
    EXPECT_FALSE(exclusions_.isVariableExported("FOO", kExcludeFromLog));
    EXPECT_FALSE(exclusions_.isVariableExported("FOO", kExcludeFromConfig));
    EXPECT_TRUE(exclusions_.isVariableExported("A", kExcludeFromLog));
}

TEST_F(DefaultValuesLoaderTest, APredefinedVariableCannotBeOverridden) {
    arguments_.list = {{"VARIABLE_WX_PORT", "x"}};
    load();
    EXPECT_EQ(valueOf("WX_PORT"), "win");
    EXPECT_TRUE(exclusions_.isVariableExported("WX_PORT", kExcludeFromLog));
}

TEST_F(DefaultValuesLoaderTest, WithoutACommandLineNothingIsApplied) {
    commandLine_ = nullptr;
    EXPECT_EQ(load(), 0);
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

}  // namespace
