#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <utility>

// How much of each volume changed files would take. What the base's own files would give back isn't counted:
// they may have other names. For one thread.
class SpaceLedger {
public:
    std::int64_t used(const std::string& volume) const {
        const auto found = used_.find(volume);
        return found == used_.end() ? 0 : found->second;
    }
    void add(const std::string& volume, std::int64_t bytes) { used_[volume] += bytes; }

private:
    std::map<std::string, std::int64_t> used_;  // by the volume's key
};

// What one file takes of its volume beyond what it took at first; given back at its end.
class SpaceCharge {
public:
    // The ledger is borrowed. `free` is what the base had on the volume, before anything of the ledger;
    // negative: nobody knows, and there is no limit.
    SpaceCharge(SpaceLedger& ledger, std::string volume, std::int64_t free)
        : ledger_(ledger), volume_(std::move(volume)), free_(free) {}
    ~SpaceCharge() { ledger_.add(volume_, -taken_); }
    SpaceCharge(const SpaceCharge&) = delete;
    SpaceCharge& operator=(const SpaceCharge&) = delete;

    std::int64_t left() const {
        return free_ < 0 ? std::numeric_limits<std::int64_t>::max() : free_ - ledger_.used(volume_);
    }
    void setTaken(std::int64_t bytes) {
        ledger_.add(volume_, bytes - taken_);
        taken_ = bytes;
    }

private:
    SpaceLedger& ledger_;
    std::string volume_;
    std::int64_t free_;
    std::int64_t taken_ = 0;
};
