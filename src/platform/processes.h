#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/failure.h"

namespace platform {

struct ProcessInfo {
    std::uint32_t id = 0;
    std::string name;  // base name of the executable
    std::string path;  // full path of the executable; empty when it can't be read
};

// A program that was started. Destroying it neither waits nor ends the program.
class ChildProcess {
public:
    virtual ~ChildProcess() = default;
    // True when the program has ended; waits up to `milliseconds` for that (0: only looks).
    virtual bool wait(std::uint32_t milliseconds) = 0;
    // Of an ended program; on Linux 128 plus the signal's number when a signal ended it.
    virtual int exitCode() = 0;
};

class Processes {
public:
    virtual ~Processes() = default;

    // The running processes whose executable is known. False when the system refuses.
    virtual bool list(std::vector<ProcessInfo>& outProcesses) = 0;
    // Ends a process: at once on Windows; on Linux politely first, then hard after `politeMilliseconds`.
    // True when the process was asked to end. Never ends this process or one that led to it, nor the system's
    // first process.
    virtual bool terminate(std::uint32_t id, std::uint32_t politeMilliseconds) = 0;
    // Starts a program from one command line: words by blanks, double quotes keep blanks together, and the
    // first word is the program. Without a path it is looked for in PATH, on Windows in the system's
    // directory before and never in the current one. No handles are inherited but the standard streams.
    // `workDirectory` may be empty. Null on failure, with the system's error number in `outError`.
    virtual std::unique_ptr<ChildProcess> start(std::string_view commandLine, std::string_view workDirectory,
                                                int& outError) = 0;
    virtual std::uint32_t currentId() = 0;
    // This process, the one that started it, the one that started that, as far up as they still run.
    virtual std::vector<std::uint32_t> ownLine() = 0;
    // True when a running process has the rights of an administrator: on Linux root's, and no other user's
    // besides. False when that can't be found out.
    virtual bool isAdministrators(std::uint32_t id) = 0;
};

// Adds a word to a command line for Processes::start, whatever blanks are in it. False: one with a double
// quote can't be written there, and the line stays.
inline bool addWord(std::string& ioCommandLine, std::string_view word) {
    if (word.find('"') != std::string_view::npos) {
        return false;
    }
    ioCommandLine += ioCommandLine.empty() ? "\"" : " \"";
    ioCommandLine += word;
    ioCommandLine += '"';
    return true;
}

// The words as a command line for Processes::start. Throws InstallerError when one can't be written there.
inline std::string commandLineOf(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words) {
        if (!addWord(line, word)) {
            fail(word + ": a name with a double quote can't be handed on");
        }
    }
    return line;
}

Processes& systemProcesses();

}  // namespace platform
