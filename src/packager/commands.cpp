#include "packager/commands.h"

#include <exception>

#include "base/errors.h"
#include "base/revision.h"

namespace {

// False: the command has said itself what fails.
bool runCommand(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files,
                platform::Environment& environment, platform::Processes& processes) {
    switch (commandLine.command) {
        case PackagerCommand::kBuild:
            runBuild(commandLine, output, files, environment);
            return true;
        case PackagerCommand::kExpand:
            runExpand(commandLine, output, files);
            return true;
        case PackagerCommand::kList:
            runList(commandLine, output, files);
            return true;
        case PackagerCommand::kExtract:
            runExtract(commandLine, output, files);
            return true;
        case PackagerCommand::kVerify:
            runVerify(commandLine, output, files);
            return true;
        case PackagerCommand::kText:
            runText(commandLine, output, files);
            return true;
        case PackagerCommand::kNew:
            runNew(commandLine, output, files);
            return true;
        case PackagerCommand::kCheck:
            return runCheck(commandLine, output, files);
        case PackagerCommand::kTry:
            return runTry(commandLine, output, files);
        case PackagerCommand::kPreview:
            return runPreview(commandLine, files, environment, processes);
        case PackagerCommand::kAnswers:
            runAnswers(commandLine, output, files);
            return true;
        case PackagerCommand::kSchema:
            runSchema(output);
            return true;
        case PackagerCommand::kNone:
            break;
    }
    return true;
}

std::string withoutLastLineEnd(std::string text) {
    if (text.ends_with('\n')) {
        text.pop_back();
    }
    return text;
}

int runChecked(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files,
               platform::Environment& environment, platform::Processes& processes) {
    try {
        return runCommand(commandLine, output, files, environment, processes) ? 0 : 1;
    } catch (const GenericError& error) {
        output.warn("packager: " + printable(error.what()));
    } catch (const std::bad_alloc&) {
        output.warn("packager: not enough memory");
    } catch (const std::exception& error) {
        output.warn(std::string("packager: ") + printable(error.what()));
    }
    return 1;
}

}  // namespace

int runPackager(const std::vector<std::string>& arguments, PackagerOutput& output,
                platform::FileSystem& files, platform::Environment& environment,
                platform::Processes& processes) {
    const CommandLine commandLine = parseCommandLine(arguments);
    int exitCode = 0;
    if (commandLine.help) {
        output.print(withoutLastLineEnd(helpText(commandLine.command)));
    } else if (commandLine.version) {
        output.print(std::string("Tandrel packager ") + kProgramVersion + ", revision " + kBuildRevision);
    } else if (!commandLine.problem.empty()) {
        output.warn("packager: " + printable(commandLine.problem));
        output.warn(withoutLastLineEnd(helpText(commandLine.command)));
        exitCode = 2;
    } else {
        exitCode = runChecked(commandLine, output, files, environment, processes);
    }
    if (!output.finish() && exitCode == 0) {
        output.warn("packager: the output can't be written");
        exitCode = 1;
    }
    return exitCode;
}
