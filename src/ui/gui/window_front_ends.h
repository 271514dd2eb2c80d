#pragma once

#include <functional>
#include <memory>
#include <string>

#include "ui/graphical_front_ends.h"

class Toolkit;
namespace platform {
class ConsoleDevice;
class FileSystem;
}  // namespace platform

// Makes front ends for one toolkit, which is looked for when a window is wanted.
class WindowFrontEnds : public GraphicalFrontEnds {
public:
    // Null when there is none here, with a line that says why.
    using OpenToolkit = std::function<Toolkit*(std::string& outReason)>;

    // `terminal` and `files` outlive this object and its front ends; so does the toolkit.
    WindowFrontEnds(platform::ConsoleDevice& terminal, platform::FileSystem& files, OpenToolkit openToolkit);

    bool isAvailable(std::string& outReason) override;
    std::unique_ptr<GenericUI> make(bool uninstall, AnswersFile& answers, DebugLog debugLog) override;

private:
    platform::ConsoleDevice& terminal_;
    platform::FileSystem& files_;
    OpenToolkit openToolkit_;
    Toolkit* toolkit_ = nullptr;
};
