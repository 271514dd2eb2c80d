#include "platform/windows/background_reader.h"

#include <condition_variable>
#include <mutex>
#include <thread>

#include "platform/windows/wide_text.h"

namespace platform {

struct BackgroundReader::State {
    explicit State(HANDLE handle) : input(handle) {}

    void work();

    const HANDLE input;
    std::mutex mutex;
    std::condition_variable changed;
    bool asked = false;
    bool answered = false;
    bool interrupted = false;
    std::string bytes;        // the answer; empty at the end of the input
    HANDLE worker = nullptr;  // for cancelling; null before the thread runs and after it
};

void BackgroundReader::State::work() {
    const Handle self(OpenThread(THREAD_TERMINATE, FALSE, GetCurrentThreadId()));
    std::unique_lock<std::mutex> lock(mutex);
    worker = self.get();
    for (;;) {
        changed.wait(lock, [this] { return asked || interrupted; });
        if (interrupted) {
            worker = nullptr;
            return;
        }
        asked = false;
        lock.unlock();
        std::string piece;
        readPiece(input, piece);
        lock.lock();
        bytes = std::move(piece);
        answered = true;
        changed.notify_all();
    }
}

BackgroundReader::BackgroundReader(HANDLE input) : state_(std::make_shared<State>(input)) {}

BackgroundReader::~BackgroundReader() {
    interrupt();
}

ReadStatus BackgroundReader::read(std::string& outBytes) {
    outBytes.clear();
    if (!started_) {
        started_ = true;
        std::thread([state = state_] { state->work(); }).detach();
    }
    std::unique_lock<std::mutex> lock(state_->mutex);
    state_->asked = true;
    state_->changed.notify_all();
    state_->changed.wait(lock, [this] { return state_->answered || state_->interrupted; });
    if (state_->interrupted) {
        return ReadStatus::kInterrupted;
    }
    state_->answered = false;
    outBytes = std::move(state_->bytes);
    state_->bytes.clear();
    return outBytes.empty() ? ReadStatus::kEnd : ReadStatus::kLine;
}

void BackgroundReader::interrupt() {
    const std::lock_guard<std::mutex> lock(state_->mutex);
    state_->interrupted = true;
    if (state_->worker != nullptr) {
        CancelSynchronousIo(state_->worker);  // where it works, nothing is read that nobody wants
    }
    state_->changed.notify_all();
}

bool readPiece(HANDLE input, std::string& outBytes) {
    constexpr DWORD kPiece = 4096;
    outBytes.resize(kPiece);
    DWORD length = 0;
    const BOOL read = ReadFile(input, outBytes.data(), kPiece, &length, nullptr);
    outBytes.resize(read != 0 ? length : 0);
    return !outBytes.empty();
}

}  // namespace platform
