#include "fakes/recording_ui.h"

#include <utility>

namespace {

std::string show(const char* text) {
    return text == nullptr ? std::string("null") : '"' + std::string(text) + '"';
}

std::string show(std::string_view text) {
    return '"' + std::string(text) + '"';
}

std::string show(bool value) {
    return value ? "1" : "0";
}

std::string show(int value) {
    return std::to_string(value);
}

std::string show(std::uint32_t value) {
    return std::to_string(value);
}

template <typename... Arguments>
std::string callOf(const char* name, const Arguments&... arguments) {
    std::string text = std::string(name) + "(";
    const char* separator = "";
    ((text += separator + show(arguments), separator = ", "), ...);
    return text + ")";
}

}  // namespace

std::vector<std::string> RecordingUI::callsOf(const std::string& prefix) const {
    std::vector<std::string> found;
    for (const std::string& call : calls) {
        if (call.starts_with(prefix)) {
            found.push_back(call);
        }
    }
    return found;
}

std::vector<std::string> RecordingUI::take() {
    return std::exchange(calls, {});
}

void RecordingUI::record(const std::string& call) {
    calls.push_back(call);
    if (onCall) {
        onCall(call);
    }
}

int RecordingUI::run() {
    record("run()");
    return runResult;
}

int RecordingUI::finish() {
    record("finish()");
    return 0;
}

int RecordingUI::showDialog(int dialog) {
    record(callOf("showDialog", dialog));
    return 0;
}

int RecordingUI::showSubDialog(int dialog, int sub) {
    record(callOf("showSubDialog", dialog, sub));
    return 0;
}

int RecordingUI::updateNavigationState() {
    record("updateNavigationState()");
    return 0;
}

int RecordingUI::refreshDialog(int dialog, int sub, std::uint32_t flags, bool setFocus) {
    record(callOf("refreshDialog", dialog, sub, flags, setFocus));
    return 0;
}

int RecordingUI::refreshFields(int dialog, int sub) {
    record(callOf("refreshFields", dialog, sub));
    return 0;
}

int RecordingUI::refreshElements() {
    record("refreshElements()");
    return 0;
}

void RecordingUI::showPage(int dialog, int sub, bool show) {
    record(callOf("showPage", dialog, sub, show));
}

int RecordingUI::prepareDialog(int dialog) {
    record(callOf("prepareDialog", dialog));
    return 0;
}

void RecordingUI::prepareSubDialog(int dialog, int sub) {
    record(callOf("prepareSubDialog", dialog, sub));
}

int RecordingUI::leaveDialog(int dialog) {
    record(callOf("leaveDialog", dialog));
    return 0;
}

void RecordingUI::leaveSubDialog(int dialog, int sub) {
    record(callOf("leaveSubDialog", dialog, sub));
}

void RecordingUI::clearTaskList() {
    record("clearTaskList()");
}

void RecordingUI::destroySubPage() {
    record("destroySubPage()");
}

void RecordingUI::keepElement(const char* name) {
    record(callOf("keepElement", name));
}

int RecordingUI::confirmCancel() {
    record("confirmCancel()");
    return confirmCancelResult;
}

void RecordingUI::enableDisableable(bool enable) {
    record(callOf("enableDisableable", enable));
}

void RecordingUI::pumpEvents() {
    record("pumpEvents()");
}

void RecordingUI::setCurrentProgress(int percent) {
    record(callOf("setCurrentProgress", percent));
}

void RecordingUI::setOverallProgress(int percent) {
    record(callOf("setOverallProgress", percent));
}

void RecordingUI::setStatusText(const char* text) {
    record(callOf("setStatusText", text));
}

int RecordingUI::pumpEventsWhileCopying() {
    record("pumpEventsWhileCopying()");
    return 0;
}

void RecordingUI::addFileLine(const char* text, bool flushNow) {
    record(callOf("addFileLine", text, flushNow));
}

void RecordingUI::clearFileLines() {
    record("clearFileLines()");
}

void RecordingUI::addMessage(std::string_view text) {
    record(callOf("addMessage", text));
}

int RecordingUI::messageBox(const char* text, MessageKind kind) {
    record(callOf("messageBox", text, static_cast<int>(kind)));
    return messageBoxResult;
}

int RecordingUI::beginProgress() {
    record("beginProgress()");
    return 0;
}

int RecordingUI::endProgress() {
    record("endProgress()");
    return 0;
}

int RecordingUI::isGraphical() {
    record("isGraphical()");
    return graphical;
}

int RecordingUI::getIgnoreErrors() {
    record("getIgnoreErrors()");
    return ignoreErrors;
}

void RecordingUI::setTaskState(const char* name, const char* text, std::int32_t state) {
    record(callOf("setTaskState", name, text, state));
}

void RecordingUI::showHelp() {
    record("showHelp()");
}

int RecordingUI::createInputProvider(const char* mode, bool& outAutomated) {
    record(callOf("createInputProvider", mode));
    outAutomated = true;
    return 0;
}

void RecordingUI::setFatalMessage(const char* text, const char* caption) {
    record(callOf("setFatalMessage", text, caption));
}

void RecordingUI::showFatalMessage() {
    record("showFatalMessage()");
}
