#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/threads.h"

// A small pool of threads, made for one task and released behind it.
namespace OUtils {

// What the threads of one runThreads call share.
struct SharedRunState {
    // Non-zero: the procedure should return soon, and threads that haven't begun don't begin. It is what
    // runThreads returns, so the first value stays.
    std::atomic<std::int32_t> cancelled{0};

    // Sets the result unless there is one already; 0 does nothing.
    void cancel(std::int32_t result);
};

// What one thread has for itself during one procedure.
struct ThreadState {
    std::atomic<std::int64_t> counter{0};  // work done; the sum over the threads is shown as progress
    void* data = nullptr;                  // what `prepare` returned
};

// A procedure that several threads run at once. It must outlive the call.
class MultiThreaded {
public:
    virtual ~MultiThreaded() = default;
    // Called once on each thread, without any lock. 0 <= threadIndex < threadCount. An exception cancels the
    // run with -1 and is thrown again by runThreads when all threads have finished.
    virtual void run(SharedRunState& sharedState, ThreadState& results, int threadIndex, int threadCount) = 0;
    // Called on the thread ahead of `run`; may return a handle of data of this thread's own.
    virtual void* prepare(ThreadState& threadState);
};

// A procedure run once on a thread. It must outlive its run.
class ThreadProcedure {
public:
    virtual ~ThreadProcedure() = default;
    // An exception is swallowed and told to the debug output.
    virtual void run(void* argument) = 0;
    virtual void* prepare(ThreadState& threadState);
};

// Watches a runThreads call; called on the thread that made the call only.
class ThreadProgress {
public:
    virtual ~ThreadProgress() = default;
    virtual void setText(const char* text) = 0;
    // The sum of the threads' counters.
    virtual void setProgress(std::int64_t done) = 0;
    // Lets the interface breathe; called at least every 200 ms. A non-zero result cancels the run.
    virtual std::int32_t update() = 0;
};

class ThreadManager {
public:
    ThreadManager() = default;
    ThreadManager(const ThreadManager&) = delete;
    ThreadManager& operator=(const ThreadManager&) = delete;
    // Ends the threads; waits up to 2,000 ms for each, and leaves one that hangs to itself.
    virtual ~ThreadManager() = default;

    // Runs `procedure` on `count` threads and returns when all have finished; a count below 1 means the
    // default count. `progress` may be null; without `reportProgress` it isn't given the sum of the counters.
    // Returns 0 or what the run was cancelled with. May be called from any thread, a thread of the pool
    // included. When the system refuses a thread, its part runs on the calling thread.
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

// The states of a worker and the messages that it gets.
enum class WorkerState : std::int32_t { kIdle = 0, kBusy = 1, kTerminated = 2, kWaiting = 3, kCreated = 4 };
enum class WorkerMessage : std::int32_t { kRunMultiThreaded = 4096, kTerminate = 4097, kRunProcedure = 4098 };

class ThreadRun;
class Worker;
struct WorkItem;

class WinThreadManager : public ThreadManager {
public:
    // `count` is the default thread count; `affinity` binds threads to processor groups where there are
    // several.
    WinThreadManager(int count, bool affinity);
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

    const int defaultCount_;
    const bool affinity_;
    std::atomic<bool> lowPriority_{false};
    std::atomic<bool> blockingMode_{false};
    std::mutex mutex_;  // guards the two lists
    std::vector<std::shared_ptr<Worker>> workers_;
    std::vector<platform::ProcessorGroup> groups_;
    bool groupsRead_ = false;
};

// A pool with this process's default count and affinity; null if allocation fails.
ThreadManager* createThreadManager();
// Destroys a manager; takes null.
void releaseThreadManager(ThreadManager* manager);

struct ThreadManagerRelease {
    void operator()(ThreadManager* manager) const { releaseThreadManager(manager); }
};
using ThreadManagerPtr = std::unique_ptr<ThreadManager, ThreadManagerRelease>;

}  // namespace OUtils
