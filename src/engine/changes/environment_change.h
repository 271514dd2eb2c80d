#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

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
//   ADD name text          the text that was joined to it, with the separator that goes with it
//   NONE                   the directory was there already
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

    enum class State {
        kFound,
        kAbsent,
        kUnreadable,  // the system refuses, or the value isn't a text: nothing of ours
    };

    // The longest present value that is changed, in bytes. Taking a change back knows no limit.
    static constexpr std::size_t kValueLimit = 2047;

    explicit EnvironmentChange(const ChangeContext& context) : context_(context) {}

    bool apply() override;
    // Always true: a variable that stays as it is doesn't make the uninstallation a failure.
    bool undo(const LogRecord& record) override;
    // Makes the environment known when a record was undone.
    bool finishUndo() override;

    // Fails without writing when there is no value, when the present one is too long, isn't a text or doesn't
    // fit the record, and when an added text couldn't be found again. Another mode does nothing, with
    // success.
    static RecordedResult add(const platform::Platform& machine, Report& report, const Entry& entry);
    // Takes an entry back by the fields of its record. False also for fields of another kind, which change
    // nothing.
    static bool remove(const platform::Platform& machine, Report& report, std::string_view fields);
    // Makes the changed environment known to the programs that run and those to come. A failure goes to the
    // errors alone.
    static void broadcast(platform::ShellObjects& shell, Report& report);

    // `outValue` is empty unless the variable is found. References to other variables are read as they are.
    static State read(platform::Registry& registry, std::string_view name, std::string& outValue);
    // Writes plain text in any case. The key is made where it is missing.
    static bool write(platform::Registry& registry, std::string_view name, std::string_view value);
    static bool erase(platform::Registry& registry, std::string_view name);

private:
    bool applyChild(std::int32_t node);

    ChangeContext context_;
    bool applied_ = false;
    bool undone_ = false;
};
