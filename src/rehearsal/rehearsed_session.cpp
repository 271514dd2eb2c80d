#include "rehearsal/rehearsed_session.h"

#include <memory>

#include "session/session_flags.h"
#include "ui/generic_ui.h"

namespace {

// How far the clock goes at each look.
constexpr std::uint64_t kLookMilliseconds = 1000;

ServiceClock clockWithoutWaiting() {
    const auto now = std::make_shared<std::uint64_t>(0);
    return {[now] { return *now += kLookMilliseconds; },
            [now](std::uint32_t milliseconds) { *now += milliseconds; }};
}

}  // namespace

RehearsedSession::RehearsedSession(RehearsedMachine& machine, const DebugLog& log,
                                   const WiniArguments& arguments)
    : RehearsedSession(machine, log, arguments, clockWithoutWaiting()) {}

RehearsedSession::RehearsedSession(RehearsedMachine& machine, const DebugLog& log,
                                   const WiniArguments& arguments, const ServiceClock& clock)
    : services_(machine.bundle(), log, clock),
      answers_(machine.files),
      nested_(log, clock),
      session_(machine.bundle(), services_, answers_, nested_, log, arguments) {}

RehearsedSession::~RehearsedSession() {
    services_.setFrontEnd(nullptr);
}

std::string RehearsedSession::load(const Source& source) {
    session_.setConfigFile(source.answers);
    std::uint32_t flags = 0;
    flags |= source.keepsBackup ? kSessionBackup : 0U;
    flags |= source.isUninstallation ? kSessionActionLog : 0U;
    const int status = session_.loadCabinet(source.path.data(), source.offset, flags);
    return status == 0 ? std::string() : session_.loadError();
}

int RehearsedSession::run(GenericUI& frontEnd, PConsole& log) {
    frontEnd.setEngine(&session_);
    services_.setFrontEnd(&frontEnd);
    const int status = session_.run(&frontEnd, &log);
    services_.setFrontEnd(nullptr);
    return status;
}

bool RehearsedSession::hasSucceeded(int status) {
    return status == 0 && !session_.hasErrors() && session_.isFinished();
}

std::string RehearsedSession::OpenSession::page() {
    const DialogDesc* const dialog = getDialog(navigation().currentDialog, navigation().currentSubdialog);
    return dialog == nullptr ? std::string() : std::string(dialog->name.view());
}
