#include "runs.h"

#include <algorithm>
#include <cctype>

#include "description/answers_file.h"
#include "fakes/fake_console.h"
#include "fakes/recording_ui.h"
#include "gated_files.h"
#include "gated_settings.h"
#include "session/session_flags.h"
#include "wini/nested_sessions.h"
#include "wini/wini.h"

namespace {

constexpr const char* kLogCopy = "/kit/install.log";
// Of a walk; the sample product has fewer pages.
constexpr int kMostSteps = 40;

class GateLog : public FakeConsole {
public:
    explicit GateLog(CallGate& gate) : gate_(gate) {}
    int write(const char* text, std::int32_t length) override {
        gate_.noteLogText({text, static_cast<std::size_t>(length)});
        return 0;
    }

private:
    CallGate& gate_;
};

// Goes on and on, as a person who agrees with everything.
class AgreeingUI : public RecordingUI {
public:
    AgreeingUI(InstallExchangeInfo& session, CallGate& gate) : session_(session) {
        onCall = [&gate](const std::string&) { gate.pass(); };
    }

    int run() override {
        int result = 0;
        for (int step = 0; step < kMostSteps && !session_.isFinished() && result == 0; ++step) {
            result = session_.shift(this, 1);
        }
        return result;
    }

private:
    InstallExchangeInfo& session_;
};

bool isAboutFailure(const std::string& call) {
    return call.starts_with("addMessage(") || call.starts_with("messageBox(") ||
           (call.starts_with("addFileLine(") &&
            (call.find("FAILED") != std::string::npos || call.find("rror") != std::string::npos ||
             call.find("ERROR") != std::string::npos || call.find("ould not") != std::string::npos));
}

std::string withSlashes(std::string text) {
    std::ranges::replace(text, '\\', '/');
    return text;
}

// A full stop ends a sentence as well.
bool endsPath(const std::string& text, std::size_t at) {
    const std::size_t next = at < text.size() && text[at] == '.' ? at + 1 : at;
    return next >= text.size() || (text[next] != '/' && text[next] != '-' &&
                                   std::isalnum(static_cast<unsigned char>(text[next])) == 0);
}

class Session {
public:
    Session(Machine& machine, CallGate& gate)
        : gate_(gate),
          log_(gate),
          files_(machine.fakes.files, gate),
          registry_(machine.fakes.registry, gate),
          processes_(machine.fakes.processes, gate),
          firewall_(machine.fakes.firewall, gate),
          shell_(machine.bundle().shell, gate),
          platform_{files_,
                    registry_,
                    processes_,
                    machine.fakes.environment,
                    machine.fakes.console,
                    machine.fakes.events,
                    shell_,
                    firewall_} {}

    RunResult run(const std::string& path, std::uint32_t flags) {
        const DebugLog debugLog(log_);
        SystemServices services(platform_, debugLog);
        AnswersFile answers(files_);
        NestedSessions nested(debugLog);
        Wini session(platform_, services, answers, nested, debugLog, WiniArguments());
        session.setUnattended(true);
        AgreeingUI ui(session, gate_);
        RunResult outcome;
        if (session.loadCabinet(path.c_str(), 0, flags) != 0) {
            outcome.said.push_back(session.loadError());
            return outcome;
        }
        const int result = session.run(&ui, &log_);
        outcome.isToStartAgain = result == Installer::kStartAgain;
        outcome.succeeded = result == 0 && !session.hasErrors() && session.isFinished();
        std::ranges::copy_if(ui.calls, std::back_inserter(outcome.said), isAboutFailure);
        session.releaseSession();
        return outcome;
    }

private:
    CallGate& gate_;
    GateLog log_;
    GatedFiles files_;
    GatedRegistry registry_;
    GatedProcesses processes_;
    GatedFirewall firewall_;
    GatedShell shell_;
    platform::Platform platform_;
};

}  // namespace

bool RunResult::says(const std::string& text) const {
    return std::ranges::any_of(said,
                               [&](const std::string& line) { return line.find(text) != std::string::npos; });
}

bool RunResult::namesPath(const std::string& path) const {
    const std::string wanted = withSlashes(path);
    return std::ranges::any_of(said, [&](const std::string& line) {
        const std::string text = withSlashes(line);
        for (std::size_t at = text.find(wanted); at != std::string::npos; at = text.find(wanted, at + 1)) {
            if (endsPath(text, at + wanted.size())) {
                return true;
            }
        }
        return false;
    });
}

RunResult install(Machine& machine, CallGate& gate, SampleProduct::Version version) {
    return Session(machine, gate).run(SampleProduct::packageOf(version), kSessionBackup);
}

RunResult uninstall(Machine& machine, CallGate& gate) {
    MemoryFileSystem& files = machine.fakes.files;
    RunResult outcome{false, true, {"there is no log"}};
    for (int runs = 0; runs < 2 && outcome.isToStartAgain && files.hasFile(SampleProduct::kLog); ++runs) {
        files.addFile(kLogCopy, files.content(SampleProduct::kLog));
        outcome = Session(machine, gate).run(kLogCopy, kSessionActionLog);
        files.removeFile(kLogCopy);
    }
    return outcome;
}
