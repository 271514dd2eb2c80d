#include "installer/record_list.h"

#include <algorithm>

#include "base/json_text.h"
#include "base/visible_text.h"

namespace {

using OUtils::jsonString;
using OUtils::visibleLine;

// Of the form of the document; whoever reads it may refuse others.
constexpr int kVersion = 1;

std::vector<std::size_t> countsOf(const RecordList& list) {
    std::vector<std::size_t> counts(list.states.size(), 0);
    for (const RecordList::Row& row : list.rows) {
        ++counts[row.state];
    }
    return counts;
}

std::string padded(std::string_view text, std::size_t width) {
    return std::string(text) + std::string(text.size() < width ? width - text.size() : 0, ' ');
}

std::string separated(const std::vector<std::string>& items, std::string_view separator) {
    std::string text;
    for (const std::string& item : items) {
        text += (text.empty() ? "" : std::string(separator)) + item;
    }
    return text;
}

std::string arrayOf(const std::vector<std::string>& items) {
    return items.empty() ? "[]" : "[\n    " + separated(items, ",\n    ") + "\n  ]";
}

std::string jsonSummary(const RecordList& list) {
    const std::vector<std::size_t> counts = countsOf(list);
    std::vector<std::string> fields;
    for (std::size_t i = 0; i < counts.size(); ++i) {
        fields.push_back(jsonString(list.states[i]) + ": " + std::to_string(counts[i]));
    }
    return "{" + separated(fields, ", ") + "}";
}

std::string jsonRow(const RecordList& list, const RecordList::Row& row) {
    return R"({"state": )" + jsonString(list.states[row.state]) + R"(, "kind": )" + jsonString(row.kind) +
           R"(, "name": )" + jsonString(row.name) + R"(, "note": )" + jsonString(row.note) + "}";
}

}  // namespace

std::string summaryOf(const RecordList& list) {
    const std::vector<std::size_t> counts = countsOf(list);
    std::vector<std::string> parts;
    for (std::size_t i = 0; i < counts.size(); ++i) {
        parts.push_back(std::to_string(counts[i]) + " " + std::string(list.states[i]));
    }
    return std::string(list.report) + ": " + separated(parts, ", ");
}

std::string listAsText(const RecordList& list) {
    std::size_t stateWidth = 0;
    std::size_t kindWidth = 0;
    for (const RecordList::Row& row : list.rows) {
        stateWidth = std::max(stateWidth, list.states[row.state].size());
        kindWidth = std::max(kindWidth, row.kind.size());
    }
    std::string text = summaryOf(list) + "\nlog: " + visibleLine(list.log) + "\n";
    for (const std::string& note : list.notes) {
        text += "note: " + visibleLine(note) + "\n";
    }
    for (const RecordList::Row& row : list.rows) {
        text += padded(list.states[row.state], stateWidth) + "  " + padded(row.kind, kindWidth) + "  " +
                visibleLine(row.name) + (row.note.empty() ? "" : "  (" + visibleLine(row.note) + ")") + "\n";
    }
    return text;
}

std::string listAsJson(const RecordList& list) {
    std::vector<std::string> notes;
    for (const std::string& note : list.notes) {
        notes.push_back(jsonString(note));
    }
    std::vector<std::string> rows;
    for (const RecordList::Row& row : list.rows) {
        rows.push_back(jsonRow(list, row));
    }
    const std::vector<std::string> members = {R"("version": )" + std::to_string(kVersion),
                                              R"("report": )" + jsonString(list.report),
                                              R"("log": )" + jsonString(list.log),
                                              std::string(R"("good": )") + (list.isGood ? "true" : "false"),
                                              R"("summary": )" + jsonSummary(list),
                                              R"("notes": )" + arrayOf(notes),
                                              R"("records": )" + arrayOf(rows)};
    return "{\n  " + separated(members, ",\n  ") + "\n}\n";
}
