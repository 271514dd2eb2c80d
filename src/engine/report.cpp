#include "engine/report.h"

#include <chrono>
#include <future>

#include "contracts/installer_ui.h"
#include "engine/overall_progress.h"
#include "platform/error_text.h"
#include "platform/written_path.h"

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

void Report::setStatus(std::string_view text) {
    if (ui_ != nullptr) {
        ui_->setStatusText(std::string(text).c_str());
    }
}

void Report::setStatusWord(WordKey status) {
    setStatus(words_ == nullptr ? defaultWords().text(status) : words_->text(status));
}

void Report::setProgress(int percent) {
    if (ui_ != nullptr) {
        ui_->setCurrentProgress(percent);
    }
    if (overall_ != nullptr) {
        overall_->share(percent);
    }
}

void Report::setFileProgress(std::int64_t done, std::int64_t total) {
    if (ui_ != nullptr) {
        ui_->setFileProgress(done, total);
        ui_->pumpEventsWhileCopying();
    }
}

void Report::beginStage(JobStage stage) {
    if (overall_ != nullptr) {
        overall_->begin(stage);
    }
}

void Report::advance(std::int64_t weight) {
    if (overall_ != nullptr) {
        overall_->advance(weight);
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

int Report::pumpEventsDuring(const std::function<int()>& work) {
    constexpr std::chrono::milliseconds kOneLook(10);
    if (ui_ == nullptr || ui_->isGraphical() == 0) {
        return work();
    }
    // Where there is no thread to be had it is done by get().
    std::future<int> result = std::async(work);
    while (result.wait_for(kOneLook) == std::future_status::timeout) {
        ui_->pumpEvents();
    }
    return result.get();
}

void Report::addLine(std::string_view text, bool flushNow) {
    if (ui_ != nullptr) {
        ui_->addFileLine(std::string(text).c_str(), flushNow);
    }
}

void Report::flushLines() {
    if (ui_ != nullptr) {
        ui_->addFileLine(nullptr, true);
    }
}

void Report::addError(std::string_view text) {
    if (errors_ != nullptr) {
        errors_->emplace_back(text.substr(0, kErrorLimit));
    }
}

bool Report::addOutcome(bool done, std::string_view text) {
    addLine(text, false);
    if (!done) {
        addError(text);
    }
    return done;
}

void Report::note(std::string_view text) {
    if (ui_ != nullptr) {
        ui_->addMessage(text);
    }
    if (noteReceiver_) {
        noteReceiver_(text);
    }
}

void Report::addReason(std::string_view subject, int status) {
    if (status != 0) {
        addReason(subject, platform::errorText(status));
    }
}

void Report::addFileReason(std::string_view path, int status) {
    if (status < 0) {
        addReason(path, "something else than a file is in its place");
    } else {
        addReason(path, status);
    }
}

void Report::addRegistryReason(std::string_view subject, int status) {
    if (status != 0) {
        note(std::string(subject) + ": " + platform::registryErrorText(status));
    }
}

void Report::addReason(std::string_view subject, std::string_view reason) {
    note(platform::writtenPath(subject) + ": " + std::string(reason));
}

void Report::addKnownReason(std::string_view subject, std::string_view reason) {
    if (!reason.empty()) {
        note(std::string(subject) + ": " + std::string(reason));
    }
}

void Report::showErrors(std::string_view heading) {
    if (errors_ == nullptr) {
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

// The share is rounded up, and that of the steps before this one: the last step doesn't show 100, the end
// of the job does.
void Report::finishStep() {
    if (expectedSteps_ > 0) {
        setProgress(static_cast<int>((finishedSteps_ * 100 + expectedSteps_ - 1) / expectedSteps_));
    }
    ++finishedSteps_;
}
