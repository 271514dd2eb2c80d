#include "rehearsal/second_stage.h"

namespace {

constexpr const char* kLogCopy = "/ormeluninst.log";
constexpr const char* kProgramCopy = "/ormeluninst.dll";

}  // namespace

SecondStage::SecondStage(RehearsedMachine& machine, const std::string& actionLog)
    : machine_(machine), logCopy_(machine.description.temporaryDirectory + kLogCopy) {
    machine_.setProgram(machine_.description.temporaryDirectory + kProgramCopy);
    machine_.files.addFile(logCopy_, machine_.files.content(actionLog));
}

SecondStage::~SecondStage() {
    machine_.files.removeFile(logCopy_);
}
