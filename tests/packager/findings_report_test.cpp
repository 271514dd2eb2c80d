#include "packager/findings_report.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;
using Lines = std::vector<std::string>;

Finding finding(FindingCode code, SourcePlace place, std::string message, std::string hint) {
    return {code, place, std::move(message), std::move(hint)};
}

const std::vector<Finding> kFindings = {
    finding("element-unknown", {2, 5}, "there is no element Dialog", "Write \"Dialogs\"."),
    finding("switch-on", {30, 1}, "Executable is switched on", "Take it out."),
};

std::string joined(const Lines& lines) {
    std::string text;
    for (const std::string& line : lines) {
        EXPECT_EQ(line.find('\n'), std::string::npos);
        text += line + "\n";
    }
    return text;
}

TEST(FindingsReport, IsForPeopleInText) {
    EXPECT_THAT(findingsAsText("a/install.xml", kFindings),
                ElementsAre("a/install.xml:2:5: error: there is no element Dialog [element-unknown]",
                            "    Write \"Dialogs\".",
                            "a/install.xml:30:1: warning: Executable is switched on [switch-on]",
                            "    Take it out.", "a/install.xml: 1 error, 1 warning"));
    EXPECT_THAT(findingsAsText("i", {}), ElementsAre("i: 0 errors, 0 warnings"));
}

TEST(FindingsReport, GivesNoCommandsToATerminal) {
    const std::string text = joined(findingsAsText(
        "a\x1B[2Jb", {finding("element-unknown", {1, 1}, "there is no \x1B]0;x\x07", "Write \x9B\r\n.")}));
    EXPECT_EQ(text.find_first_of("\x1B\x07\r"), std::string::npos) << text;
}

TEST(FindingsReport, NamesAllFieldsInJson) {
    EXPECT_THAT(
        findingsAsJson("a/install.xml", kFindings),
        ElementsAre("[",
                    R"(  {"file": "a/install.xml", "line": 2, "column": 5, "code": "element-unknown", )"
                    R"("severity": "error", "message": "there is no element Dialog", )"
                    R"("hint": "Write \"Dialogs\"."},)",
                    R"(  {"file": "a/install.xml", "line": 30, "column": 1, "code": "switch-on", )"
                    R"("severity": "warning", "message": "Executable is switched on", )"
                    R"("hint": "Take it out."})",
                    "]"));
    EXPECT_THAT(findingsAsJson("i", {}), ElementsAre("[", "]"));
}

TEST(FindingsReport, EscapesWhatJsonCantHold) {
    const std::string json = joined(findingsAsJson(
        "a",
        {finding("element-unknown", {1, 1},
                 "\" \\ \x01 \x1B \x7F \xC2\x9B \xE2\x80\xAE \xC3\xA4 \xF0\x9F\x98\x80 \xFF", "Write it.")}));
    EXPECT_NE(json.find("\"\\\" \\\\ \\u0001 \\u001b \\u007f \\u009b \\u202e \xC3\xA4 \xF0\x9F\x98\x80 "
                        "\xEF\xBF\xBD\""),
              std::string::npos)
        << json;
}

TEST(FindingsReport, NamesEachRuleOnceInSarif) {
    std::vector<Finding> findings = kFindings;
    findings.push_back(finding("element-unknown", {40, 2}, "there is no element Fil", "Take it out."));
    EXPECT_THAT(
        findingsAsSarif("a b/install.xml", findings),
        ElementsAre(
            "{", R"(  "$schema": "https://json.schemastore.org/sarif-2.1.0.json",)",
            R"(  "version": "2.1.0",)", R"(  "runs": [)", "    {",
            R"(      "columnKind": "unicodeCodePoints",)", R"(      "tool": {)", R"(        "driver": {)",
            R"(          "name": "packager",)", R"(          "rules": [)",
            R"(            {"id": "element-unknown", "defaultConfiguration": {"level": "error"}, )"
            R"("help": {"text": "Take it out, or correct its name."}},)",
            R"(            {"id": "switch-on", "defaultConfiguration": {"level": "warning"}, )"
            R"("help": {"text": "Take the attribute out to switch it off."}})",
            "          ]", "        }", "      },", R"(      "results": [)",
            R"(        {"ruleId": "element-unknown", "level": "error", "message": {"text": )"
            R"("there is no element Dialog. Write \"Dialogs\"."}, "locations": [{"physicalLocation": )"
            R"({"artifactLocation": {"uri": "a%20b/install.xml"}, "region": )"
            R"({"startLine": 2, "startColumn": 5}}}]},)",
            testing::HasSubstr(R"("startLine": 30, "startColumn": 1)"),
            testing::HasSubstr(R"("startLine": 40, "startColumn": 2)"), "      ]", "    }", "  ]", "}"));
}

TEST(FindingsReport, NamesTheFileInSarifByAReference) {
    const struct {
        const char* path;
        const char* uri;
    } kCases[] = {
        {"install.xml", "install.xml"},
        {"a\\\\b c#%.xml", "a//b%20c%23%25.xml"},
        {"\xC3\xA4.xml", "%C3%A4.xml"},
        {"/opt/install.xml", "file:///opt/install.xml"},
        {"C:\\x\\install.xml", "file:///C:/x/install.xml"},
        {"\\\\server\\x.xml", "file://server/x.xml"},
    };
    for (const auto& test : kCases) {
        EXPECT_THAT(findingsAsSarif(test.path, {kFindings.front()}),
                    testing::Contains(testing::HasSubstr("\"uri\": \"" + std::string(test.uri) + "\"")))
            << test.path;
    }
}

TEST(FindingsReport, HasOneLineForABuildsWarning) {
    EXPECT_EQ(findingLine("i", kFindings.front(), "warning"),
              "i:2:5: warning: there is no element Dialog [element-unknown]");
    EXPECT_EQ(severityWord(Severity::kError), "error");
    EXPECT_EQ(severityWord(Severity::kWarning), "warning");
}

}  // namespace
