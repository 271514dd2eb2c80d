#include <algorithm>
#include <utility>

#include "base/failure.h"
#include "base/path_functions.h"
#include "package/package_writer.h"
#include "packager/commands.h"
#include "packager/package_file_reader.h"
#include "packager/packing_list.h"
#include "platform/processes.h"
#include "support/utilities.h"

namespace {

constexpr std::uint32_t kLookMilliseconds = 60000;
constexpr int kFastest = 1;

// A directory for one file, gone at the end.
class TemporaryPackage {
public:
    explicit TemporaryPackage(platform::FileSystem& files) : files_(files) {
        const std::string parent = OUtils::getTempDirectory(files).value_or("");
        if (parent.empty() || files.createPrivateDirectory(parent, "preview", directory_) != 0) {
            fail("the package for the preview can't be made: there is no directory for temporary files");
        }
    }
    ~TemporaryPackage() {
        files_.removeFile(path());
        files_.removeDirectory(directory_);
    }
    TemporaryPackage(const TemporaryPackage&) = delete;
    TemporaryPackage& operator=(const TemporaryPackage&) = delete;

    std::string path() const { return directory_ + "/package"; }

private:
    platform::FileSystem& files_;
    std::string directory_;
};

// What a build would find wrong doesn't matter yet.
void pack(const CommandLine& commandLine, const std::string& target, platform::FileSystem& files) {
    PackingList list({commandLine.previewed, commandLine.root, commandLine.image}, files);
    list.read();
    PackageOptions options;
    options.level = kFastest;
    options.stripes = PackageWriter::defaultStripes(list.cabinetSize());
    PackageWriter(files).write(list.entries(), options, target);
}

// Programs of one system have the same ending.
std::string previewerBeside(platform::FileSystem& files, platform::Environment& environment) {
    std::string packager;
    if (!environment.programPath(packager)) {
        fail("the system doesn't say where this program is");
    }
    const std::string_view name = OUtils::lastPathComponent(packager);
    const std::string directory = packager.substr(0, packager.size() - name.size());
    std::string previewer = directory + "previewer" + (name.ends_with(".exe") ? ".exe" : "");
    if (files.kindOf(previewer) != platform::PathKind::kFile) {
        fail(previewer + ": the program that draws the pages isn't there");
    }
    return previewer;
}

std::vector<std::string> wordsOf(const CommandLine& commandLine, const std::string& package,
                                 std::int64_t offset) {
    std::vector<std::string> words = {"--package", package, "--offset", std::to_string(offset)};
    words.insert(words.end(), {"--title", std::string(OUtils::lastPathComponent(commandLine.previewed))});
    words.insert(words.end(), {"--to", commandLine.target});
    for (const std::string& answers : commandLine.answerSets) {
        words.insert(words.end(), {"--answers", answers});
    }
    for (const auto& [option, value] :
         {std::pair{"--sizes", &commandLine.sizes}, std::pair{"--compare", &commandLine.earlier}}) {
        if (!value->empty()) {
            words.insert(words.end(), {option, *value});
        }
    }
    for (const auto& [option, isSet] :
         {std::pair{"--strict", commandLine.strict}, std::pair{"--display", commandLine.usesDisplay}}) {
        if (isSet) {
            words.emplace_back(option);
        }
    }
    return words;
}

bool runPreviewer(const std::string& previewer, const std::vector<std::string>& words,
                  platform::Processes& processes) {
    std::string line;
    platform::addWord(line, previewer);
    for (const std::string& word : words) {
        if (!platform::addWord(line, word)) {
            fail(word + ": a name with a double quote can't be handed on");
        }
    }
    int error = 0;
    const std::unique_ptr<platform::ChildProcess> child = processes.start(line, "", error);
    if (child == nullptr) {
        fail(previewer + ": can't be started");
    }
    while (!child->wait(kLookMilliseconds)) {
    }
    return child->exitCode() == 0;
}

}  // namespace

bool runPreview(const CommandLine& commandLine, platform::FileSystem& files,
                platform::Environment& environment, platform::Processes& processes) {
    const std::string previewer = previewerBeside(files, environment);
    if (!commandLine.root.empty()) {
        const TemporaryPackage package(files);
        pack(commandLine, package.path(), files);
        return runPreviewer(previewer, wordsOf(commandLine, package.path(), 0), processes);
    }
    PackageFileReader package(files);
    package.locate(commandLine.previewed);
    return runPreviewer(previewer, wordsOf(commandLine, commandLine.previewed, package.offset()), processes);
}
