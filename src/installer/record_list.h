#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// What was found out about the records of an action log, for people and for scripts.
struct RecordList {
    struct Row {
        std::size_t state = 0;  // in `states`
        std::string_view kind;
        std::string name;
        std::string note;  // may be empty
    };

    std::string_view report;               // what was done: "verification", "uninstallation"
    std::string log;                       // the path of the action log
    bool isGood = false;                   // nothing is amiss
    std::vector<std::string_view> states;  // all words that rows may have, in the order of the summary
    std::vector<std::string> notes;        // about the whole
    std::vector<Row> rows;                 // in the order of the log
};

// One line without an end: "verification: 3 complete, 0 changed, ...", with every state.
std::string summaryOf(const RecordList& list);

// The summary, the notes and the rows, one line each with a line feed. No text from outside makes a line of
// its own or gives a terminal commands.
std::string listAsText(const RecordList& list);

// A JSON document (RFC 8259): an object with "version", "report", "log", "good", "summary", "notes" and
// "records". It is UTF-8 whatever the names hold.
std::string listAsJson(const RecordList& list);
