#pragma once

#include <atomic>
#include <cstdint>

// What threads of the pool run, and what they share while they do.
namespace OUtils {

// What the threads of one runThreads call share.
struct SharedRunState {
    // Non-zero: the procedure should return soon, and threads that haven't begun don't begin. It is what
    // runThreads returns, so the first value stays.
    std::atomic<std::int32_t> cancelled{0};

    // Sets the result unless there is one already; 0 does nothing.
    void cancel(std::int32_t result) {
        std::int32_t none = 0;
        if (result != 0) {
            cancelled.compare_exchange_strong(none, result);
        }
    }
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
    // Called on the thread before `run`; may return a handle to data of this thread's own.
    virtual void* prepare(ThreadState& /*threadState*/) { return nullptr; }
};

// A procedure run once on a thread. It must outlive its run.
class ThreadProcedure {
public:
    virtual ~ThreadProcedure() = default;
    // An exception is swallowed and reported to the debug output.
    virtual void run(void* argument) = 0;
    virtual void* prepare(ThreadState& /*threadState*/) { return nullptr; }
};

// Watches a runThreads call; called on the thread that made the call only.
class ThreadProgress {
public:
    virtual ~ThreadProgress() = default;
    virtual void setText(const char* text) = 0;
    // The sum of the threads' counters.
    virtual void setProgress(std::int64_t done) = 0;
    // Lets the front end process its events; called at least every 200 ms. A non-zero result cancels the run.
    virtual std::int32_t update() = 0;
};

}  // namespace OUtils
