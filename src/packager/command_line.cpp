#include "packager/command_line.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <string_view>

#include "checking/finding_codes.h"
#include "package/solid_format.h"

namespace {

struct CommandName {
    const char* name;
    PackagerCommand command;
};

constexpr CommandName kCommands[] = {
    {"new", PackagerCommand::kNew},         {"check", PackagerCommand::kCheck},
    {"build", PackagerCommand::kBuild},     {"expand", PackagerCommand::kExpand},
    {"list", PackagerCommand::kList},       {"extract", PackagerCommand::kExtract},
    {"verify", PackagerCommand::kVerify},   {"text", PackagerCommand::kText},
    {"schema", PackagerCommand::kSchema},   {"try", PackagerCommand::kTry},
    {"answers", PackagerCommand::kAnswers}, {"preview", PackagerCommand::kPreview},
};

constexpr std::int32_t kLeastWidth = 10;
constexpr std::int32_t kMostWidth = 1000;

// An option stores a text, sets a flag, stores a number from `least` to `most`, or adds a text to a list; the
// other pointers are null.
struct OptionRule {
    const char* name;
    std::string CommandLine::*text;
    bool CommandLine::*flag;
    std::int32_t CommandLine::*number;
    std::int32_t least;
    std::int32_t most;
    PackagerCommand command;
    std::vector<std::string> CommandLine::*list = nullptr;
};

constexpr OptionRule kOptions[] = {
    {"description", &CommandLine::description, nullptr, nullptr, 0, 0, PackagerCommand::kBuild},
    {"root", &CommandLine::root, nullptr, nullptr, 0, 0, PackagerCommand::kBuild},
    {"image", &CommandLine::image, nullptr, nullptr, 0, 0, PackagerCommand::kBuild},
    {"output", &CommandLine::output, nullptr, nullptr, 0, 0, PackagerCommand::kBuild},
    {"bin", nullptr, &CommandLine::bin, nullptr, 0, 0, PackagerCommand::kBuild},
    {"stripes", nullptr, nullptr, &CommandLine::stripes, 1, SolidFormat::kMaxChunks, PackagerCommand::kBuild},
    {"level", nullptr, nullptr, &CommandLine::level, 1, 9, PackagerCommand::kBuild},
    {"old-checksum", nullptr, &CommandLine::oldChecksum, nullptr, 0, 0, PackagerCommand::kBuild},
    {"allow", nullptr, nullptr, nullptr, 0, 0, PackagerCommand::kBuild, &CommandLine::allowed},
    {"description", &CommandLine::description, nullptr, nullptr, 0, 0, PackagerCommand::kExpand},
    {"root", &CommandLine::root, nullptr, nullptr, 0, 0, PackagerCommand::kExpand},
    {"image", &CommandLine::image, nullptr, nullptr, 0, 0, PackagerCommand::kExpand},
    {"root", &CommandLine::root, nullptr, nullptr, 0, 0, PackagerCommand::kCheck},
    {"target", &CommandLine::systems, nullptr, nullptr, 0, 0, PackagerCommand::kCheck},
    {"format", &CommandLine::format, nullptr, nullptr, 0, 0, PackagerCommand::kCheck},
    {"strict", nullptr, &CommandLine::strict, nullptr, 0, 0, PackagerCommand::kCheck},
    {"to", &CommandLine::target, nullptr, nullptr, 0, 0, PackagerCommand::kExtract},
    {"output", &CommandLine::output, nullptr, nullptr, 0, 0, PackagerCommand::kAnswers},
    {"machine", &CommandLine::machine, nullptr, nullptr, 0, 0, PackagerCommand::kTry},
    {"answers", &CommandLine::answers, nullptr, nullptr, 0, 0, PackagerCommand::kTry},
    {"expect", &CommandLine::expected, nullptr, nullptr, 0, 0, PackagerCommand::kTry},
    {"update", nullptr, &CommandLine::update, nullptr, 0, 0, PackagerCommand::kTry},
    {"html", nullptr, &CommandLine::html, nullptr, 0, 0, PackagerCommand::kText},
    {"plain", nullptr, &CommandLine::plain, nullptr, 0, 0, PackagerCommand::kText},
    {"tree", nullptr, &CommandLine::tree, nullptr, 0, 0, PackagerCommand::kText},
    {"tree", nullptr, &CommandLine::tree, nullptr, 0, 0, PackagerCommand::kExtract},
    {"verbatim", nullptr, &CommandLine::verbatim, nullptr, 0, 0, PackagerCommand::kText},
    {"root", &CommandLine::root, nullptr, nullptr, 0, 0, PackagerCommand::kPreview},
    {"image", &CommandLine::image, nullptr, nullptr, 0, 0, PackagerCommand::kPreview},
    {"to", &CommandLine::target, nullptr, nullptr, 0, 0, PackagerCommand::kPreview},
    {"answers", nullptr, nullptr, nullptr, 0, 0, PackagerCommand::kPreview, &CommandLine::answerSets},
    {"sizes", &CommandLine::sizes, nullptr, nullptr, 0, 0, PackagerCommand::kPreview},
    {"compare", &CommandLine::earlier, nullptr, nullptr, 0, 0, PackagerCommand::kPreview},
    {"strict", nullptr, &CommandLine::strict, nullptr, 0, 0, PackagerCommand::kPreview},
    {"display", nullptr, &CommandLine::usesDisplay, nullptr, 0, 0, PackagerCommand::kPreview},
    {"width", nullptr, nullptr, &CommandLine::width, kLeastWidth, kMostWidth, PackagerCommand::kText},
};

class Parser {
public:
    explicit Parser(const std::vector<std::string>& arguments) : arguments_(arguments) {}

    CommandLine parse() {
        while (next_ < arguments_.size() && !isDone()) {
            takeWord(arguments_[next_++]);
        }
        if (!isDone()) {
            checkWhole();
        }
        return result_;
    }

private:
    bool isDone() const { return !result_.problem.empty() || result_.help || result_.version; }

    void takeWord(const std::string& word) {
        if (!onlyWords_ && (word == "--help" || word == "-h")) {
            result_.help = true;
        } else if (!onlyWords_ && result_.command == PackagerCommand::kNone && word == "--version") {
            result_.version = true;
        } else if (!onlyWords_ && word == "--") {
            onlyWords_ = true;
        } else if (!onlyWords_ && word.starts_with("-") && word.size() > 1) {
            takeOption(word);
        } else if (result_.command == PackagerCommand::kNone) {
            takeCommand(word);
        } else {
            takeOperand(word);
        }
    }

    void takeCommand(const std::string& word) {
        for (const CommandName& known : kCommands) {
            if (word == known.name) {
                result_.command = known.command;
                return;
            }
        }
        fail("unknown command \"" + word + "\"");
    }

    void takeOperand(const std::string& word) {
        std::string* const place = placeOfOperand();
        if (place != nullptr && place->empty()) {
            *place = word;
        } else if (result_.command == PackagerCommand::kExtract) {
            result_.aliases.push_back(word);
        } else {
            fail("unexpected word \"" + word + "\"");
        }
    }

    // Where the first word after the command goes; null when the command takes none.
    std::string* placeOfOperand() {
        switch (result_.command) {
            case PackagerCommand::kBuild:
            case PackagerCommand::kExpand:
            case PackagerCommand::kSchema:
                return nullptr;
            case PackagerCommand::kText:
                return &result_.document;
            case PackagerCommand::kCheck:
                return &result_.checked;
            case PackagerCommand::kPreview:
                return &result_.previewed;
            case PackagerCommand::kNew:
                return &result_.directory;
            default:
                return &result_.package;
        }
    }

    void takeOption(const std::string& word) {
        const std::size_t equals = word.find('=');
        const std::string name = word.substr(0, equals);
        for (const OptionRule& rule : kOptions) {
            if (rule.command == result_.command && name == std::string("--") + rule.name) {
                const bool hasValue = equals != std::string::npos;
                apply(rule, name, hasValue, hasValue ? word.substr(equals + 1) : std::string());
                return;
            }
        }
        fail("unknown option \"" + name + "\"");
    }

    void apply(const OptionRule& rule, const std::string& name, bool hasValue, std::string value) {
        if (rule.flag != nullptr) {
            if (hasValue) {
                fail("the option " + name + " takes no value");
            }
            result_.*rule.flag = true;
            return;
        }
        if (!hasValue && next_ < arguments_.size()) {
            value = arguments_[next_++];
        }
        if (value.empty()) {
            fail("the option " + name + " needs a value");
        } else if (rule.list != nullptr) {
            (result_.*rule.list).push_back(value);
        } else if (rule.text != nullptr) {
            result_.*rule.text = value;
        } else if (!readNumber(value, rule, result_.*rule.number)) {
            fail("the option " + name + " needs a number from " + std::to_string(rule.least) + " to " +
                 std::to_string(rule.most));
        }
    }

    static bool readNumber(const std::string& text, const OptionRule& rule, std::int32_t& outNumber) {
        const char* end = text.data() + text.size();
        const auto [stop, error] = std::from_chars(text.data(), end, outNumber);
        return error == std::errc() && stop == end && outNumber >= rule.least && outNumber <= rule.most;
    }

    void checkWhole() {
        switch (result_.command) {
            case PackagerCommand::kNone:
                fail("a command is missing");
                break;
            case PackagerCommand::kBuild:
                need(result_.description, "--description");
                need(result_.root, "--root");
                need(result_.output, "--output");
                if (!result_.bin) {
                    need(result_.image, "--image");
                }
                checkAllowed();
                break;
            case PackagerCommand::kExpand:
                need(result_.description, "--description");
                need(result_.root, "--root");
                break;
            case PackagerCommand::kExtract:
                need(result_.package, "the package");
                need(result_.target, "--to");
                break;
            case PackagerCommand::kPreview:
                need(result_.previewed, "the package or the description");
                need(result_.target, "--to");
                if (!result_.image.empty()) {
                    need(result_.root, "--root");
                }
                break;
            case PackagerCommand::kText:
                checkText();
                break;
            case PackagerCommand::kTry:
                need(result_.package, "the package");
                need(result_.machine, "--machine");
                if (result_.update) {
                    need(result_.expected, "--expect");
                }
                break;
            case PackagerCommand::kNew:
                need(result_.directory, "the directory");
                break;
            case PackagerCommand::kSchema:
                break;
            case PackagerCommand::kAnswers:
                need(result_.package, "the package or the description");
                break;
            case PackagerCommand::kCheck:
                need(result_.checked, "the description");
                needWord(result_.systems, "--target", {"windows", "linux", "both"});
                needWord(result_.format, "--format", {"text", "json", "sarif"});
                break;
            default:
                need(result_.package, "the package");
        }
    }

    void checkText() {
        need(result_.document, "the document");
        if (static_cast<int>(result_.html) + static_cast<int>(result_.plain) +
                static_cast<int>(result_.tree) >
            1) {
            fail("--html, --plain and --tree exclude each other");
        } else if (result_.verbatim && (result_.html || result_.tree)) {
            fail("--verbatim is for plain text, it goes with neither --html nor --tree");
        } else if (result_.width != 0 && (result_.html || result_.tree)) {
            fail("--width is for plain text, it goes with neither --html nor --tree");
        }
    }

    void needWord(const std::string& value, const std::string& name, const std::vector<std::string>& words) {
        if (!value.empty() && std::find(words.begin(), words.end(), value) == words.end()) {
            std::string known;
            for (const std::string& word : words) {
                known += (known.empty() ? "" : ", ") + word;
            }
            fail("the option " + name + " needs one of: " + known);
        }
    }

    void checkAllowed() {
        for (const std::string& code : result_.allowed) {
            if (std::ranges::find(finding_kinds::kAll, code, &FindingKind::name) ==
                std::end(finding_kinds::kAll)) {
                fail("--allow: there is no finding with the code \"" + code + "\"");
            }
        }
    }

    void need(const std::string& value, const std::string& what) {
        if (value.empty()) {
            fail(what + " is missing");
        }
    }

    void fail(const std::string& text) {
        if (result_.problem.empty()) {
            result_.problem = text;
        }
    }

    const std::vector<std::string>& arguments_;
    std::size_t next_ = 0;
    bool onlyWords_ = false;
    CommandLine result_;
};

constexpr const char* kOverview =
    "packager - makes self-extracting installers and looks into them\n"
    "\n"
    "  packager new      writes a template of a product to begin with\n"
    "  packager check    finds mistakes in a description\n"
    "  packager build    makes a package of a description and a product's files\n"
    "  packager expand   shows a description with files in the place of its trees\n"
    "  packager list     shows the files of a package\n"
    "  packager extract  takes files out of a package\n"
    "  packager verify   checks a package from front to back\n"
    "  packager try      installs a package on a machine in memory and compares what comes of it\n"
    "  packager answers  writes the answers file of a product, with its questions and defaults\n"
    "  packager text     shows a document as the users of a package will see it\n"
    "  packager preview  draws all pages of a package, as its users will see them\n"
    "  packager schema   prints an XML Schema of descriptions, for editors\n"
    "\n"
    "packager COMMAND --help explains one of them, packager --version says which packager this is.\n"
    "Exit codes: 0 done, 1 failed, 2 wrong use.\n";

constexpr const char* kBuildHelp =
    "packager build --description FILE --root DIR --image IMAGE --output FILE\n"
    "               [--bin] [--stripes N] [--level 1..9] [--old-checksum] [--allow CODE]...\n"
    "\n"
    "  --description FILE  the product's install.xml; it becomes the first file of the package\n"
    "  --root DIR          the directory in which Tree elements and the texts of FN elements are\n"
    "                      looked up\n"
    "  --image IMAGE       the bare installer, for Linux (ELF) or Windows (PE); also what an FN\n"
    "                      named installer.exe or installer stands for when there is no such file\n"
    "  --output FILE       the package to make; an existing one is replaced when all went well\n"
    "  --bin               make a package without image and checksum, for the installer's option bin\n"
    "  --stripes N         compress N parts side by side, 1 to 256; more make the package larger\n"
    "                      (default: one for each 4 MiB, at most 32)\n"
    "  --level N           1 is the fastest, 9 the smallest (default: 9)\n"
    "  --old-checksum      write the trailer of unsigned packages of older tools\n"
    "  --allow CODE        build in spite of errors with this code; see packager check\n"
    "\n"
    "The same input gives the same bytes on every machine.\n";

constexpr const char* kExpandHelp =
    "packager expand --description FILE --root DIR [--image IMAGE]\n"
    "\n"
    "Shows the description that `packager build` packs: with an FN for each file, and a shortcut for\n"
    "each symbolic link, in the place of each Tree. A description without a Tree is shown as it is.\n"
    "\n"
    "  --description FILE  the product's install.xml\n"
    "  --root DIR          the directory in which trees and files are looked up\n"
    "  --image IMAGE       the bare installer; names that its system can't have are refused\n";

constexpr const char* kCheckHelp =
    "packager check DESCRIPTION [--root DIR] [--target windows|linux|both]\n"
    "               [--format text|json|sarif] [--strict]\n"
    "\n"
    "Finds mistakes in a description before a customer meets them: each with its line and column,\n"
    "a code, what is wrong, and what to do about it.\n"
    "\n"
    "  --root DIR       the directory of the product's files, as for build; without it nothing is\n"
    "                   said about files\n"
    "  --target SYSTEM  the systems that the setup is for (default: both)\n"
    "  --format FORMAT  text for people (default), json for scripts, sarif for tools (SARIF 2.1.0)\n"
    "  --strict         let warnings fail, too\n"
    "\n"
    "Exit codes: 0 no error, 1 an error (with --strict also a warning), 2 wrong use.\n";

constexpr const char* kNewHelp =
    "packager new DIR\n"
    "\n"
    "Writes the description of a small product for Linux and Windows, and its files, into the\n"
    "directory, which is made if necessary. Files that are there already are never replaced.\n";

constexpr const char* kListHelp =
    "packager list PACKAGE\n"
    "\n"
    "Shows size, stored size, MD5, name and alias of each file, and for each place where it is\n"
    "installed the destination and the condition, separated by tabs.\n";

constexpr const char* kExtractHelp =
    "packager extract PACKAGE --to DIR [--tree] [ALIAS ...]\n"
    "\n"
    "Takes the files with these aliases, or all files, out of the package. They get the names that\n"
    "they have in the package; files that share a name get their aliases as names.\n"
    "\n"
    "  --tree  puts them where they would be installed, below DIR: a reference such as [INSTALL_DIR]\n"
    "          is a directory of that name, and what isn't installed is in the directory\n"
    "          \"(packed only)\". Files that are installed under different conditions are all there.\n";

constexpr const char* kVerifyHelp =
    "packager verify PACKAGE\n"
    "\n"
    "Checks the layout, the checksum, the compressed stream and the MD5 of every file.\n";

constexpr const char* kTryHelp =
    "packager try PACKAGE --machine FILE [--answers FILE] [--expect FILE [--update]]\n"
    "\n"
    "Installs a package with the real engine, unattended, on a machine that exists only in memory,\n"
    "and shows what comes of it. Nothing of this machine is read, changed or run.\n"
    "\n"
    "  --machine FILE  what is on the machine, and what is done: an installation, or several steps\n"
    "  --answers FILE  the answers of an unattended run, as for a setup's option configFile\n"
    "  --expect FILE   what should come of it; prints the differences only\n"
    "  --update        write what comes of it into that file, of the sections that it has\n"
    "\n"
    "The same input gives the same outcome on every system, at any time.\n"
    "Exit codes: 0 as expected, or no step failed; 1 not so; 2 wrong use.\n";
constexpr const char* kPreviewHelp =
    "packager preview PACKAGE --to DIR [OPTIONS]\n"
    "packager preview DESCRIPTION --root DIR [--image IMAGE] --to DIR [OPTIONS]\n"
    "\n"
    "Walks through all pages of a setup and of its uninstallation, on a machine in memory, and shows\n"
    "each of them as the window draws it and as the console prints it: DIR/index.html. Texts that are\n"
    "cut, and what lies on one another or beyond the page, are marked and counted. The program\n"
    "previewer must be in the directory of the packager. On Linux no display is needed, but the\n"
    "program Xvfb; without it, and on Windows without --display, there are only the console's pages.\n"
    "\n"
    "  --to DIR        an empty directory, or an earlier preview, which is replaced\n"
    "  --root DIR      what is shown is a description; the directory of its files, as for build\n"
    "  --image IMAGE   the bare installer, as for build; its system is that of the machine\n"
    "  --answers FILE  walk through once more with these answers (a DefValues document); may be\n"
    "                  repeated\n"
    "  --sizes N,N     the sizes of letters, in percent, 50 to 400 (default: 100); on Linux\n"
    "  --compare DIR   show what has changed since this earlier preview\n"
    "  --strict        let marked places and missing pictures fail\n"
    "  --display       show the window on your own display meanwhile\n"
    "\n"
    "Exit codes: 0 done, 1 failed, 2 wrong use.\n";

constexpr const char* kAnswersHelp =
    "packager answers PACKAGE|DESCRIPTION [--output FILE]\n"
    "\n"
    "Writes a file of answers for unattended runs, as a setup's option configFile takes it: each\n"
    "variable that a page asks for with its default, and in comments the page, the question and what\n"
    "may be answered. What depends on the machine is in a comment, so an unchanged file changes\n"
    "nothing.\n"
    "\n"
    "  --output FILE  the file to write, which is replaced; without it the answers are printed\n";

constexpr const char* kSchemaHelp =
    "packager schema > install.xsd\n"
    "\n"
    "Prints an XML Schema (XSD 1.0) of descriptions. Editors that know XML complete and explain\n"
    "elements and attributes with it. packager check finds more than a schema can.\n";

constexpr const char* kTextHelp =
    "packager text FILE [--plain | --html | --tree] [--verbatim] [--width N]\n"
    "\n"
    "Shows a document of a product, such as its agreement, as its users will see it.\n"
    "\n"
    "  --plain    as the console shows it (default)\n"
    "  --html     as a whole HTML page\n"
    "  --tree     as the installer understands it: the kind of each line, then the tree of the\n"
    "             blocks, then the tree with its emphasis\n"
    "  --verbatim the file is a document that is shown as it is written\n"
    "  --width N  the columns of the console, 10 to 1000 (default: 80); lines are up to N - 2 bytes\n"
    "             long, longer words are not broken\n"
    "\n"
    "A file is rich text when its name ends in .rtf or its content begins with {\\rtf; every other\n"
    "file is of the markdown dialect, unless --verbatim says otherwise. A setup goes by the\n"
    "description instead: there a document is markdown when its element says\n"
    "Format=\"TandrelMarkdown\", shown as it is written with Format=\"TandrelText\", and rich text\n"
    "otherwise.\n"
    "Rich text has no --html and no --tree.\n"
    "A document in which something is wrong isn't shown by a setup at all; this command says what\n"
    "and where, and gives exit code 1.\n";

}  // namespace

CommandLine parseCommandLine(const std::vector<std::string>& arguments) {
    return Parser(arguments).parse();
}

std::vector<std::string_view> commandNames() {
    std::vector<std::string_view> names;
    for (const CommandName& known : kCommands) {
        names.emplace_back(known.name);
    }
    return names;
}

std::vector<std::string> optionNames() {
    std::vector<std::string> names;
    for (const OptionRule& rule : kOptions) {
        names.push_back(std::string("--") + rule.name);
    }
    return names;
}

std::string helpText(PackagerCommand command) {
    switch (command) {
        case PackagerCommand::kBuild:
            return kBuildHelp;
        case PackagerCommand::kExpand:
            return kExpandHelp;
        case PackagerCommand::kList:
            return kListHelp;
        case PackagerCommand::kExtract:
            return kExtractHelp;
        case PackagerCommand::kVerify:
            return kVerifyHelp;
        case PackagerCommand::kText:
            return kTextHelp;
        case PackagerCommand::kCheck:
            return kCheckHelp;
        case PackagerCommand::kNew:
            return kNewHelp;
        case PackagerCommand::kAnswers:
            return kAnswersHelp;
        case PackagerCommand::kSchema:
            return kSchemaHelp;
        case PackagerCommand::kTry:
            return kTryHelp;
        case PackagerCommand::kPreview:
            return kPreviewHelp;
        case PackagerCommand::kNone:
            break;
    }
    return kOverview;
}
