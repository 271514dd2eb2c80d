#include "support/p_edit_console.h"

#include <utility>

PEditConsole::PEditConsole(Finder find) : find_(std::move(find)) {}

PEditConsole::~PEditConsole() = default;

int PEditConsole::setDestination(void* target) {
    control_ = target == nullptr ? nullptr : find_(target);
    return control_ == nullptr ? -1 : 0;
}

int PEditConsole::close() {
    control_.reset();
    return -1;
}

int PEditConsole::write(const char* text, std::int32_t length) {
    if (control_ == nullptr || length < 1) {
        return 0;
    }
    return control_->append({text, static_cast<std::size_t>(length)}) ? 0 : -1;
}

int PEditConsole::clear() {
    return control_ != nullptr && control_->clear() ? 0 : -1;
}
