#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/memory/memory_platform.h"
#include "platform/platform.h"
#include "support/debug_log.h"
#include "ui/generic_ui.h"

class AnswersFile;

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

    // `package` is a payload without image. `answers` is a document of default values; empty: none.
    PreviewMachine(std::string_view package, std::string_view answers);

    // The session that installs, from the description to the end. Empty, or why there was no walk.
    std::string install(const MakeFrontEnd& makeFrontEnd);
    // The session that uninstalls what `install` has left, likewise.
    std::string uninstall(const MakeFrontEnd& makeFrontEnd);

    MemoryPlatform& machine() { return machine_; }

private:
    std::string run(const std::string& path, std::uint32_t flags, const MakeFrontEnd& makeFrontEnd);

    MemoryPlatform machine_;
    std::string answers_;     // the path of the document; empty without one
    std::string productLog_;  // after the installation
};
