#pragma once

// A front end handles its events while the engine works inside one of its calls, so a press can come in at
// any time. What must not start inside itself enters this guard first. For one thread.
class ReentryGuard {
public:
    // Holds the guard while it lives, unless somebody else did already.
    class Entry {
    public:
        explicit Entry(ReentryGuard& guard) : guard_(guard), isFirst_(!guard.isHeld_) {
            guard.isHeld_ = true;
        }
        ~Entry() {
            if (isFirst_) {
                guard_.isHeld_ = false;
            }
        }
        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;

        // False: go away, and leave everything as it is.
        bool isFirst() const { return isFirst_; }

    private:
        ReentryGuard& guard_;
        const bool isFirst_;
    };

    bool isHeld() const { return isHeld_; }

private:
    bool isHeld_ = false;
};
