#include "support/pool_worker.h"

#include <atomic>
#include <utility>

#include "support/debug_output.h"

namespace OUtils {

namespace {

thread_local const Worker* currentWorker = nullptr;
std::atomic<int> threadCount{0};

void runDetached(ThreadProcedure& procedure, void* argument) {
    try {
        ThreadState state;
        state.data = procedure.prepare(state);
        procedure.run(argument);
    } catch (...) {
        debugOutput("[WinThreadManager] A detached procedure failed\n");
    }
}

}  // namespace

ThreadRun::ThreadRun(MultiThreaded& procedure, int count)
    : procedure_(procedure), count_(count), threads_(static_cast<std::size_t>(count)), remaining_(count) {}

void ThreadRun::runPart(int index) {
    try {
        if (shared_.cancelled == 0) {
            ThreadState& state = threads_[static_cast<std::size_t>(index)];
            state.data = procedure_.prepare(state);
            procedure_.run(shared_, state, index, count_);
        }
    } catch (...) {
        keepFailure();
        shared_.cancel(-1);
    }
}

void ThreadRun::keepFailure() {
    const std::lock_guard lock(mutex_);
    if (failure_ == nullptr) {
        failure_ = std::current_exception();
    }
}

void ThreadRun::finishPart() {
    const std::lock_guard lock(mutex_);
    if (--remaining_ == 0) {
        finished_.notify_all();
    }
}

bool ThreadRun::waitFor(std::chrono::milliseconds time) {
    std::unique_lock lock(mutex_);
    return finished_.wait_for(lock, time, [this] { return remaining_ == 0; });
}

void ThreadRun::wait() {
    std::unique_lock lock(mutex_);
    finished_.wait(lock, [this] { return remaining_ == 0; });
}

std::int64_t ThreadRun::progress() const {
    std::int64_t sum = 0;
    for (const ThreadState& state : threads_) {
        sum += state.counter.load(std::memory_order_relaxed);
    }
    return sum;
}

void ThreadRun::rethrow() const {
    if (failure_ != nullptr) {
        std::rethrow_exception(failure_);
    }
}

Worker::Worker(const ThreadManager* owner, int index) : owner_(owner), index_(index) {
    queue_.reserve(2);
}

void Worker::start(const std::shared_ptr<Worker>& worker) {
    worker->thread_ = std::thread([worker] { worker->loop(); });
}

bool Worker::claim() {
    const std::lock_guard lock(mutex_);
    if (state_ != WorkerState::kIdle) {
        return false;
    }
    state_ = WorkerState::kBusy;
    return true;
}

void Worker::post(WorkItem item) {
    const std::lock_guard lock(mutex_);
    queue_.push_back(std::move(item));
    changed_.notify_all();
}

bool Worker::waitToReach(WorkerState state, std::chrono::steady_clock::time_point deadline) {
    std::unique_lock lock(mutex_);
    return changed_.wait_until(lock, deadline, [this, state] { return state_ == state; });
}

void Worker::letGo(bool terminated) {
    if (terminated) {
        thread_.join();
    } else {
        thread_.detach();
    }
}

WorkerState Worker::state() {
    const std::lock_guard lock(mutex_);
    return state_;
}

const Worker* Worker::current() {
    return currentWorker;
}

void Worker::setState(WorkerState state) {
    const std::lock_guard lock(mutex_);
    state_ = state;
    changed_.notify_all();
}

WorkItem Worker::next() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !queue_.empty(); });
    WorkItem item = std::move(queue_.front());
    queue_.erase(queue_.begin());
    state_ = WorkerState::kBusy;
    changed_.notify_all();
    return item;
}

void Worker::prepareThread(const WorkItem& item) {
    if (lowPriority_ != item.lowPriority && platform::setThisThreadLowPriority(item.lowPriority)) {
        lowPriority_ = item.lowPriority;
    }
    if (item.group.has_value() && group_ != item.group->number && platform::bindThisThread(*item.group)) {
        group_ = item.group->number;
    }
}

void Worker::loop() {
    const int number = threadCount++;
    currentWorker = this;
    setState(WorkerState::kWaiting);
    for (;;) {
        WorkItem item = next();
        if (item.message == WorkerMessage::kTerminate) {
            break;
        }
        prepareThread(item);
        if (item.message == WorkerMessage::kRunProcedure) {
            runDetached(*item.procedure, item.argument);
        } else {
            item.run->runPart(item.index);
        }
        // Idle first: a caller that returns from one run finds all its workers again for the next.
        setState(WorkerState::kIdle);
        if (item.run != nullptr) {
            item.run->finishPart();
        }
    }
    debugOutput("[WinThreadManager] Terminating thread %i\n", number);
    setState(WorkerState::kTerminated);
    debugOutput("[WinThreadManager] Thread is terminating\n");
}

}  // namespace OUtils
