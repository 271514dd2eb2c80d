#include "ui/console/user_input.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "base/text_columns.h"
#include "base/text_functions.h"
#include "ui/console/decimal_text.h"
#include "ui/console/typed_directory.h"
#include "ui/field_values.h"

namespace {

constexpr std::size_t kChoiceLineLimit = 127;
constexpr std::size_t kListLineLimit = 15;
constexpr std::size_t kPauseLineLimit = 4;
// An input without any line feed must not be read for ever.
constexpr std::size_t kRestOfLineLimit = 1024 * 1024;

constexpr int kBackspace = 8;

bool endsHiddenInput(int key) {
    constexpr int kEndKeys[] = {3, 10, 13, 26, 27};
    return std::find(std::begin(kEndKeys), std::end(kEndKeys), key) != std::end(kEndKeys);
}

std::string_view viewOf(const char* text) {
    return text == nullptr ? std::string_view() : std::string_view(text);
}

bool matches(std::string_view line, std::string_view answer, bool caseSensitive, bool prefixMatch) {
    if (!caseSensitive) {
        return OUtils::equalsIgnoreCase(line, answer);
    }
    return prefixMatch ? answer.starts_with(line) : answer == line;
}

std::string inBracketsIf(bool isDefault, std::string_view answer) {
    return isDefault ? "[" + std::string(answer) + "]" : std::string(answer);
}

std::string choicePrompt(const WizardWords& words, std::string_view question, int defaultIndex,
                         std::string_view first, std::string_view second) {
    return words.text("AskChoice", {question, inBracketsIf(defaultIndex == 0, first),
                                    inBracketsIf(defaultIndex == 1, second)}) +
           ": ";
}

std::string listText(std::string_view question, const std::vector<std::string>& items) {
    std::string text(question);
    text += '\n';
    for (std::size_t i = 0; i < items.size(); ++i) {
        text += "  " + std::to_string(i + 1) + ") " + items[i] + '\n';
    }
    return text;
}

std::string listPrompt(const WizardWords& words, std::size_t count, int defaultIndex) {
    const std::string most = std::to_string(count);
    const std::string text =
        defaultIndex < 0 ? words.text("AskNumber", {most})
                         : words.text("AskNumberWithDefault", {most, std::to_string(defaultIndex + 1)});
    return text + ": ";
}

std::string refusal(const WizardWords& words, int choice, int count) {
    const std::string text = choice >= 1 && choice <= count
                                 ? words.text("ChoiceDisabled", {std::to_string(choice)})
                                 : words.text("AskNumberAgain", {std::to_string(count)});
    return text + "\n";
}

// The question with the answer that an empty line stands for.
struct Preset {
    Preset(const char* question, const char* value, const char* fallback)
        : text(viewOf(value).empty() ? viewOf(fallback) : viewOf(value)),
          prompt(std::string(viewOf(question)) + (text.empty() ? ":" : " [" + text + "]:")) {}

    std::string text;
    std::string prompt;
};

std::size_t echoedLimit(int size) {
    return static_cast<std::size_t>(std::max(size - 1, 1));
}

std::optional<PageTurn> pageTurnOf(int key) {
    switch (key) {
        case '\n':
        case '\r':
        case ' ':
            return PageTurn::kNext;
        case 'b':
            return PageTurn::kBack;
        case 'e':
            return PageTurn::kEnd;
        default:
            return std::nullopt;
    }
}

bool isEnabled(const std::vector<bool>& enabled, int index) {
    return static_cast<std::size_t>(index) >= enabled.size() || enabled[static_cast<std::size_t>(index)];
}

bool anyEnabled(const std::vector<bool>& enabled, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        if (isEnabled(enabled, static_cast<int>(i))) {
            return true;
        }
    }
    return false;
}

}  // namespace

User::User(platform::ConsoleDevice& terminal, bool uninstall, LossHandler onLoss)
    : terminal_(terminal), uninstall_(uninstall), onLoss_(std::move(onLoss)) {}

// A question that nobody sees must not be answered by chance.
bool User::canAsk() {
    if (interrupted_ || terminal_.flush()) {
        return !interrupted_;
    }
    onLoss_(DialogueLoss::kOutputFailed);
    return false;
}

// False when the question is interrupted; the line comes without its line feed.
bool User::readLine(std::string& outLine, std::size_t maxBytes) {
    outLine.clear();
    if (!canAsk()) {
        return false;
    }
    if (!takeRead(terminal_.readLine(outLine, maxBytes))) {
        outLine.clear();
        return false;
    }
    dropRestOfLine(outLine, maxBytes);
    if (outLine.ends_with('\n')) {
        outLine.pop_back();
    }
    return true;
}

bool User::takeRead(platform::ReadStatus status) {
    if (status == platform::ReadStatus::kEnd && !interrupted_) {
        onLoss_(DialogueLoss::kInputEnded);
    }
    return status == platform::ReadStatus::kLine && !interrupted_;
}

// As readLine, with the prompt in front of it.
bool User::ask(std::string_view prompt, std::string& outLine, std::size_t maxBytes, Completion completion) {
    outLine.clear();
    if (!canAsk()) {
        return false;
    }
    const auto edited = terminal_.editLine(prompt, completion, outLine, maxBytes);
    if (!edited) {
        terminal_.write(prompt);
        return readLine(outLine, maxBytes);
    }
    if (!takeRead(*edited)) {
        outLine.clear();
        return false;
    }
    return true;
}

void User::dropRestOfLine(const std::string& line, std::size_t maxBytes) {
    if (line.size() < maxBytes || line.ends_with('\n')) {
        return;
    }
    std::string rest;
    for (std::size_t dropped = 0; dropped < kRestOfLineLimit; dropped += rest.size()) {
        if (terminal_.readLine(rest, 4096) != platform::ReadStatus::kLine || rest.empty() ||
            rest.ends_with('\n')) {
            return;
        }
    }
}

bool User::readHidden(std::string& outText, std::size_t maxKeys) {
    outText.clear();
    if (!canAsk()) {
        return false;
    }
    while (outText.size() < maxKeys) {
        int key = 0;
        const platform::ReadStatus result = terminal_.readKey(key);
        if (result == platform::ReadStatus::kEnd && outText.empty() && !interrupted_) {
            onLoss_(DialogueLoss::kInputEnded);
            return false;
        }
        if (result != platform::ReadStatus::kLine || interrupted_ || endsHiddenInput(key)) {
            break;
        }
        if (key != kBackspace) {
            outText += static_cast<char>(key);
        } else if (!outText.empty()) {
            outText.pop_back();
        }
    }
    return !interrupted_;
}

bool User::askHidden(const std::string& prompt, std::string& outText, std::size_t maxKeys) {
    const platform::UnechoedInput unechoed(terminal_);
    terminal_.write(prompt);
    const bool answered = readHidden(outText, maxKeys);
    terminal_.write("\n");
    terminal_.flush();
    return answered;
}

int User::askText(const char* question, char* buffer, int size, const char* value, const char* fallback,
                  bool echo) {
    const Preset preset(question, value, fallback);
    std::string answer;
    const bool answered = echo
                              ? ask(preset.prompt, answer, echoedLimit(size))
                              : askHidden(preset.prompt, answer, static_cast<std::size_t>(std::max(size, 1)));
    if (answered && answer.empty()) {
        answer = preset.text;
    }
    OUtils::copyText(buffer, answer.data(), size);
    return answered && !interrupted_ ? 1 : 0;
}

int User::askDirectory(const char* question, char* buffer, int size, const char* value,
                       const char* fallback) {
    const Preset preset(question, value, fallback);
    std::string answer;
    const bool answered = ask(preset.prompt, answer, echoedLimit(size), Completion::kDirectories);
    if (answered && answer.empty()) {
        answer = preset.text;
    } else if (answered && answer != preset.text && environment_ != nullptr && isAtTerminal()) {
        answer = typedDirectory(trimmedAnswer(answer), *environment_);
    }
    OUtils::copyText(buffer, answer.data(), size);
    return answered && !interrupted_ ? 1 : 0;
}

bool User::isAtTerminal() {
    return terminal_.isInputTerminal() && terminal_.isOutputTerminal();
}

int User::askChoice(const char* question, int defaultIndex, std::string_view first, std::string_view second,
                    bool caseSensitive, bool prefixMatch) {
    const std::string again = words_().text("AskChoiceAgain", {first, second}) + ": ";
    std::string prompt = choicePrompt(words_(), viewOf(question), defaultIndex, first, second);
    std::string line;
    while (ask(prompt, line, kChoiceLineLimit)) {
        if (line.empty() && (defaultIndex == 0 || defaultIndex == 1)) {
            return defaultIndex;
        }
        const bool isFirst = !line.empty() && matches(line, first, caseSensitive, prefixMatch);
        const bool isSecond = !line.empty() && matches(line, second, caseSensitive, prefixMatch);
        if (isFirst != isSecond) {
            return isFirst ? 0 : 1;
        }
        prompt = again;
    }
    return -1;
}

int User::askList(const char* question, int defaultIndex, const std::vector<std::string>& items,
                  const std::vector<bool>& enabled) {
    const int count = static_cast<int>(items.size());
    if (defaultIndex < 0 || defaultIndex >= count || !isEnabled(enabled, defaultIndex)) {
        defaultIndex = -1;
    }
    terminal_.write(listText(viewOf(question), items));
    if (!anyEnabled(enabled, items.size())) {
        terminal_.flush();
        return -1;
    }
    const std::string prompt = listPrompt(words_(), items.size(), defaultIndex);
    std::string line;
    while (ask(prompt, line, kListLineLimit)) {
        const int choice = parseDecimal(line).value_or(0);
        if (line.empty() && defaultIndex >= 0) {
            return defaultIndex;
        }
        if (choice >= 1 && choice <= count && isEnabled(enabled, choice - 1)) {
            return choice - 1;
        }
        if (!line.empty()) {
            terminal_.write(refusal(words_(), choice, count));
        }
    }
    return -1;
}

void User::tell(const char* text) {
    terminal_.write(viewOf(text));
    pause("\n" + words_().text("PressEnter"));
}

void User::pause(std::string_view text) {
    terminal_.write(text);
    std::string ignored;
    readLine(ignored, kPauseLineLimit);
}

// Nothing where the line has no room for it.
std::string User::keysBehind(std::string_view text) {
    const std::string keys = " " + words_().text("PageKeys");
    const std::string_view line = text.substr(text.rfind('\n') + 1);  // 0 without a line feed
    int columns = 0;
    int rows = 0;
    const bool hasRoom =
        terminal_.windowSize(columns, rows) &&
        OUtils::columnsOf(line) + OUtils::columnsOf(keys) < static_cast<std::size_t>(columns);
    return hasRoom ? keys : "";
}

PageTurn User::turnPage(std::string_view text) {
    if (!isAtTerminal()) {
        return InputProvider::turnPage(text);
    }
    const platform::UnechoedInput unechoed(terminal_);
    terminal_.write(std::string(text) + keysBehind(text));
    std::optional<PageTurn> turn;
    for (int key = 0; !turn && canAsk() && takeRead(terminal_.readKey(key));) {
        turn = pageTurnOf(key);
    }
    terminal_.write("\n");
    return turn.value_or(PageTurn::kEnd);
}

int User::finish(bool) {
    if (!uninstall_ && !finished_) {
        finished_ = true;
        terminal_.flush();
    }
    return 1;
}

void User::abort() {
    interrupted_ = true;
    terminal_.interruptInput();
}
