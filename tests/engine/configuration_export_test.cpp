#include "engine/configuration_export.h"

#include "description/answers_file.h"
#include "description/default_values_reader.h"
#include "description/log_variable_source.h"
#include "engine_fixture.h"
#include "support/text_mode.h"

namespace {

using Operation = MemoryFileSystem::Operation;

constexpr char kPath[] = "/app/config.xml";

class NoLogs : public LogVariableSource {
public:
    std::optional<std::string> findVariableInLog(std::string_view, std::string_view) override { return {}; }
};

class ConfigurationExportTest : public EngineTest {
protected:
    ConfigurationExportTest() {
        files_.addDirectory("/app");
        variables_.set("A", "one");
    }

    bool write() { return ConfigurationExport(variables_, exclusions_, files_, log_).write(kPath); }
    // The lines of the file, which end as the platform's texts do.
    std::vector<std::string> written() {
        std::vector<std::string> lines;
        const std::string text = files_.content(kPath);
        const std::string end = OUtils::textLineEnd();
        for (std::size_t start = 0; start < text.size();) {
            const std::size_t stop = text.find(end, start);
            if (stop == std::string::npos) {
                lines.push_back("unfinished: " + text.substr(start));
                break;
            }
            lines.push_back(text.substr(start, stop - start));
            start = stop + end.size();
        }
        return lines;
    }
    static std::string value(const std::string& name, const std::string& text) {
        return " <Value Name=\"" + name + "\" DataType=\"value\">" + text + "</Value>";
    }
    void expectOnly(const std::vector<std::string>& files) { EXPECT_EQ(files_.allFiles(), files); }
};

TEST_F(ConfigurationExportTest, WritesEachVariableInTheStoresOrder) {
    variables_.set("C", "three");
    variables_.set("B", "");
    variables_.set("a", "again");
    EXPECT_TRUE(write());
    EXPECT_EQ(written(), (std::vector<std::string>{"<DefValues>", value("a", "again"), value("C", "three"),
                                                   value("B", ""), "</DefValues>"}));
    expectOnly({kPath});
    EXPECT_TRUE(log_.lines().empty());
}

TEST_F(ConfigurationExportTest, KeepsOutWhatIsExcludedFromConfigurationsAndNothingElse) {
    for (const char* name : {"LOG", "CONFIG", "ALL", "NONE"}) {
        variables_.set(name, "1");
    }
    exclusions_.add("LOG", kExcludeFromLog);
    exclusions_.add("CONFIG", kExcludeFromConfig);
    exclusions_.add("ALL", kExcludeFromAll);
    exclusions_.add("NONE", 0);
    EXPECT_TRUE(write());
    EXPECT_EQ(written(), (std::vector<std::string>{"<DefValues>", value("A", "one"), value("LOG", "1"),
                                                   value("NONE", "1"), "</DefValues>"}));
}

TEST_F(ConfigurationExportTest, EscapesNamesAndValues) {
    variables_.set("X<\"&'>", "a<b>&\"c\"'&amp;");
    EXPECT_TRUE(write());
    EXPECT_EQ(written()[2],
              value("X&lt;&quot;&amp;&apos;&gt;", "a&lt;b&gt;&amp;&quot;c&quot;&apos;&amp;amp;"));
}

TEST_F(ConfigurationExportTest, GivesTheSameVariablesToTheReaderOfDescriptions) {
    const std::vector<std::pair<std::string, std::string>> values = {
        {"A", "one"},       {"EMPTY", ""},          {"XML", "<a b='c'>&amp;\"</a>"},
        {"UTF", "Grüße €"}, {"SECRET", "p<w>&'\""}, {"LONG", std::string(1023, 'l')},
        {"DIR", "C:\\x/y"}, {"BLANKS", "a  b\tc"}};
    for (const auto& [name, text] : values) {
        variables_.set(name.c_str(), text.c_str());
    }
    ASSERT_TRUE(write());
    EXPECT_TRUE(log_.lines().empty());

    PXML document;
    ASSERT_EQ(document.loadFile(kPath, files_), 0);
    NoLogs logs;
    VariableStore fresh(predefined_, environment_, console_);
    Expressions expressions(fresh, console_);
    AnswersFile answers(files_);
    DefaultValuesReader reader(fresh, expressions, {system_, machine_.environment, files_, logs, answers},
                               console_);
    EXPECT_TRUE(reader.readDefValues(document, nullptr));
    ASSERT_EQ(fresh.getCount(), static_cast<std::int32_t>(values.size()));
    for (std::int32_t i = 0; i < fresh.getCount(); ++i) {
        EXPECT_EQ(fresh.at(i).name, values[static_cast<std::size_t>(i)].first);
        EXPECT_EQ(fresh.at(i).value, values[static_cast<std::size_t>(i)].second);
    }
}

TEST_F(ConfigurationExportTest, SaysWhichValuesTheFormCanNotRepeat) {
    variables_.set("DOLLAR", "pa$word");
    variables_.set("LONG", std::string(1024, 'l').c_str());
    variables_.set("FRONT", " x");
    variables_.set("BACK", "x\n");
    EXPECT_TRUE(write());
    std::vector<std::string> lines;
    for (const char* name : {"DOLLAR", "LONG", "FRONT", "BACK"}) {
        lines.push_back("WARNING: The value of \"" + std::string(name) +
                        "\" can't be repeated from a configuration file");
    }
    EXPECT_EQ(log_.lines(), lines);
    EXPECT_EQ(written()[2], value("DOLLAR", "pa$word"));
}

TEST_F(ConfigurationExportTest, WritesAnEmptySectionWithoutVariables) {
    exclusions_.add("A", kExcludeFromConfig);
    EXPECT_TRUE(write());
    EXPECT_EQ(written(), std::vector<std::string>{"<DefValues></DefValues>"});
}

TEST_F(ConfigurationExportTest, ReplacesAnOlderConfigurationFile) {
    files_.addFile(kPath, "<DefValues><Value Name='OLD' DataType='value'>old</Value></DefValues>");
    EXPECT_TRUE(write());
    EXPECT_EQ(written()[1], value("A", "one"));
    expectOnly({kPath});
}

TEST_F(ConfigurationExportTest, LeavesTheFileOfAnotherProgramAlone) {
    for (const char* content : {"<configuration><DefValues/></configuration>", "key=value", ""}) {
        files_.addFile(kPath, content);
        log_.clear();
        EXPECT_FALSE(write()) << content;
        EXPECT_EQ(files_.content(kPath), content);
        EXPECT_EQ(log_.lines(),
                  std::vector<std::string>{
                      "ERROR: /app/config.xml is no configuration file of an installer and stays as it is"});
    }
    expectOnly({kPath});
}

TEST_F(ConfigurationExportTest, ReplacesALinkAndNotItsTarget) {
    const std::string old = "<DefValues></DefValues>";
    files_.addFile("/elsewhere.xml", old);
    files_.addLink(kPath, "/elsewhere.xml");
    EXPECT_TRUE(write());
    EXPECT_TRUE(files_.hasFile(kPath));
    EXPECT_EQ(files_.content("/elsewhere.xml"), old);
}

TEST_F(ConfigurationExportTest, MakesNothingThroughALinkThatPointsNowhere) {
    files_.addLink(kPath, "/elsewhere.xml");
    EXPECT_FALSE(write());
    EXPECT_FALSE(files_.hasFile("/elsewhere.xml"));
}

TEST_F(ConfigurationExportTest, IsForThisUserAlone) {
    EXPECT_TRUE(write());
    EXPECT_TRUE(files_.isPrivate(kPath));
}

TEST_F(ConfigurationExportTest, TakesNoNameThatIsInUseForItsWork) {
    files_.addFile("/app/.tandrel-1.tmp", "the user's");
    EXPECT_TRUE(write());
    EXPECT_EQ(files_.content("/app/.tandrel-1.tmp"), "the user's");
    expectOnly({"/app/.tandrel-1.tmp", kPath});
}

TEST_F(ConfigurationExportTest, TakesTheRightsOfTheFileThatItReplaces) {
    files_.addFile(kPath, "<DefValues></DefValues>");
    EXPECT_TRUE(write());
    EXPECT_FALSE(files_.isPrivate(kPath));
}

TEST_F(ConfigurationExportTest, FailsWhereNothingCanBeMade) {
    files_.setReadOnly("/app");
    EXPECT_FALSE(write());
    expectOnly({});
    files_.clearFaults();
    files_.addDirectory(kPath);
    EXPECT_FALSE(write());
    expectOnly({});
}

TEST_F(ConfigurationExportTest, KeepsTheOlderFileWhenAnythingFails) {
    const std::string old = "<DefValues></DefValues>";
    for (const Operation operation : {Operation::kWrite, Operation::kClose, Operation::kReplaceFile}) {
        files_.addFile(kPath, old);
        files_.failAt(operation, "/app/.tandrel-1.tmp", 1);
        EXPECT_FALSE(write());
        EXPECT_EQ(files_.content(kPath), old);
        expectOnly({kPath});
    }
    files_.setFreeSpace(10);
    EXPECT_FALSE(write());
    EXPECT_EQ(files_.content(kPath), old);
    expectOnly({kPath});
    EXPECT_EQ(files_.openFileCount(), 0);
}

}  // namespace
