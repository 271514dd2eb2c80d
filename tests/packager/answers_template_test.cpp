#include "packager/answers_template.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "checking/source_document.h"
#include "description/pxml.h"

namespace {

using testing::HasSubstr;
using testing::Not;

constexpr std::string_view kField = "<Field Type='EditBox' Label='Who' x='1' y='1'>NAME</Field>";

std::string answersFor(const std::string& values, const std::string& pages) {
    PXML description;
    description.parseText("<R><DefValues>" + values + "</DefValues><Dialogs>" + pages + "</Dialogs></R>");
    return answersTemplate(description);
}

std::string answersTo(const std::string& value) {
    return answersFor(value, "<Ask>" + std::string(kField) + "</Ask>");
}

// The values of the file as a setup reads them: name and text of each.
std::vector<std::pair<std::string, std::string>> valuesIn(const std::string& answers) {
    Findings findings(answers);
    SourceDocument source;
    EXPECT_TRUE(source.read(answers, findings)) << answers;
    EXPECT_TRUE(findings.empty()) << answers;
    PXML document;
    document.parseText(answers);
    std::vector<std::pair<std::string, std::string>> values;
    for (const std::int32_t node : document.childrenOf(document.findByName("DefValues"))) {
        EXPECT_EQ(document.getName(node), "Value");
        values.emplace_back(document.getAttribute(node, "Name").value_or(""),
                            document.getText(node).value_or(""));
    }
    return values;
}

using Values = std::vector<std::pair<std::string, std::string>>;

TEST(AnswersTemplate, HasEachVariableThatIsAskedWithItsDefault) {
    const std::string answers = answersFor(
        "<Value Name='SIZE' DataType='value'>1</Value><Value Name='NAME' DataType='value'>A &lt; B</Value>"
        "<Value Name='OTHER' DataType='value'>x</Value>",
        "<Ask>" + std::string(kField) +
            "<Field Type='RadioButtons' Label='Size' Content='small;large' x='1' y='1'>Size</Field></Ask>"
            "<Again Condition='[SIZE]==1'><Field Type='EditBox' Label='Really' x='1' "
            "y='1'>name</Field></Again>");
    EXPECT_EQ(valuesIn(answers), (Values{{"NAME", "A < B"}, {"Size", "1"}}));
    EXPECT_THAT(answers, HasSubstr("  <!-- Page Ask, \"Who\": a text -->\n"
                                   "  <!-- Page Again (if [SIZE]==1), \"Really\": a text -->\n"
                                   "  <Value Name=\"NAME\" DataType=\"value\">A &lt; B</Value>\n"));
    EXPECT_THAT(answers, HasSubstr("  <!-- Page Ask, \"Size\": the number of an item -->\n"
                                   "  <!--   0: small -->\n"
                                   "  <!--   1: large -->\n"));
}

TEST(AnswersTemplate, LeavesInACommentWhatAMachineDecides) {
    for (const char* const value :
         {"<Value Name='NAME' DataType='value'>$BASE/x</Value>",
          "<Value Name='NAME' DataType='value' UseOld='1'>/x</Value>",
          "<Value Name='NAME' DataType='value' Condition='[A]==1'>/x</Value>",
          "<Value Name='NAME' DataType='envvar' Default='/x'>HOME</Value>",
          "<Value Name='NAME' DataType='value'>/a</Value><Value Name='name' DataType='value'>/x</Value>"}) {
        const std::string answers = answersTo(value);
        EXPECT_EQ(valuesIn(answers), Values()) << value;
        EXPECT_THAT(answers, HasSubstr("  <!-- <Value Name=\"NAME\" DataType=\"value\">")) << value;
    }
    EXPECT_THAT(answersTo("<Value Name='NAME' DataType='envvar' Default='/x'>HOME</Value>"),
                HasSubstr(">/x</Value> -->"));
}

TEST(AnswersTemplate, LetsNoTextOfTheDescriptionBeginAnAnswer) {
    const std::string evil = "--&gt;&lt;Value Name='BAD' DataType='value'>1&lt;/Value>&lt;!--";
    const std::string field = "<Field Type='RadioButtons' Label='" +
                              std::string("--&gt;&lt;Value Name=BAD/&gt;--") +
                              "' Content='a--&gt;&lt;B/&gt;---;-' x='1' y='1'>NAME</Field>";
    for (const std::string& value :
         {"<Value Name='NAME' DataType='value' UseOld='1'>" + evil + "</Value>",
          "<Value Name='NAME' DataType='value'>$X" + evil + "</Value>",
          std::string("<Value Name='NAME' DataType='envvar' Default='-->'>X</Value>")}) {
        EXPECT_EQ(valuesIn(answersFor(value, "<Ask>" + field + "</Ask>")), Values()) << value;
    }
    EXPECT_EQ(valuesIn(answersFor(
                  "", "<Ask><Field Type='EditBox' Label='L' x='1' y='1'>A\"/&gt;--&gt;</Field></Ask>")),
              Values());
}

TEST(AnswersTemplate, SaysWhatIsAPasswordAndNotWhatIsOnlyShown) {
    const std::string answers =
        answersFor("<Value Name='P' DataType='value'></Value>",
                   "<Ask><Field Type='Password' Label='Key' x='1' y='1'>P</Field>"
                   "<Field Type='InstallParameter' Label='Shown' x='1' y='1'>NAME</Field></Ask>");
    EXPECT_EQ(valuesIn(answers), (Values{{"P", ""}}));
    EXPECT_THAT(answers, HasSubstr("\"Key\": a password, so keep this file safe"));
    EXPECT_THAT(answers, Not(HasSubstr("Shown")));
}

}  // namespace
