#include "previewer/preview_run.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "base/errors.h"
#include "base/failure.h"
#include "base/path_functions.h"
#include "base/visible_text.h"
#include "platform/console_device.h"
#include "platform/environment.h"
#include "platform/processes.h"
#include "previewer/console_walk.h"
#include "previewer/png_file.h"
#include "previewer/watched_toolkit.h"
#include "previewer/window_walk.h"
#include "support/utilities.h"

namespace {

// The largest letters make the largest frame; what doesn't fit a screen is drawn all the same.
constexpr int kScreenWidth = 4096;
constexpr int kScreenHeight = 3072;
constexpr std::uint32_t kPatience = 600000;  // ms
constexpr const char* kRecordName = "walk.txt";

// The caret would be there or not.
constexpr const char* kWindowSettings =
    "[Settings]\n"
    "gtk-theme-name=Adwaita\n"
    "gtk-icon-theme-name=Adwaita\n"
    "gtk-font-name=Sans 10\n"
    "gtk-enable-animations=0\n"
    "gtk-cursor-blink=0\n";

// Through both phases. Why they ended early, one line for each that did.
std::vector<std::string> walk(PreviewMachine& machine, const PreviewMachine::MakeFrontEnd& make) {
    std::vector<std::string> ends;
    const std::string installation = machine.install(make);
    const std::string uninstallation = machine.uninstall(make);
    if (!installation.empty()) {
        ends.push_back("install: " + installation);
    }
    if (!uninstallation.empty()) {
        ends.push_back("uninstall: " + uninstallation);
    }
    return ends;
}

}  // namespace

PreviewRun::PreviewRun(Surroundings surroundings, PreviewOptions options)
    : surroundings_(std::move(surroundings)),
      options_(std::move(options)),
      directory_(surroundings_.machine.files, options_.directory) {}

int PreviewRun::run() {
    if (!options_.problem.empty()) {
        surroundings_.machine.console.writeError("previewer: " + options_.problem + "\n");
        return 2;
    }
    std::string failure;
    try {
        return options_.windowSet >= 0 ? walkInWindow() : runAll();
    } catch (const GenericError& error) {
        failure = error.what();
    } catch (const std::exception& error) {
        failure = error.what();
    }
    surroundings_.machine.console.writeError("previewer: " + OUtils::visibleText(failure) + "\n");
    return 1;
}

int PreviewRun::runAll() {
    readPackage();
    for (std::size_t set = 1; set <= options_.answers.size(); ++set) {
        readAnswers(set);
    }
    if (!options_.earlier.empty()) {
        PreviewDirectory earlier(surroundings_.machine.files, options_.earlier);
        std::string first;
        std::string second;
        surroundings_.machine.files.realPath(options_.earlier, first);
        surroundings_.machine.files.realPath(options_.directory, second);
        if (earlier.names().empty() || first == second) {
            fail(options_.earlier + ": isn't another preview to compare with");
        }
    }
    directory_.begin();
    Preview preview;
    preview.title = "Preview of " + (options_.title.empty() ? options_.package : options_.title);
    for (std::size_t set = 0; set <= options_.answers.size(); ++set) {
        preview.sets.push_back(walkOnConsole(set));
    }
    writeConsolePages(preview);
    walkInWindows(preview);
    std::vector<PreviewFile> files = compare(preview);
    files.push_back({"index.html", indexPageOf(preview)});
    directory_.write(files);
    return report(preview);
}

void PreviewRun::readPackage() {
    const int status = OUtils::readWholeFile(options_.package, product_.package, surroundings_.machine.files);
    if (status != 0 || static_cast<std::uint64_t>(options_.offset) > product_.package.size()) {
        fail(options_.package + ": can't be read: " + OUtils::readingErrorText(status));
    }
    product_.offset = options_.offset;
}

std::string PreviewRun::readAnswers(std::size_t set) {
    const std::string& path = options_.answers[set - 1];
    std::string content;
    const int status = OUtils::readWholeFile(path, content, surroundings_.machine.files);
    if (status != 0 || content.empty()) {
        fail(path + ": the answers can't be read: " + OUtils::readingErrorText(status));
    }
    return content;
}

std::string PreviewRun::setName(std::size_t set) const {
    return set == 0 ? "Default answers"
                    : "Answers of " + std::string(OUtils::lastPathComponent(options_.answers[set - 1]));
}

std::string PreviewRun::directoryOf(std::size_t set, const std::string& kind) const {
    return (set == 0 ? "default" : "answers" + std::to_string(set)) + "-" + kind;
}

PreviewMachine PreviewRun::machineFor(std::size_t set) {
    product_.answers = set == 0 ? std::nullopt : std::optional(readAnswers(set));
    return PreviewMachine(*options_.system, product_);
}

AnswerSet PreviewRun::walkOnConsole(std::size_t set) {
    AnswerSet answers;
    answers.name = setName(set);
    PreviewMachine machine = machineFor(set);
    const auto make = [&](const PreviewMachine::Surroundings& surroundings) {
        return std::make_unique<ConsoleWalk>(surroundings, machine.machine().console, answers.console);
    };
    answers.consoleEnds = walk(machine, make);
    return answers;
}

void PreviewRun::writeConsolePages(const Preview& preview) {
    std::vector<PreviewFile> files;
    for (std::size_t set = 0; set < preview.sets.size(); ++set) {
        for (const ConsolePage& page : preview.sets[set].console) {
            files.push_back({directoryOf(set, "console") + "/" + page.file + ".txt", page.text});
        }
    }
    directory_.write(files);
}

// Settings of the user's own desktop would make each preview another one.
void PreviewRun::prepareSurroundingsOfWindows() {
    platform::Environment& environment = surroundings_.machine.environment;
    directory_.write({{"gtk-3.0/settings.ini", kWindowSettings}});
    std::string home;
    surroundings_.machine.files.realPath(directory_.path(), home);
    const std::pair<const char*, std::string> variables[] = {{"XDG_CONFIG_HOME", home},
                                                             {"GTK_THEME", "Adwaita"},
                                                             {"GDK_SCALE", "1"},
                                                             {"NO_AT_BRIDGE", "1"},
                                                             {"WAYLAND_DISPLAY", ""},
                                                             {"GTK_MODULES", ""},
                                                             {"DBUS_SESSION_BUS_ADDRESS", "disabled:"}};
    for (const auto& [name, value] : variables) {
        environment.set(name, value);
    }
}

void PreviewRun::walkInWindows(Preview& preview) {
    std::unique_ptr<platform::VirtualDisplay> display;
    if (!options_.usesDisplay) {
        display = surroundings_.startDisplay(kScreenWidth, kScreenHeight, preview.windowNote);
        if (display == nullptr) {
            return;
        }
        surroundings_.machine.environment.set("DISPLAY", display->name());
    }
    prepareSurroundingsOfWindows();
    for (std::size_t set = 0; set < preview.sets.size(); ++set) {
        for (const int size : options_.sizes) {
            preview.sets[set].windows.push_back(startWindowWalk(set, size));
        }
    }
}

std::string PreviewRun::commandLineOf(std::size_t set, int size) {
    std::string program;
    if (!surroundings_.machine.environment.programPath(program)) {
        fail("the system doesn't say where this program is");
    }
    std::vector<std::string> words = {program,
                                      "--package",
                                      options_.package,
                                      "--offset",
                                      std::to_string(options_.offset),
                                      "--system",
                                      std::string(systemWord(*options_.system)),
                                      "--to",
                                      options_.directory,
                                      "--sizes",
                                      std::to_string(size),
                                      "--window-set",
                                      std::to_string(set)};
    for (const std::string& answers : options_.answers) {
        words.insert(words.end(), {"--answers", answers});
    }
    return platform::commandLineOf(words);
}

// The size of letters holds for a process.
SizeWalk PreviewRun::startWindowWalk(std::size_t set, int size) {
    SizeWalk walk;
    walk.size = size;
    walk.directory = directoryOf(set, std::to_string(size));
    if (!surroundings_.setLetterSize(surroundings_.machine.environment, size)) {
        fail("letters of " + std::to_string(size) +
             " % can't be had: on this system the desktop's setting counts");
    }
    int error = 0;
    const auto child = surroundings_.machine.processes.start(commandLineOf(set, size), "", error);
    if (child == nullptr || !child->wait(kPatience) || child->exitCode() != 0) {
        fail("the pages in letters of " + std::to_string(size) + " % couldn't be drawn");
    }
    std::string record;
    if (!directory_.read(walk.directory + "/" + kRecordName, record)) {
        fail(walk.directory + "/" + kRecordName + ": can't be read");
    }
    walk.record = readWalkRecord(record);
    return walk;
}

int PreviewRun::walkInWindow() {
    std::string reason;
    Toolkit* const toolkit = surroundings_.openToolkit(reason);
    if (toolkit == nullptr) {
        fail("no window can be shown: " + reason);
    }
    const auto set = static_cast<std::size_t>(options_.windowSet);
    const std::string target = directoryOf(set, std::to_string(options_.sizes.front()));
    WatchedToolkit watched(*toolkit);
    WalkRecord record;
    std::vector<PreviewFile> files;
    const auto save = [&](const std::string& file, const Image& picture) {
        files.push_back({target + "/" + file + ".png", pngFileOf(picture)});
    };
    const auto make = [&](const PreviewMachine::Surroundings& surroundings) {
        return std::make_unique<WindowWalk>(surroundings, watched, record, save);
    };
    readPackage();
    PreviewMachine machine = machineFor(set);
    const std::vector<std::string> ends = walk(machine, make);
    record.ends.insert(record.ends.end(), ends.begin(), ends.end());
    files.push_back({target + "/" + kRecordName, textOf(record)});
    directory_.write(files);
    return 0;
}

std::vector<PreviewFile> PreviewRun::compare(Preview& preview) {
    std::vector<PreviewFile> files;
    if (options_.earlier.empty()) {
        return files;
    }
    PreviewDirectory earlier(surroundings_.machine.files, options_.earlier);
    preview.comparedTo = options_.earlier;
    preview.changes = comparePreviews(directory_, earlier);
    for (std::size_t i = 0; i < preview.changes.size(); ++i) {
        const ChangedFile& change = preview.changes[i];
        if (change.changedPixels == 0) {
            continue;
        }
        const Image before = readPicture(earlier, change.earlierName);
        int changed = 0;
        const auto difference = differenceOf(readPicture(directory_, change.name), before, changed);
        const std::string number = std::to_string(i) + ".png";
        files.push_back({"compared/earlier-" + number, pngFileOf(before)});
        if (difference) {
            files.push_back({"compared/difference-" + number, pngFileOf(*difference)});
        }
    }
    return files;
}

int PreviewRun::report(const Preview& preview) {
    if (!preview.windowNote.empty()) {
        surroundings_.machine.console.writeError("previewer: no pictures: " + preview.windowNote + "\n");
    }
    for (const AnswerSet& set : preview.sets) {
        for (const SizeWalk& walk : set.windows) {
            for (const PageRecord& page : walk.record.pages) {
                for (const LayoutFault& fault : page.faults) {
                    say(walk.directory + "/" + page.file + ".png: " + nameOf(fault.kind) + ": " + fault.text);
                }
            }
        }
    }
    if (!preview.comparedTo.empty()) {
        const auto count = [&](ChangedFile::Kind kind) {
            return std::to_string(std::ranges::count(preview.changes, kind, &ChangedFile::kind));
        };
        say("compared with " + preview.comparedTo + ": " + count(ChangedFile::Kind::kChanged) + " changed, " +
            count(ChangedFile::Kind::kNew) + " new, " + count(ChangedFile::Kind::kGone) + " gone");
    }
    std::size_t pictures = 0;
    for (const std::string& name : directory_.names()) {
        pictures += name.ends_with(".png") && !name.starts_with("compared/") ? 1 : 0;
    }
    const int faults = countFaults(preview);
    say(directory_.path() + "/index.html: " + std::to_string(pictures) + " pictures, " +
        std::to_string(faults) + (faults == 1 ? " fault" : " faults"));
    const bool isWhole = preview.windowNote.empty();
    return options_.isStrict && (faults > 0 || !isWhole) ? 1 : 0;
}

void PreviewRun::say(const std::string& line) {
    surroundings_.machine.console.write(OUtils::visibleText(line) + "\n");
}
