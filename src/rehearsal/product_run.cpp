#include "rehearsal/product_run.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

#include "base/failure.h"
#include "base/text_functions.h"
#include "rehearsal/entry_text.h"
#include "rehearsal/machine_format.h"
#include "rehearsal/named_lines.h"
#include "rehearsal/rehearsed_session.h"
#include "session/command_line_parameters.h"
#include "support/p_console.h"
#include "ui/console/console_ui.h"

namespace {

constexpr int kLogLevel = 1;
// Nothing on the machine happens by itself, so what a page waits for would have happened at once.
constexpr int kMostPauses = 100;

const std::vector<std::string_view> kOptions = {"backup", "ignoreErrors", "quiet"};

class LogLines : public PConsole {
public:
    LogLines() { setOptions(0); }

    int write(const char* text, std::int32_t length) override {
        text_.append(text, static_cast<std::size_t>(length));
        return 0;
    }
    std::vector<std::string> take() {
        std::vector<std::string> lines;
        for (std::string& line : OUtils::splitText(text_, '\n')) {
            if (line.ends_with('\r')) {
                line.pop_back();
            }
            lines.push_back(std::move(line));
        }
        if (!lines.empty() && lines.back().empty()) {
            lines.pop_back();
        }
        return lines;
    }

private:
    std::string text_;
};

std::vector<std::string> variableLines(VariableStore& variables) {
    NamedLines lines;
    for (std::int32_t i = 0; i < variables.getCount(); ++i) {
        const InstallVariable& variable = variables.at(i);
        lines.add(variable.name, entryText(variable.name, MachineFormat::kIs) +
                                     std::string(MachineFormat::kIs) + entryText(variable.value, ""));
    }
    return lines.take();
}

int numberOf(const CommandLineParameters& parameters, std::string_view name, int absent) {
    const auto value = parameters.find(name);
    return value ? OUtils::textToInteger(*value) : absent;
}

class ProductRun {
public:
    ProductRun(RehearsedMachine& machine, const RunRequest& request)
        : machine_(machine), request_(request), debugLog_(log_, kLogLevel) {
        readOptions();
        const int ignoreErrors = numberOf(parameters_, "ignoreErrors", 0);
        const int quiet = numberOf(parameters_, "quiet", request.answers.empty() ? 0 : 1);
        session_.emplace(machine, debugLog_, WiniArguments{kLogLevel, 0, ignoreErrors});
        ui_ = std::make_unique<ConsoleUI>(request.isUninstallation, ignoreErrors != 0, quiet != 0,
                                          machine.console, session_->answers(), debugLog_);
    }
    ProductRun(const ProductRun&) = delete;
    ProductRun& operator=(const ProductRun&) = delete;

    RunResult run() {
        load();
        chooseInput();
        machine_.console.onSleep = [this] { endHeldRun(); };
        const int status = session_->run(*ui_, log_);
        machine_.console.onSleep = nullptr;
        return resultOf(status);
    }

private:
    void readOptions() {
        if (parameters_.parse(request_.options) != 0) {
            fail("a step has an option that can't be read");
        }
        for (int i = 0; i < parameters_.getCount(); ++i) {
            const std::string_view name = parameters_.name(i);
            if (!OUtils::startsWithIgnoreCase(name, "VARIABLE_") &&
                std::ranges::find(kOptions, name) == kOptions.end()) {
                fail("a step has the option -" + std::string(name.substr(0, 100)) +
                     "; it can have VARIABLE_NAME, backup, ignoreErrors and quiet");
            }
        }
    }

    void load() {
        session_->engine().setParameters(&parameters_, kOptions);
        const bool keepsBackup = numberOf(parameters_, "backup", 1) != 0;
        const std::string problem = session_->load(
            {request_.path, request_.offset, request_.isUninstallation, keepsBackup, request_.answers});
        if (!problem.empty()) {
            fail(request_.path + ": " + problem);
        }
    }

    void chooseInput() {
        const std::string mode = request_.isUninstallation  ? "autoUninstall"
                                 : request_.answers.empty() ? "autoInstall"
                                                            : request_.answers;
        bool isAutomated = false;
        if (ui_->createInputProvider(mode.data(), isAutomated) != 0 || !isAutomated) {
            fail("the answers can't be read: a file of answers has an element DefValues");
        }
        session_->engine().setUnattended(true);
    }

    // Ends the walk as an error of its own does.
    void endHeldRun() {
        if (++pauses_ > kMostPauses && heldBy_.empty()) {
            heldBy_ = session_->page();
            fail("The page \"" + heldBy_ + "\" waits for something that doesn't happen on this machine");
        }
    }

    RunResult resultOf(int status) {
        RunResult result;
        result.errors = session_->errors();
        result.hasSucceeded = session_->hasSucceeded(status);
        result.variables = variableLines(session_->variables());
        if (!request_.isUninstallation) {
            result.productLog = session_->engine().productLog();
        }
        if (!result.hasSucceeded) {
            result.failure = reasonOf(status, result.errors);
        }
        session_->engine().releaseSession();
        result.log = log_.take();
        return result;
    }

    std::string reasonOf(int status, const std::vector<std::string>& errors) {
        const std::string page = heldBy_.empty() && status != 0 ? session_->page() : heldBy_;
        if (!page.empty() && (errors.empty() || !heldBy_.empty())) {
            return "the page \"" + page + "\" holds the run";
        }
        return errors.empty() ? "the run failed" : errors.front();
    }

    RehearsedMachine& machine_;
    const RunRequest& request_;
    LogLines log_;
    DebugLog debugLog_;
    CommandLineParameters parameters_;
    std::optional<RehearsedSession> session_;
    std::unique_ptr<ConsoleUI> ui_;
    int pauses_ = 0;
    std::string heldBy_;
};

}  // namespace

RunResult runProduct(RehearsedMachine& machine, const RunRequest& request) {
    return ProductRun(machine, request).run();
}
