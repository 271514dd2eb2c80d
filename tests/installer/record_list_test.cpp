#include "installer/record_list.h"

#include <gtest/gtest.h>

namespace {

RecordList sample() {
    return {"verification", "/app/install.log",
            false,          {"complete", "changed"},
            {"A note."},    {{0, "file", "/app/a", ""}, {1, "registry key", "HKEY", "as it was"}}};
}

TEST(RecordListTest, CountsEachStateInTheSummary) {
    EXPECT_EQ(summaryOf(sample()), "verification: 1 complete, 1 changed");
    EXPECT_EQ(summaryOf({"uninstallation", "", true, {"gone", "failed"}, {}, {}}),
              "uninstallation: 0 gone, 0 failed");
}

TEST(RecordListTest, HasALineForEachRowInText) {
    EXPECT_EQ(listAsText(sample()),
              "verification: 1 complete, 1 changed\n"
              "log: /app/install.log\n"
              "note: A note.\n"
              "complete  file          /app/a\n"
              "changed   registry key  HKEY  (as it was)\n");
}

TEST(RecordListTest, NoNameMakesALineOfItsOwnOrCommandsATerminal) {
    RecordList list = sample();
    list.log = "/log\n\x1b[2J";
    list.notes = {"a\nb"};
    list.rows = {{0, "file", "/a\r\nfailed  file  /b\t\x1b]0;x\x07\xff", "n\n"}};
    EXPECT_EQ(listAsText(list),
              "verification: 1 complete, 0 changed\nlog: /log??[2J\nnote: a?b\n"
              "complete  file  /a??failed  file  /b??]0;x??  (n?)\n");
}

TEST(RecordListTest, HasAVersionAndAllOfItInJson) {
    EXPECT_EQ(listAsJson(sample()), R"({
  "version": 1,
  "report": "verification",
  "log": "/app/install.log",
  "good": false,
  "summary": {"complete": 1, "changed": 1},
  "notes": [
    "A note."
  ],
  "records": [
    {"state": "complete", "kind": "file", "name": "/app/a", "note": ""},
    {"state": "changed", "kind": "registry key", "name": "HKEY", "note": "as it was"}
  ]
}
)");
}

TEST(RecordListTest, EmptyListsAreEmptyArrays) {
    const std::string json = listAsJson({"uninstallation", "", true, {"gone"}, {}, {}});
    EXPECT_NE(json.find("\"good\": true"), std::string::npos);
    EXPECT_NE(json.find("\"notes\": []"), std::string::npos);
    EXPECT_NE(json.find("\"records\": []"), std::string::npos);
}

TEST(RecordListTest, EscapesHostileNamesInJson) {
    RecordList list = sample();
    list.rows = {{0, "file", "C:\\\"a\"\n\xff\x1b", ""}};
    EXPECT_NE(listAsJson(list).find("\"name\": \"C:\\\\\\\"a\\\"\\u000a\xEF\xBF\xBD\\u001b\""),
              std::string::npos)
        << listAsJson(list);
}

}  // namespace
