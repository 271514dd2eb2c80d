#include "platform/virtual_display.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <vector>

#include "platform/environment.h"

namespace platform {

namespace {

constexpr int kStartMilliseconds = 60000;
constexpr std::size_t kLongestNumber = 16;
// The descriptor that the server writes its number to.
constexpr int kNumberDescriptor = 3;
constexpr int kNoProgram = 127;

class Pipe {
public:
    Pipe() { isOpen_ = pipe2(ends_, O_CLOEXEC) == 0; }
    ~Pipe() {
        closeEnd(0);
        closeEnd(1);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    bool isOpen() const { return isOpen_; }
    int readEnd() const { return ends_[0]; }
    int writeEnd() const { return ends_[1]; }
    void closeEnd(int end) {
        if (ends_[end] >= 0) {
            close(ends_[end]);
            ends_[end] = -1;
        }
    }

private:
    int ends_[2] = {-1, -1};
    bool isOpen_ = false;
};

class Server : public VirtualDisplay {
public:
    Server(pid_t id, std::string name) : id_(id), name_(std::move(name)) {}
    ~Server() override {
        kill(id_, SIGTERM);
        while (waitpid(id_, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
    std::string name() const override { return name_; }

private:
    const pid_t id_;
    const std::string name_;
};

// Between fork and exec: nothing here may allocate. The server doesn't take the terminal's interrupts, it
// goes with its parent.
[[noreturn]] void becomeServer(pid_t parent, int numberEnd, int nowhere, char* const* words) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);  // upon which it removes its files
    if (getppid() != parent) {
        _exit(1);
    }
    setpgid(0, 0);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    dup2(nowhere, STDIN_FILENO);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    if (numberEnd == kNumberDescriptor) {
        fcntl(numberEnd, F_SETFD, 0);
    } else {
        dup2(numberEnd, kNumberDescriptor);
    }
    execvp(words[0], words);
    _exit(kNoProgram);
}

// The line that the server writes when it can be asked; empty when it has ended or takes too long.
std::string readNumber(int from) {
    std::string number;
    while (number.size() < kLongestNumber && !number.ends_with('\n')) {
        pollfd waiting{from, POLLIN, 0};
        const int ready = poll(&waiting, 1, kStartMilliseconds);
        char digit = 0;
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        if (ready <= 0 || read(from, &digit, 1) != 1) {
            return {};
        }
        number += digit;
    }
    number.pop_back();
    return number;
}

bool lacksProgram(pid_t id) {
    int status = 0;
    kill(id, SIGTERM);
    while (waitpid(id, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == kNoProgram;
}

}  // namespace

std::unique_ptr<VirtualDisplay> startVirtualDisplay(int width, int height, std::string& outReason) {
    outReason = "the program Xvfb can't be started";
    Pipe number;
    const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
    if (!number.isOpen() || nowhere < 0) {
        return nullptr;
    }
    std::vector<std::string> words = {
        "Xvfb",      "-displayfd", std::to_string(kNumberDescriptor),
        "-screen",   "0",          std::to_string(width) + "x" + std::to_string(height) + "x24",
        "-nolisten", "tcp",        "-noreset",
        "-dpi",      "96"};
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    const pid_t parent = getpid();
    const pid_t id = fork();
    if (id == 0) {
        becomeServer(parent, number.writeEnd(), nowhere, arguments.data());
    }
    close(nowhere);
    if (id < 0) {
        return nullptr;
    }
    number.closeEnd(1);
    const std::string name = readNumber(number.readEnd());
    if (!name.empty()) {
        outReason.clear();
        return std::make_unique<Server>(id, ":" + name);
    }
    if (lacksProgram(id)) {
        outReason = "the program Xvfb is missing; on Debian it is in the package xvfb";
    }
    return nullptr;
}

bool setLetterSize(Environment& environment, int percent) {
    const std::string hundredths = std::to_string(percent % 100 + 100).substr(1);
    return environment.set("GDK_DPI_SCALE", std::to_string(percent / 100) + "." + hundredths);
}

}  // namespace platform
