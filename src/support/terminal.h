#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/console_device.h"

enum class TerminalRead {
    Line,         // something was read
    End,          // the input is closed or at its end
    Interrupted,  // interruptInput was called
};

// A person's terminal for the front end: text out, lines and keys in. Text is UTF-8 with line feeds.
class Terminal {
public:
    Terminal() = default;
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    virtual ~Terminal() = default;

    // From any thread. Buffered until flush. Both return false once the output has failed; later output is
    // dropped.
    virtual bool write(std::string_view text) = 0;
    virtual bool flush() = 0;
    // Whether any output got lost.
    virtual bool outputFailed() = 0;

    // Flushes the output, then reads up to and with a line feed, or `maxBytes` bytes; the rest of the line is
    // given to the next read. `out` is empty unless the result is Line.
    virtual TerminalRead readLine(std::string& out, std::size_t maxBytes) = 0;
    // Flushes the output, then reads one key without echo. `outKey` is 0 unless the result is Line.
    virtual TerminalRead readKey(int& outKey) = 0;
    // Between the two only readKey reads, and nothing that is typed is echoed. Pairs don't nest.
    virtual void beginKeys() = 0;
    virtual void endKeys() = 0;
    // From any thread: a read that waits, and each later one, returns Interrupted.
    virtual void interruptInput() = 0;

    // In character cells. False, with both at 0, when the output is no terminal.
    virtual bool windowSize(int& outColumns, int& outRows) = 0;
    virtual bool isInputTerminal() = 0;
    virtual bool isOutputTerminal() = 0;

    virtual void sleepMilliseconds(std::uint32_t milliseconds) = 0;
};

// Nothing that is typed is echoed during its life. From before the question on, because people and programs
// type as soon as they see it.
class UnechoedInput {
public:
    explicit UnechoedInput(Terminal& terminal) : terminal_(terminal) { terminal_.beginKeys(); }
    ~UnechoedInput() { terminal_.endKeys(); }
    UnechoedInput(const UnechoedInput&) = delete;
    UnechoedInput& operator=(const UnechoedInput&) = delete;

private:
    Terminal& terminal_;
};

// The terminal on the process's standard streams. The device must outlive it.
class SystemTerminal : public Terminal {
public:
    explicit SystemTerminal(platform::ConsoleDevice& device = platform::systemConsole()) : device_(device) {}

    bool write(std::string_view text) override;
    bool flush() override;
    bool outputFailed() override { return outputFailed_; }
    TerminalRead readLine(std::string& out, std::size_t maxBytes) override;
    TerminalRead readKey(int& outKey) override;
    void beginKeys() override { device_.beginKeys(); }
    void endKeys() override { device_.endKeys(); }
    void interruptInput() override;
    bool windowSize(int& outColumns, int& outRows) override;
    bool isInputTerminal() override;
    bool isOutputTerminal() override;
    void sleepMilliseconds(std::uint32_t milliseconds) override;

private:
    bool noted(bool succeeded);

    platform::ConsoleDevice& device_;
    std::atomic<bool> outputFailed_{false};  // output may come from several threads
};
