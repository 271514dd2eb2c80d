#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class InstallerUI;
class SystemOperations;
namespace platform {
struct Platform;
}

// The files by which a product is uninstalled. A path is empty where the product has no such file.
struct ProductRecords {
    std::string log;
    std::string archive;  // of the files that it replaced
    std::string description;
    std::string uninstaller;
};

// A second session in this process, which takes away one product that an installation left here. It has
// variables of its own; all that it changes, it changes on the machine that it was made with. One object for
// one product, on the session's thread.
class NestedSession {
public:
    virtual ~NestedSession() = default;

    // Opens the action log and reads the product that it describes: its description, the variables of the
    // log, and then the default values. Once, before everything else; it changes nothing on the machine.
    // Throws InstallerError; its text says which step failed.
    virtual void load(const std::string& logPath) = 0;

    // Of the product, as its description says it; empty without one.
    virtual std::string productName() = 0;
    // Their paths, with the values that the variables have in the log.
    virtual ProductRecords records() = 0;
    // Sets a variable for the uninstallation.
    virtual void setVariable(std::string_view name, std::string_view value) = 0;

    // Takes the product back, as its action log says; the log itself stays where it was opened. False when
    // anything failed: that has been reported, and what a repetition needs is still there. Throws
    // GenericError when an action of the product's description ends the work; what was done until then stays
    // done. `onProgress`, if it isn't empty, gets the share that is done, 0 to 100.
    virtual bool uninstall(const std::function<void(int percent)>& onProgress) = 0;
};

// Makes sessions that take other products away.
class NestedSessionFactory {
public:
    virtual ~NestedSessionFactory() = default;

    // What the machine refers to, the front end (which may be null), and the list of errors, to which the
    // session adds its own, are borrowed and outlive the session.
    virtual std::unique_ptr<NestedSession> make(const platform::Platform& machine, InstallerUI* ui,
                                                std::vector<std::string>& errors) = 0;
    // The services of the system on that machine; what it refers to is borrowed and outlives them.
    virtual std::unique_ptr<SystemOperations> makeServices(const platform::Platform& machine) = 0;
};
