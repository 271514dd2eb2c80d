#include "platform/windows/window_probe/asking_thread.h"

#include <windows.h>

#include <objbase.h>

#include <chrono>
#include <condition_variable>
#include <future>
#include <mutex>
#include <thread>
#include <utility>

namespace {

constexpr std::chrono::seconds kPatience{10};

using Task = std::packaged_task<std::optional<std::string>()>;

}  // namespace

// Where the next call waits for the thread.
class AskingThread::Desk {
public:
    void put(Task task) {
        {
            const std::lock_guard lock(mutex_);
            task_ = std::move(task);
        }
        isPut_.notify_one();
    }

    Task take() {
        std::unique_lock lock(mutex_);
        isPut_.wait(lock, [this] { return task_.valid(); });
        return std::exchange(task_, Task());
    }

private:
    std::mutex mutex_;
    std::condition_variable isPut_;
    Task task_;
};

std::optional<std::string> AskingThread::ask(Call call) {
    if (desk_ == nullptr) {
        desk_ = begin();
    }
    Task task(std::move(call));
    std::future<std::optional<std::string>> answer = task.get_future();
    desk_->put(std::move(task));
    if (answer.wait_for(kPatience) != std::future_status::ready) {
        desk_ = nullptr;
        return std::nullopt;
    }
    return answer.get();
}

std::shared_ptr<AskingThread::Desk> AskingThread::begin() {
    auto desk = std::make_shared<Desk>();
    std::thread([desk] {
        // In this kind of apartment calls are made directly, without a window whose messages nobody serves.
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        for (;;) {
            desk->take()();
        }
    }).detach();
    return desk;
}
