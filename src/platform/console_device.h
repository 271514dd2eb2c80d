#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Standard input and output as a person at a terminal, a pipe or a file sees them. Text is UTF-8 with line
// feeds; the device turns them into what the system wants.
//
// What is written comes from descriptions, documents and names of files, so no text reaches the outside as a
// command to a terminal: each one passes through OUtils::visibleText, also on its way into a pipe, which may
// end at a terminal. Only writeControl lets control characters pass.
namespace platform {

enum class ReadStatus {
    kLine,         // something was read
    kEnd,          // the input is closed or at its end
    kInterrupted,  // interruptInput was called
};

// What completes while a line is edited.
enum class LineCompletion { kNone, kDirectories };

// Output may come from any thread; one thread at a time reads.
class ConsoleDevice {
public:
    ConsoleDevice() = default;
    ConsoleDevice(const ConsoleDevice&) = delete;
    ConsoleDevice& operator=(const ConsoleDevice&) = delete;
    virtual ~ConsoleDevice() = default;

    // Whole characters, because the parts of one are replaced. Buffered; flush hands everything to the
    // system. All return false once any output was lost (the reader went away, the disk is full); later
    // output is dropped.
    bool write(std::string_view text);
    // For the program's own commands to the terminal, never for a text that came from outside.
    bool writeControl(std::string_view commands) { return put(commands); }
    virtual bool flush() = 0;
    bool writeError(std::string_view text);  // standard error, unbuffered

    // Flushes the output, so that the question shows before the wait for its answer. Then reads up to and
    // with a line feed, or `maxBytes` bytes, whichever comes first; the next read gets the rest of the line.
    // `outLine` keeps the line feed and is empty unless the result is kLine.
    virtual ReadStatus readLine(std::string& outLine, std::size_t maxBytes) = 0;
    // As readLine without the line feed, for a person who edits the line: with the cursor keys, with the
    // lines given before, and with names that the TAB key completes. The prompt is what stands in front of
    // it. Nothing, and nothing is written, where this console has no such means of its own; there the prompt
    // is to be written and the line to be read as always.
    virtual std::optional<ReadStatus> editLine(std::string_view prompt, LineCompletion completion,
                                               std::string& outLine, std::size_t maxBytes);
    // Flushes the output, then reads one key without echo (from a pipe: one byte). The backspace key gives 8,
    // the key that ends the input kEnd. `outKey` is 0 unless the result is kLine. Outside of beginKeys and
    // endKeys the terminal's settings are restored before it returns.
    virtual ReadStatus readKey(int& outKey) = 0;
    // Between the two only readKey reads, and a terminal echoes nothing, not even what is typed between two
    // reads. Pairs don't nest. Without a terminal they do nothing.
    virtual void beginKeys() = 0;
    virtual void endKeys() = 0;

    // From any thread, any number of times: a read that blocks, and each later one, returns kInterrupted.
    virtual void interruptInput() = 0;

    // The window of standard output in character cells. False, with both at 0, when it is not a terminal.
    virtual bool windowSize(int& outColumns, int& outRows) = 0;
    virtual bool isInputTerminal() = 0;
    virtual bool isOutputTerminal() = 0;
    // True when the system opened the console's window for this program alone, as by a double click on
    // Windows: it vanishes with the program.
    virtual bool ownsWindow() { return false; }

    // A pause in the dialogue. Here and not a plain call, so that scripted dialogues take no time.
    virtual void sleepMilliseconds(std::uint32_t milliseconds) = 0;

protected:
    // The bytes as they are, to standard output and standard error.
    virtual bool put(std::string_view bytes) = 0;
    virtual bool putError(std::string_view bytes) = 0;
};

// While it lives nothing that is typed is echoed. Make it before the question is printed, because people and
// programs type as soon as they see it.
class UnechoedInput {
public:
    explicit UnechoedInput(ConsoleDevice& console) : console_(console) { console_.beginKeys(); }
    ~UnechoedInput() { console_.endKeys(); }
    UnechoedInput(const UnechoedInput&) = delete;
    UnechoedInput& operator=(const UnechoedInput&) = delete;

private:
    ConsoleDevice& console_;
};

ConsoleDevice& systemConsole();

// The events of the console control handler, by the numbers of Windows. On Linux SIGINT is kInterrupt,
// SIGQUIT kBreak, SIGHUP kClose, SIGTERM kShutdown.
enum class ControlEvent : int { kInterrupt = 0, kBreak = 1, kClose = 2, kLogoff = 5, kShutdown = 6 };

// Called on a thread of its own, possibly several times and on several threads. True means that the event
// is dealt with; false lets the system's default end the process.
using ControlHandler = bool (*)(ControlEvent event);

// Installs the one handler of the process. False when the system refuses.
bool setControlHandler(ControlHandler handler);

}  // namespace platform
