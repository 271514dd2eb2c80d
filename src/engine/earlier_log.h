#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform {
class FileSystem;
}

// What an action log holds that stands where an installation is about to put its own.
struct EarlierLog {
    enum class State {
        kNone,
        kWhole,
        kDamaged,     // a part can't be read; the rest is here
        kUnreadable,  // it is there and can't be opened
    };

    // What is larger counts as unreadable.
    static constexpr long long kSizeLimit = 512LL * 1024 * 1024;

    State state = State::kNone;
    int status = 0;                    // of kUnreadable: the system's error number, or -1
    std::string archivePath;           // of its backup archive; empty when it names none
    std::vector<std::string> records;  // in their order, without their line ends

    // Without a path there is none.
    static EarlierLog read(platform::FileSystem& files, std::string_view path);
};
