#include "ui/console/console_ui.h"

#include <algorithm>
#include <array>
#include <optional>

#include "base/path_functions.h"
#include "base/shared_buffer.h"
#include "base/text_columns.h"
#include "base/visible_text.h"
#include "description/dialog_model.h"
#include "text/document_text.h"
#include "text/verbatim_text.h"
#include "ui/console/console_fields.h"

namespace {

constexpr int kNoGate = 2;  // of checkDialogCondition
constexpr std::uint32_t kConditionPollMilliseconds = 100;
constexpr std::uint32_t kMarkWaitMilliseconds = 10000;
constexpr int kAssumedColumns = 80;
constexpr std::size_t kBlankWidth = 78;

constexpr std::string_view kInstallerBanner = "Tandrel Group installer";
constexpr std::string_view kUninstallerBanner = "Tandrel Group uninstaller";
constexpr std::size_t kBannerCapacity = 200;
constexpr std::size_t kLeastBannerColumns = 27;

std::string afterInterrupt(const std::string& text) {
    return "\n[CTRL-C] " + text;
}

// In a frame of stars.
std::string bannerOf(std::string_view line) {
    const std::size_t columns = OUtils::columnsOf(line);
    const std::size_t width = std::max(columns, kLeastBannerColumns);
    const std::string edge(width + 4, '*');
    return edge + "\n* " + std::string(line) + std::string(width - columns, ' ') + " *\n" + edge + "\n";
}

// Nothing where the document is broken.
std::optional<std::string> consoleText(std::string_view document, DocumentFormat format, int columns) {
    switch (format) {
        case DocumentFormat::kMarkdown:
            return markdownAsText(document, columns);
        case DocumentFormat::kVerbatim:
            return verbatimAsText(document, columns);
        case DocumentFormat::kOfElement:
            break;
    }
    return richTextAsText(document, columns);
}

}  // namespace

ConsoleUI::ConsoleUI(bool uninstall, bool ignoreErrors, bool quiet, platform::ConsoleDevice& terminal,
                     AnswersFile& answers, DebugLog debugLog)
    : GenericUI(terminal, answers, uninstall, ignoreErrors),
      quiet_(quiet),
      debugLog_(debugLog),
      pager_(
          terminal, quiet, [this](std::string_view text) { return turnPage(text); },
          [this] { return isCancelled(); }),
      fileProgress_(terminal) {}

ConsoleUI::~ConsoleUI() = default;

std::unique_ptr<InputProvider> ConsoleUI::makeUser(bool uninstall) {
    auto user =
        std::make_unique<User>(terminal(), uninstall, [this](DialogueLoss loss) { loseDialogue(loss); });
    if (environment_ != nullptr) {
        user->understandDirectories(*environment_);
    }
    user->takeWordsFrom([this]() -> const WizardWords& { return words(); });
    return user;
}

int ConsoleUI::run() {
    if (engine() == nullptr) {
        return -1;
    }
    engine()->goToDialog(engine()->getCurrentDialog(), this);
    int result = 0;
    while (!isCancelled() && !engine()->isFinished() && result == 0) {
        waitForCondition();
        result = isCancelled() ? 0 : engine()->shift(this, 1);
    }
    return dialogueLost_ && isCancelled() ? -1 : result;
}

// A page that is marked for it holds the walk until its gate opens.
void ConsoleUI::waitForCondition() {
    const DialogDesc* page =
        engine()->getDialog(engine()->getCurrentDialog(), engine()->getCurrentSubDialog());
    if (page == nullptr || engine()->checkDialogCondition(this) == kNoGate || !page->has(kDialogAutomated)) {
        return;
    }
    while (engine()->checkDialogCondition(this) == 0 && !isCancelled()) {
        terminal().sleepMilliseconds(kConditionPollMilliseconds);
    }
}

int ConsoleUI::finish() {
    if (engine() == nullptr) {
        return -1;
    }
    blankLine();
    if (input() != nullptr) {
        input()->finish(engine()->hasErrors());
    }
    return 0;
}

// The thread of an interrupt first wakes the question and then marks the session. A walk that went on before
// the mark would print, or even install, what was just called off.
bool ConsoleUI::isCancelled() const {
    if (engine() == nullptr) {
        return false;
    }
    for (std::uint32_t waited = 0;
         cancelConfirmed_ && !engine()->isCancelled() && waited < kMarkWaitMilliseconds; ++waited) {
        terminal().sleepMilliseconds(1);
    }
    return engine()->isCancelled();
}

int ConsoleUI::showDialog(int dialog) {
    if (dialog == 0 && !quiet_) {
        showBanner();
    }
    return showSubDialog(dialog, -1);
}

void ConsoleUI::showBanner() {
    std::array<char, kBannerCapacity> own{};
    const bool hasOwn =
        engine() != nullptr && engine()->getBanner(own.data(), static_cast<int>(own.size())) == 0;
    const std::string_view line = hasOwn ? own.data() : isUninstall() ? kUninstallerBanner : kInstallerBanner;
    terminal().write(bannerOf(line));
    terminal().flush();
}

int ConsoleUI::showSubDialog(int dialog, int sub) {
    if (engine() == nullptr) {
        return -1;
    }
    selectPage(dialog, sub);
    const bool wasActive = statusActive_;
    const int count = engine()->getElementCount(dialog, sub);
    for (int i = printedCount_; i < count && !isCancelled(); ++i) {
        const DialogElementDesc* element = engine()->getElement(dialog, i, sub);
        if (element != nullptr) {
            showElement(*element, wasActive);
        }
    }
    if (!isCancelled()) {
        processFields(dialog, sub);
    }
    isCancelled();  // waits for the mark before the work of the page starts
    return 0;
}

void ConsoleUI::selectPage(int dialog, int sub) {
    if (dialog != lastDialog_ || sub != lastSub_) {
        lastDialog_ = dialog;
        lastSub_ = sub;
        printedCount_ = 0;
    }
    const DialogDesc* page = engine()->getDialog(dialog, sub);
    dialogHasGate_ = page != nullptr && page->gate != nullptr;
}

void ConsoleUI::showElement(const DialogElementDesc& element, bool wasActive) {
    switch (element.kind) {
        case kElementText:
            showText(element, wasActive);
            break;
        case kElementRichEditText:
            showRichText(element, wasActive);
            break;
        case kElementPlainEditText:
            showPlainText(element, wasActive);
            break;
        case kElementHtmlEditText:
            showHtml(element, wasActive);
            break;
        default:
            skipElement();
            break;
    }
}

// A quiet run prints only the pages whose gate may hold the walk: the user has to know what it waits for.
bool ConsoleUI::isShown(const DialogElementDesc& element) const {
    return (!quiet_ || dialogHasGate_) && engine()->evaluateCondition(element.condition.c_str()) != 0;
}

void ConsoleUI::showText(const DialogElementDesc& element, bool wasActive) {
    if (!isShown(element)) {
        return;
    }
    if (wasActive) {
        blankLine();
    }
    const std::string text = engine()->getShownText(element);
    // A value may come from anywhere.
    printLine(element.expandsVariables ? OUtils::visibleText(text) : text);
    statusActive_ = statusActive_ || wasActive;
    ++printedCount_;
}

void ConsoleUI::showRichText(const DialogElementDesc& element, bool wasActive) {
    if (isShown(element)) {
        showDocument(element, wasActive);
    }
}

void ConsoleUI::showPlainText(const DialogElementDesc& element, bool wasActive) {
    if (isShown(element) && documentFormat(element.format.view()) != DocumentFormat::kOfElement) {
        showDocument(element, wasActive);
    }
}

// There is no HTML here, and no markdown that was meant to become HTML.
void ConsoleUI::showHtml(const DialogElementDesc& element, bool wasActive) {
    if (documentFormat(element.format.view()) != DocumentFormat::kVerbatim) {
        skipElement();
    } else if (isShown(element)) {
        showDocument(element, wasActive);
    }
}

void ConsoleUI::skipElement() {
    printedCount_ += quiet_ ? 0 : 1;
}

void ConsoleUI::showDocument(const DialogElementDesc& element, bool wasActive) {
    pause(words().text("PressEnter"));
    if (isCancelled()) {
        return;
    }
    if (wasActive) {
        blankLine();
    }
    printDocument(element);
    statusActive_ = statusActive_ || wasActive;
    ++printedCount_;
}

void ConsoleUI::printDocument(const DialogElementDesc& element) {
    SharedBuffer document;
    if (engine()->readAlias(document, element.text.c_str(), nullptr) != 0 || document.data() == nullptr) {
        return;
    }
    const std::string_view content(document.text(), static_cast<std::size_t>(document.size()));
    const std::optional<std::string> text =
        consoleText(content, documentFormat(element.format.view()), readColumns());
    if (text.has_value()) {
        pager_.setQuestion(words().text("NextPage"));
        pager_.print(*text);
    } else {
        debugLog_.line("WARNING: The document \"" + element.text + "\" is broken and isn't shown");
    }
}

int ConsoleUI::readColumns() {
    int columns = 0;
    int rows = 0;
    return terminal().windowSize(columns, rows) ? columns : kAssumedColumns;
}

int ConsoleUI::processFields(int dialog, int sub) {
    if (input() == nullptr || engine() == nullptr) {
        return -1;
    }
    const int count = engine()->getFieldCount(dialog, sub);
    for (int i = 0; i < count && !isCancelled(); ++i) {
        const DialogFieldDesc* field = engine()->getField(dialog, i, sub);
        if (field == nullptr) {
            continue;
        }
        const std::unique_ptr<ConsoleInterface::ConsoleField> handler =
            ConsoleInterface::makeField(field->type);
        if (handler != nullptr) {
            handler->process(*field, *input(), *engine());
        }
    }
    return 0;
}

int ConsoleUI::processFields(int dialog) {
    return processFields(dialog, -1);
}

int ConsoleUI::confirmCancel() {
    if (input() == nullptr || engine() == nullptr) {
        return 0;
    }
    const std::int32_t state = engine()->getUiState();
    // An uninstallation ends at its next record and can be repeated; half an installation helps nobody.
    if (state == kUiInstallationRunning && !isUninstall()) {
        return refuseCancel(afterInterrupt(words().text("InstallationRunning")));
    }
    if (state == kUiBusy) {
        return refuseCancel(afterInterrupt(words().text("InstallerBusy")));
    }
    cancelConfirmed_ = true;
    if (losingDialogue_) {
        printLine("\n" +
                  words().text(isUninstall() ? WordKey("UninstallInputEnded") : WordKey("InputEnded")));
    } else {
        printLine(afterInterrupt(words().text("Aborting")));
    }
    input()->abort();
    return 1;
}

int ConsoleUI::refuseCancel(std::string_view line) {
    if (!losingDialogue_) {
        printLine(line);
    }
    return 0;
}

// Nobody answers any more. Work that runs is completed all the same; the next question after it ends the
// walk.
void ConsoleUI::loseDialogue(DialogueLoss loss) {
    dialogueLost_ = true;
    debugLog_.line(loss == DialogueLoss::kInputEnded ? "ERROR: The input ended at a question"
                                                     : "ERROR: The output failed ahead of a question");
    if (engine() != nullptr && !isCancelled()) {
        losingDialogue_ = true;
        engine()->cancel(this);
        losingDialogue_ = false;
    }
}

void ConsoleUI::setOverallProgress(int percent) {
    overallProgress_ = percent;
    statusActive_ = true;
}

void ConsoleUI::setStatusText(const char* text) {
    if (quiet_) {
        return;
    }
    std::string_view line = text == nullptr ? std::string_view() : std::string_view(text);
    if (line.ends_with('\n')) {
        line.remove_suffix(1);
    }
    statusText_ = line.substr(0, kStatusTextLimit);
    fileProgress_.begin(OUtils::lastPathComponent(statusText_));
    if (!statusActive_) {
        printLine(statusText_);
    }
}

void ConsoleUI::setFileProgress(std::int64_t done, std::int64_t total) {
    if (!quiet_) {
        fileProgress_.show(done, total);
    }
}

void ConsoleUI::addFileLine(const char* text, bool) {
    if (!quiet_ && text != nullptr) {
        printLine(text);
    }
}

// What was written before shows before it, where both streams lead to one screen.
void ConsoleUI::addMessage(std::string_view text) {
    fileProgress_.end();
    terminal().flush();
    terminal().writeError(std::string(text) + "\n");
}

int ConsoleUI::messageBox(const char* text, MessageKind kind) {
    if (quiet_ || input() == nullptr) {
        sayInstead(text, kind);
        return 1;
    }
    terminal().write("\n");
    switch (kind) {
        case MessageKind::kOkCancel:
            return askBox(text, "AnswerOk", "AnswerCancel", true);
        case MessageKind::kInformation:
            input()->tell(text);
            return 0;
        case MessageKind::kYesNo:
            return askBox(text, "AnswerYes", "AnswerNo", false);
    }
    return 1;
}

// What a box only informs of is not lost where there are no boxes.
void ConsoleUI::sayInstead(const char* text, MessageKind kind) {
    if (kind != MessageKind::kInformation || text == nullptr) {
        return;
    }
    std::string line = text;
    while (line.ends_with('\n')) {
        line.pop_back();
    }
    addMessage(line);
}

int ConsoleUI::askBox(const char* text, WordKey first, WordKey second, bool prefixOfExactCase) {
    const int answer = input()->askChoice(text, 0, words().text(first), words().text(second),
                                          prefixOfExactCase, prefixOfExactCase);
    isCancelled();  // an interrupted box counts as an agreement, and only the mark stops what follows
    return answer < 1 ? 1 : 0;
}

int ConsoleUI::beginProgress() {
    statusActive_ = true;
    return 0;
}

int ConsoleUI::endProgress() {
    blankLine();
    return 0;
}

void ConsoleUI::pause(std::string_view text) {
    if (input() != nullptr) {
        input()->pause(text);
    }
}

PageTurn ConsoleUI::turnPage(std::string_view text) {
    return input() == nullptr ? PageTurn::kNext : input()->turnPage(text);
}

void ConsoleUI::blankLine() {
    if (quiet_) {
        return;
    }
    statusActive_ = false;
    terminal().writeControl("\r" + std::string(kBlankWidth, ' ') + "\r");
    terminal().flush();
    terminal().write("\n");
    terminal().flush();
}

void ConsoleUI::printLine(std::string_view text) {
    fileProgress_.end();
    terminal().write(std::string(text) + "\n");
    terminal().flush();
}
