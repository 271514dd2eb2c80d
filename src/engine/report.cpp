#include "engine/report.h"

#include "contracts/installer_ui.h"

namespace {

constexpr std::size_t kErrorLimit = 1559;

}  // namespace

void Report::begin() {
    if (ui_ != nullptr) {
        ui_->beginProgress();
    }
}

void Report::end() {
    if (ui_ != nullptr) {
        ui_->endProgress();
    }
}

void Report::setStatus(const char* text) {
    if (ui_ != nullptr) {
        ui_->setStatusText(text);
    }
}

void Report::setProgress(int percent) {
    if (ui_ != nullptr) {
        ui_->setCurrentProgress(percent);
    }
}

void Report::pumpEvents() {
    if (ui_ != nullptr) {
        ui_->pumpEvents();
    }
}

void Report::pumpEventsWhileCopying() {
    if (ui_ != nullptr) {
        ui_->pumpEventsWhileCopying();
    }
}

void Report::addLine(const std::string& text, bool flushNow) {
    if (ui_ != nullptr) {
        ui_->addFileLine(text.c_str(), flushNow);
    }
}

void Report::flushLines() {
    if (ui_ != nullptr) {
        ui_->addFileLine(nullptr, true);
    }
}

void Report::addError(const std::string& text) {
    if (errors_ != nullptr) {
        errors_->push_back(text.substr(0, kErrorLimit));
    }
}

bool Report::addOutcome(bool done, const std::string& text) {
    addLine(text, false);
    if (!done) {
        addError(text);
    }
    return done;
}

void Report::showErrors(const char* heading) {
    if (errors_ == nullptr || errors_->empty()) {
        return;
    }
    addLine(heading, false);
    for (const std::string& error : *errors_) {
        addLine(error, false);
    }
    flushLines();
}

bool Report::ignoresErrors() {
    return ui_ != nullptr && ui_->getIgnoreErrors() != 0;
}
