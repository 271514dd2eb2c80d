// Texts that are quoted for somebody else: the environment for a shell, desktop entries, command lines. What
// is written is read back by the rules of the reader, and must be the text that went in, with nothing beside
// it. The input is some texts with a zero byte between each two.

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/changes/program_run.h"
#include "engine/uninstall_command.h"
#include "fuzz_target.h"
#include "installer/relaunch.h"
#include "installer/run_options.h"
#include "platform/posix/command_line.h"
#include "platform/posix/desktop_entry.h"
#include "platform/posix/environment_script.h"
#include "quoting_readers.h"
#include "session/command_line_parameters.h"

namespace {

using Texts = std::array<std::string, 5>;

Texts textsOf(std::string_view input) {
    Texts texts;
    for (std::string& text : texts) {
        text = input.substr(0, input.find('\0'));
        input.remove_prefix(std::min(text.size() + 1, input.size()));
    }
    return texts;
}

bool holdsQuote(std::string_view text) {
    return text.find('"') != std::string_view::npos;
}

// A list has its entries between `:`. Nothing when it depends on what is on this machine's disk.
std::optional<std::string> valueForShell(std::string_view value) {
    std::string list;
    const bool isList = value.find(';') != std::string_view::npos;
    while (!value.empty()) {
        const std::string_view entry = value.substr(0, value.find(';'));
        value.remove_prefix(std::min(entry.size() + 1, value.size()));
        if (entry.starts_with('\\')) {
            return std::nullopt;
        }
        if (!entry.empty()) {
            list.append(list.empty() || !isList ? "" : ":").append(entry);
        }
    }
    return list;
}

// True when the first variable is one that a shell takes.
bool checkEnvironment(const Texts& texts) {
    const std::string script = platform::environmentScriptOf({{texts[0], texts[1]}, {"PATH", texts[2]}});
    const ShellScript read(script);
    require(read.exports().size() <= 1);
    for (const auto& [name, value] : read.exports()) {
        require(name == texts[0] && value == valueForShell(texts[1]).value_or(value));
    }
    for (const std::string& directory : read.directories()) {
        require(directory.starts_with('/') && directory.find(':') == std::string::npos);
    }
    return !read.exports().empty() && !read.directories().empty();
}

void checkDesktopEntry(const Texts& texts) {
    platform::ApplicationEntry entry{texts[0], texts[1], {texts[2]}, texts[3], texts[4]};
    for (std::string& word : platform::splitCommandLine(texts[3])) {
        entry.command.push_back(std::move(word));
    }
    const DesktopEntry application(platform::desktopEntryOf(entry));
    require(application.value("Type") == "Application" && application.value("Name") == entry.name);
    require(application.value("Comment") == entry.comment && application.value("Icon") == entry.icon);
    require(application.value("Path") == entry.workDirectory && application.command() == entry.command);
    const DesktopEntry link(platform::desktopLinkOf(texts[0], texts[1]));
    require(link.value("Type") == "Link" && link.value("Name") == texts[0] && link.value("URL") == texts[1]);
}

// The options of this command line, as a program that is started with it reads them.
class StartedProgram {
public:
    explicit StartedProgram(const std::string& commandLine)
        : words_(platform::splitCommandLine(commandLine)) {
        require(!words_.empty());
        require(parameters_.parse({words_.begin() + 1, words_.end()}) == 0);
    }

    const std::string& program() const { return words_.front(); }
    std::string option(std::string_view name) const {
        return std::string(parameters_.find(name).value_or(""));
    }
    int optionCount() const { return parameters_.getCount(); }

private:
    std::vector<std::string> words_;
    CommandLineParameters parameters_;
};

std::string withoutQuotes(std::string text) {
    std::erase(text, '"');
    return text;
}

// True when there is a command.
bool checkUninstallCommand(const Texts& texts) {
    const auto command = composeUninstallCommand(texts[0], texts[1], texts[2], ProgramQuotes::kDouble);
    if (!command) {
        return false;
    }
    const StartedProgram started(command->program + " " + command->arguments);
    require(started.program() == texts[0] && started.optionCount() == 2);
    require(started.option("uninstall") == texts[1]);
    require(started.option("uninstallApp") == withoutQuotes(texts[2]));
    return true;
}

void checkRelaunch(const Texts& texts) {
    if (holdsQuote(texts[0]) || holdsQuote(texts[1])) {
        return;
    }
    RunOptions options;
    options.gui = 0;
    options.quiet = 1;
    options.uninstallApp = texts[2];
    const StartedProgram started(UninstallRelaunch::commandLine(texts[0], texts[1], options, 0));
    require(started.program() == texts[0] && started.optionCount() == 4);
    require(started.option("uninstallFile") == texts[1] && started.option("gui") == "0");
    require(started.option("uninstallApp") == withoutQuotes(texts[2]) && started.option("quiet") == "1");
}

void checkProgram(const Texts& texts) {
    if (!holdsQuote(texts[0])) {
        const AsynchronousRunProgram request{texts[0], texts[1], "", 0};
        std::vector<std::string> words = platform::splitCommandLine(request.commandLine());
        require(!words.empty() && words.front() == texts[0]);
        words.erase(words.begin());
        require(words == platform::splitCommandLine(texts[1]));
    }
}

}  // namespace

// Accepted when each form has been written.
bool accepts(std::string_view input) {
    const Texts texts = textsOf(input);
    checkDesktopEntry(texts);
    checkRelaunch(texts);
    checkProgram(texts);
    const bool isCommand = checkUninstallCommand(texts);
    return checkEnvironment(texts) && isCommand;
}
