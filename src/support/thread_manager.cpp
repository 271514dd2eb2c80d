#include "support/thread_manager.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <new>
#include <utility>

#include "base/text_functions.h"
#include "support/debug_output.h"
#include "support/pool_worker.h"
#include "support/processor_rotation.h"

namespace OUtils {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kTurn(200);             // between two looks at the progress object
constexpr milliseconds kTerminateLimit(2000);  // how long the destruction waits for its threads

// Lets the progress object look at the run and end it.
void serve(ThreadRun& run, ThreadProgress* progress, bool reportProgress) {
    if (progress == nullptr) {
        return;
    }
    if (reportProgress) {
        progress->setProgress(run.progress());
    }
    run.shared().cancel(progress->update());
}

void waitForRun(ThreadRun& run, ThreadProgress* progress, bool reportProgress) {
    if (progress == nullptr) {
        run.wait();
        return;
    }
    try {
        bool finished = false;
        while (!finished) {
            finished = run.waitFor(kTurn);
            serve(run, progress, reportProgress);
        }
    } catch (...) {
        // The procedure belongs to the caller and must not run on behind its back.
        run.shared().cancel(-1);
        run.wait();
        throw;
    }
}

std::chrono::steady_clock::time_point after(milliseconds time) {
    return std::chrono::steady_clock::now() + time;
}

}  // namespace

void SharedRunState::cancel(std::int32_t result) {
    std::int32_t none = 0;
    if (result != 0) {
        cancelled.compare_exchange_strong(none, result);
    }
}

void* MultiThreaded::prepare(ThreadState& /*threadState*/) {
    return nullptr;
}

void* ThreadProcedure::prepare(ThreadState& /*threadState*/) {
    return nullptr;
}

WinThreadManager::WinThreadManager(int count, bool affinity)
    : defaultCount_(std::max(count, 1)), affinity_(affinity) {}

WinThreadManager::~WinThreadManager() {
    endWorkers();
}

void WinThreadManager::endWorkers() {
    debugOutput("[WinThreadManager] Terminating %i threads\n", static_cast<int>(workers_.size()));
    for (const std::shared_ptr<Worker>& worker : workers_) {
        worker->post(WorkItem{});
    }
    const auto deadline = after(kTerminateLimit);
    for (const std::shared_ptr<Worker>& worker : workers_) {
        const bool terminated = worker->waitToReach(WorkerState::kTerminated, deadline);
        if (!terminated) {
            debugOutput("[WinThreadManager] Thread did not terminate for the timeout interval\n");
        }
        worker->letGo(terminated);
    }
    debugOutput("[WinThreadManager] All threads terminated\n");
}

void WinThreadManager::readProcessorGroups() {
    const std::lock_guard lock(mutex_);
    if (!groupsRead_) {
        groupsRead_ = true;
        groups_ = affinity_ ? platform::usableProcessorGroups() : std::vector<platform::ProcessorGroup>();
    }
}

// Hands work to a worker. False when there is none and the system refuses another.
bool WinThreadManager::postToWorker(WorkItem item) {
    const std::lock_guard lock(mutex_);
    try {
        for (const std::shared_ptr<Worker>& worker : workers_) {
            if (worker->postIfIdle(item)) {
                return true;
            }
        }
        auto worker = std::make_shared<Worker>(this, static_cast<int>(workers_.size()));
        worker->post(std::move(item));
        workers_.reserve(workers_.size() + 1);
        Worker::start(worker);
        workers_.push_back(std::move(worker));
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

std::int32_t WinThreadManager::runThreads(int count, MultiThreaded& procedure, ThreadProgress* progress,
                                          bool reportProgress) {
    const int total = count < 1 ? defaultCount_ : count;
    if (progress != nullptr) {
        char text[64];
        formatText(text, sizeof text, "Setting up %i thread(s)\n", total);
        progress->setText(text);
    }
    readProcessorGroups();
    const auto run = std::make_shared<ThreadRun>(procedure, total);
    const int posted = postParts(run, total);
    for (int index = posted; index < total; ++index) {
        run->runPart(index);
        run->finishPart();
    }
    waitForRun(*run, progress, reportProgress);
    if (progress != nullptr) {
        progress->setText("Threads completed\n");
    }
    run->rethrow();
    return run->shared().cancelled;
}

// Hands the parts to workers, the first ones first; gives the number of parts that found one.
int WinThreadManager::postParts(const std::shared_ptr<ThreadRun>& run, int total) {
    for (int index = 0; index < total; ++index) {
        WorkItem item;
        item.message = WorkerMessage::kRunMultiThreaded;
        item.run = run;
        item.index = index;
        item.lowPriority = lowPriority_;
        if (const platform::ProcessorGroup* group = groupForThread(groups_, index)) {
            item.group = *group;
        }
        if (!postToWorker(std::move(item))) {
            return index;
        }
    }
    return total;
}

int WinThreadManager::startDetached(ThreadProcedure& procedure, void* argument) {
    WorkItem item;
    item.message = WorkerMessage::kRunProcedure;
    item.procedure = &procedure;
    item.argument = argument;
    item.lowPriority = lowPriority_;
    return postToWorker(std::move(item)) ? 0 : -1;
}

int WinThreadManager::getThreadIndex() {
    const Worker* worker = Worker::current();
    return worker != nullptr && worker->owner() == this ? worker->index() : -1;
}

int WinThreadManager::getWorkerCount() {
    const std::lock_guard lock(mutex_);
    return static_cast<int>(workers_.size());
}

ThreadManager* createThreadManager() {
    return new (std::nothrow) WinThreadManager(defaultThreadCount(), useThreadAffinity());
}

void releaseThreadManager(ThreadManager* manager) {
    delete manager;
}

}  // namespace OUtils
