#include "engine/changes/change_record.h"

#include "engine/action_log_writer.h"

ChangeRecord::ChangeRecord(ActionLogWriter* log) : log_(log), start_(log == nullptr ? -1 : log->position()) {}

bool ChangeRecord::write(std::string_view tag, std::initializer_list<std::string_view> fields,
                         std::string_view former) {
    return log_ == nullptr || orWithdraw(log_->writeRecord(tag, fields, former));
}

bool ChangeRecord::keep(std::string_view tag, std::initializer_list<std::string_view> fields) {
    return log_ == nullptr || orWithdraw(log_->writeRecord(tag, fields) && log_->flush());
}

void ChangeRecord::withdraw() {
    if (log_ != nullptr) {
        log_->withdrawFrom(start_);
    }
}

bool ChangeRecord::orWithdraw(bool isWritten) {
    if (!isWritten) {
        withdraw();
    }
    return isWritten;
}
