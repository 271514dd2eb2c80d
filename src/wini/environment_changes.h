#pragma once

#include <cstddef>
#include <string>

#include "contracts/system_modifications.h"
#include "engine/report.h"

namespace platform {
class FileSystem;
class Registry;
class ShellObjects;
}  // namespace platform

enum class EnvironmentRead {
    kFound,
    kAbsent,
    kUnreadable,  // the system refuses, or the value isn't a text: nothing of ours
};

// Changes the variables of the system's environment and takes the changes back. Nothing is thrown but
// std::bad_alloc.
class EnvironmentChanges {
public:
    // What a present value may have at most to be changed, in bytes. What takes a change back knows no limit.
    static constexpr std::size_t kValueLimit = 2047;

    // All are borrowed and outlive this object.
    EnvironmentChanges(platform::Registry& registry, platform::FileSystem& files,
                       platform::ShellObjects& shell, ErrorList& errors)
        : registry_(registry), files_(files), shell_(shell), errors_(errors) {}

    // `outValue` is empty unless the variable is found. Values with references to other variables are read as
    // they are.
    EnvironmentRead readEnvironmentValue(const std::string& name, std::string& outValue);
    // Always as plain text. The key is made where it is missing.
    bool writeEnvironmentValue(const std::string& name, const std::string& value);
    bool deleteEnvironmentValue(const std::string& name);

    // As the contract tells. A present value that is too long, isn't a text or can't be held whole by the
    // record of the change makes it fail; so does an added text that couldn't be found again. `outUndo` is
    // empty then.
    bool addEnvironmentEntry(const char* name, const char* value, EnvironmentMode mode, std::string& outUndo,
                             InstallerUI* ui, bool isPath);
    // False also for a text of another kind, which is left alone.
    bool removeEnvironmentEntry(const char* undoText, InstallerUI* ui);

    // True. A failure is only told to the list of errors.
    bool broadcastEnvironmentChange();

private:
    bool replaceValue(const std::string& name, const char* value, std::string& outUndo, InstallerUI* ui);
    bool joinValue(const std::string& name, const char* value, EnvironmentMode mode, std::string& outUndo,
                   InstallerUI* ui, bool isPath);
    bool restore(const std::string& name, const std::string& value);
    bool erase(const std::string& name, const std::string& text);
    bool tell(bool done, const char* doneWord, const char* failedWord, const std::string& name,
              InstallerUI* ui);

    platform::Registry& registry_;
    platform::FileSystem& files_;
    platform::ShellObjects& shell_;
    ErrorList& errors_;
};
