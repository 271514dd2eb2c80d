#pragma once

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "engine/changes/change.h"
#include "engine/changes/record_text.h"

namespace platform {
class FileSystem;
}

using TextLines = std::vector<std::string_view>;

// What is added to a text: pairs of blocks of lines. An edit script's file has two blocks for each pair, each
// a line with a decimal count and that many lines; lines with nothing but white space may follow the last
// one.
class EditScript {
public:
    static constexpr std::size_t kLineLimit = 1023;  // bytes

    struct Pair {
        TextLines search;    // the lines to look for
        TextLines addition;  // the lines to put after them; neither is empty
    };

    // None without a pair, and when a block is broken: a count that isn't a number from 1 on, fewer lines
    // than that, a line above the limit. The lines are borrowed.
    static std::optional<EditScript> parse(const TextLines& lines);
    explicit EditScript(std::vector<Pair> pairs) : pairs_(std::move(pairs)) {}

    // Puts each addition after the first occurrence of what it looks for. Each pair goes on where the one
    // before it ended; after one that isn't found none is tried. True when anything changed. `outLines` look
    // into the given lines and the script's.
    bool apply(const TextLines& lines, TextLines& outLines) const;
    // The way back: drops the additions that still follow what is looked for.
    bool revert(const TextLines& lines, TextLines& outLines) const;

    const std::vector<Pair>& pairs() const { return pairs_; }

private:
    std::vector<Pair> pairs_;
};

// Lines that are added to text files: the groups `ModifyFiles`, and the records MODIFYFILE (ADDAFTER, path of
// the file, path of the edit script). A file to which nothing happens isn't written; a failure leaves it as
// it was.
class FileEdit : public Change {
public:
    explicit FileEdit(const ChangeContext& context) : context_(context) {}

    bool apply() override;
    // False when the file or its script can't be read or written, and for a record of another kind.
    bool undo(const LogRecord& record) override;

    // Adds lines as the script says; also done when the lines to look for aren't there. Fails when a file
    // can't be read or written, the script is broken, and when the record couldn't hold both paths or can't
    // be written to `log`. Without a log the caller keeps the record.
    static RecordedResult add(platform::FileSystem& files, Report& report, std::string_view path,
                              std::string_view script, ActionLogWriter* log = nullptr);
    // Takes the lines out again by the fields of the record; those that a user has changed since then stay.
    // A file that has gone took them along. False also for fields of another kind, which change nothing.
    static bool remove(platform::FileSystem& files, Report& report, std::string_view fields);
    // The path of the script that a record names; empty for fields of another kind.
    static std::string_view scriptOf(const LogRecord& record);
    // The path of the file that it changed; otherwise the same.
    static std::string_view editedFileOf(const LogRecord& record);

private:
    bool applyChild(std::int32_t node);
    bool wasNotMade(const LogRecord& record);

    ChangeContext context_;
    std::set<std::string> undoneFiles_;  // the files of the records that were met
};
