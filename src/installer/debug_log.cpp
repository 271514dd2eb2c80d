#include "installer/debug_log.h"

#include <algorithm>
#include <optional>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "platform/clock.h"
#include "platform/console_device.h"
#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/written_path.h"
#include "support/p_file_console.h"

namespace {

constexpr char kLevelVariable[] = "TANDREL_INSTALLER_DEBUG";

std::string twoDigits(int value) {
    return (value < 10 ? "_0" : "_") + std::to_string(value);
}

void say(platform::ConsoleDevice& output, const std::string& text) {
    output.write(text);
    output.flush();
}

std::string logPath(const std::string& directory, const std::string& name) {
    char path[OUtils::kPathCapacity];
    OUtils::copyText(path, directory.c_str(), sizeof path);
    OUtils::joinPath(path, name.c_str(), sizeof path);
    return path;
}

void openAt(PFileConsole& log, const std::string& path, platform::ConsoleDevice& output) {
    if (log.openPrivate(path.c_str()) != 0) {
        say(output,
            "ERROR: Failed to create installer debug log file:\n\t" + platform::writtenPath(path) + "\n");
        return;
    }
    say(output, "Installer debug log file:\n\t" + platform::writtenPath(path) + "\n");
}

}  // namespace

int debugLevelOfEnvironment(platform::Environment& environment) {
    const std::optional<std::string> level = environment.get(kLevelVariable);
    if (!level) {
        return 0;
    }
    return *level == "true" ? 1 : OUtils::textToInteger(*level);
}

std::string debugLogFileName(int level, const platform::LocalTime& time) {
    std::string name = "installer_debug";
    if (level >= 2) {
        name += "_" + std::to_string(time.year) + twoDigits(time.month) + twoDigits(time.day) +
                twoDigits(time.hour) + twoDigits(time.minute);
    }
    if (level >= 3) {
        name += twoDigits(time.second);
    }
    return name + ".log";
}

int openDebugLog(PFileConsole& log, int requested, platform::Environment& environment,
                 platform::FileSystem& files, platform::ConsoleDevice& output) {
    const int level = std::max(requested, debugLevelOfEnvironment(environment));
    if (level > 0) {
        std::string directory;
        if (files.temporaryDirectory(directory)) {
            platform::LocalTime time;
            platform::localTime(time);
            openAt(log, logPath(directory, debugLogFileName(level, time)), output);
        } else {
            say(output, "ERROR: Failed to obtain temp directory for Installer debug log");
        }
    }
    return std::clamp(level, 0, kLargestDebugLevel);
}
