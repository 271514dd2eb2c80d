#include "support/pool_worker.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <memory>
#include <stdexcept>
#include <thread>

namespace {

using OUtils::SharedRunState;
using OUtils::ThreadRun;
using OUtils::ThreadState;
using OUtils::Worker;
using OUtils::WorkerMessage;
using OUtils::WorkerState;
using OUtils::WorkItem;

class Counting : public OUtils::MultiThreaded {
public:
    void run(SharedRunState&, ThreadState& results, int index, int count) override {
        results.counter += index + 1;
        if (index == failingIndex) {
            throw std::runtime_error("part");
        }
        EXPECT_EQ(3, count);
        ++runs;
    }
    int failingIndex = -1;
    int runs = 0;
};

TEST(ThreadRunTest, CountsItsPartsDown) {
    Counting procedure;
    ThreadRun run(procedure, 3);
    for (int index = 0; index < 3; ++index) {
        EXPECT_FALSE(run.waitFor(std::chrono::milliseconds(0)));
        run.runPart(index);
        run.finishPart();
    }
    EXPECT_TRUE(run.waitFor(std::chrono::milliseconds(0)));
    run.wait();
    EXPECT_EQ(6, run.progress());
    EXPECT_EQ(3, procedure.runs);
    EXPECT_NO_THROW(run.rethrow());
}

TEST(ThreadRunTest, DoesNotBeginAPartOnceCancelled) {
    Counting procedure;
    ThreadRun run(procedure, 3);
    run.shared().cancel(5);
    run.runPart(0);
    EXPECT_EQ(0, procedure.runs);
    EXPECT_EQ(5, run.shared().cancelled);
}

TEST(ThreadRunTest, AFailedPartCancelsTheOthersAndKeepsItsError) {
    Counting procedure;
    procedure.failingIndex = 0;
    ThreadRun run(procedure, 3);
    run.runPart(0);
    run.runPart(1);
    EXPECT_EQ(0, procedure.runs);
    EXPECT_EQ(-1, run.shared().cancelled);
    EXPECT_THROW(run.rethrow(), std::runtime_error);
}

class WorkerTest : public testing::Test {
protected:
    bool reaches(WorkerState state) {
        return worker_->waitToReach(state, std::chrono::steady_clock::now() + std::chrono::seconds(60));
    }

    std::shared_ptr<Worker> worker_ = std::make_shared<Worker>(nullptr, 7);
};

TEST_F(WorkerTest, PassesThroughItsStates) {
    EXPECT_EQ(WorkerState::kCreated, worker_->state());
    EXPECT_FALSE(worker_->claim());
    Worker::start(worker_);
    EXPECT_TRUE(reaches(WorkerState::kWaiting));
    EXPECT_FALSE(worker_->claim());  // it belongs to the one who started it

    struct Blocking : OUtils::ThreadProcedure {
        void run(void* argument) override {
            EXPECT_EQ(7, Worker::current()->index());
            static_cast<std::promise<void>*>(argument)->get_future().wait();
        }
    } procedure;
    std::promise<void> goOn;
    WorkItem item;
    item.message = WorkerMessage::kRunProcedure;
    item.procedure = &procedure;
    item.argument = &goOn;
    worker_->post(item);
    EXPECT_TRUE(reaches(WorkerState::kBusy));
    EXPECT_FALSE(worker_->claim());
    goOn.set_value();
    EXPECT_TRUE(reaches(WorkerState::kIdle));
    EXPECT_TRUE(worker_->claim());
    EXPECT_EQ(WorkerState::kBusy, worker_->state());
    EXPECT_FALSE(worker_->claim());

    worker_->post(WorkItem{});
    const bool terminated = reaches(WorkerState::kTerminated);
    EXPECT_TRUE(terminated);
    worker_->letGo(terminated);
    EXPECT_EQ(nullptr, Worker::current());
}

TEST_F(WorkerTest, DoesItsWorkBeforeItEnds) {
    Counting procedure;
    const auto run = std::make_shared<ThreadRun>(procedure, 3);
    WorkItem item;
    item.message = WorkerMessage::kRunMultiThreaded;
    item.run = run;
    item.index = 2;
    worker_->post(item);
    worker_->post(WorkItem{});
    Worker::start(worker_);
    const bool terminated = reaches(WorkerState::kTerminated);
    EXPECT_TRUE(terminated);
    worker_->letGo(terminated);
    EXPECT_EQ(1, procedure.runs);
    EXPECT_EQ(3, run->progress());
}

}  // namespace
