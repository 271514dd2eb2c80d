#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/threads.h"
#include "support/processor_rotation.h"
#include "support/threaded_procedure.h"

// A small pool of threads, made for one task and released after it.
namespace OUtils {

class ThreadManager {
public:
    ThreadManager() = default;
    ThreadManager(const ThreadManager&) = delete;
    ThreadManager& operator=(const ThreadManager&) = delete;
    // Ends the threads; waits up to 2,000 ms for all of them, and abandons one that hangs.
    virtual ~ThreadManager() = default;

    // Runs `procedure` on `count` threads and returns when all have finished; a count below 1 means the
    // count of the settings. `progress` may be null; without `reportProgress` it isn't given the sum of the
    // counters. Returns 0 or what the run was cancelled with. May be called from any thread, a thread of the
    // pool included. When the system refuses a thread, its part runs on the calling thread.
    virtual std::int32_t runThreads(int count, MultiThreaded& procedure, ThreadProgress* progress = nullptr,
                                    bool reportProgress = false) = 0;
    // True: new work runs below normal priority.
    virtual void setLowPriority(bool low) = 0;
    // Runs a procedure on a free thread without waiting. 0, or -1 when the system refuses a thread.
    virtual int startDetached(ThreadProcedure& procedure, void* argument) = 0;
    virtual void setBlockingMode(bool blocking) = 0;  // stored
    // The index of the calling worker in the pool; -1 outside the pool.
    virtual int getThreadIndex() = 0;
};

class ThreadRun;
class Worker;
struct WorkItem;

class WinThreadManager : public ThreadManager {
public:
    explicit WinThreadManager(const ThreadSettings& settings);
    ~WinThreadManager() override;

    std::int32_t runThreads(int count, MultiThreaded& procedure, ThreadProgress* progress = nullptr,
                            bool reportProgress = false) override;
    void setLowPriority(bool low) override { lowPriority_ = low; }
    int startDetached(ThreadProcedure& procedure, void* argument) override;
    void setBlockingMode(bool blocking) override { blockingMode_ = blocking; }
    int getThreadIndex() override;

    // The threads made so far; idle ones are used again.
    int getWorkerCount();

private:
    std::vector<std::shared_ptr<Worker>> takeWorkers(int wanted);
    WorkItem partItem(const std::shared_ptr<ThreadRun>& run, int index) const;
    void readProcessorGroups();
    void endWorkers();

    const ThreadSettings settings_;
    std::atomic<bool> lowPriority_{false};
    std::atomic<bool> blockingMode_{false};
    std::mutex mutex_;  // guards the two lists
    std::vector<std::shared_ptr<Worker>> workers_;
    std::vector<platform::ProcessorGroup> groups_;
    bool groupsRead_ = false;
};

// Null if allocation fails.
ThreadManager* createThreadManager(const ThreadSettings& settings);
// Destroys a manager; takes null.
void releaseThreadManager(ThreadManager* manager);

struct ThreadManagerRelease {
    void operator()(ThreadManager* manager) const { releaseThreadManager(manager); }
};
using ThreadManagerPtr = std::unique_ptr<ThreadManager, ThreadManagerRelease>;

}  // namespace OUtils
