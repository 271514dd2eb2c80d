#include "ui/gui/wx_gui.h"

#include <array>
#include <utility>

#include "base/visible_text.h"
#include "description/dialog_model.h"
#include "description/wizard_words.h"
#include "ui/gui/font_scale.h"
#include "ui/gui/main_frame.h"
#include "ui/gui/page_pictures.h"

namespace {

constexpr std::uint64_t kPumpMilliseconds = 65;
constexpr std::size_t kMostPendingBytes = 32768;
constexpr std::size_t kNameCapacity = 200;
constexpr std::size_t kUrlCapacity = 4096;

std::string_view viewOf(const char* text) {
    return text == nullptr ? std::string_view() : std::string_view(text);
}

}  // namespace

WxGUI::WxGUI(bool uninstall, const Surroundings& surroundings, DebugLog debugLog)
    : GenericUI(surroundings.terminal, surroundings.answers, uninstall, false),
      surroundings_(surroundings),
      debugLog_(debugLog) {}

WxGUI::~WxGUI() = default;

int WxGUI::run() {
    if (engine() == nullptr) {
        return -1;
    }
    surroundings_.toolkit.run(*this);
    const bool hadFrame = frame_ != nullptr;
    if (isWindowLost_) {
        endWithoutWindow();
    }
    frame_.reset();
    if (!messages_.empty()) {
        terminal().writeError(messages_);
    }
    if (exception_) {
        std::rethrow_exception(std::exchange(exception_, nullptr));
    }
    return hadFrame ? 0 : -1;
}

template <typename Work>
int WxGUI::onFrame(Work&& work) {
    if (frame_ == nullptr) {
        return -1;
    }
    work(*frame_);
    return 0;
}

template <typename Work>
void WxGUI::guard(Work&& work) {
    try {
        if (frame_ != nullptr && !exception_) {
            work(*frame_);
        }
    } catch (...) {
        exception_ = std::current_exception();
        surroundings_.toolkit.closeFrame();
    }
}

bool WxGUI::onStart() {
    if (fatalMessage_) {
        ask(fatalMessage_->text, fatalMessage_->caption, MessageButtons::kOk, MessageSign::kError);
        return false;
    }
    try {
        return start();
    } catch (...) {
        exception_ = std::current_exception();
        return false;
    }
}

bool WxGUI::start() {
    Toolkit& toolkit = surroundings_.toolkit;
    const double fontScale = fontScaleOf(measureSampleText(toolkit).width);
    pictures_ =
        std::make_unique<PagePictures>(*engine(), surroundings_.files, surroundings_.random, debugLog_);
    pictures_->setScale(fontScale, toolkit.pixelDensity());
    frame_ = std::make_unique<MainFrame>(
        MainFrame::Surroundings{toolkit, *engine(), *this, *pictures_, surroundings_.clock}, fontScale);
    if (!frame_->open()) {
        frame_.reset();
        return false;
    }
    return true;
}

int WxGUI::showDialog(int dialog) {
    return onFrame([&](MainFrame& frame) {
        frame.showDialog(dialog);
        showMessages();
    });
}

int WxGUI::showSubDialog(int dialog, int sub) {
    return onFrame([&](MainFrame& frame) {
        frame.showSubDialog(dialog, sub);
        showMessages();
    });
}

int WxGUI::updateNavigationState() {
    return onFrame([&](MainFrame& frame) { frame.updateNavigationState(); });
}

int WxGUI::refreshDialog(int dialog, int sub, std::uint32_t flags, bool setFocus) {
    return onFrame([&](MainFrame& frame) { frame.refreshDialog(dialog, sub, flags, setFocus); });
}

int WxGUI::refreshFields(int /*dialog*/, int /*sub*/) {
    return onFrame([&](MainFrame& frame) { frame.refreshFields(); });
}

int WxGUI::refreshElements() {
    return onFrame([&](MainFrame& frame) { frame.refreshElements(); });
}

void WxGUI::showPage(int dialog, int sub, bool show) {
    onFrame([&](MainFrame& frame) { frame.showPage(dialog, sub, show); });
}

int WxGUI::prepareDialog(int /*dialog*/) {
    return onFrame([&](MainFrame& frame) { frame.prepareDialog(); });
}

void WxGUI::prepareSubDialog(int /*dialog*/, int /*sub*/) {
    onFrame([&](MainFrame& frame) { frame.prepareSubDialog(); });
}

int WxGUI::leaveDialog(int /*dialog*/) {
    return onFrame([&](MainFrame& frame) { frame.leaveDialog(); });
}

void WxGUI::leaveSubDialog(int /*dialog*/, int sub) {
    onFrame([&](MainFrame& frame) { frame.leaveSubDialog(sub); });
}

void WxGUI::clearTaskList() {
    onFrame([&](MainFrame& frame) { frame.clearTaskList(); });
}

void WxGUI::destroySubPage() {
    onFrame([&](MainFrame& frame) { frame.destroySubPage(); });
}

void WxGUI::keepElement(const char* name) {
    onFrame([&](MainFrame& frame) { frame.keepElement(viewOf(name)); });
}

bool WxGUI::isAtWork() const {
    const std::int32_t state = engine()->getUiState();
    return state == kUiInstallationRunning || state == kUiBusy;
}

int WxGUI::confirmCancel() {
    if (std::this_thread::get_id() != windowThread_) {
        isCancelWanted_ = true;
        surroundings_.toolkit.wake();
        return 0;
    }
    if (engine() == nullptr) {
        return 0;
    }
    if (isWindowLost_) {
        return isAtWork() ? 0 : 1;
    }
    if (engine()->getUiState() == kUiInstallationRunning) {
        ask(words().text("InstallationRunning"), words().text("CancelRefusedTitle"), MessageButtons::kOk,
            MessageSign::kNone);
        return 0;
    }
    if (engine()->getUiState() == kUiBusy) {
        ask(words().text("InstallerBusy"), words().text("CancelRefusedTitle"), MessageButtons::kOk,
            MessageSign::kNone);
        return 0;
    }
    std::array<char, kNameCapacity> name{};
    engine()->getFullName(name.data(), static_cast<int>(name.size()));
    return ask(words().text("CancelQuestion", {name.data()}), words().text("CancelTitle"),
               MessageButtons::kYesNo, MessageSign::kInformation)
               ? 1
               : 0;
}

bool WxGUI::ask(std::string_view text, std::string_view caption, MessageButtons buttons, MessageSign sign) {
    return surroundings_.toolkit.showMessage(OUtils::visibleText(text), OUtils::visibleText(caption), buttons,
                                             sign);
}

void WxGUI::enableDisableable(bool enable) {
    onFrame([&](MainFrame& frame) { frame.enableDisableable(enable); });
}

// The session asks far more often than anybody can see.
void WxGUI::pumpEvents() {
    const std::uint64_t now = surroundings_.clock();
    if (frame_ != nullptr && now - lastPump_ >= kPumpMilliseconds) {
        lastPump_ = now;
        frame_->show();
        surroundings_.toolkit.processEvents();
    }
}

int WxGUI::pumpEventsWhileCopying() {
    pumpEvents();
    return 0;
}

ControlId WxGUI::find(std::string_view name, DialogElementKind kind) const {
    return frame_ == nullptr ? 0 : frame_->find(name, {kind});
}

void WxGUI::setProgress(std::string_view name, int percent) {
    surroundings_.toolkit.setProgress(find(name, kElementProgress), percent);
}

void WxGUI::setCurrentProgress(int percent) {
    setProgress("Current", percent);
}

void WxGUI::setOverallProgress(int percent) {
    setProgress("Overall", percent);
}

void WxGUI::setStatusText(const char* text) {
    std::string_view line = viewOf(text);
    if (line.ends_with('\n')) {
        line.remove_suffix(1);
    }
    surroundings_.toolkit.setText(find("Destination", kElementText), OUtils::visibleText(line));
}

void WxGUI::addFileLine(const char* text, bool flushNow) {
    if (find("Destfilelist", kElementList) == 0) {
        return;
    }
    if (text != nullptr) {
        fileLines_.append(text).append("\n");
    }
    if (flushNow || fileLines_.size() > kMostPendingBytes) {
        flushFileLines();
    }
}

void WxGUI::flushFileLines() {
    if (!fileLines_.empty()) {
        surroundings_.toolkit.appendText(find("Destfilelist", kElementList), OUtils::visibleText(fileLines_));
        fileLines_.clear();
    }
}

void WxGUI::clearFileLines() {
    fileLines_.clear();
    surroundings_.toolkit.setText(find("Destfilelist", kElementList), "");
}

void WxGUI::addMessage(std::string_view text) {
    messages_.append(text).append("\n");
    showMessages();
}

void WxGUI::showMessages() {
    if (!messages_.empty() && find("Destfilelist", kElementList) != 0) {
        fileLines_ += std::exchange(messages_, {});
        flushFileLines();
    }
}

int WxGUI::messageBox(const char* text, MessageKind kind) {
    const std::string caption = words().text("BoxTitle");
    switch (kind) {
        case MessageKind::kOkCancel:
            return ask(viewOf(text), caption, MessageButtons::kOkCancel, MessageSign::kNone) ? 1 : 0;
        case MessageKind::kInformation:
            ask(viewOf(text), caption, MessageButtons::kOk, MessageSign::kNone);
            return 1;
        case MessageKind::kYesNo:
            return ask(viewOf(text), caption, MessageButtons::kYesNo, MessageSign::kNone) ? 1 : 0;
    }
    return 0;
}

void WxGUI::setTaskState(const char* name, const char* text, std::int32_t state) {
    onFrame([&](MainFrame& frame) { frame.setTaskState(viewOf(name), viewOf(text), state); });
}

void WxGUI::showHelp() {
    std::array<char, kUrlCapacity> url{};
    if (engine() == nullptr || engine()->getInstallHelpUrl(url.data(), static_cast<int>(url.size())) != 0) {
        ask(words().text("NoHelp"), words().text("ErrorTitle"), MessageButtons::kOk,
            MessageSign::kInformation);
    } else if (!engine()->openInDefaultBrowser(url.data())) {
        ask(words().text("HelpFailed"), words().text("ErrorTitle"), MessageButtons::kOk, MessageSign::kError);
    }
}

void WxGUI::setFatalMessage(const char* text, const char* caption) {
    if (!fatalMessage_) {
        fatalMessage_ = {std::string(viewOf(text)), std::string(viewOf(caption))};
    }
}

void WxGUI::showFatalMessage() {
    if (fatalMessage_) {
        surroundings_.toolkit.run(*this);
    }
}

void WxGUI::onFirstShow() {
    guard([this](MainFrame& frame) {
        frame.onFirstShow();
        cancelIfWanted();
    });
}

void WxGUI::onActivate(bool isActive) {
    guard([isActive](MainFrame& frame) { frame.onActivate(isActive); });
}

void WxGUI::onIdle() {
    guard([](MainFrame& frame) { frame.onIdle(); });
}

// While the installation runs, the session decides when events are handled.
void WxGUI::onTimer() {
    guard([this](MainFrame& frame) {
        frame.onIdle();
        if (engine()->getUiState() != kUiInstallationRunning) {
            pumpEvents();
        }
    });
}

bool WxGUI::onClose() {
    bool closes = false;
    guard([&closes](MainFrame& frame) { closes = frame.onClose(); });
    return closes;
}

void WxGUI::onPress(ControlId control) {
    guard([control](MainFrame& frame) { frame.onPress(control); });
}

bool WxGUI::onEnter(bool boxUsesEnter) {
    bool isDone = false;
    guard([&](MainFrame& frame) { isDone = frame.onEnter(boxUsesEnter); });
    return isDone;
}

void WxGUI::onAltKey() {
    guard([](MainFrame& frame) { frame.onAltKey(); });
}

void WxGUI::onText(ControlId control) {
    guard([control](MainFrame& frame) { frame.onText(control); });
}

void WxGUI::onWake() {
    guard([this](MainFrame&) { cancelIfWanted(); });
}

void WxGUI::cancelIfWanted() {
    if (isCancelWanted_.exchange(false)) {
        engine()->cancel(this);
    }
}

// Work that is running is finished; `run` sees to the rest.
void WxGUI::onDisplayLost() {
    isWindowLost_ = true;
    debugLog_.line("ERROR: The display has gone");
    terminal().writeError("The display has gone: the window can't be shown any more\n");
}

// A user on the last page already has everything. On any other page nobody can be asked any more.
void WxGUI::endWithoutWindow() {
    if (engine()->isFinished() || engine()->isCancelled() || exception_) {
        return;
    }
    const DialogDesc* page =
        engine()->getDialog(engine()->getCurrentDialog(), engine()->getCurrentSubDialog());
    if (page != nullptr && page->has(kDialogFinish)) {
        engine()->shift(this, 1);
    } else {
        engine()->cancel(this);
        terminal().writeError("The installation was cancelled\n");
    }
}
