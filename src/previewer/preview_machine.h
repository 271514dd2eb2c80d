#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/memory/memory_manner.h"
#include "rehearsal/rehearsal.h"
#include "rehearsal/rehearsed_session.h"
#include "ui/generic_ui.h"

// A machine in memory with one package on it. Its sessions install and uninstall for real, but nothing of the
// machine that the program runs on is read or changed, and programs are started on paper only.
class PreviewMachine {
public:
    // What a front end is made with; all of it outlives the front end.
    struct Surroundings {
        platform::Platform machine;
        AnswersFile& answers;
        DebugLog log;
        bool isUninstallation;
    };
    using MakeFrontEnd = std::function<std::unique_ptr<GenericUI>(const Surroundings&)>;

    PreviewMachine(MemoryManner::System system, const RehearsedProduct& product);

    // The session that installs, from the description to the end. Empty, or why there was no walk. While it
    // lasts, paths and texts of errors are those of the machine's system (platform/manner.h), so a front end
    // must leave the real files alone.
    std::string install(const MakeFrontEnd& makeFrontEnd);
    // The session that uninstalls what `install` has left, likewise.
    std::string uninstall(const MakeFrontEnd& makeFrontEnd);

    RehearsedMachine& machine() { return machine_; }

private:
    std::string run(const RehearsedSession::Source& source, const MakeFrontEnd& makeFrontEnd);

    MemoryManner manner_;
    MachineDescription description_;
    RehearsedMachine machine_;
    RehearsedSession::Source installation_;
    std::string productLog_;  // after the installation
};
