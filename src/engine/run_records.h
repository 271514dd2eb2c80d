#pragma once

#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/platform.h"
#include "support/run_outcome.h"

// A run that is over.
struct RunRecord {
    platform::LocalTime time;  // of its end
    bool isUninstallation = false;
    RunEnd end = RunEnd::kDone;
    std::string product;  // empty if it isn't known
    std::string why;      // what the end was about; may be empty
};

// The records of this machine's last runs, in its state directory. See run_records_format.md.
class RunRecords {
public:
    // What the machine refers to is borrowed and outlives this object.
    explicit RunRecords(const platform::Platform& machine) : machine_(machine) {}

    // Adds one and drops the oldest beyond the limit. False when it can't be written, or when there is no
    // state directory; what was there is as it was then.
    bool add(const RunRecord& record);

    // Makes a state directory empty that holds nothing but records, for whoever takes it away.
    static void removeIfAlone(platform::FileSystem& files, const std::string& stateDirectory);

private:
    std::string linesOfOthers(const std::string& path);

    platform::Platform machine_;
};
