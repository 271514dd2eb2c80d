#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "engine/changes/change.h"
#include "engine/changes/record_text.h"

class RemovedFiles;

namespace platform {
class FileSystem;
}

// The lines of an INI file, read and edited. All views look into the lines that were given.
namespace IniText {

using Lines = std::vector<std::string_view>;

// Reading follows the profile functions of Windows: names ignore the case of ASCII letters, blanks around
// names and values and a pair of quotes around a value are cut, comments and lines without `=` don't count,
// and of sections and keys of one name the first counts.
struct Entry {
    std::string_view key;
    std::string_view value;
};

// The value in the text after a `=`, without blanks and quotes.
std::string_view valueIn(std::string_view text);
// The keys of a section in their order, each name once.
std::vector<Entry> entriesOf(const Lines& lines, std::string_view section);
// None when the key isn't there.
std::optional<std::string_view> valueOf(const Lines& lines, std::string_view section, std::string_view key);

// What to do to a section: without a key the section is deleted, without a value the key. A new line is put
// in front of `beforeKey`. Unlike reading, editing matches names in their exact case.
struct Edit {
    std::string_view section;  // not empty
    std::optional<std::string_view> key;
    std::optional<std::string_view> value;
    std::optional<std::string_view> beforeKey;
    // Of a deletion: only a line with just this text after its `=` matches.
    std::optional<std::string_view> onlyValue = std::nullopt;

    bool isWrite() const { return key && value; }
};

// Edits the lines of a file in one walk. Borrows the lines and the texts of the edit.
class Editor {
public:
    explicit Editor(const Edit& edit);

    void run(const Lines& lines);

    // The edited lines; they look into the ones that were given and into this object.
    const Lines& lines() const { return lines_; }
    // The text after the `=` of each line of the key that was replaced or deleted, as it was.
    const Lines& lostValues() const { return lostValues_; }

private:
    void takeLine(std::string_view line);
    void takeHeader(std::string_view line);
    void takeKey(std::string_view line, std::size_t sign);
    bool isMatch(std::string_view line, std::size_t sign) const;
    void takeMatch(std::string_view line, std::size_t sign);
    void keep(std::string_view line) { lines_.push_back(line); }
    void insert(std::size_t position);
    void finish();

    bool isTarget(std::string_view section) const { return section == edit_.section; }

    const Edit edit_;
    const std::string header_;
    std::string newLine_;
    std::string replacement_;

    Lines lines_;
    Lines lostValues_;
    std::string_view currentSection_;
    std::size_t lastLine_ = 0;
    std::size_t beforeLine_ = std::string_view::npos;
    bool done_ = false;
};

}  // namespace IniText

// Changes to keys of INI files: the groups `IniFiles`, and the records INI:
//
//   CREATE file section key value    no line gave way, or one without a value; only the value may be cut
//   REPLACE file section key value   the value of the line that gave way
//   NONE                             the directory was there already
//
// Files are kept byte for byte but for the lines that change and the line ends, which become the system's; a
// file to which nothing happens isn't written.
class IniChange : public Change {
public:
    // The numbers are those of the operation that others call.
    enum class Mode : std::int32_t { kNone = 0, kDeleteKey = 1, kWriteValue = 2, kDeleteSection = 3 };

    struct Entry {
        std::string_view file;
        std::string_view section;
        std::string_view key;
        std::optional<std::string_view> value;
        bool isPath = false;              // not added where a value of the section names the same directory
        std::string_view beforeKey = {};  // empty: none
    };

    // What can be read of a section to know its present values, in bytes: the names of its keys, each with a
    // terminator, and one more at the end; a value with its terminator.
    static constexpr std::size_t kKeyListSize = 2048;
    static constexpr std::size_t kValueSize = 512;

    // `removed` may be null: no file is known to have gone with the product. It outlives this object.
    explicit IniChange(const ChangeContext& context, const RemovedFiles* removed = nullptr)
        : context_(context), removed_(removed) {}

    // A failure with the attribute IgnoreErrors doesn't count, and has its record.
    bool apply() override;
    // False when the file could not be written. Not when its directory has gone, which is only reported, nor
    // when the file went with the product. Of several records of one key the first alone is taken back: it
    // says what was there before all of them.
    bool undo(const LogRecord& record) override;

    // Fails without writing when there is no value, when the key's value, or with `isPath` its section, goes
    // beyond the limits, and when the record couldn't take the change back or can't be written to `log`.
    // Without a log the caller keeps the record.
    static RecordedResult add(platform::FileSystem& files, Report& report, const Entry& entry,
                              ActionLogWriter* log = nullptr);
    // Takes an entry back by the fields of its record: a created line goes, preferably the one that still has
    // the value; a former value comes back, into a new file where the file has gone. False also for fields of
    // another kind, which change nothing.
    static bool remove(platform::FileSystem& files, Report& report, std::string_view fields);

    // What the mode says: kNone does nothing, with success. False when a text that the mode needs is missing.
    static bool write(platform::FileSystem& files, std::string_view file, const IniText::Edit& edit,
                      Mode mode);
    // A new key goes after the last one of its section, or in front of another where that is found; a missing
    // file is made for it. False without a section, and when the file can't be read or written; it is as it
    // was.
    static bool editFile(platform::FileSystem& files, std::string_view file, const IniText::Edit& edit);

private:
    bool applyChild(std::int32_t node);

    ChangeContext context_;
    const RemovedFiles* removed_;
    std::set<std::string> undoneKeys_;  // file, section and key of the records that were met
};
