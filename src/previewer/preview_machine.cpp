#include "previewer/preview_machine.h"

#include "platform/manner.h"
#include "rehearsal/second_stage.h"
#include "support/p_console.h"

namespace {

constexpr const char* kAnswers = "answers.xml";

// What a setup runs may come from a package that isn't there: nothing is said against it.
MachineDescription machineOf(MemoryManner::System system) {
    MachineDescription machine = plainMachine(system);
    machine.results.push_back({"*", 0});
    return machine;
}

std::string nothingBeside(const MachineDescription::Named& /*copy*/) {
    return {};
}

}  // namespace

PreviewMachine::PreviewMachine(MemoryManner::System system, const RehearsedProduct& product)
    : manner_(system), description_(machineOf(system)), machine_(description_, nothingBeside) {
    installation_.path = description_.setup;
    installation_.offset = product.offset;
    machine_.files.addProgram(description_.setup, product.package);
    if (product.answers) {
        installation_.answers = description_.besideSetup(kAnswers);
        machine_.files.addFile(installation_.answers, *product.answers);
    }
}

std::string PreviewMachine::install(const MakeFrontEnd& makeFrontEnd) {
    return run(installation_, makeFrontEnd);
}

std::string PreviewMachine::uninstall(const MakeFrontEnd& makeFrontEnd) {
    if (!machine_.files.hasFile(productLog_)) {
        return "nothing was installed, so there is nothing to uninstall";
    }
    const SecondStage stage(machine_, productLog_);
    RehearsedSession::Source uninstallation;
    uninstallation.path = stage.logCopy();
    uninstallation.isUninstallation = true;
    return run(uninstallation, makeFrontEnd);
}

std::string PreviewMachine::run(const RehearsedSession::Source& source, const MakeFrontEnd& makeFrontEnd) {
    const platform::MannerInUse manner(manner_);
    PConsole nowhere;
    const DebugLog log(nowhere);
    RehearsedSession session(machine_, log, WiniArguments());
    if (std::string problem = session.load(source); !problem.empty()) {
        return problem;
    }
    const std::unique_ptr<GenericUI> frontEnd =
        makeFrontEnd({machine_.bundle(), session.answers(), log, source.isUninstallation});
    const int result = session.run(*frontEnd, nowhere);
    productLog_ = source.isUninstallation ? std::string() : session.engine().productLog();
    const bool isWhole = session.engine().isFinished();
    session.engine().releaseSession();
    return isWhole ? std::string()
                   : "the session ended before its last page (" + std::to_string(result) + ")";
}
