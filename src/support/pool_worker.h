#pragma once

#include <chrono>
#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "platform/threads.h"
#include "support/threaded_procedure.h"

// The inner parts of the thread pool; not for use outside it.
namespace OUtils {

class ThreadManager;

// The states of a worker and the messages that it gets.
enum class WorkerState : std::int32_t { kIdle = 0, kBusy = 1, kTerminated = 2, kWaiting = 3, kCreated = 4 };
enum class WorkerMessage : std::int32_t { kRunMultiThreaded = 4096, kTerminate = 4097, kRunProcedure = 4098 };

// One runThreads call: what its threads share and the latch that counts them down. Threads hold it until they
// are done with it, so that the caller may return as soon as the count is 0.
class ThreadRun {
public:
    ThreadRun(MultiThreaded& procedure, int count);

    // Does one thread's part on the calling thread.
    void runPart(int index);
    // Counts one part down; afterwards the thread doesn't touch what is the caller's.
    void finishPart();
    // True when all parts have finished; waits up to `time` for that.
    bool waitFor(std::chrono::milliseconds time);
    void wait();
    // The sum of the threads' counters.
    std::int64_t progress() const;
    // Throws what a part threw, if one did. Call it only when all parts have finished.
    void rethrow() const;

    SharedRunState& shared() { return shared_; }

private:
    void keepFailure();

    MultiThreaded& procedure_;
    const int count_;
    SharedRunState shared_;
    std::vector<ThreadState> threads_;
    std::mutex mutex_;
    std::condition_variable finished_;
    int remaining_;
    std::exception_ptr failure_;
};

// A message to a worker with what belongs to it.
struct WorkItem {
    WorkerMessage message = WorkerMessage::kTerminate;
    std::shared_ptr<ThreadRun> run;  // with kRunMultiThreaded
    int index = 0;
    ThreadProcedure* procedure = nullptr;  // with kRunProcedure
    void* argument = nullptr;
    bool lowPriority = false;
    std::optional<platform::ProcessorGroup> group;  // to bind to
};

// A thread of the pool with its message queue. Pool and thread share it, so that a thread that hangs can be
// abandoned.
class Worker {
public:
    Worker(const ThreadManager* owner, int index);
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    // Starts the thread of a new worker, which is the caller's like a claimed one. Throws std::system_error
    // when the system refuses.
    static void start(const std::shared_ptr<Worker>& worker);

    // Makes an idle worker the caller's, who then posts one item of work. False when it isn't idle.
    bool claim();
    // Never fails: a worker gets at most one item of work and the message to end.
    void post(WorkItem item);
    // True when the worker is in `state`; waits for that until `deadline`.
    bool waitToReach(WorkerState state, std::chrono::steady_clock::time_point deadline);
    // Waits for the end of a terminated thread; abandons any other.
    void letGo(bool terminated);

    WorkerState state();
    const ThreadManager* owner() const { return owner_; }
    int index() const { return index_; }
    // The worker whose thread is calling; null outside all pools.
    static const Worker* current();

private:
    void loop();
    WorkItem next();
    void prepareThread(const WorkItem& item);
    void setState(WorkerState state);

    const ThreadManager* const owner_;  // only compared; it may be gone
    const int index_;
    std::thread thread_;
    std::mutex mutex_;  // guards the state and the queue
    std::condition_variable changed_;
    WorkerState state_ = WorkerState::kCreated;
    std::vector<WorkItem> queue_;         // its room is taken at the start
    bool lowPriority_ = false;            // used by the thread alone, as is what follows
    std::optional<std::uint16_t> group_;  // the number of the group that it is bound to
};

}  // namespace OUtils
