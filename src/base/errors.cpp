#include "base/errors.h"

#include <cstdio>

namespace OUtils {

ExceptionMsg::ExceptionMsg(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text_, sizeof text_, format, arguments);
    va_end(arguments);
}

}  // namespace OUtils

void GenericError::store(const char* format, va_list arguments) {
    std::vsnprintf(text_, sizeof text_, format, arguments);
}

void GenericError::storeReason(const char* reason) {
    std::snprintf(reason_, sizeof reason_, "%s", reason);
}

GenericError::GenericError(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    store(format, arguments);
    va_end(arguments);
}

InstallerError::InstallerError(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    store(format, arguments);
    va_end(arguments);
}

InstallerError InstallerError::because(const char* reason) const {
    InstallerError error = *this;
    error.storeReason(reason);
    return error;
}

NonFatalError::NonFatalError(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    store(format, arguments);
    va_end(arguments);
}
