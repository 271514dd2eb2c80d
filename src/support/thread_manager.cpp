#include "support/thread_manager.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <new>
#include <string>
#include <utility>

#include "support/debug_output.h"
#include "support/pool_worker.h"

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
        // The procedure belongs to the caller and must not go on running without the caller.
        run.shared().cancel(-1);
        run.wait();
        throw;
    }
}

std::chrono::steady_clock::time_point after(milliseconds time) {
    return std::chrono::steady_clock::now() + time;
}

}  // namespace

WinThreadManager::WinThreadManager(const ThreadSettings& settings) : settings_(settings) {}

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
        groups_ =
            settings_.affinity ? platform::usableProcessorGroups() : std::vector<platform::ProcessorGroup>();
    }
}

// Returns workers that only the caller may post to, each a thread of its own; fewer than `wanted` when the
// system refuses threads.
std::vector<std::shared_ptr<Worker>> WinThreadManager::takeWorkers(int wanted) {
    const std::lock_guard lock(mutex_);
    std::vector<std::shared_ptr<Worker>> taken;
    taken.reserve(static_cast<std::size_t>(wanted));
    workers_.reserve(workers_.size() + static_cast<std::size_t>(wanted));
    for (const std::shared_ptr<Worker>& worker : workers_) {
        if (static_cast<int>(taken.size()) == wanted) {
            break;
        }
        if (worker->claim()) {
            taken.push_back(worker);
        }
    }
    try {
        while (static_cast<int>(taken.size()) < wanted) {
            const auto worker = std::make_shared<Worker>(this, static_cast<int>(workers_.size()));
            Worker::start(worker);
            workers_.push_back(worker);
            taken.push_back(worker);
        }
    } catch (const std::exception&) {
        debugOutput("[WinThreadManager] %i of %i threads\n", static_cast<int>(taken.size()), wanted);
    }
    return taken;
}

std::int32_t WinThreadManager::runThreads(int count, MultiThreaded& procedure, ThreadProgress* progress,
                                          bool reportProgress) {
    const int total = count < 1 ? threadCountOf(settings_) : count;
    if (progress != nullptr) {
        progress->setText(("Setting up " + std::to_string(total) + " thread(s)\n").c_str());
    }
    readProcessorGroups();
    const auto run = std::make_shared<ThreadRun>(procedure, total);
    const std::vector<std::shared_ptr<Worker>> workers = takeWorkers(total);
    const auto posted = static_cast<int>(workers.size());
    for (int index = 0; index < posted; ++index) {
        workers[static_cast<std::size_t>(index)]->post(partItem(run, index));
    }
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

WorkItem WinThreadManager::partItem(const std::shared_ptr<ThreadRun>& run, int index) const {
    WorkItem item;
    item.message = WorkerMessage::kRunMultiThreaded;
    item.run = run;
    item.index = index;
    item.lowPriority = lowPriority_;
    if (const platform::ProcessorGroup* group = groupForThread(groups_, index)) {
        item.group = *group;
    }
    return item;
}

int WinThreadManager::startDetached(ThreadProcedure& procedure, void* argument) {
    const std::vector<std::shared_ptr<Worker>> workers = takeWorkers(1);
    if (workers.empty()) {
        return -1;
    }
    WorkItem item;
    item.message = WorkerMessage::kRunProcedure;
    item.procedure = &procedure;
    item.argument = argument;
    item.lowPriority = lowPriority_;
    workers.front()->post(std::move(item));
    return 0;
}

int WinThreadManager::getThreadIndex() {
    const Worker* worker = Worker::current();
    return worker != nullptr && worker->owner() == this ? worker->index() : -1;
}

int WinThreadManager::getWorkerCount() {
    const std::lock_guard lock(mutex_);
    return static_cast<int>(workers_.size());
}

ThreadManager* createThreadManager(const ThreadSettings& settings) {
    return new (std::nothrow) WinThreadManager(settings);
}

void releaseThreadManager(ThreadManager* manager) {
    delete manager;
}

}  // namespace OUtils
