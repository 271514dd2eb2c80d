#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

// The parts of a job, in the words of the engine.
enum class JobStage {
    kBackUp,    // keeping what a removal takes away
    kRestore,   // giving back what an installation had replaced
    kUndo,      // taking records back
    kCopy,      // files
    kChange,    // everything else that an installation changes
    kActions,   // what runs at its end
    kRegister,  // the entry in the list of applications
    kFinish,    // what a page after the installation does
};

// How far a job of several stages is, as a share of the weight of all of them. A weight is in bytes; a file
// or a record counts as some bytes besides its content. The share only grows, even if a plan turns out to be
// wrong: 0 at first, 100 when finish was called. For one thread.
class OverallProgress {
public:
    // What a file or a record costs whatever its size.
    static constexpr std::int64_t kStepWeight = 64 * 1024;

    // Gets each share that differs from the one before, 0 to 100.
    using Display = std::function<void(int percent)>;
    void showOn(Display display) { display_ = std::move(display); }

    // Stages come in the order in which they are planned. Negative weights count as 0.
    void plan(JobStage stage, std::int64_t weight);
    bool isPlanned() const { return !stages_.empty(); }

    // Goes on to the next stage of that kind; those before it count as done. Without one the present stage
    // stays, and nothing advances it until the next `begin`.
    void begin(JobStage stage);
    // The share of the present stage that is done, 0 to 100. Has no effect on kCopy and kChange.
    void share(int percent);
    // So much more of the present stage is done. For kCopy and kChange.
    void advance(std::int64_t weight);
    // Everything is done.
    void finish();

private:
    struct Stage {
        JobStage kind;
        std::int64_t weight;
    };

    bool advancesByWeight() const { return kind_ == JobStage::kCopy || kind_ == JobStage::kChange; }
    void show(std::int64_t inStage);

    Display display_;
    std::vector<Stage> stages_;
    std::size_t next_ = 0;     // after the present stage
    std::int64_t total_ = 0;   // of all stages
    std::int64_t before_ = 0;  // of those before the present one
    std::int64_t weight_ = 0;  // of the present one; 0 without one
    std::int64_t done_ = 0;    // of the present one, where it advances by weight
    JobStage kind_ = JobStage::kFinish;
    bool isFinished_ = false;
    int shown_ = -1;
};
