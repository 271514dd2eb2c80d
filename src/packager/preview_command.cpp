#include <algorithm>
#include <utility>

#include "base/failure.h"
#include "base/path_functions.h"
#include "package/package_writer.h"
#include "packager/commands.h"
#include "packager/image_kind.h"
#include "packager/package_file_reader.h"
#include "packager/packing_list.h"
#include "platform/processes.h"
#include "rehearsal/machine_format.h"
#include "support/utilities.h"

namespace {

constexpr std::uint32_t kLookMilliseconds = 60000;
constexpr int kFastest = 1;

struct PreviewedPackage {
    std::string path;
    std::int64_t offset = 0;
    ImageKind image = ImageKind::kNone;
};

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

// Without an image, a package is shown on a machine of this system, whose programs have its ending.
std::string_view systemOf(ImageKind image, const std::string& previewer) {
    const ImageKind own = previewer.ends_with(".exe") ? ImageKind::kPe : ImageKind::kElf;
    const ImageKind kind = image == ImageKind::kNone ? own : image;
    return kind == ImageKind::kPe ? MachineFormat::kWindows : MachineFormat::kLinux;
}

std::vector<std::string> wordsOf(const CommandLine& commandLine, const PreviewedPackage& package,
                                 std::string_view system) {
    std::vector<std::string> words = {"--package", package.path, "--offset", std::to_string(package.offset)};
    words.insert(words.end(), {"--system", std::string(system)});
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

bool runPreviewer(const CommandLine& commandLine, const PreviewedPackage& package,
                  const std::string& previewer, platform::Processes& processes) {
    std::vector<std::string> words = wordsOf(commandLine, package, systemOf(package.image, previewer));
    words.insert(words.begin(), previewer);
    const std::string line = platform::commandLineOf(words);
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
        const ImageKind image = kindOfImage(commandLine.image, files);
        return runPreviewer(commandLine, {package.path(), 0, image}, previewer, processes);
    }
    PackageFileReader package(files);
    package.locate(commandLine.previewed);
    return runPreviewer(commandLine, {commandLine.previewed, package.offset(), package.imageKind()},
                        previewer, processes);
}
