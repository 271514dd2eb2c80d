#include "support/thread_manager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <future>
#include <mutex>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "fakes/debug_lines.h"
#include "fakes/meeting_point.h"
#include "support/pool_worker.h"
#include "support/processor_rotation.h"

namespace {

using OUtils::MultiThreaded;
using OUtils::SharedRunState;
using OUtils::ThreadManager;
using OUtils::ThreadState;
using OUtils::WinThreadManager;

class Function : public MultiThreaded {
public:
    using Body = std::function<void(SharedRunState&, ThreadState&, int, int)>;
    explicit Function(Body body) : body_(std::move(body)) {}
    void run(SharedRunState& shared, ThreadState& results, int index, int count) override {
        body_(shared, results, index, count);
    }

private:
    Body body_;
};

class Progress : public OUtils::ThreadProgress {
public:
    void setText(const char* text) override { texts.emplace_back(text); }
    void setProgress(std::int64_t done) override { sums.push_back(done); }
    std::int32_t update() override {
        ++updates;
        return onUpdate ? onUpdate() : 0;
    }

    std::vector<std::string> texts;
    std::vector<std::int64_t> sums;
    int updates = 0;
    std::function<std::int32_t()> onUpdate;
};

class DetachedFunction : public OUtils::ThreadProcedure {
public:
    explicit DetachedFunction(std::function<void(void*)> body) : body_(std::move(body)) {}
    void run(void* argument) override { body_(argument); }

private:
    std::function<void(void*)> body_;
};

TEST(ThreadManagerTest, RunsEachIndexOnceOnAThreadOfItsOwn) {
    WinThreadManager manager({1, true});
    std::mutex mutex;
    std::multiset<int> indexes;
    std::set<std::thread::id> threads;
    MeetingPoint together(5);  // nobody passes unless five threads run at once
    Function procedure([&](SharedRunState&, ThreadState&, int index, int count) {
        together.arriveAndWait();
        const std::lock_guard lock(mutex);
        indexes.insert(index);
        threads.insert(std::this_thread::get_id());
        EXPECT_EQ(5, count);
    });
    EXPECT_EQ(0, manager.runThreads(5, procedure));
    EXPECT_EQ((std::multiset<int>{0, 1, 2, 3, 4}), indexes);
    EXPECT_EQ(5U, threads.size());
    EXPECT_EQ(0U, threads.count(std::this_thread::get_id()));
}

TEST(ThreadManagerTest, TakesTheCountOfTheSettingsForZero) {
    WinThreadManager manager({3, false});
    std::atomic<int> runs = 0;
    Function procedure([&](SharedRunState&, ThreadState&, int, int count) {
        EXPECT_EQ(3, count);
        ++runs;
    });
    EXPECT_EQ(0, manager.runThreads(0, procedure));
    EXPECT_EQ(3, runs);
    EXPECT_EQ(3, manager.getWorkerCount());
    EXPECT_EQ(0, manager.runThreads(-1, procedure));
    EXPECT_EQ(6, runs);
}

TEST(ThreadManagerTest, FindsItsWorkersAgain) {
    WinThreadManager manager({1, true});
    std::mutex mutex;
    std::set<std::thread::id> threads;
    Function procedure([&](SharedRunState&, ThreadState&, int, int) {
        const std::lock_guard lock(mutex);
        threads.insert(std::this_thread::get_id());
    });
    for (int round = 0; round < 200; ++round) {
        ASSERT_EQ(0, manager.runThreads(1 + round % 3, procedure));
    }
    EXPECT_LE(threads.size(), 3U);
    EXPECT_LE(manager.getWorkerCount(), 3);
}

TEST(ThreadManagerTest, RunsMoreThreadsThanThereAreProcessors) {
    WinThreadManager manager({1, true});
    std::atomic<std::int64_t> sum = 0;
    MeetingPoint together(50);
    Function procedure([&](SharedRunState&, ThreadState&, int index, int) {
        together.arriveAndWait();
        sum += index;
    });
    EXPECT_EQ(0, manager.runThreads(50, procedure));
    EXPECT_EQ(50 * 49 / 2, sum);
}

TEST(ThreadManagerTest, GivesAWorkerItsIndex) {
    WinThreadManager manager({1, true});
    WinThreadManager other({1, true});
    std::mutex mutex;
    std::set<int> indexes;
    MeetingPoint together(3);
    Function procedure([&](SharedRunState&, ThreadState&, int, int) {
        together.arriveAndWait();
        const std::lock_guard lock(mutex);
        indexes.insert(manager.getThreadIndex());
        EXPECT_EQ(-1, other.getThreadIndex());
    });
    manager.runThreads(3, procedure);
    EXPECT_EQ((std::set<int>{0, 1, 2}), indexes);
    EXPECT_EQ(-1, manager.getThreadIndex());
}

TEST(ThreadManagerTest, GivesWhatPrepareMadeToTheRunOfTheSameThread) {
    class Prepared : public MultiThreaded {
    public:
        void* prepare(ThreadState& state) override {
            EXPECT_EQ(nullptr, state.data);
            return new std::thread::id(std::this_thread::get_id());
        }
        void run(SharedRunState&, ThreadState& results, int, int) override {
            auto* made = static_cast<std::thread::id*>(results.data);
            EXPECT_EQ(std::this_thread::get_id(), *made);
            delete made;
            ++runs;
        }
        std::atomic<int> runs = 0;
    } procedure;
    WinThreadManager manager({1, true});
    EXPECT_EQ(0, manager.runThreads(4, procedure));
    EXPECT_EQ(4, procedure.runs);
}

TEST(ThreadManagerTest, RunsWithinAProcedureOfItsOwn) {
    WinThreadManager manager({2, true});
    std::atomic<int> runs = 0;
    Function inner([&](SharedRunState&, ThreadState&, int, int) { ++runs; });
    Function outer([&](SharedRunState&, ThreadState&, int, int) { manager.runThreads(2, inner); });
    EXPECT_EQ(0, manager.runThreads(2, outer));
    EXPECT_EQ(4, runs);
}

TEST(ThreadManagerTest, ServesSeveralCallersAtOnce) {
    WinThreadManager manager({2, true});
    std::atomic<int> runs = 0;
    Function procedure([&](SharedRunState&, ThreadState&, int, int) { ++runs; });
    std::vector<std::thread> callers;
    for (int i = 0; i < 4; ++i) {
        callers.emplace_back([&] {
            for (int round = 0; round < 50; ++round) {
                manager.runThreads(2, procedure);
            }
        });
    }
    for (std::thread& caller : callers) {
        caller.join();
    }
    EXPECT_EQ(400, runs);
}

TEST(ThreadManagerTest, GivesTheFirstCancelResultAndForgetsItForTheNextRun) {
    WinThreadManager manager({1, true});
    Function cancelling([](SharedRunState& shared, ThreadState&, int, int) {
        shared.cancel(7);
        shared.cancel(8);
        shared.cancel(0);
    });
    EXPECT_EQ(7, manager.runThreads(1, cancelling));
    Function quiet([](SharedRunState&, ThreadState&, int, int) {});
    EXPECT_EQ(0, manager.runThreads(1, quiet));
}

TEST(ThreadManagerTest, ReportsToItsProgressWhatItDoes) {
    WinThreadManager manager({1, true});
    Progress progress;
    Function procedure(
        [](SharedRunState&, ThreadState& results, int index, int) { results.counter += 10 + index; });
    EXPECT_EQ(0, manager.runThreads(2, procedure, &progress, true));
    EXPECT_EQ((std::vector<std::string>{"Setting up 2 thread(s)\n", "Threads completed\n"}), progress.texts);
    ASSERT_FALSE(progress.sums.empty());
    EXPECT_EQ(21, progress.sums.back());
    EXPECT_EQ(static_cast<int>(progress.sums.size()), progress.updates);
}

TEST(ThreadManagerTest, ReportsTheSumOnlyOnRequest) {
    WinThreadManager manager({1, true});
    Progress progress;
    Function procedure([](SharedRunState&, ThreadState& results, int, int) { results.counter += 1; });
    EXPECT_EQ(0, manager.runThreads(2, procedure, &progress, false));
    EXPECT_TRUE(progress.sums.empty());
    EXPECT_GE(progress.updates, 1);
}

TEST(ThreadManagerTest, ServesProgressOnTheCallingThreadWhileThreadsRun) {
    WinThreadManager manager({1, true});
    Progress progress;
    std::atomic<bool> seen = false;
    std::thread::id server;
    progress.onUpdate = [&] {
        server = std::this_thread::get_id();
        seen = true;
        return 0;
    };
    Function procedure([&](SharedRunState&, ThreadState&, int, int) {
        while (!seen) {
            std::this_thread::yield();
        }
    });
    EXPECT_EQ(0, manager.runThreads(1, procedure, &progress, true));
    EXPECT_EQ(std::this_thread::get_id(), server);
}

TEST(ThreadManagerTest, EndsWhenTheProgressCancels) {
    WinThreadManager manager({1, true});
    Progress progress;
    progress.onUpdate = [&] { return 40 + progress.updates; };
    Function endless([](SharedRunState& shared, ThreadState&, int, int) {
        while (shared.cancelled == 0) {
            std::this_thread::yield();
        }
    });
    EXPECT_EQ(41, manager.runThreads(3, endless, &progress, true));
}

TEST(ThreadManagerTest, ThrowsWhatAThreadThrewWhenAllHaveFinished) {
    WinThreadManager manager({1, true});
    std::atomic<int> finished = 0;
    Function procedure([&](SharedRunState& shared, ThreadState&, int index, int) {
        if (index == 1) {
            throw std::runtime_error("one");
        }
        while (shared.cancelled == 0) {
            std::this_thread::yield();
        }
        ++finished;
    });
    // Thread 0 and 2 wait for the failure, or don't begin because of it.
    EXPECT_THROW(manager.runThreads(3, procedure), std::runtime_error);
    EXPECT_LE(finished, 2);
    Function quiet([&](SharedRunState&, ThreadState&, int, int) { ++finished; });
    finished = 0;
    EXPECT_EQ(0, manager.runThreads(3, quiet));
    EXPECT_EQ(3, finished);
}

TEST(ThreadManagerTest, WaitsForItsThreadsWhenTheProgressThrows) {
    WinThreadManager manager({1, true});
    Progress progress;
    progress.onUpdate = []() -> std::int32_t { throw std::runtime_error("window gone"); };
    std::atomic<int> running = 0;
    Function procedure([&](SharedRunState& shared, ThreadState&, int, int) {
        ++running;
        while (shared.cancelled == 0) {
            std::this_thread::yield();
        }
        --running;
    });
    EXPECT_THROW(manager.runThreads(2, procedure, &progress, true), std::runtime_error);
    EXPECT_EQ(0, running);
}

TEST(ThreadManagerTest, RunsBelowNormalPriority) {
    WinThreadManager manager({1, true});
    manager.setLowPriority(true);
    manager.setBlockingMode(true);
    std::atomic<int> runs = 0;
    Function procedure([&](SharedRunState&, ThreadState&, int, int) { ++runs; });
    EXPECT_EQ(0, manager.runThreads(2, procedure));
    manager.setLowPriority(false);
    EXPECT_EQ(0, manager.runThreads(2, procedure));
    EXPECT_EQ(4, runs);
}

TEST(ThreadManagerTest, StartsDetachedWorkWithItsArgument) {
    std::promise<int> received;
    std::promise<void> goOn;
    DetachedFunction procedure([&](void* argument) {
        goOn.get_future().wait();  // startDetached has returned by then
        received.set_value(*static_cast<int*>(argument));
    });
    int argument = 42;
    WinThreadManager manager({1, true});  // ends first, since it waits for the work
    EXPECT_EQ(0, manager.startDetached(procedure, &argument));
    goOn.set_value();
    EXPECT_EQ(42, received.get_future().get());
}

TEST(ThreadManagerTest, RunsBesideDetachedWork) {
    std::promise<void> goOn;
    DetachedFunction detached([&](void*) { goOn.get_future().wait(); });
    WinThreadManager manager({1, true});  // ends first, since it waits for the work
    ASSERT_EQ(0, manager.startDetached(detached, nullptr));
    Function quiet([](SharedRunState&, ThreadState&, int, int) {});
    EXPECT_EQ(0, manager.runThreads(2, quiet));
    EXPECT_EQ(3, manager.getWorkerCount());
    goOn.set_value();
}

TEST(ThreadManagerTest, FinishesDetachedWorkBeforeItIsDestroyed) {
    const DebugLines lines;
    bool done = false;
    DetachedFunction failing([](void*) { throw std::runtime_error("lost"); });
    DetachedFunction working([&](void*) { done = true; });
    {
        WinThreadManager manager({1, true});
        ASSERT_EQ(0, manager.startDetached(failing, nullptr));
        ASSERT_EQ(0, manager.startDetached(working, nullptr));
    }
    EXPECT_TRUE(done);
    EXPECT_EQ(1, DebugLines::count("[WinThreadManager] A detached procedure failed\n"));
}

TEST(ThreadManagerTest, ReportsItsEndToTheDebugOutput) {
    const DebugLines lines;
    {
        WinThreadManager manager({1, true});
        MeetingPoint together(2);
        Function procedure([&](SharedRunState&, ThreadState&, int, int) { together.arriveAndWait(); });
        manager.runThreads(2, procedure);
    }
    EXPECT_EQ(1, DebugLines::count("[WinThreadManager] Terminating 2 threads\n"));
    EXPECT_EQ(2, DebugLines::count("[WinThreadManager] Thread is terminating\n"));
    EXPECT_EQ(1, DebugLines::count("[WinThreadManager] All threads terminated\n"));
    EXPECT_EQ(0, DebugLines::count("[WinThreadManager] Thread did not terminate for the timeout interval\n"));
}

TEST(ThreadManagerTest, AbandonsAThreadThatHangs) {
    const DebugLines lines;
    std::promise<void> goOn;
    std::promise<void> ended;
    DetachedFunction hanging([&](void*) {
        goOn.get_future().wait();
        ended.set_value();
    });
    {
        WinThreadManager manager({1, true});
        ASSERT_EQ(0, manager.startDetached(hanging, nullptr));
    }
    EXPECT_EQ(1, DebugLines::count("[WinThreadManager] Thread did not terminate for the timeout interval\n"));
    EXPECT_EQ(1, DebugLines::count("[WinThreadManager] All threads terminated\n"));
    goOn.set_value();
    ended.get_future().wait();
    // Its last words come from the thread itself, which holds all that it needs.
    while (DebugLines::count("[WinThreadManager] Thread is terminating\n") == 0) {
        std::this_thread::yield();
    }
}

TEST(ThreadManagerTest, IsMadeWithSettings) {
    const OUtils::ThreadSettings settings{5, false};
    const OUtils::ThreadManagerPtr manager(OUtils::createThreadManager(settings));
    ASSERT_NE(nullptr, manager);
    std::atomic<int> runs = 0;
    Function procedure([&](SharedRunState&, ThreadState&, int, int) { ++runs; });
    EXPECT_EQ(0, manager->runThreads(0, procedure));
    EXPECT_EQ(5, runs);
    OUtils::releaseThreadManager(nullptr);
}

TEST(ThreadManagerTest, NumbersItsStatesAndMessages) {
    EXPECT_EQ(0, static_cast<int>(OUtils::WorkerState::kIdle));
    EXPECT_EQ(1, static_cast<int>(OUtils::WorkerState::kBusy));
    EXPECT_EQ(2, static_cast<int>(OUtils::WorkerState::kTerminated));
    EXPECT_EQ(3, static_cast<int>(OUtils::WorkerState::kWaiting));
    EXPECT_EQ(4, static_cast<int>(OUtils::WorkerState::kCreated));
    EXPECT_EQ(4096, static_cast<int>(OUtils::WorkerMessage::kRunMultiThreaded));
    EXPECT_EQ(4097, static_cast<int>(OUtils::WorkerMessage::kTerminate));
    EXPECT_EQ(4098, static_cast<int>(OUtils::WorkerMessage::kRunProcedure));
}

}  // namespace
