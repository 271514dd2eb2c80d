#include <optional>
#include <string>

#include "base/failure.h"
#include "base/path_functions.h"
#include "package/package_checksum.h"
#include "packager/commands.h"
#include "packager/package_file_reader.h"
#include "rehearsal/expectation.h"
#include "rehearsal/rehearsal.h"
#include "support/utilities.h"

namespace {

std::string readInput(const std::string& path, const char* what, platform::FileSystem& files) {
    std::string content;
    if (const int status = OUtils::readWholeFile(path, content, files); status != 0) {
        fail(path + ": the " + what + " can't be read: " + OUtils::readingErrorText(status));
    }
    return content;
}

// Puts the path in front of what is wrong in a file.
template <typename Read>
auto readFrom(const std::string& path, Read read) {
    try {
        return read();
    } catch (const GenericError& error) {
        fail(path + ": " + error.what());
    }
}

RehearsedProduct readPackage(const std::string& path, platform::FileSystem& files) {
    PackageFileReader package(files);
    package.locate(path);
    if (package.hasImage() && !verifyInstallerChecksum(path, files)) {
        fail(path + ": the checksum doesn't match: the file is damaged or incomplete");
    }
    return {readInput(path, "package", files), package.offset(), std::nullopt};
}

Outcome outcomeOf(const CommandLine& commandLine, platform::FileSystem& files) {
    const std::string& path = commandLine.machine;
    const std::string text = readInput(path, "machine file", files);
    const MachineDescription machine = readFrom(path, [&] { return readMachine(text); });
    RehearsedProduct product = readPackage(commandLine.package, files);
    if (!commandLine.answers.empty()) {
        product.answers = readInput(commandLine.answers, "answers", files);
    }
    const std::string directory = path.substr(0, path.size() - OUtils::lastPathComponent(path).size());
    return rehearse(machine, product,
                    {[&](const MachineDescription::Named& copy) {
                         return readInput(directory + copy.text, "file of the machine", files);
                     },
                     [&](const std::string& name) { return readPackage(directory + name, files); }});
}

bool showOutcome(const Outcome& outcome, PackagerOutput& output) {
    for (const std::string& line : outcomeLines(outcome)) {
        output.print(line);
    }
    if (!outcome.failure.empty()) {
        output.warn("packager: " + printable(outcome.failure));
    }
    return outcome.failure.empty();
}

void update(const std::string& path, const Outcome& outcome, PackagerOutput& output,
            platform::FileSystem& files) {
    std::string text = newExpectation(outcome);
    if (files.exists(path)) {
        const std::string old = readInput(path, "expectation", files);
        text = readFrom(path, [&] { return Expectation(old); }).updated(outcome);
    }
    if (const int status = OUtils::writeWholeFile(path, text, files); status != 0) {
        fail(path + ": the expectation can't be written: " + OUtils::writingErrorText(status));
    }
    output.print(printable(path) + " was written");
}

bool compare(const std::string& path, const Outcome& outcome, PackagerOutput& output,
             platform::FileSystem& files) {
    const std::string text = readInput(path, "expectation", files);
    const Expectation expectation = readFrom(path, [&] { return Expectation(text); });
    const std::vector<std::string> differences = expectation.differences(outcome);
    if (differences.empty()) {
        output.print("as expected");
        return true;
    }
    output.print("--- expected: " + printable(path));
    output.print("+++ found");
    for (const std::string& line : differences) {
        output.print(line);
    }
    return false;
}

}  // namespace

bool runTry(const CommandLine& commandLine, PackagerOutput& output, platform::FileSystem& files) {
    const Outcome outcome = outcomeOf(commandLine, files);
    if (commandLine.expected.empty()) {
        return showOutcome(outcome, output);
    }
    if (commandLine.update) {
        update(commandLine.expected, outcome, output, files);
        return true;
    }
    return compare(commandLine.expected, outcome, output, files);
}
