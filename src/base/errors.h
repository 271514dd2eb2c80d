#pragma once

#include <cstdarg>

#if defined(__clang__)
#define TANDREL_PRINTF(formatIndex, firstArgument) __attribute__((format(printf, formatIndex, firstArgument)))
#elif defined(__GNUC__)
// The formats of the C standard on every system; plain "printf" may mean those of the system's old library.
#define TANDREL_PRINTF(formatIndex, firstArgument) \
    __attribute__((format(gnu_printf, formatIndex, firstArgument)))
#else
#define TANDREL_PRINTF(formatIndex, firstArgument)
#endif

namespace OUtils {

// An error of the support library. The text is formatted as by printf and cut to 1,023 bytes.
class ExceptionMsg {
public:
    explicit ExceptionMsg(const char* format, ...) TANDREL_PRINTF(2, 3);
    ExceptionMsg(const ExceptionMsg&) = default;
    ExceptionMsg& operator=(const ExceptionMsg&) = default;
    virtual ~ExceptionMsg() = default;

    // The message, zero-terminated, owned by this object.
    virtual const char* what() const { return text_; }

private:
    char text_[1024];
};

}  // namespace OUtils

// What the engine throws: by value, caught by reference. The text is formatted as by printf and cut to
// 4,095 bytes.
class GenericError {
public:
    explicit GenericError(const char* format, ...) TANDREL_PRINTF(2, 3);
    GenericError(const GenericError&) = default;
    GenericError& operator=(const GenericError&) = default;
    virtual ~GenericError() = default;

    // The message, zero-terminated, owned by this object.
    virtual const char* what() const { return text_; }

    // Why, in the system's words, for a text whose form is fixed; empty when that isn't known. Owned
    // likewise.
    const char* reason() const { return reason_; }

protected:
    GenericError() = default;
    void store(const char* format, va_list arguments);
    void storeReason(const char* reason);

private:
    char text_[4096] = "";
    char reason_[512] = "";
};

// A failure that ends the current operation.
class InstallerError : public GenericError {
public:
    explicit InstallerError(const char* format, ...) TANDREL_PRINTF(2, 3);

    // The same with the system's reason.
    InstallerError because(const char* reason) const;
};

// A failure of one step, after which the work can go on.
class NonFatalError : public GenericError {
public:
    explicit NonFatalError(const char* format, ...) TANDREL_PRINTF(2, 3);
};
