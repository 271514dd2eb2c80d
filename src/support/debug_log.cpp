#include "support/debug_log.h"

#include <cstdarg>

#include "support/p_console.h"

DebugLog::DebugLog() : target_(std::make_shared<Target>()) {}

DebugLog::DebugLog(PConsole& console, std::int32_t level)
    : target_(std::make_shared<Target>(Target{&console, level})) {}

void DebugLog::setTarget(PConsole* console, std::int32_t level) const {
    *target_ = {console, level};
}

void DebugLog::print(const char* format, ...) const {
    if (target_->console == nullptr) {
        return;
    }
    va_list arguments;
    va_start(arguments, format);
    target_->console->printFormatted(format, arguments);
    va_end(arguments);
}

void DebugLog::line(std::string_view text) const {
    if (target_->console != nullptr) {
        target_->console->print("%.*s", static_cast<int>(text.size()), text.data());
    }
}
