#pragma once

#include "platform/posix/process_handle.h"
#include "platform/processes.h"

namespace platform {

// A child of this process. When it is dropped before the child ended, the child is collected later.
class PosixChildProcess : public ChildProcess {
public:
    explicit PosixChildProcess(pid_t id) : id_(id), handle_(id) {}
    ~PosixChildProcess() override;

    bool wait(std::uint32_t milliseconds) override;
    int exitCode() override { return exitCode_; }

private:
    bool collect();

    const pid_t id_;
    ProcessHandle handle_;
    bool ended_ = false;
    int exitCode_ = -1;
};

// Takes the ended ones of the dropped children out of the process table.
void collectDroppedChildren();

}  // namespace platform
