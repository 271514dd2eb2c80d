#include "platform/posix/line_editor.h"

#include <locale.h>
#include <unistd.h>
#include <cstdio>
#include <cstdlib>

#include "base/utf8_character.h"
#include "base/visible_text.h"
#include "platform/posix/directory_completion.h"
#include "platform/posix/terminal_mode.h"

// For builds with sanitizers: the library of terminals keeps a few bytes of each description that it reads.
extern "C" const char* __lsan_default_suppressions();   // NOLINT(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier)
    return "leak:_nc_trim_sgr0\n";
}
extern "C" const char* __lsan_default_options();   // NOLINT(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_options() {  // NOLINT(bugprone-reserved-identifier)
    return "print_suppressions=0";
}

namespace platform {

namespace {

constexpr int kRememberedLines = 100;

// The library takes its character set from the thread's locale. A program starts with one that knows ASCII
// alone.
class Utf8Thread {
public:
    Utf8Thread() : locale_(newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr)) {
        if (locale_ != nullptr) {
            former_ = uselocale(locale_);
        }
    }
    ~Utf8Thread() {
        if (locale_ != nullptr) {
            uselocale(former_);
            freelocale(locale_);
        }
    }
    Utf8Thread(const Utf8Thread&) = delete;
    Utf8Thread& operator=(const Utf8Thread&) = delete;

    bool isSet() const { return locale_ != nullptr; }

private:
    locale_t locale_;
    locale_t former_ = nullptr;
};

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

File fileOn(int descriptor, const char* mode) {
    const int copy = dup(descriptor);
    File file(copy < 0 ? nullptr : fdopen(copy, mode));
    if (file == nullptr && copy >= 0) {
        close(copy);
    }
    return file;
}

bool canMoveTheCursor() {
    const char* const terminal = std::getenv("TERM");
    const std::string_view name = terminal == nullptr ? "" : terminal;
    return !name.empty() && name != "dumb" && name != "unknown";
}

// One line while it is edited. The library's callbacks get here by its client data.
class EditedLine {
public:
    EditedLine(std::string prompt, const LineEditor::ReadByte& readByte)
        : prompt_(std::move(prompt)), readByte_(readByte) {}

    // False when the library can't start.
    bool start(int input, int output, LineCompletion completion, History* lines) {
        in_ = fileOn(input, "r");
        out_ = fileOn(output, "w");
        messages_.reset(std::fopen("/dev/null", "we"));
        if (in_ == nullptr || out_ == nullptr || messages_ == nullptr) {
            return false;
        }
        editor_.reset(el_init_fd("installer", in_.get(), out_.get(), messages_.get(), input, output, output));
        if (editor_ == nullptr) {
            return false;
        }
        EditLine* const editor = editor_.get();
        el_set(editor, EL_CLIENTDATA, this);
        el_set(editor, EL_EDITOR, "emacs");
        el_set(editor, EL_GETCFN, &EditedLine::getCharacter);
        el_set(editor, EL_PROMPT, &EditedLine::promptOf);
        if (lines != nullptr) {
            el_set(editor, EL_HIST, history, lines);
        }
        bindKeys(completion);
        // Otherwise what is typed between the prompt and the first reading would be echoed twice.
        el_set(editor, EL_PREP_TERM, 1);
        return true;
    }

    ReadStatus read(std::string& outLine) {
        int length = 0;
        const char* const line = el_gets(editor_.get(), &length);
        std::fflush(out_.get());
        if (line == nullptr || length <= 0) {
            return status_ == ReadStatus::kLine ? ReadStatus::kEnd : status_;
        }
        outLine.assign(line, static_cast<std::size_t>(length));
        if (outLine.ends_with('\n')) {
            outLine.pop_back();
        }
        return ReadStatus::kLine;
    }

private:
    struct EndEditor {
        void operator()(EditLine* editor) const { el_end(editor); }
    };

    static EditedLine& of(EditLine* editor) {
        void* line = nullptr;
        el_get(editor, EL_CLIENTDATA, &line);
        return *static_cast<EditedLine*>(line);
    }

    static char* promptOf(EditLine* editor) { return of(editor).prompt_.data(); }

    static int getCharacter(EditLine* editor, wchar_t* outCharacter) {
        return of(editor).nextCharacter(*outCharacter);
    }

    void bindKeys(LineCompletion completion) {
        EditLine* const editor = editor_.get();
        // The narrow call would copy both texts for ever.
        el_wset(editor, EL_ADDFN, L"complete-directory", L"Completes the name of a directory",
                &EditedLine::complete);
        const bool completes = completion == LineCompletion::kDirectories;
        el_set(editor, EL_BIND, "^I", completes ? "complete-directory" : "ed-insert", nullptr);
        el_set(editor, EL_BIND, "\\e[3~", "ed-delete-next-char", nullptr);
        el_set(editor, EL_BIND, "\\e[1~", "ed-move-to-beg", nullptr);
        el_set(editor, EL_BIND, "\\e[4~", "ed-move-to-end", nullptr);
    }

    // 1, or the value with which the library ends the line.
    int nextCharacter(wchar_t& outCharacter) {
        constexpr std::size_t kLongest = 4;
        std::string bytes;
        while (bytes.size() < kLongest && OUtils::utf8CharacterLength(bytes) == 0) {
            char byte = 0;
            status_ = readByte_(byte);
            if (status_ != ReadStatus::kLine) {
                return status_ == ReadStatus::kEnd ? 0 : -1;
            }
            bytes += byte;
        }
        const bool isCharacter = OUtils::utf8CharacterLength(bytes) == bytes.size();
        outCharacter = isCharacter ? static_cast<wchar_t>(OUtils::utf8CodePoint(bytes)) : L'\uFFFD';
        return 1;
    }

    static unsigned char complete(EditLine* editor, int) {
        const LineInfo* const line = el_line(editor);
        const std::string typed(line->buffer, line->cursor);
        const DirectoryCompletion completion = completeDirectory(typed);
        if (!completion.added.empty()) {
            return el_insertstr(editor, completion.added.data()) == 0 ? CC_REFRESH : CC_ERROR;
        }
        if (completion.names.size() < 2) {
            return CC_ERROR;  // a beep
        }
        std::FILE* const out = of(editor).out_.get();
        std::fputc('\n', out);
        for (const std::string& name : completion.names) {
            std::fprintf(out, "%s\n", name.data());
        }
        return CC_REDISPLAY;
    }

    std::string prompt_;
    const LineEditor::ReadByte& readByte_;
    ReadStatus status_ = ReadStatus::kLine;
    File in_;
    File out_;
    File messages_;
    std::unique_ptr<EditLine, EndEditor> editor_;
};

}  // namespace

LineEditor::LineEditor(int input, int output) : input_(input), output_(output), history_(history_init()) {
    HistEvent event{};
    if (history_ != nullptr) {
        history(history_.get(), &event, H_SETSIZE, kRememberedLines);
        history(history_.get(), &event, H_SETUNIQUE, 1);
    }
}

bool LineEditor::canEdit() {
    return canMoveTheCursor() && Utf8Thread().isSet();
}

ReadStatus LineEditor::edit(std::string_view prompt, LineCompletion completion, const ReadByte& readByte,
                            std::string& outLine) {
    outLine.clear();
    const Utf8Thread utf8;
    // Whatever ends or stops the process meanwhile finds the terminal's settings there.
    const RawTerminalMode raw(input_);
    EditedLine line(OUtils::visibleText(prompt), readByte);
    if (!line.start(input_, output_, completion, history_.get())) {
        return ReadStatus::kEnd;
    }
    const ReadStatus status = line.read(outLine);
    if (status == ReadStatus::kLine) {
        remember(outLine);
    }
    return status;
}

void LineEditor::remember(const std::string& line) {
    HistEvent event{};
    if (history_ != nullptr && !line.empty()) {
        history(history_.get(), &event, H_ENTER, line.data());
    }
}

}  // namespace platform
