#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/changes/change.h"
#include "engine/changes/record_text.h"

namespace platform {
class Registry;
class ShellObjects;
}  // namespace platform

// Changes to the variables of the system's environment: the groups `Environment`, and the records ENV:
//
//   CREATE name            the variable was new
//   REPLACE name value     its former value
//   ADD name text          the text that was joined to it; it ends with a separator when it was put in front
//   NONE                   the directory was there already
//
// A variable that holds references to others (`%NAME%`) stays of that type, when it is changed and when that
// is taken back; new ones are plain.
class EnvironmentChange : public Change {
public:
    // How a text joins a variable. The numbers are those of the operation that others call.
    enum class Mode : std::int32_t { kReplace = 1, kAppend = 2, kInsert = 3 };

    struct Entry {
        std::string_view name;
        std::optional<std::string_view> value;
        Mode mode = Mode::kReplace;
        bool isPath = false;  // not added where an entry of the variable names the same directory
    };

    struct Value {
        std::string text;
        bool isExpandable = false;  // references to other variables are replaced by whoever uses it
        int status = 0;             // of the registry, when it was read
    };

    enum class State {
        kFound,
        kAbsent,
        kUnreadable,  // the system refuses, or the value isn't a text: nothing of ours
    };

    // The longest present value that is changed, in bytes. Taking a change back knows no limit.
    static constexpr std::size_t kValueLimit = 2047;

    explicit EnvironmentChange(const ChangeContext& context) : context_(context) {}

    // False also when the changed environment could not be made known.
    bool apply() override;
    // False when the variable could not be written. Not when it has gone, or holds the added text no longer,
    // which is only reported: an earlier walk or the user has taken the change back. Of several records of
    // one variable the first that says what was there decides, so that a product that was installed twice
    // leaves what was there before the first time.
    bool undo(const LogRecord& record) override;
    // Makes the environment known when a record was undone. False when that failed.
    bool finishUndo() override;

    // Fails without writing when there is no value, when the present one is too long, isn't a text or doesn't
    // fit the record, when an added text couldn't be found again, and when the record can't be written to
    // `log`. Another mode does nothing, with success. Without a log the caller keeps the record.
    static RecordedResult add(const platform::Platform& machine, Report& report, const Entry& entry,
                              ActionLogWriter* log = nullptr);
    // Takes an entry back by the fields of its record. Of a joined text only whole entries of the list go,
    // and a variable goes that is empty then and was made for it. False when nothing was there to be taken
    // back, and for fields of another kind, which change nothing.
    static bool remove(const platform::Platform& machine, Report& report, std::string_view fields);
    // Makes the changed environment known to the programs that run and those to come. A failure goes to the
    // errors alone.
    static bool broadcast(platform::ShellObjects& shell, Report& report);

    // `outValue` is empty unless the variable is found. References to other variables are read as they are.
    static State read(platform::Registry& registry, std::string_view name, Value& outValue);
    // The key is made where it is missing.
    // Both: a RegistryStatus.
    static int write(platform::Registry& registry, std::string_view name, const Value& value);
    static int erase(platform::Registry& registry, std::string_view name);

    // Takes a text that was joined to a list out of it, as the undo of its record ADD does. False when the
    // list hasn't got it; it is as it was then.
    static bool takeOut(std::string& list, const std::string& addedText);

    // What the records of one variable that were undone so far mean for its next ones.
    struct UndoneRecords {
        bool isRestored = false;               // what was there first is back
        bool wasAbsent = false;                // before a text was joined to it
        int status = 0;                        // of the last write, as the registry numbers it
        std::vector<std::string> joinedTexts;  // a value that is restored later may still hold them
    };

private:
    bool applyChild(std::int32_t node);

    ChangeContext context_;
    bool applied_ = false;
    bool undone_ = false;
    std::map<std::string, UndoneRecords> undoneRecords_;  // by the name in lower case
};
