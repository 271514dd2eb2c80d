#include "engine/work_report.h"

#include "contracts/installer_ui.h"

namespace {

constexpr std::size_t kErrorLimit = 1559;

}  // namespace

void WorkReport::begin() {
    if (ui_ != nullptr) {
        ui_->beginProgress();
    }
}

void WorkReport::end() {
    if (ui_ != nullptr) {
        ui_->endProgress();
    }
}

void WorkReport::setStatus(const char* text) {
    if (ui_ != nullptr) {
        ui_->setStatusText(text);
    }
}

void WorkReport::setProgress(int percent) {
    if (ui_ != nullptr) {
        ui_->setCurrentProgress(percent);
    }
}

void WorkReport::pumpEvents() {
    if (ui_ != nullptr) {
        ui_->pumpEventsWhileCopying();
    }
}

void WorkReport::addLine(const std::string& text, bool flushNow) {
    if (ui_ != nullptr) {
        ui_->addFileLine(text.c_str(), flushNow);
    }
}

void WorkReport::flushLines() {
    if (ui_ != nullptr) {
        ui_->addFileLine(nullptr, true);
    }
}

void WorkReport::addError(const std::string& text) {
    if (errors_ != nullptr) {
        errors_->push_back(text.substr(0, kErrorLimit));
    }
}

void WorkReport::showErrors(const char* heading) {
    if (errors_ == nullptr || errors_->empty()) {
        return;
    }
    addLine(heading, false);
    for (const std::string& error : *errors_) {
        addLine(error, false);
    }
    flushLines();
}

bool WorkReport::ignoresErrors() {
    return ui_ != nullptr && ui_->getIgnoreErrors() != 0;
}
