#include "previewer/preview_machine.h"

#include "description/answers_file.h"
#include "session/session_flags.h"
#include "wini/nested_sessions.h"
#include "wini/system_services.h"
#include "wini/wini.h"

namespace {

constexpr const char* kPackage = "/media/setup/package";
constexpr const char* kAnswers = "/media/setup/answers.xml";
constexpr const char* kLogCopy = "/tmp/uninstall/install.log";

}  // namespace

PreviewMachine::PreviewMachine(std::string_view package, std::string_view answers) {
    for (const char* const directory : {"/tmp", "/opt", "/usr/local/share", "/home/user", "/var/lib"}) {
        machine_.files.addDirectory(directory);
    }
    machine_.files.addFile(kPackage, package);
    machine_.environment.program = "/media/setup/setup";
    machine_.environment.current = "/media/setup";
    machine_.environment.variables["HOME"] = "/home/user";
    machine_.files.addProgram(machine_.environment.program, "the setup");
    if (!answers.empty()) {
        answers_ = kAnswers;
        machine_.files.addFile(answers_, answers);
    }
}

std::string PreviewMachine::install(const MakeFrontEnd& makeFrontEnd) {
    return run(kPackage, kSessionBackup, makeFrontEnd);
}

// As the second stage of an uninstallation does it, from a copy of the log.
std::string PreviewMachine::uninstall(const MakeFrontEnd& makeFrontEnd) {
    if (productLog_.empty()) {
        return "nothing was installed, so there is nothing to uninstall";
    }
    machine_.files.addFile(kLogCopy, machine_.files.content(productLog_));
    answers_.clear();
    return run(kLogCopy, kSessionActionLog, makeFrontEnd);
}

std::string PreviewMachine::run(const std::string& path, std::uint32_t flags,
                                const MakeFrontEnd& makeFrontEnd) {
    const platform::Platform machine = machine_.bundle();
    const DebugLog log;
    SystemServices services(machine, log);
    AnswersFile answers(machine_.files);
    NestedSessions nestedSessions(log);
    const bool isUninstallation = (flags & kSessionActionLog) != 0;
    const std::unique_ptr<GenericUI> frontEnd = makeFrontEnd({machine, answers, log, isUninstallation});
    Wini session(machine, services, answers, nestedSessions, log, WiniArguments());
    session.setConfigFile(answers_);
    if (session.loadCabinet(path.c_str(), 0, flags) != 0) {
        return session.loadError();
    }
    frontEnd->setEngine(&session);
    services.setFrontEnd(frontEnd.get());
    const int result = session.run(frontEnd.get(), nullptr);
    productLog_ = isUninstallation ? std::string() : session.productLog();
    const bool isWhole = session.isFinished();
    services.setFrontEnd(nullptr);
    session.releaseSession();
    return isWhole ? std::string()
                   : "the session ended before its last page (" + std::to_string(result) + ")";
}
